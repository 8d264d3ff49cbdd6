#include "Core/Metadata/SetPath.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

std::string shapeOf(const SetPath::Selector& selector) {
  switch (selector.kind) {
    case SetPath::Selector::Kind::kIndex:
      return "#" + std::to_string(selector.index);
    case SetPath::Selector::Kind::kAll:
      return "*";
    case SetPath::Selector::Kind::kCondition:
      return selector.property + "<" + selector.value + ">";
  }
  return "?";
}

std::string shapeOf(const SetPath& path) {
  std::string text;
  for (const auto& step : path.steps()) {
    text += (text.empty() ? "" : " / ") + step.name;
    for (const auto& selector : step.selectors) text += " " + shapeOf(selector);
  }
  return text;
}

template <class Text>
std::string mistakeIn(const std::string& text) {
  try {
    const Text read(text);
  } catch (const Exceptions::InvalidFormat& error) {
    return error.message();
  }
  return "none";
}

TEST(SetPath, HasStepsAndSelectors) {
  const std::vector<std::pair<std::string, std::string>> paths = {
      {"Preface", "Preface"},
      {"", ""},
      {"Track[1]", "Track #1"},
      {" Track [1]", "Track #1"},
      {"A / B", "A / B"},
      {"Track[-1]", "Track #-1"},
      {"Track[*]", "Track *"},
      {"Track[12345]", "Track #12345"},
      {"A/B", "A / B"},
      {"A/B/C", "A / B / C"},
      {"A[2]/B[-3]/C[*]", "A #2 / B #-3 / C *"},
      {"Track[TrackID=2]", "Track TrackID<2>"},
      {"Track[TrackID=2][1]", "Track TrackID<2> #1"},
      {"Track[TrackID=2][*]", "Track TrackID<2> *"},
      {"Track[TrackName=]", "Track TrackName<>"},
      {"Track[TrackName=A/B]", "Track TrackName<A/B>"},
      {"Track[TrackName=a=b]", "Track TrackName<a=b>"},
      {"Track[TrackName=a.b]", "Track TrackName<a.b>"},
      {"Track[TrackName=a[b]c]", "Track TrackName<a[b]c>"},
      {"Track[TrackName=\"a]b\"]", "Track TrackName<\"a]b\">"},
      {"Track[TrackName=\"a\\\"b\\\\\"]", "Track TrackName<\"a\\\"b\\\\\">"},
      {"Track[ 2 ]", "Track #2"},
      {"Track[ * ]", "Track *"},
      {"Track[TrackID = 2]", "Track TrackID<2>"},
      {"Track[ TrackName = \"a]b\" ]", "Track TrackName<\"a]b\">"},
      {"Track[1] (GenericTrack)", "Track #1"},
      {"Track (GenericTrack)[1]/B", "Track #1 / B"},
      {"A[Name (Other)=2]", "A Name<2>"},
      {"Track[TrackName=5\" disc]", "Track TrackName<5\" disc>"},
      {"Set[List=[1, 2]]", "Set List<[1, 2]>"},
      {"Set[List=[\"a]\", \"b\"]][1]", "Set List<[\"a]\", \"b\"]> #1"},
      {"Track[EditRate=25/1]/Sequence", "Track EditRate<25/1> / Sequence"},
      {"8D.9D.AD.D1", "8D.9D.AD.D1"},
      {"urn:uuid:8d9d[1]", "urn:uuid:8d9d #1"},
      {"{8d9d-ad}/B", "{8d9d-ad} / B"},
  };
  for (const auto& [text, expected] : paths) {
    EXPECT_EQ(shapeOf(SetPath(text)), expected) << text;
    EXPECT_EQ(SetPath(text).text(), text);
  }
}

TEST(SetPath, IsForAllWhereItEndsSo) {
  for (const auto* text : {"A[*]", "A/B[*]", "A[X=1][*]"}) EXPECT_TRUE(SetPath(text).isForAll()) << text;
  for (const auto* text : {"A", "A[1]", "A[*]/B", "A[*][1]", "A[X=*]"}) EXPECT_FALSE(SetPath(text).isForAll()) << text;
}

