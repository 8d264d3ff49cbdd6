#include "Edit/Check.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <set>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/Types.h"
#include "tests/Edit/CheckSupport.h"

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

TEST(Check, VisitsADescriptorThatManyPackagesShareOnce) {
  constexpr int kPackages = 50, kReferences = 50;
  const Mutation shared{"", [](PartitionMetadata& m) {
                          auto& whole = m.find("MultipleDescriptor");
                          auto& list = static_cast<ReferenceArrayElement&>(*whole.find("FileDescriptors"));
                          const auto& part = *m.find("AES3PCMDescriptor").instanceUID();
                          for (int i = 0; i < kReferences; ++i) {
                            list.appendUnverifiedReference(std::make_unique<Types::StrongReference>(part));
                          }
                          for (int i = 0; i < kPackages; ++i) {
                            addTo(m, "ContentStorage", "Packages", "SourcePackage").set("EssenceDescription", whole);
                          }
                          m.find("AES3PCMDescriptor").set("LinkedTrackID", 9);
                        }};
  const auto found = newFindingsOf(shared);
  EXPECT_EQ(
      std::count_if(found.begin(), found.end(), [](const auto& text) { return text.rfind("linked-track", 0) == 0; }),
      1);
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

TEST(Check, GoesOnWhereTheMetadataOfAnotherPartitionAreDamaged) {
  const auto path = std::string(VANTOR_TEST_DATA_DIR) + "/gst-audio-ac3.mxf";
  std::ifstream file(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(file)), {});
  bytes.replace(stateOf("gst-audio-ac3.mxf").partitions[2].info.packEnd, 16, 16, '\x55');
  DataIO::Memory::MemoryFile damaged(reinterpret_cast<const uint8*>(bytes.data()), bytes.size());
  const auto state = readState(damaged, builtInDictionary());
  EXPECT_NE(state.partitions[2].problem, "");
  std::set<std::string> codes;
  for (const auto& finding : check(state)) codes.insert(finding.rule->code);
  EXPECT_THAT(codes, ElementsAre("unknown-rate", "unreadable-metadata"));
}

}  // namespace
}  // namespace Vantor::Edit
