#include <gmock/gmock.h>

#include <algorithm>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/SetReader.h"
#include "XMLBuilder.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// Unknown properties whose file gave a static tag another label than the registers. 44.02 is that of PackageName.
namespace Vantor::XML2Partition {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string kPrivate = "06.0E.2B.34.01.01.01.0E.0F.0F.0F.0F.00.00.00.01";
const std::string kOtherPrivate = "06.0E.2B.34.01.01.01.0E.0F.0F.0F.0F.00.00.00.02";

std::string marked(const std::string& tag, const std::string& label, const std::string& octets) {
  return "<groups:DarkElement groups:StaticLocalTag='" + tag + "' groups:UniversalLabel='" + label + "'>" + octets +
         "</groups:DarkElement>";
}

/// A material package with a name and private properties.
std::string packageWith(const std::string& extensions) {
  return prefaceWith(
      "<rp210:OperationalPattern>06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.01.00</rp210:OperationalPattern>"
      "<rp210:ContentStorageObject><s377m:ContentStorage><rp210:Packages><s377m:MaterialPackage>"
      "<rp210:PackageName>Harbour</rp210:PackageName>"
      "<groups:ExtensionElements>" +
      extensions +
      "</groups:ExtensionElements></s377m:MaterialPackage></rp210:Packages></s377m:ContentStorage>"
      "</rp210:ContentStorageObject>");
}

std::string losslessXMLOf(PartitionMetadata& partition) {
  return LosslessXML::exportBytes(partition, {}, XMLUtils::EncodingType::kUTF8Indented);
}

std::unique_ptr<PartitionMetadata> writtenAndRead(PartitionMetadata& partition) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderOnlyFile(partition, MXF::SetOrder::kSerialization, sink);
  DataIO::Memory::MemoryDataSource source(sink.rawBuffer(), sink.serializedSize());
  return MXF::readHeaderMetadata(source, builtInDictionary());
}

MetadataSet& packageOf(const PartitionMetadata& partition) { return partition.find("MaterialPackage"); }

uint16 tagOfUnknown(const MetadataSet& set) {
  return set.invalidBegin()->metaAttribute().asUnknown()->localTag().value();
}

TEST(LosslessTags, KeepALabelThatIsNotThatOfTheRegisters) {
  Imported document(packageWith(marked("44.02", kPrivate, "CAFE")));
  EXPECT_THAT(document.messages(), IsEmpty());
  const auto file = writtenAndRead(document.partition());
  EXPECT_EQ(packageOf(*file).text("PackageName"), u"Harbour");
  EXPECT_EQ(tagOfUnknown(packageOf(*file)), 0x4402);
  EXPECT_EQ(file->partitionDictionary().tryFind(0x4402)->dottedText(), kPrivate);
  const std::string xml = losslessXMLOf(*file);
  EXPECT_THAT(xml, HasSubstr("<rp210:PackageName>Harbour</rp210:PackageName>"));
  EXPECT_THAT(xml, HasSubstr("groups:StaticLocalTag=\"44.02\" groups:UniversalLabel=\"" + kPrivate + "\">CAFE<"));
  EXPECT_EQ(losslessXMLOf(*writtenAndRead(Imported(xml).partition())), xml);
}

bool isInPrimer(const PartitionMetadata& partition, const std::string& label) {
  const auto& entries = partition.partitionDictionary().primerEntries();
  return std::any_of(entries.begin(), entries.end(), [&label](const KLV::PrimerEntry& entry) {
    return Types::UniversalLabel(entry.label).dottedText() == label;
  });
}

TEST(LosslessTags, AreNotMadeForSetsThatAreNotRead) {
  const auto label = [](const std::string& text) {
    return "<groups:ExtensionElements><groups:DarkElement groups:UniversalLabel='" + text +
           "'>CAFE</groups:DarkElement></groups:ExtensionElements>";
  };
  auto xml = packageWith("");
  const std::string name =
      "<rp210:PackageName>Harbour</rp210:PackageName><groups:ExtensionElements></groups:ExtensionElements>";
  const auto at = xml.find(name);
  ASSERT_NE(at, std::string::npos);
  xml.replace(at, name.size(), label(kPrivate));
  const std::string end = "</rp210:Packages>";
  xml.insert(xml.find(end), "<s377m:NoSuchPackage>" + label(kOtherPrivate) + "</s377m:NoSuchPackage>");
  Imported document(xml);
  EXPECT_THAT(document.messages(), testing::Contains(HasSubstr("NoSuchPackage")));
  const auto file = writtenAndRead(document.partition());
  EXPECT_TRUE(isInPrimer(*file, kPrivate));
  EXPECT_FALSE(isInPrimer(*file, kOtherPrivate));
}

TEST(LosslessTags, AreOthersWhereTheirOwnAreTaken) {
  Imported document(packageWith(marked("44.02", kPrivate, "CAFE") + marked("44.02", kOtherPrivate, "BABE")));
  EXPECT_THAT(document.messages(), IsEmpty());
  const std::string xml = losslessXMLOf(*writtenAndRead(document.partition()));
  EXPECT_THAT(xml, HasSubstr("groups:StaticLocalTag=\"44.02\" groups:UniversalLabel=\"" + kPrivate + "\">CAFE<"));
  EXPECT_THAT(xml, HasSubstr("<groups:DarkElement groups:UniversalLabel=\"" + kOtherPrivate + "\">BABE<"));
}

TEST(LosslessTags, StandAloneWhereTheRegistersGiveTheirLabels) {
  Imported document(packageWith(""));
  auto& package = packageOf(document.partition());
  auto& tags = document.partition().partitionDictionary();
  tags.addPrimerEntry({0x4401, package.find("PackageID")->metaAttribute().metaElement()->key().key()});
  const uint8 octets[] = {1, 2};  // no PackageID
  SetReader(package, tags).place({0x4401, octets, sizeof octets});
  const std::string xml = losslessXMLOf(document.partition());
  EXPECT_THAT(xml, HasSubstr("<groups:DarkElement groups:StaticLocalTag=\"44.01\">0102<"));
}

TEST(LosslessTags, StandAloneInTheExactForm) {
  Imported document(packageWith(marked("44.02", kPrivate, "CAFE")));
  wstring xml;
  XMLBuilder::partition2XML(&document.partition(), true, false, XMLUtils::EncodingType::kUTF8Indented, xml);
  EXPECT_THAT(Utils::wstringToString(xml), HasSubstr("groups:StaticLocalTag=\"44.02\">CAFE<"));
  EXPECT_THAT(Utils::wstringToString(xml), Not(HasSubstr("UniversalLabel")));
}

}  // namespace
}  // namespace Vantor::XML2Partition
