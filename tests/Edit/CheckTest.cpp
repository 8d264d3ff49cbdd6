#include "Edit/Check.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/Types.h"
#include "tests/Edit/CheckSupport.h"
#include "tests/SampleFiles.h"

namespace Vantor::Edit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Check, FindsNothingInASoundFile) { EXPECT_THAT(check(stateOf("op1a.mxf")), IsEmpty()); }

TEST(Check, HasRulesWithCodesToType) {
  std::set<std::string> codes;
  for (const auto* rule : rules()) {
    EXPECT_TRUE(codes.insert(rule->code).second) << rule->code;
    EXPECT_EQ(std::string(rule->code).find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string::npos);
    EXPECT_EQ(findRule(rule->code), rule);
    EXPECT_STRNE(rule->sentence, "");
    EXPECT_STRNE(rule->source, "");
  }
  EXPECT_EQ(findRule("no-rule"), nullptr);
}

TEST(Check, ListsRulesByCode) {
  const auto all = rules();
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end(), [](const Rule* left, const Rule* right) {
    return std::string(left->code) < right->code;
  }));
}

TEST(Check, NamesPlaceAndValues) {
  const auto findings =
      check(mutated({"", [](PartitionMetadata& m) { m.find("MPEGVideoDescriptor").set("FrameLayout", 9); }}));
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_STREQ(findings[0].rule->code, "enumeration-value");
  EXPECT_THAT(findings[0].partitions, ElementsAre(0u));
  EXPECT_EQ(findings[0].set, "MPEGVideoDescriptor AD.AB.44.24.2F.25.4D.C7.92.FF.00.0E.00.00.00.00");
  EXPECT_EQ(findings[0].property, "FrameLayout");
  EXPECT_THAT(findings[0].arguments, ElementsAre("9", "LayoutType"));
  EXPECT_EQ(describe(findings[0]), "9 is no value of LayoutType");
}

TEST(Check, LooksAtRepeatedMetadataOnce) {
  const auto state = stateOf("gst-audio-ac3.mxf");
  EXPECT_EQ(state.partitions[0].metadata, state.partitions[2].metadata);
  const auto findings = check(state);
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_THAT(findings[0].partitions, ElementsAre(0u, 2u));
}

TEST(Check, OrdersFindingsByTheirPlaceInTheFile) {
  const auto findings = check(mutated({"", [](PartitionMetadata& m) {
                                         m.find("SourceClip[1]").set("SourceTrackID", 9);
                                         m.find("MaterialPackage").remove("CreationTime");
                                       }}));
  ASSERT_EQ(findings.size(), 2u);
  EXPECT_EQ(findings[0].property, "CreationTime");
  EXPECT_EQ(findings[1].property, "SourceTrackID");
}

TEST(Check, ComparesFindingsByPlaceNotByValue) {
  const auto withLayout = [](int layout) {
    return check(
        mutated({"", [=](PartitionMetadata& m) { m.find("MPEGVideoDescriptor").set("FrameLayout", layout); }}));
  };
  EXPECT_THAT(newFindings(withLayout(9), withLayout(8)), IsEmpty());
  EXPECT_EQ(newFindings(withLayout(4), withLayout(8)).size(), 1u);
  EXPECT_THAT(newFindings(withLayout(9), withLayout(4)), IsEmpty());
}

Finding findingOf(const char* rule, std::vector<std::string> arguments) {
  return {findRule(rule), {0}, "Preface", "IdentificationList", std::move(arguments)};
}
std::vector<std::string> newOnes(const std::vector<Finding>& before, std::vector<Finding> after,
                                 const IsChanged& isChanged = {}) {
  std::vector<std::string> texts;
  for (const auto& finding : newFindings(before, std::move(after), isChanged)) texts.push_back(finding.arguments[0]);
  return texts;
}

TEST(Check, TakesASecondFindingInOnePlaceForNew) {
  const auto one = findingOf("dangling-reference", {"1"}), two = findingOf("dangling-reference", {"2"});
  EXPECT_THAT(newOnes({one}, {one, two}), ElementsAre("2"));
  EXPECT_THAT(newOnes({one}, {two, one}), ElementsAre("2"));
  EXPECT_THAT(newOnes({one, two}, {two}), IsEmpty());
}

TEST(Check, TakesOtherArgumentsForNewWhereTheEditChangedTheProperty) {
  const auto one = findingOf("dangling-reference", {"1"}), two = findingOf("dangling-reference", {"2"});
  const auto isList = [](const std::string& set, const std::string& property) {
    return set == "Preface" && property == "IdentificationList";
  };
  const auto isOther = [](const std::string&, const std::string& property) { return property == "Dictionary"; };
  EXPECT_THAT(newOnes({one}, {two}, isList), ElementsAre("2"));
  EXPECT_THAT(newOnes({one}, {two}, isOther), IsEmpty());
  EXPECT_THAT(newOnes({one}, {one}, isList), IsEmpty());
}

