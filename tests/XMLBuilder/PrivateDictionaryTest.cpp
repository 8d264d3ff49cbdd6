#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "LosslessXML.h"
#include "tests/XMLBuilder/ImportSupport.h"

/// A file with local sets that the built-in dictionary does not know, and a dictionary file that defines them.
namespace Vantor::XML2Partition {
namespace {

using MetaMetadata::Vocabulary;
using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::SizeIs;
using XMLBuilder::exported;
using XMLBuilder::Flags;
using XMLBuilder::kFlat;
using XMLBuilder::kNested;

using Dictionary = SharedPtr<const MetaMetadata::Dictionary>;

const Path kFile = Path(VANTOR_TEST_DATA_DIR) / "bmx-op1a-adm.header.mxf";

Definitions privateDefinitions() {
  auto definitions = builtInDefinitions();
  definitions.readFile(Path(VANTOR_TEST_DATA_DIR) / "adm.dictionary");
  return definitions;
}

struct Mode {
  Vocabulary vocabulary;
  Flags flags;
};

class PrivateDictionary : public ::testing::TestWithParam<Mode> {
 protected:
  static bool isLegacy() { return GetParam().vocabulary == Vocabulary::kLegacy; }
  static Dictionary privateDictionary() { return privateDefinitions().makeDictionary(GetParam().vocabulary); }
  static Dictionary publicDictionary() { return builtInDictionary(GetParam().vocabulary); }

  static std::string document(PartitionMetadata& partition) { return exported(partition, GetParam().flags); }

  /// A text with the prefixes of the vocabulary: "s:" for sets and "e:" for properties.
  static std::string named(std::string text) {
    for (const auto& [shortPrefix, legacy, schema] :
         {std::make_tuple("s:", "s377m:", "st395:"), std::make_tuple("e:", "rp210:", "st335:")}) {
      for (const std::string start : {"<", "</"}) {
        const std::string from = start + shortPrefix;
        const std::string to = start + (isLegacy() ? legacy : schema);
        for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos;) text.replace(at, from.size(), to);
      }
    }
    return text;
  }
};

std::unique_ptr<PartitionMetadata> read(Dictionary dictionary) {
  return MXF::readHeaderMetadata(kFile, std::move(dictionary));
}

std::size_t darkSetsOf(const PartitionMetadata& partition) {
  std::size_t dark = 0;
  for (const auto& entry : partition.entries()) dark += EntryView(entry).isDark() ? 1 : 0;
  return dark;
}

std::size_t unknownPropertiesOf(const PartitionMetadata& partition) {
  std::size_t unknown = 0;
  for (const auto* set : partition.sets()) unknown += std::distance(set->invalidBegin(), set->invalidEnd());
  return unknown;
}

std::vector<std::string> differences(const PartitionMetadata& left, const PartitionMetadata& right) {
  std::vector<std::string> texts;
  for (const auto& difference : comparePartitions(left, right).differences) {
    texts.push_back(difference.set + "." + difference.property + ": " + difference.left + " -> " + difference.right);
  }
  return texts;
}

std::size_t countOf(const std::string& part, const std::string& text) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
  return count;
}

Bytes writtenBytes(PartitionMetadata& partition) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(partition, MXF::SetOrder::kFile, sink);
  return sink.take();
}

TEST_P(PrivateDictionary, LeavesNoSetDarkAndNoPropertyUnknown) {
  const auto before = read(publicDictionary());
  const auto after = read(privateDictionary());
  EXPECT_EQ(darkSetsOf(*before), 10u);
  EXPECT_EQ(darkSetsOf(*after), 0u);
  EXPECT_EQ(after->sets().size(), before->sets().size());
  EXPECT_EQ(unknownPropertiesOf(*after), 0u);
}

