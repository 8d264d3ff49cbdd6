#include <gmock/gmock.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Types/UMID32.h"
#include "Edit/DocumentMerge.h"

/// Documents of files whose writer gives the sets of every file the same InstanceUIDs.
namespace Vantor::Edit {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr const char* kNotUnique = "has no package with an identifier of its own";

std::unique_ptr<PartitionMetadata> readNumbered() {
  return MXF::readHeaderMetadata(VANTOR_TEST_DATA_DIR "/op1a.mxf", builtInDictionary());
}

/// As writers do that are asked for the same file each time.
void makeReproducible(PartitionMetadata& metadata) {
  std::array<uint8, 32> umid = {0x06, 0x0a, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x05, 0x01, 0x01, 0x0d, 0x00, 0x13};
  metadata.find("MaterialPackage").set("PackageID", Types::UMID32(umid));
  umid.back() = 1;
  metadata.find("SourcePackage").set("PackageID", Types::UMID32(umid));
}

std::string text(PartitionMetadata& metadata, const char* start = nullptr) {
  LosslessXML::ExportOptions options;
  if (start != nullptr) options.start = &metadata.find(start);
  return LosslessXML::exportBytes(metadata, options, XMLUtils::EncodingType::kUTF8Indented);
}

std::string undescribed(std::string xml) {
  const auto from = xml.find("<?mxfxml");
  return xml.erase(from, xml.find("?>", from) + 2 - from);
}

void merge(const std::string& xml, PartitionMetadata& ours, const MergeOptions& options = {}) {
  const auto document = LosslessXML::Document::fromBytes(xml.data(), xml.size());
  mergeDocument(readDocument(document, ours, options), ours, options);
}

TEST(DocumentOfAnotherFile, IsNotTakenForOneOfThisByIdentifiersThatEachFileHas) {
  const auto ours = readNumbered(), theirs = readNumbered();
  for (auto* metadata : {ours.get(), theirs.get()}) makeReproducible(*metadata);
  theirs->find("Identification").set("ApplicationName", u"Ed");
  for (const auto& xml : {text(*theirs), undescribed(text(*theirs))}) {
    EXPECT_THAT([&] { merge(xml, *ours); }, ThrowsMessage<DocumentOfOtherFile>(HasSubstr(kNotUnique)));
    EXPECT_NE(ours->find("Identification").text("ApplicationName"), u"Ed");
  }
  MergeOptions options;
  options.mergesOtherFile = true;
  merge(text(*theirs), *ours, options);
  EXPECT_EQ(ours->find("Identification").text("ApplicationName"), u"Ed");
}

TEST(DocumentOfAnotherFile, IsNoneWhereItDescribesTheStateOfThisOne) {
  const auto ours = readNumbered();
  makeReproducible(*ours);
  auto xml = text(*ours);
  const std::string platform = "ApplicationPlatform>";
  xml.insert(xml.find(platform) + platform.size(), "Plan 9 ");
  merge(xml, *ours);
  EXPECT_EQ(ours->find("Identification").text("ApplicationPlatform").substr(0, 6), u"Plan 9");
}

TEST(DocumentOfAnotherFile, IsNotTakenForOneOfThisByTheNumbersOfItsSets) {
  const auto ours = readNumbered(), theirs = readNumbered();
  theirs->find("Identification").set("ApplicationName", u"Ed");
  MergeOptions options;
  options.start = "Identification";
  const auto xml = undescribed(text(*theirs, "Identification"));
  EXPECT_THAT([&] { merge(xml, *ours, options); }, ThrowsMessage<DocumentOfOtherFile>(HasSubstr(kNotUnique)));
  options.mergesOtherFile = true;
  merge(xml, *ours, options);
  EXPECT_EQ(ours->find("Identification").text("ApplicationName"), u"Ed");
}

}  // namespace
}  // namespace Vantor::Edit