TEST(SetPath, NamesWhatCannotStandThere) {
  const std::vector<std::pair<std::string, std::string>> mistakes = {
      {"A[0]", "'[0]' in 'A[0]': the first is [1], the last [-1]"},
      {"A[-0]", "'[-0]' in 'A[-0]': the first is [1], the last [-1]"},
      {"A[]", "'[]' in 'A[]' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[x]", "'[x]' in 'A[x]' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[+1]", "'[+1]' in 'A[+1]' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[**]", "'[**]' in 'A[**]' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[1.5]", "'[1.5]' in 'A[1.5]' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[[1]]", "'[[1]]' in 'A[[1]]' is no index, such as [2] or [-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[99999999999999999999]",
       "'[99999999999999999999]' in 'A[99999999999999999999]' is no index, such as [2] or "
       "[-1], nor [*], nor a condition, such as [TrackID=2]"},
      {"A[", "the bracket in 'A[' is not closed"},
      {"A[1", "the bracket in 'A[1' is not closed"},
      {"A[X=[1]", "the bracket in 'A[X=[1]' is not closed"},
      {"A[X=\"b]", "the quoted text in '[X=\"b]' has no end"},
      {"A[X=\"b\\\"]", "the quoted text in '[X=\"b\\\"]' has no end"},
      {"A[X=\"b\"c]", "the condition '[X=\"b\"c]' in 'A[X=\"b\"c]' goes on behind its quoted text"},
      {"A[ =1]", "the condition '[ =1]' in 'A[ =1]' names no property"},
      {"A (B", "'(B' in 'A (B' cannot stand there"},
      {"A[=1]", "the condition '[=1]' in 'A[=1]' names no property"},
      {"A]", "']' in 'A]' cannot stand there"},
      {"A[1]b", "'b' in 'A[1]b' cannot stand there"},
      {"A[1]]", "']' in 'A[1]]' cannot stand there"},
      {"[1]", "there is no name before '[1]'"},
      {"A/[1]", "there is no name before '[1]'"},
      {"/", "'/' has an empty step beside a '/'"},
      {"A/", "'A/' has an empty step beside a '/'"},
      {"/A", "'/A' has an empty step beside a '/'"},
      {"A//B", "'A//B' has an empty step beside a '/'"},
  };
  for (const auto& [text, expected] : mistakes) EXPECT_EQ(mistakeIn<SetPath>(text), expected) << text;
}

TEST(PropertyPath, EndsASetBeforeTheLastPointOutsideBrackets) {
  const std::vector<std::array<std::string, 4>> paths = {
      {"A.B=c", "A", "B", "c"},
      {"A.B=", "A", "B", ""},
      {"A.B", "A", "B", "none"},
      {"A.B=c.d=e[", "A", "B", "c.d=e["},
      {"A[X=1.5].B=2", "A[X=1.5]", "B", "2"},
      {"A[X=a=b][1].B=c", "A[X=a=b][1]", "B", "c"},
      {"A[X=\"].=\"]/C[*].B=c", "A[X=\"].=\"]/C[*]", "B", "c"},
      {"A[X=1.5]/C.B", "A[X=1.5]/C", "B", "none"},
      {"8D.9D.AD.D1.B=c", "8D.9D.AD.D1", "B", "c"},
      {"urn:uuid:8d9d-ad.B=c", "urn:uuid:8d9d-ad", "B", "c"},
      {"A=b", "A", "", "b"},
      {".B=c", "", "B", "c"},
      {"A.=c", "A", "", "c"},
      {"=c", "", "", "c"},
  };
  EXPECT_EQ(PropertyPath("A[1] (B).C (D)=e").property, "C") << "as messages have it";
  for (const auto& [text, set, property, value] : paths) {
    const PropertyPath path(text);
    EXPECT_EQ(path.set, set) << text;
    EXPECT_EQ(path.property, property) << text;
    EXPECT_EQ(path.value.value_or("none"), value) << text;
    EXPECT_EQ(path.choice + (path.value ? "=" + *path.value : ""), text);
  }
  EXPECT_EQ(mistakeIn<PropertyPath>("A[1.B=c"), "the bracket in 'A[1.B=c' is not closed");
}