TEST_P(PrivateDictionary, NamesWhatWasDarkWithValuesThatPeopleRead) {
  const std::string text = document(*read(privateDictionary()));
  EXPECT_THAT(text, Not(HasSubstr("DarkMetadata")));
  const std::string mapping =
      R"(<e:ADMTrackIndex>1</e:ADMTrackIndex><e:ADMTrackUID>ATU_00000003</e:ADMTrackUID>)"
      R"(<e:ADMTrackFormatID>AT_00010001_01</e:ADMTrackFormatID><e:ADMPackFormatID>AP_00010002</e:ADMPackFormatID>)"
      R"(</s:ADMTrackMapping>)";
  EXPECT_THAT(text, HasSubstr(named(mapping)));
  EXPECT_THAT(text, HasSubstr(named("<e:ADMNumTracks>2</e:ADMNumTracks><e:ADMNumUIDs>2</e:ADMNumUIDs>")));
  EXPECT_THAT(text, HasSubstr(named("<e:RIFFChunkStream>10</e:RIFFChunkStream><e:RIFFChunkCode>axml</e:RIFFChunkCode>"
                                    "</s:RIFFChunkSubDescriptor>")));
  EXPECT_THAT(text, HasSubstr(named("<e:RIFFChunkStreams><e:Element>10</e:Element></e:RIFFChunkStreams>")));
  EXPECT_THAT(text, HasSubstr(named("<e:ADMStreamProfiles><e:Element>06.0E.2B.34.04.01.01.0D.04.02.02.11.01.01.00.00"
                                    "</e:Element></e:ADMStreamProfiles>")));
}

TEST_P(PrivateDictionary, MakesReferencesOfWhatLedIntoTheDark) {
  const auto before = read(publicDictionary());
  const auto after = read(privateDictionary());
  const std::string dark = document(*before);
  const std::string text = document(*after);
  const std::size_t mappings = 4, chnas = 2;
  if (GetParam().flags.nestStrongReferences) {
    EXPECT_EQ(countOf(named("<e:SubDescriptors/>"), dark), 3u);
    EXPECT_EQ(countOf(named("<e:SubDescriptors/>"), text), 0u);
    EXPECT_EQ(countOf(named("<e:SubDescriptors><s:ADMChnaSubDescriptor "), text), chnas);
    EXPECT_EQ(countOf(named("<e:SubDescriptors><s:RIFFChunkSubDescriptor "), text), 1u);
    EXPECT_EQ(countOf(named("<e:ADMTrackMappings><s:ADMTrackMapping "), text), chnas);
  } else {
    EXPECT_EQ(countOf("<s377m:Dangling_REF", dark), 6u);
    EXPECT_EQ(countOf(named("<s:ADMTrackMapping_REF types:TargetInstance="), text), mappings);
    EXPECT_EQ(countOf(named("<s:ADMChnaSubDescriptor_REF types:TargetInstance="), text), chnas);
  }
  EXPECT_EQ(countOf("Dangling_REF", text), 0u);
  EXPECT_EQ(countOf(named("<s:ADMTrackMapping "), text), mappings);
  EXPECT_EQ(countOf(named("<s:ADMChnaSubDescriptor "), text), chnas);
}

TEST_P(PrivateDictionary, WritesTheBytesOfTheFileWithAndWithoutIt) {
  EXPECT_EQ(writtenBytes(*read(privateDictionary())), writtenBytes(*read(publicDictionary())));
}

TEST_P(PrivateDictionary, IsNeededForEachReadingAndLeavesNothingBehind) {
  const std::string before = document(*read(publicDictionary()));
  document(*read(privateDictionary()));
  EXPECT_EQ(document(*read(publicDictionary())), before);
}

/// The octets of a dark set stand in the document as they stand in the file.
TEST_P(PrivateDictionary, LeavesTheBytesInTheDocumentWhereItIsMissing) {
  std::ifstream stream(kFile, std::ios::binary);
  const Bytes bytes{std::istreambuf_iterator<char>(stream), {}};
  const std::string file = Utils::wstringToString(Platform::hexText<wstring>(bytes.data(), bytes.size()));
  const std::string text = document(*read(publicDictionary()));
  std::size_t found = 0;
  for (auto at = text.find("<groups:DarkMetadata "); at != std::string::npos; ++found) {
    const auto start = text.find('>', at) + 1;
    const auto octets = text.substr(start, text.find('<', start) - start);
    EXPECT_GT(octets.size(), 64u);
    EXPECT_THAT(file, HasSubstr(octets));
    at = text.find("<groups:DarkMetadata ", start);
  }
  EXPECT_EQ(found, 10u);
}

/// Values that are made of elements, such as the first set's time, are looked for in the legacy namespaces only.
Failure refusalOfSchemas(const std::string& document) {
  if (document.find(" xmlns:types=\"urn:SMPTE:Types:MXF\"") == std::string::npos) {
    return pathFailure("No namespace for prefix 'types' [err:XPST0081] at :1:3");
  }
  return invalidFormat("!secondsValue.empty (): No 'Second' element in XML metadata", 374);
}

