#include "Edit/File.h"

#include <gmock/gmock.h>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PartitionDigest.h"
#include "Core/Types/UUID.h"
#include "tests/Core/DataIO/FolderTest.h"
#include "tests/SampleFiles.h"

namespace Vantor::Edit {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;

constexpr const char* kSample = VANTOR_TEST_DATA_DIR "/gst-audio-ac3.mxf";  // with its metadata in partitions 0 and 2
constexpr const char* kOther = VANTOR_TEST_DATA_DIR "/op1a.mxf";

std::string exported(File& file, bool isNested = true) {
  LosslessXML::ExportOptions options;
  options.nestStrongReferences = isNested;
  return LosslessXML::exportBytes(file.metadata(), options, XMLUtils::EncodingType::kUTF8Indented);
}

std::string exportedSample(const char* path = kSample, bool isNested = true) {
  File file(Path(path), builtInDictionary());
  return exported(file, isNested);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const auto at = text.find(from);
  if (at == std::string::npos) throw std::out_of_range(from);
  return text.replace(at, from.size(), to);
}

/// Without the processing instruction before the root.
std::string withoutDescription(std::string xml) {
  const auto from = xml.find("<?mxfxml");
  return xml.erase(from, xml.find("?>", from) + 2 - from);
}

std::string named(const std::string& xml, const std::string& name) {
  const std::string begin = "<rp210:ApplicationName>", end = "</rp210:ApplicationName>";
  const auto from = xml.find(begin) + begin.size();
  return std::string(xml).replace(from, xml.find(end) - from, name);
}

std::string platformed(const std::string& xml, const std::string& platform) {
  return replaced(xml, "<rp210:ApplicationPlatform>Linux", "<rp210:ApplicationPlatform>" + platform);
}

/// For edits that are right as such, but leave a file that breaks rules.
SaveOptions ignoringAllRules() {
  SaveOptions options;
  for (const auto* rule : rules()) options.ignoredRules.insert(rule->code);
  return options;
}

class FileTest : public FolderTest {
 protected:
  void SetUp() override {
    FolderTest::SetUp();
    std::filesystem::copy_file(kSample, path());
  }
  Path path() const { return folder_ / "programme.mxf"; }
  DocumentReport merge(const std::string& xml, const MergeOptions& options = {}) {
    File file(path(), builtInDictionary());
    auto report = file.mergeDocument(xml.data(), xml.size(), options);
    saved_ = file.save();
    return report;
  }
  std::string text(const char* set, const char* property) const {
    File file(path(), builtInDictionary());
    const auto value = file.metadata().find(set).text(property);
    return {value.begin(), value.end()};
  }