TEST(Check, LetsOneFindingAccountForOneOnly) {
  const auto one = findingOf("dangling-reference", {"1"});
  EXPECT_THAT(newOnes({one}, {findingOf("dangling-reference", {"2"}), findingOf("dangling-reference", {"3"})}),
              ElementsAre("3"));
  EXPECT_THAT(newOnes({one}, {findingOf("shared-set", {"1"})}), ElementsAre("1"));
}

TEST(Check, ReportsEqualFindingsOnce) {
  const Mutation doubled{"", [](PartitionMetadata& m) {
                           auto& list =
                               static_cast<ReferenceArrayElement&>(*m.find("Preface").find("IdentificationList"));
                           for (int i = 0; i < 2; ++i) {
                             list.appendUnverifiedReference(
                                 std::make_unique<Types::StrongReference>(Types::UUID(std::array<uint8, 16>{1})));
                           }
                         }};
  EXPECT_EQ(newFindingsOf(doubled).size(), 1u);
}

TEST(Check, DoesNotTakeWhatARepetitionHadForNew) {
  auto before = stateOf("gst-audio-ac3.mxf"), after = before;
  after.partitions[0].metadata =
      edited("gst-audio-ac3.mxf", [](PartitionMetadata& m) { m.find("Identification").set("ApplicationName", u"Ed"); });
  const auto found = newFindings(check(before), check(after));
  ASSERT_EQ(found.size(), 1u);
  EXPECT_STREQ(found[0].rule->code, "repeated-metadata");
}

TEST(Check, TakesAFindingInAnotherPartitionForNew) {
  Finding one, other;
  one.rule = other.rule = findRule("edit-rate");
  one.partitions = {0};
  other.partitions = {0, 2};
  EXPECT_EQ(newFindings({one}, {other}).size(), 1u);
  EXPECT_THAT(newFindings({other}, {one}), IsEmpty());
}

TEST(Check, ReadsMetadataFromBytesOrNamesTheOffset) {
  EXPECT_THAT([] { readMetadata(Bytes{1, 2, 3}, builtInDictionary()); }, testing::Throws<Exceptions::ParseError>());
}

TEST(Check, MissesAPreface) {
  const auto codes = newCodesOf({"", [](PartitionMetadata& m) { m.remove(m.find("Preface")); }});
  EXPECT_THAT(codes, ElementsAre("preface-count", "unreached-set"));
}

std::string bytesOf(const Path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(file)), {});
}
std::string bytesOf(const char* sample) { return bytesOf(Path(VANTOR_TEST_DATA_DIR) / sample); }