/// A Preface (1) with the children Thing (2) and Other (3); the Thing has the children Thing (4) and Other (5), and
/// that Thing refers back to its parent. An Other (6) that nothing refers to comes first.
class SetPathInPartition : public testing::Test {
 protected:
  SetPathInPartition() {
    for (const auto& [from, to] : std::vector<std::pair<MetadataSet*, uint32>>{
             {&preface_, 2}, {&preface_, 3}, {&thing_, 4}, {&thing_, 5}, {&inner_, 2}}) {
      refer(*from, "Children", to);
    }
    thing_.set("Number", 7);
    inner_.set("Number", 7);
    inner_.set("Text", u"a]b");
    other_.set("Foreign", 7);
  }
  std::vector<uint32> found(const std::string& text) const {
    std::vector<uint32> numbers;
    for (const auto& set : partition_.findAll(text)) numbers.push_back(set.instanceUID()->octet(16));
    return numbers;
  }
  std::string refusal(const std::string& text) const {
    try {
      partition_.choose(text);
    } catch (const Exceptions::InvalidFormat& error) {
      return error.message();
    }
    return "none";
  }

  PartitionMetadata partition_{testDictionary()};
  MetadataSet& lost_ = addSet(partition_, "Other", 6);
  MetadataSet& preface_ = addSet(partition_, "Preface", 1);
  MetadataSet& inner_ = addSet(partition_, "Thing", 4);
  MetadataSet& thing_ = addSet(partition_, "Thing", 2);
  MetadataSet& other_ = addSet(partition_, "Other", 3);
  MetadataSet& deep_ = addSet(partition_, "Other", 5);
};

using Numbers = std::vector<uint32>;

TEST_F(SetPathInPartition, LeadsToSetsInFileOrderOrTheNearestFirst) {
  const std::vector<std::pair<std::string, Numbers>> paths = {
      {"Other", {6, 3, 5}},
      {"Other[1]", {6}},
      {"Other[-1]", {5}},
      {"Other[-3]", {6}},
      {"Other[4]", {}},
      {"Other[-4]", {}},
      {"Other[*]", {6, 3, 5}},
      {"Other[*][2]", {3}},
      {"Preface/Other", {3, 5}},
      {"Preface/Other[1]", {3}},
      {"Preface/Other[-1]", {5}},
      {"Preface/Thing", {2, 4}},
      {"Preface/Thing/Other", {5}},
      {"Preface/Thing[1]/Thing", {4, 2}},
      {"Preface/Thing[2]/Thing/Other", {5}},
      {"Thing[Number=7]", {4, 2}},
      {"Thing[Number=7][1]", {4}},
      {"Thing[Text=\"a]b\"]", {4}},
      {"Thing[Number=7][Text=\"a]b\"]", {4}},
      {"Preface/Thing[Number= 7 ][-1]/Other", {5}},
      {"Other[Foreign=7]", {3}},
      {"Thing[ Number = 7 ][ 1 ]", {4}},
      {"Thing[Number=\"7\"]", {4, 2}},
      {"Other/Thing", {}},
      {"Lost", {}},
      {"00000000-0000-0000-0000-000000000002/Other", {5}},
      {"0000.0000.0000.0000.0000.0000.0000.0005", {5}},
      {"Preface/00000000000000000000000000000005", {5}},
      {"Preface/0000000000", {2, 3, 4, 5}},
      {"000000000000000000000000", {6, 1, 4, 2, 3, 5}},
      {"000", {}},
  };
  for (const auto& [text, expected] : paths) EXPECT_EQ(found(text), expected) << text;
}

TEST_F(SetPathInPartition, ChoosesSeveralSetsOnlyWhereAllAreAskedFor) {
  EXPECT_EQ(partition_.choose("Other[*]").size(), 3u);
  EXPECT_EQ(partition_.choose("Preface/Thing[Number=7][*]").size(), 2u);
  EXPECT_EQ(&partition_.choose("Preface")[0], &preface_);
  EXPECT_EQ(&partition_.choose("Preface[*]")[0], &preface_);
}