const auto kIsOfAFraction = MatchesRegex(".*: 2026-11-21T01:17:55.928 -> 2026-11-21T01:17:55.232");

/// Fractions of a second, which documents count in units of 4 ms, are known to come back changed.
TEST_P(PrivateDictionary, BringsBackAllButFractionsOfSeconds) {
  const auto original = read(privateDictionary());
  const std::string text = document(*original);
  PartitionMetadata copy(privateDictionary());
  const auto failure = failureOf([&] { importRaw(text, copy); });
  if (!isLegacy()) {
    EXPECT_EQ(failure, refusalOfSchemas(text));
    return;
  }
  ASSERT_EQ(failure.kind, "nothing") << failure;
  EXPECT_EQ(darkSetsOf(copy), 0u);
  EXPECT_THAT(differences(*original, copy), AllOf(SizeIs(6), Each(kIsOfAFraction)));
}

/// The octets of dark sets come back, but references to them do not: their identifiers are octets, too.
TEST_P(PrivateDictionary, BringsBackTheDarkButNotTheWayThereWhereItIsMissing) {
  const auto original = read(publicDictionary());
  const std::string text = document(*original);
  PartitionMetadata copy(publicDictionary());
  const auto failure = failureOf([&] { importRaw(text, copy); });
  if (!isLegacy()) {
    EXPECT_EQ(failure, refusalOfSchemas(text));
    return;
  }
  ASSERT_EQ(failure.kind, "nothing") << failure;
  EXPECT_EQ(darkSetsOf(copy), 10u);
  const auto found = differences(*original, copy);
  EXPECT_THAT(found, SizeIs(9));
  EXPECT_THAT(found, Each(AnyOf(kIsOfAFraction, HasSubstr("Descriptor.SubDescriptors"))));
}

/// The partition that a lossless import makes of a document.
class Lossless {
 public:
  Lossless(const std::string& document, const Dictionary& dictionary)
      : partition_(dictionary),
        import_(LosslessXML::Document::fromBytes(document.data(), document.size()).import(partition_)) {}

  const PartitionMetadata& partition() const { return partition_; }
  std::vector<std::string> messages() const {
    std::vector<std::string> texts;
    for (const auto& diagnostic : import_.diagnostics) texts.push_back(describe(diagnostic));
    return texts;
  }

 private:
  PartitionMetadata partition_;
  LosslessXML::Import import_;
};

TEST_P(PrivateDictionary, BringsBackEverythingLosslessly) {
  const auto original = read(privateDictionary());
  const Lossless copy(document(*original), privateDictionary());
  EXPECT_THAT(copy.messages(), IsEmpty());
  EXPECT_THAT(differences(*original, copy.partition()), IsEmpty());
}

/// A nested document has no place for a reference to a dark group.
TEST_P(PrivateDictionary, BringsBackTheDarkLosslesslyWhereItIsMissing) {
  const auto original = read(publicDictionary());
  const Lossless copy(document(*original), publicDictionary());
  EXPECT_THAT(copy.messages(), IsEmpty());
  EXPECT_EQ(darkSetsOf(copy.partition()), 10u);
  const auto found = differences(*original, copy.partition());
  EXPECT_THAT(found, SizeIs(GetParam().flags.nestStrongReferences ? 3 : 0));
  EXPECT_THAT(found, Each(HasSubstr("Descriptor.SubDescriptors: [")));
}

MetadataSet& firstOf(const PartitionMetadata& partition, const char* symbol) {
  for (auto* set : partition.sets()) {
    if (set->definition() != nullptr && set->definition()->symbol() == symbol) return *set;
  }
  throw std::logic_error(std::string("no set ") + symbol);
}