std::set<std::string> codesOf(const std::string& bytes) {
  DataIO::Memory::MemoryFile file(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  std::set<std::string> codes;
  for (const auto& finding : check(readState(file, builtInDictionary()))) codes.insert(finding.rule->code);
  return codes;
}

TEST(Check, GoesOnWhereTheMetadataOfAnotherPartitionAreDamaged) {
  auto bytes = bytesOf("gst-audio-ac3.mxf");
  bytes.replace(stateOf("gst-audio-ac3.mxf").partitions[2].info.packEnd, 16, 16, '\x55');
  EXPECT_THAT(codesOf(bytes), ElementsAre("unknown-rate", "unreadable-metadata"));
}

TEST(Check, LooksAtWhatIsWholeOfDamagedMetadataWhenToldSo) {
  const auto bytes = bytesOf("gst-audio-ac3.mxf").substr(0, 2000);
  DataIO::Memory::MemoryFile file(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  EXPECT_THROW(readState(file, builtInDictionary()), MXF::DamagedMetadata);
  const auto state = readState(file, builtInDictionary(), {}, OnDamage::kSalvage);
  const auto& header = state.partitions.front();
  EXPECT_EQ(header.metadata->sets().size(), 4u);
  ASSERT_EQ(header.missing.size(), 1u);
  EXPECT_EQ(header.missing[0].set, "SoundDescriptor");
  std::set<std::string> codes;
  for (const auto& finding : check(state)) codes.insert(finding.rule->code);
  EXPECT_EQ(codes.count("unreadable-metadata"), 1u);
  EXPECT_EQ(codes.count("dangling-reference"), 1u);
  const auto none = bytes.substr(0, 1150);
  DataIO::Memory::MemoryFile start(reinterpret_cast<const uint8*>(none.data()), none.size());
  EXPECT_THROW(readState(start, builtInDictionary(), {}, OnDamage::kSalvage), MXF::DamagedMetadata);
}

TEST(Check, FindsACountOfMetadataBytesThatEndsWithinThem) {
  constexpr std::size_t kHeaderByteCount = 20 + 32 + 7;  // behind key and length, in the value; its last byte
  auto bytes = bytesOf("op1a.mxf");
  bytes[kHeaderByteCount] = static_cast<char>(bytes[kHeaderByteCount] + 1);
  EXPECT_THAT(codesOf(bytes), ElementsAre("header-byte-count"));
}

TEST(Check, FindsARandomIndexPackThatPointsElsewhere) {
  constexpr std::size_t kLastOffset = 5;  // from the end, in front of the length of the pack
  auto bytes = bytesOf("op1a.mxf");
  bytes[bytes.size() - kLastOffset] = static_cast<char>(bytes[bytes.size() - kLastOffset] + 1);
  EXPECT_THAT(codesOf(bytes), ElementsAre("random-index-entry"));
}

/// Without the body partition, the packs seem to be all right, and its stream seems to be nowhere.
TEST(Check, FindsABodyPartitionThatTheFooterSkips) {
  auto bytes = bytesOf("op1a.mxf");
  const auto state = stateOf("op1a.mxf");
  constexpr std::size_t kPreviousPartition = 20 + 16;
  const auto at = static_cast<std::size_t>(state.partitions[2].info.offset) + kPreviousPartition;
  bytes.replace(at, 8, 8, '\0');
  EXPECT_THAT(codesOf(bytes), ElementsAre("random-index-count"));
}

/// A file with an object directory; none where it is not there.
std::optional<Path> directorySample() {
  for (const auto& path : sampleFiles()) {
    if (path.filename() == "bmx-avid-video_v1.mxf") return path;
  }
  return std::nullopt;
}

constexpr KLV::Key kDirectory({0x96, 0x13, 0xb3, 0x8a, 0x87, 0x34, 0x87, 0x46,  //
                               0xf1, 0x02, 0x96, 0xf0, 0x56, 0xe0, 0x4d, 0x2a});

TEST(Check, FindsAnObjectDirectoryThatPointsElsewhere) {
  const auto sample = directorySample();
  if (!sample) GTEST_SKIP() << "no sample";
  auto bytes = bytesOf(*sample);
  const auto at = bytes.find(std::string(reinterpret_cast<const char*>(kDirectory.rawBuffer()), KLV::Key::kSize));
  ASSERT_NE(at, std::string::npos);
  constexpr std::size_t kFirstOffset = 16 + 9 + 9 + 16 + 7;  // key, length, counts, identifier; its last byte
  auto sound = codesOf(bytes);
  ++bytes[at + kFirstOffset];
  sound.insert("object-directory");
  EXPECT_EQ(codesOf(bytes), sound);
}

TEST(Check, FindsASetThatTheRootOfAnObjectDirectoryNamesInVain) {
  const auto sample = directorySample();
  if (!sample) GTEST_SKIP() << "no sample";
  const auto metadata = MXF::readHeaderMetadata(*sample, builtInDictionary());
  metadata->remove(metadata->find("MetaDictionary"));
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(*metadata, MXF::SetOrder::kFile, sink);
  auto state = stateOf(*sample);
  const auto before = check(state);
  state.partitions[0].metadata = readMetadata(sink.take(), builtInDictionary());
  const auto found = newFindings(before, check(state));
  EXPECT_TRUE(std::any_of(found.begin(), found.end(), [](const Finding& finding) {
    return std::string(finding.rule->code) == "dangling-reference";
  }));
}

TEST(Check, NamesOnlyTheRootsOfWhatNothingReaches) {
  const Mutation mutation{"", [](PartitionMetadata& m) { m.remove(m.find("ContentStorage")); }};
  const auto found = newFindingsOf(mutation);
  std::set<std::string> lost;
  for (const auto& text : found) {
    if (text.rfind("unreached-set: ", 0) == 0) lost.insert(text.substr(15, text.find(' ', 15) - 15));
  }
  EXPECT_THAT(lost, ElementsAre("EssenceData", "MaterialPackage", "SourcePackage"));
}

TEST(Check, NamesOneSetOfACycleThatNothingReaches) {
  const Mutation mutation{"", [](PartitionMetadata& m) {
                            auto &one = m.createMetadataSet("Sequence"), &other = m.createMetadataSet("Sequence");
                            one.append("ComponentObjects", other);
                            other.append("ComponentObjects", one);
                            for (auto* set : {&one, &other}) {
                              set->append("ComponentObjects", m.createMetadataSet("Filler"));
                            }
                          }};
  const auto found = newFindingsOf(mutation);
  EXPECT_EQ(
      std::count_if(found.begin(), found.end(), [](const auto& text) { return text.rfind("unreached-set", 0) == 0; }),
      1);
}

}  // namespace
}  // namespace Vantor::Edit