TEST_F(SetPathInPartition, NamesThePartThatLeadsNowhere) {
  const std::vector<std::pair<std::string, std::string>> mistakes = {
      {"Other",
       "Other is ambiguous: 3 sets (see \"mxfxml info --sets\"); use Other[1], Other[2] (Foreign 7), Other[3], or "
       "Other[*] for "
       "all"},
      {"Thing[Number=7]",
       "Thing[Number=7] is ambiguous: 2 sets (see \"mxfxml info --sets\"); use Thing[Number=7][1] (Number 7), "
       "Thing[Number=7][2] (Number 7), or Thing[Number=7][*] for all"},
      {"Preface/Other",
       "Preface/Other is ambiguous: 2 sets (see \"mxfxml info --sets\"); use Preface/Other[1] (Foreign 7), "
       "Preface/Other[2], or "
       "Preface/Other[*] for all"},
      {"Other[4]", "there is no Other[4]: the partition has 3 of these sets"},
      {"Other[-4]", "there is no Other[-4]: the partition has 3 of these sets"},
      {"Preface/Other[3]", "there is no Preface/Other[3]: there are 2 of these sets"},
      {"Preface[1]/Thing[3]/Other", "there is no Preface[1]/Thing[3]: there are 2 of these sets"},
      {"Preface/Thing/Preface", "Preface/Thing leads to no Preface"},
      {"Prefce/Thing", "the dictionary has no set 'Prefce' (did you mean 'Preface'?)"},
      {"Preface/Thin", "the dictionary has no set 'Thin' (did you mean 'Thing'?)"},
      {"Thing[Number=9]", "there is no Thing[Number=9]: each of 2 sets has another Number, or none"},
      {"Preface[Child=00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.09]",
       "there is no Preface[Child=00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.09]: the only set has another Child, or "
       "none"},
      {"Thing[Numbr=9]", "Thing has no property 'Numbr' (did you mean 'Number'?)"},
      {"Thing[Number=x]", "Thing[Number=x]: 'x' is not a whole number from 0 to 4294967295; for example 25 or 0x19"},
      {"0123.4567", "the partition has no set whose InstanceUID begins with 0123.4567"},
      {"Preface/0123", "Preface leads to no 0123"},
  };
  for (const auto& [text, expected] : mistakes) EXPECT_EQ(refusal(text), expected) << text;
}

TEST_F(SetPathInPartition, ComparesTextsAsTheyArePrinted) {
  thing_.set("Text", u"\"\\\"V1\\\"\"");
  EXPECT_EQ(thing_.text("Text"), u"\"\\\"V1\\\"\"") << "a text in quotes";
  EXPECT_EQ(found("Thing[Text=\"\\\"V1\\\"\"]"), Numbers{2});
  EXPECT_EQ(found("Thing[Text=\"V1\"]"), Numbers{}) << "a text without quotes";
  thing_.set("Text", u"a\nb");
  EXPECT_EQ(found("Thing[Text=\"a\\u000Ab\"]"), Numbers{2});
}

TEST_F(SetPathInPartition, CountsOnlySetsThatCanHaveTheWantedProperty) {
  EXPECT_EQ(partition_.choose("0000000000000000[*]").size(), 6u);
  EXPECT_EQ(partition_.choose("0000000000000000[*]", "Number").size(), 2u) << "the Things";
  EXPECT_EQ(&partition_.choose("0000000000000000[3]", "Number")[0], &inner_) << "counted among all";
  EXPECT_EQ(partition_.choose("Other[*]", "Nothing").size(), 3u) << "the message is about the property";
  try {
    partition_.choose("0000000000000000", "Number");
    ADD_FAILURE() << "two Things";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_THAT(error.message(), testing::HasSubstr("2 sets (see \"mxfxml info --sets\"); use 0000000000000000[3] "));
  }
}

TEST_F(SetPathInPartition, TakesTimeInProportionToTheSetsReached) {
  constexpr uint32 kSets = 5000;
  for (uint32 i = 0; i < kSets; ++i) {
    auto& set = addSet(partition_, "Thing", 1000 + i);
    refer(set, "Child", 1001 + i);
  }
  refer(preface_, "Child", 1000);
  EXPECT_EQ(partition_.findAll("Preface/Thing").size(), kSets + 2);
  EXPECT_EQ(partition_.findAll("Thing/Thing/Thing/Thing").size(), kSets - 1) << "a walk from each would take minutes";
}

}  // namespace
}  // namespace Vantor