TEST_P(PrivateDictionary, AddsPropertiesToASetThatIsKnown) {
  const auto original = read(privateDictionary());
  auto& sound = firstOf(*original, "WAVEPCMDescriptor");
  const auto& mapping = firstOf(*original, "ADMTrackMapping");
  TestSet(sound, *privateDictionary()).value("ADMOperatorsNote", Types::UTF16String(u"loud")).present("ADMMainMapping");
  dynamic_cast<ReferenceElement&>(property(sound, "ADMMainMapping")).set(&mapping);
  const std::string text = document(*original);
  EXPECT_THAT(text, HasSubstr(named("<e:ADMOperatorsNote>loud</e:ADMOperatorsNote><e:ADMMainMapping>"
                                    "<s:ADMTrackMapping_REF types:TargetInstance=\"" +
                                    Utils::wstringToString(mapping.instanceUID()->toString(kDottedForm)) +
                                    "\"/></e:ADMMainMapping>")));
  EXPECT_THAT(differences(*original, Lossless(text, privateDictionary()).partition()), IsEmpty());
  const auto bytes = writtenBytes(*original);
  EXPECT_THAT(Utils::wstringToString(Platform::hexText<wstring>(bytes.data(), bytes.size())),
              HasSubstr("060E2B34010101010F0E0D0C00010000"))
      << "in the primer";
}

std::string modeName(const ::testing::TestParamInfo<Mode>& info) {
  return std::string(info.param.vocabulary == Vocabulary::kLegacy ? "Legacy" : "Schemas") +
         (info.param.flags.nestStrongReferences ? "Nested" : "Flat");
}

INSTANTIATE_TEST_SUITE_P(Modes, PrivateDictionary,
                         ::testing::Values(Mode{Vocabulary::kLegacy, kNested}, Mode{Vocabulary::kLegacy, kFlat},
                                           Mode{Vocabulary::kST434_2014, kNested},
                                           Mode{Vocabulary::kST434_2014, kFlat}),
                         modeName);

/// The example's sets and properties, which are in namespaces of their own.
class PrivateNamespaces : public ::testing::TestWithParam<Mode> {
 protected:
  PrivateNamespaces() {
    auto definitions = builtInDefinitions();
    definitions.readFile(Path(VANTOR_TEST_DATA_DIR) / "../../examples/acme.dictionary");
    dictionary_ = definitions.makeDictionary(GetParam().vocabulary);
  }

  TestSet add(const TestPartition& partition, const char* symbol, uint32 number) const {
    const auto& definition = *dictionary_->findSetBySymbol(symbol);
    return TestSet(*partition->createMetadataSet(definition.key()), *dictionary_).value("InstanceID", uid(number));
  }
  const Dictionary& dictionary() const { return dictionary_; }

 private:
  Dictionary dictionary_;
};

TEST_P(PrivateNamespaces, AreThoseOfTheirFileInEitherVocabulary) {
  const TestPartition original(dictionary());
  add(original, "Preface", 1).refer("Shots", 2);
  add(original, "AcmeShot", 2).value("Director", Types::UTF16String(u"A & B")).value("Grade", Types::UInt8(1));
  const std::string text = exported(original, GetParam().flags);
  EXPECT_THAT(text, HasSubstr(R"( xmlns:acme="urn:example:acme:sets" xmlns:acmeP="urn:example:acme:properties" )"));
  EXPECT_THAT(text, HasSubstr("<acmeP:Shots><acme:AcmeShot"));
  EXPECT_THAT(text, HasSubstr("<acmeP:Director>A &amp; B</acmeP:Director><acmeP:Grade>1</acmeP:Grade>"));
}

TEST_P(PrivateNamespaces, ComeBack) {
  const TestPartition original(dictionary());
  add(original, "Preface", 1).refer("Shots", 2).refer("Shots", 3);
  add(original, "AcmeShot", 2).value("Director", Types::UTF16String(u"A & B")).refer("NextShot", 3).refer("Takes", 4);
  add(original, "AcmeShot", 3).value("Grade", Types::UInt8(2));
  add(original, "AcmeTake", 4).value("TakeNumber", Types::UInt16(65535));
  PartitionMetadata copy(dictionary());
  importRaw(exported(original, GetParam().flags), copy);
  EXPECT_EQ(copy.sets().size(), 4u);
  EXPECT_THAT(differences(*original, copy), IsEmpty());
  const Lossless lossless(exported(original, GetParam().flags), dictionary());
  EXPECT_THAT(lossless.messages(), IsEmpty());
  EXPECT_THAT(differences(*original, lossless.partition()), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Modes, PrivateNamespaces,
                         ::testing::Values(Mode{Vocabulary::kLegacy, kNested}, Mode{Vocabulary::kLegacy, kFlat},
                                           Mode{Vocabulary::kST434_2014, kNested},
                                           Mode{Vocabulary::kST434_2014, kFlat}),
                         modeName);

}  // namespace
}  // namespace Vantor::XML2Partition