  SaveReport saved_;
};

TEST_F(FileTest, SavesAnEditInPlaceInEveryPartitionThatRepeatsTheMetadata) {
  File file(path(), builtInDictionary());
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  const auto report = file.save();
  EXPECT_EQ(report.changes.changedSets, 1u);
  EXPECT_EQ(report.changes.changedProperties, 1u);
  EXPECT_EQ(report.partitions, 2u);
  EXPECT_EQ(contents(path()).size(), contents(kSample).size());
  const auto footer = MXF::readHeaderMetadata(path(), builtInDictionary(), MXF::PartitionChoice::footer());
  EXPECT_EQ(footer->find("Identification").text("ApplicationName"), u"Ed");
  EXPECT_EQ(text("Identification", "ApplicationName"), "Ed");
  EXPECT_THAT(names(), testing::ElementsAre("programme.mxf"));
}

TEST_F(FileTest, MayBeSavedSeveralTimes) {
  File file(path(), builtInDictionary());
  auto& identification = file.metadata().find("Identification");
  identification.set("ApplicationName", std::u16string(30000, u'x'));
  EXPECT_EQ(file.save().partitions, 2u);
  EXPECT_GT(contents(path()).size(), contents(kSample).size());
  EXPECT_TRUE(file.save().changes.isNone());
  identification.set("ApplicationName", u"Ed");
  EXPECT_EQ(file.save().changes.changedSets, 1u);
  EXPECT_EQ(text("Identification", "ApplicationName"), "Ed");
}

TEST_F(FileTest, WritesNothingWhenNothingIsEdited) {
  for (const auto& sample : sampleFiles()) {
    File file(sample, builtInDictionary());
    EXPECT_TRUE(file.preview().changes.isNone()) << sample;
    DataIO::Memory::MemoryDataSink sink;
    EXPECT_EQ(file.saveTo(sink).partitions, 0u) << sample;
    EXPECT_TRUE(std::string(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()) == contents(sample))
        << sample;
  }
  File file(path(), builtInDictionary());
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  file.metadata().find("Identification").set("ApplicationName", u"GStreamer Multimedia Framework");
  EXPECT_EQ(file.save().partitions, 0u);
  EXPECT_EQ(contents(path()), contents(kSample));
}

TEST_F(FileTest, EditsAFileInMemory) {
  const std::string bytes = contents(kSample);
  DataIO::Memory::MemoryFile source(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  File file(source, builtInDictionary());
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  EXPECT_THAT([&] { file.save(); }, ThrowsMessage<Exceptions::IOError>(HasSubstr("save a copy")));
  DataIO::Memory::MemoryDataSink sink;
  EXPECT_EQ(file.saveTo(sink).partitions, 2u);
  File onDisk(path(), builtInDictionary());
  onDisk.metadata().find("Identification").set("ApplicationName", u"Ed");
  onDisk.save();
  EXPECT_TRUE(std::string(reinterpret_cast<const char*>(sink.rawBuffer()), sink.serializedSize()) == contents(path()));
  file.saveCopy(folder_ / "copy.mxf");
  EXPECT_TRUE(contents(folder_ / "copy.mxf") == contents(path()));
}

TEST_F(FileTest, LeavesTheFileAloneWhereItsProgressThrows) {
  File file(path(), builtInDictionary());
  file.metadata().find("Identification").set("ApplicationName", std::u16string(30000, u'x'));
  const auto stop = [](uint64, uint64) { throw std::runtime_error("stopped"); };
  EXPECT_THROW(file.saveCopy(folder_ / "copy.mxf", {}, stop), std::runtime_error);
  EXPECT_THROW(file.save({}, stop), std::runtime_error);
  EXPECT_EQ(contents(path()), contents(kSample));
  EXPECT_THAT(names(), testing::ElementsAre("programme.mxf"));
  EXPECT_EQ(file.preview().changes.changedSets, 1u) << "the object is as good as before";
  EXPECT_EQ(file.save().partitions, 2u);
  EXPECT_EQ(text("Identification", "ApplicationName").size(), 30000u);
}

TEST_F(FileTest, RefusesAFileThatAnotherHasChanged) {
  File first(path(), builtInDictionary()), second(path(), builtInDictionary());
  first.metadata().find("Identification").set("ApplicationName", u"Ed");
  second.metadata().find("Identification").set("ApplicationName", u"Another editor");
  first.save();
  EXPECT_THROW(second.save(), Exceptions::IOError);
  EXPECT_EQ(text("Identification", "ApplicationName"), "Ed");
}

TEST_F(FileTest, EditsOnePartitionWhereOneIsChosen) {
  File file(path(), builtInDictionary(), MXF::PartitionChoice::footer());
  file.metadata().find("Identification").set("ApplicationName", u"Ed");
  EXPECT_EQ(file.save(ignoringAllRules()).partitions, 1u);
  EXPECT_EQ(text("Identification", "ApplicationName"), "GStreamer Multimedia Framework");
  File header(path(), builtInDictionary());
  header.metadata().find("Identification").set("ApplicationName", u"Header");
  const auto report = header.save(ignoringAllRules());
  EXPECT_EQ(report.partitions, 1u);
  ASSERT_EQ(report.unedited.size(), 1u);
  EXPECT_EQ(report.unedited[0].number, 2u);
  EXPECT_EQ(report.unedited[0].reason, UneditedPartition::Reason::kOtherMetadata);
}

TEST_F(FileTest, MergesADocumentThatDescribesItself) {
  for (const bool isNested : {true, false}) {
    const auto xml = named(exportedSample(path().string().c_str(), isNested), isNested ? "Ed" : "Edna");
    const auto report = merge(xml);
    EXPECT_THAT(report.diagnostics, IsEmpty());
    EXPECT_FALSE(report.isOfEarlierState);
    EXPECT_EQ(saved_.changes.changedProperties, 1u);
    EXPECT_EQ(text("Identification", "ApplicationName"), isNested ? "Ed" : "Edna");
  }
}

TEST_F(FileTest, MergesADocumentThatDoesNotDescribeItself) {
  for (const bool isNested : {true, false}) {
    const auto xml =
        withoutDescription(named(exportedSample(path().string().c_str(), isNested), isNested ? "Ed" : "Edna"));
    EXPECT_FALSE(merge(xml).isOfEarlierState);
    EXPECT_EQ(saved_.changes.changedProperties, 1u);
    EXPECT_EQ(text("Identification", "ApplicationName"), isNested ? "Ed" : "Edna");
  }
}

TEST_F(FileTest, RefusesADocumentOfAnotherFileUnlessTold) {
  for (const auto& xml : {exportedSample(kOther), withoutDescription(exportedSample(kOther))}) {
    EXPECT_THAT([&] { merge(xml); },
                ThrowsMessage<DocumentOfOtherFile>(HasSubstr("the document is of another file: it has the package ")));
    EXPECT_EQ(contents(path()), contents(kSample));
    File file(path(), builtInDictionary());
    MergeOptions options;
    options.mergesOtherFile = true;
    file.mergeDocument(xml.data(), xml.size(), options);
    EXPECT_NE(file.preview().changes.addedSets, 0u);
  }
}

TEST_F(FileTest, MergesADocumentOfAnEarlierStateIntoTheFileAsItIsNow) {
  const auto xml = exportedSample();
  const auto once = named(xml, "Ed"), twice = platformed(once, "Plan 9");
  EXPECT_FALSE(merge(once).isOfEarlierState);
  const std::string before = contents(path());
  MergeOptions options;
  options.expectsUnchanged = true;
  EXPECT_THROW(merge(twice, options), FileHasChanged);
  EXPECT_EQ(contents(path()), before);
  EXPECT_TRUE(merge(twice).isOfEarlierState);
  EXPECT_EQ(saved_.changes.changedProperties, 1u) << "the first edit is in the file already";
  EXPECT_EQ(text("Identification", "ApplicationName"), "Ed");
  EXPECT_THAT(text("Identification", "ApplicationPlatform"), testing::StartsWith("Plan 9"));
}

TEST_F(FileTest, MergesAnEditedPackageIdentifier) {
  File file(path(), builtInDictionary());
  const auto umid = file.metadata().find("MaterialPackage").text("PackageID");
  const std::string from(umid.begin(), umid.end()), to = from.substr(0, from.size() - 2) + "FF";
  merge(replaced(exportedSample(), from, to));
  EXPECT_EQ(text("MaterialPackage", "PackageID"), to);
}

TEST_F(FileTest, MergesADocumentWithAnEditedDescription) {
  const auto xml = named(exportedSample(), "Ed");
  const auto at = xml.find("metadata=\"") + 10;
  const auto other = std::string(xml).replace(at, 1, xml[at] == '0' ? "1" : "0");
  EXPECT_TRUE(merge(other).isOfEarlierState) << "another digest is that of another state";
  EXPECT_EQ(text("Identification", "ApplicationName"), "Ed");
  const auto damaged = platformed(replaced(xml, "form=\"nested\"", "form=\"both\""), "Plan 9");
  EXPECT_FALSE(merge(damaged).isOfEarlierState) << "a damaged description is none";
  EXPECT_THAT(text("Identification", "ApplicationPlatform"), testing::StartsWith("Plan 9"));
}

TEST_F(FileTest, KeepsWhatAnExportOfAPartLeavesOut) {
  File file(path(), builtInDictionary());
  LosslessXML::ExportOptions options;
  options.start = &file.metadata().find("Timecode[1]");
  const auto xml = replaced(LosslessXML::exportBytes(file.metadata(), options, XMLUtils::EncodingType::kUTF8Indented),
                            ">188<", ">375<");
  merge(xml);
  EXPECT_EQ(saved_.changes.changedSets, 1u);
  EXPECT_EQ(saved_.changes.removedSets, 0u);
  EXPECT_EQ(text("Timecode[1]", "FramesPerSecond"), "375");
  EXPECT_THAT([&] { merge(withoutDescription(xml)); },
              ThrowsMessage<Exceptions::InvalidFormat>(HasSubstr("the document has no Preface, and does not")));
  MergeOptions start;
  start.start = "Timecode[1]";
  merge(replaced(withoutDescription(xml), ">375<", ">188<"), start);
  EXPECT_EQ(text("Timecode[1]", "FramesPerSecond"), "188");
}

/// A pointer without its set is half an edit.
TEST_F(FileTest, RemovesNothingWhereAPointerOfTheDocumentHasNoTarget) {
  auto xml = exportedSample(path().string().c_str(), false);
  const std::string end = "</s377m:Identification>";
  const auto from = xml.find("<s377m:Identification ");
  xml.erase(from, xml.find(end) + end.size() - from);
  const auto report = merge(xml);
  ASSERT_EQ(report.diagnostics.size(), 1u);
  EXPECT_EQ(report.diagnostics[0].kind, LosslessXML::Diagnostic::Kind::kMissingTarget);
  EXPECT_EQ(report.kept.size(), 1u);
  EXPECT_EQ(contents(path()), contents(kSample));
}

/// A document whose list of diagnostics is cut is judged by all that is wrong with it.
TEST_F(FileTest, RefusesASetWithoutInstanceUIDBehindMoreDiagnosticsThanAreListed) {
  auto xml = exportedSample();
  const std::string end = "</s377m:MetadataSets>";
  const std::string unknown = "<u xmlns='urn:nobody'/>";
  xml.insert(xml.rfind(end), unknown + unknown + unknown + "<s377m:Identification/>");
  Limits limits;
  limits.diagnostics = 1;
  File file(path(), builtInDictionary(), {}, limits);
  EXPECT_THAT([&] { file.mergeDocument(xml.data(), xml.size()); },
              ThrowsMessage<Exceptions::InvalidFormat>(HasSubstr("the set has no valid InstanceUID")));
}

TEST_F(FileTest, ReadsWithinItsLimits) {
  Limits limits;
  limits.sets = 3;
  EXPECT_THROW(File(path(), builtInDictionary(), {}, limits), Exceptions::LimitExceeded);
  limits = {};
  limits.documentSize = 100;
  File file(path(), builtInDictionary(), {}, limits);
  const auto xml = exportedSample();
  EXPECT_THROW(file.mergeDocument(xml.data(), xml.size()), Exceptions::LimitExceeded);
}

TEST_F(FileTest, RefusesADocumentOfAnUnknownStateWhereAnUnchangedFileIsExpected) {
  MergeOptions options;
  options.expectsUnchanged = true;
  EXPECT_THROW(merge(withoutDescription(exportedSample()), options), FileHasChanged);
  EXPECT_NO_THROW(merge(exportedSample(), options));
}

TEST_F(FileTest, DescribesNoExportThatStartsFromOneOfSeveralSetsWithOneInstanceUID) {
  File file(path(), builtInDictionary());
  auto &first = file.metadata().find("Sequence[1]"), &second = file.metadata().find("Sequence[2]");
  LosslessXML::ExportOptions options;
  options.start = &second;
  const auto exportedStart = [&] {
    return LosslessXML::exportBytes(file.metadata(), options, XMLUtils::EncodingType::kUTF8);
  };
  EXPECT_THAT(exportedStart(), HasSubstr("<?mxfxml"));
  second.set("InstanceID", Types::UUID(*first.instanceUID()));
  EXPECT_THAT(exportedStart(), testing::Not(HasSubstr("<?mxfxml")));
}

TEST_F(FileTest, ReportsARepetitionInWhichNothingIdentifiesAnEditedSet) {
  for (const auto& choice : {MXF::PartitionChoice::header(), MXF::PartitionChoice::footer()}) {
    File file(path(), builtInDictionary(), choice);
    file.metadata()
        .find("Sequence[2]")
        .set("InstanceID", Types::UUID(*file.metadata().find("Sequence[1]").instanceUID()));
    // So that the footer repeats the metadata with other octets.
    if (choice.kind() == MXF::PartitionChoice::Kind::kFooter) file.metadata().find("Identification").setBerLength(9);
    file.save(ignoringAllRules());
  }
  File file(path(), builtInDictionary());
  file.metadata().find("Sequence[2]").set("ComponentLength", 77);
  const auto report = file.save(ignoringAllRules());
  EXPECT_EQ(report.partitions, 1u);
  ASSERT_EQ(report.unedited.size(), 1u);
  EXPECT_EQ(report.unedited[0].reason, UneditedPartition::Reason::kUnidentifiedSets);
}

TEST_F(FileTest, ChangesNothingWhereAnEditCannotBe) {
  File file(path(), builtInDictionary());
  const auto xml = replaced(named(exportedSample(), "Ed"), "rp210:InstanceUID=\"74.D2", "rp210:InstanceUID=\"74.");
  EXPECT_THROW(file.mergeDocument(xml.data(), xml.size()), Exceptions::InvalidFormat);
  EXPECT_TRUE(file.preview().changes.isNone());
}

/// A document in another form that shows the sets of a file, and another name of its writer.
SetsOfDocument renamedSets(std::optional<uint64> digest) {
  const auto read = [](PartitionMetadata& partition) {
    const auto metadata = MXF::readHeaderMetadata(kSample, builtInDictionary(), {});
    metadata->find("Identification").set("ApplicationName", u"Ed");
    const auto xml = LosslessXML::exportBytes(*metadata, {}, XMLUtils::EncodingType::kUTF8);
    LosslessXML::Document::fromBytes(xml.data(), xml.size()).import(partition);
  };
  return {read, digest};
}

TEST(EditedFile, MergesADocumentInAnotherForm) {
  File file(Path(kSample), builtInDictionary());
  const auto edited = file.read(renamedSets(digestOf(file.metadata())));
  EXPECT_FALSE(edited.isOfEarlierState);
  EXPECT_THAT(file.merge(edited).rejected, IsEmpty());
  EXPECT_EQ(file.metadata().find("Identification").text("ApplicationName"), u"Ed");
  EXPECT_EQ(file.compare().differences.size(), 1u);
}

TEST(EditedFile, KnowsThatADocumentInAnotherFormIsOfAnEarlierState) {
  File file(Path(kSample), builtInDictionary());
  EXPECT_TRUE(file.read(renamedSets(1)).isOfEarlierState);
  EXPECT_TRUE(file.read(renamedSets({})).form.isAssumed);
}

TEST(EditedFile, RefusesADocumentThatHasASetTwice) {
  File file(Path(kSample), builtInDictionary());
  const auto addTwice = [](PartitionMetadata& partition) {
    const auto instanceUID = *partition.createMetadataSet("Sequence").instanceUID();
    setDecodedValue(*partition.createMetadataSet("Sequence").find("InstanceUID"),
                    std::make_unique<Types::UUID>(instanceUID));
  };
  EXPECT_THROW(file.read(SetsOfDocument{addTwice}), Exceptions::InvalidFormat);
}

}  // namespace
}  // namespace Vantor::Edit
