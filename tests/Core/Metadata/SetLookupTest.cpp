#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SetLookup : public testing::Test {
 protected:
  std::string refusal(std::string_view name) const {
    try {
      partition_.find(name);
    } catch (const Exceptions::InvalidFormat& error) {
      return error.what();
    }
    return "none";
  }
  std::vector<const MetadataSet*> all(std::string_view name) const {
    std::vector<const MetadataSet*> found;
    for (const auto& set : partition_.findAll(name)) found.push_back(&set);
    return found;
  }

  PartitionMetadata partition_{testDictionary()};
  MetadataSet& first_ = addSet(partition_, "Thing", 1);
  MetadataSet& other_ = addSet(partition_, "Other", 2);
  MetadataSet& second_ = addSet(partition_, "Thing", 3);
};

TEST_F(SetLookup, FindsTheOnlySetOfAKind) {
  EXPECT_EQ(&partition_.find("Other"), &other_);
  EXPECT_EQ(partition_.tryFind("Other"), &other_);
  EXPECT_EQ(partition_.tryFind("Preface"), nullptr);
  EXPECT_EQ(refusal("Preface"), "the partition has no set Preface");
  EXPECT_EQ(refusal("Thin"), "the dictionary has no set 'Thin' (did you mean 'Thing'?)");
  EXPECT_EQ(refusal(""), "the dictionary has no set ''");
}

TEST_F(SetLookup, CountsSetsOfAKindFromOneInFileOrder) {
  EXPECT_EQ(&partition_.find("Thing[1]"), &first_);
  EXPECT_EQ(&partition_.find("Thing[2]"), &second_);
  EXPECT_EQ(&partition_.find("Other[1]"), &other_);
  EXPECT_EQ(refusal("Thing[3]"), "there is no Thing[3]: the partition has 2 of these sets");
  EXPECT_EQ(refusal("Preface[1]"), "the partition has no set Preface");
  for (const auto* name : {"Thing[0]", "Thing[]", "Thing[x]", "Thing[1", "Thing[1]2", "[1]"}) {
    EXPECT_THROW(partition_.tryFind(name), Exceptions::InvalidFormat) << name;
  }
}

TEST_F(SetLookup, CountsSetsOfAKindBackwardsFromMinusOne) {
  EXPECT_EQ(&partition_.find("Thing[-1]"), &second_);
  EXPECT_EQ(&partition_.find("Thing[-2]"), &first_);
  EXPECT_EQ(refusal("Thing[-3]"), "there is no Thing[-3]: the partition has 2 of these sets");
}

TEST_F(SetLookup, RefusesANameOfSeveralSetsAndListsTheChoices) {
  EXPECT_EQ(refusal("Thing"), "Thing is ambiguous: 2 sets (see \"mxfxml info --sets\"); use Thing[1] or Thing[2]");
  EXPECT_EQ(refusal("Thing[*]"),
            "Thing[*] is ambiguous: 2 sets (see \"mxfxml info --sets\"); use Thing[1] or Thing[2]");
  EXPECT_THROW(partition_.tryFind("Thing"), Exceptions::InvalidFormat);
  first_.set("Number", 7);
  for (uint32 i = 4; i < 7; ++i) addSet(partition_, "Thing", i);
  EXPECT_EQ(refusal("Thing"),
            "Thing is ambiguous: 5 sets (see \"mxfxml info --sets\"); use Thing[1] (Number 7), Thing[2], Thing[3], "
            "Thing[4], or another one");
}

TEST_F(SetLookup, FindsAllSetsOfAKind) {
  EXPECT_THAT(all("Thing"), ElementsAre(&first_, &second_));
  EXPECT_THAT(all("Thing[2]"), ElementsAre(&second_));
  EXPECT_THAT(all("Thing[3]"), IsEmpty());
  EXPECT_THAT(all("Preface"), IsEmpty());
  for (auto& set : partition_.findAll("Thing")) set.set("Number", 5);
  EXPECT_EQ(second_.text("Number"), u"5");
}

TEST_F(SetLookup, FindsSetsByInstanceUIDInEveryForm) {
  for (const auto* name :
       {"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.03", "00000000-0000-0000-0000-000000000003",
        "urn:uuid:00000000-0000-0000-0000-000000000003", "urn:smpte:ul:00000000.00000000.00000000.00000003"}) {
    EXPECT_EQ(&partition_.find(name), &second_) << name;
  }
  EXPECT_EQ(refusal("00000000-0000-0000-0000-000000000009"),
            "the partition has no set with the identifier 00000000-0000-0000-0000-000000000009");
  addSet(partition_, "Other", 3);
  EXPECT_EQ(&partition_.find("00000000-0000-0000-0000-000000000003[2]"), partition_.sets().back());
  EXPECT_EQ(refusal("00000000-0000-0000-0000-000000000003"),
            "00000000-0000-0000-0000-000000000003 is ambiguous: 2 sets (see \"mxfxml info --sets\"); use "
            "00000000-0000-0000-0000-000000000003[1] or 00000000-0000-0000-0000-000000000003[2]");
}

TEST_F(SetLookup, FindsSetsByTheBeginningOfTheirInstanceUID) {
  second_.set("InstanceUID", Types::UUID(hex("8d9dadd1e1b5476393e47f251bc8bf00").data()));
  for (const auto* name : {"8d9d", "8D.9D.AD", "{8d9dadd1-e1", "urn:uuid:8d9d", "0x8d9da"}) {
    EXPECT_EQ(&partition_.find(name), &second_) << name;
  }
  EXPECT_EQ(refusal("8d9"), "the dictionary has no set '8d9'");
  EXPECT_EQ(refusal("8d9e"), "the partition has no set whose InstanceUID begins with 8d9e");
  EXPECT_EQ(refusal("00000000"),
            "00000000 is ambiguous: 2 sets (see \"mxfxml info --sets\"); use 00000000[1] or 00000000[2]");
}

TEST_F(SetLookup, FindsSetsByKeyAlsoThoseThatTheDictionaryLacks) {
  EXPECT_EQ(&partition_.find("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.A1.00"), &other_);
  EXPECT_THAT(all("urn:smpte:ul:060e2b34.02530101.0d010101.0101a000"), ElementsAre(&first_, &second_));
  const auto& dark = readSet(partition_, darkGroupKey(), Items().instanceUID(7));
  EXPECT_EQ(partition_.tryFind(dark.name()), &dark);
}

TEST_F(SetLookup, MakesSetsByName) {
  auto& set = partition_.createMetadataSet("Preface");
  EXPECT_EQ(set.key(), keyOf("Preface"));
  EXPECT_EQ(&partition_.find("Preface"), &set);
  EXPECT_NE(set.instanceUID(), nullptr);
  EXPECT_THROW(partition_.createMetadataSet("Nothing"), Exceptions::InvalidFormat);
}

TEST(SetLookupByTagName, FindsSetsAndPropertiesByTagNameToo) {
  using MetaMetadata::kTagName;
  MetaMetadata::DictionaryBuilder builder;
  const auto named = [](const char16_t* name) { return MetaMetadata::ExtensionAttributes().set(kTagName, name); };
  builder.addElement("060e2b34.01010101.7f000001.00000000", "FirstSymbol", Types::Identifiers::kUInt8, named(u"Size"));
  builder.addElement("060e2b34.01010101.7f000002.00000000", "Size", Types::Identifiers::kUInt8,
                     named(u"Gr\u00f6\u00dfe"));
  builder.addElement("060e2b34.01010101.7f000003.00000000", "Other", Types::Identifiers::kUInt8, named(u""));
  builder.addSet("060e2b34.02530101.0d010101.0101a000", "Abstract", "", false, named(u"Kind"));
  builder.addAttribute("060e2b34.01010101.7f000001.00000000");
  builder.addSet("060e2b34.02530101.0d010101.0101a100", "Group", "Abstract", true, named(u"GroupTag"));
  builder.addAttribute("060e2b34.01010101.7f000002.00000000");
  builder.addAttribute("060e2b34.01010101.7f000003.00000000");
  PartitionMetadata partition(builder.build());

  auto& set = partition.createMetadataSet("GroupTag");
  EXPECT_EQ(&partition.find("Kind"), &set) << "of an abstract kind, those that inherit from it";
  EXPECT_EQ(&partition.find("Abstract[1]"), &set);
  EXPECT_EQ(&partition.find("Group"), &set);
  EXPECT_EQ(&partition.find("GroupTag"), &set);
  EXPECT_THROW(partition.createMetadataSet("Kind"), Exceptions::InvalidFormat) << "abstract";
  set.set("FirstSymbol", 1);
  set.set("Size", 2);
  EXPECT_EQ(set.text("Gr\u00f6\u00dfe"), u"2") << "a symbol counts before a tag name";
  EXPECT_FALSE(set.has("")) << "an empty tag name is none";
}

TEST(SetLookupByCommonName, PrefersTheUsualSenseOfAnAbstractName) {
  MetaMetadata::DictionaryBuilder builder;
  builder.addElement("060e2b34.01010101.7f000001.00000000", "Number", Types::Identifiers::kUInt8, {});
  builder.addSet("060e2b34.02530101.0d010101.0101a000", "Track", "", false, {});
  builder.addAttribute("060e2b34.01010101.7f000001.00000000");
  builder.addSet("060e2b34.02530101.0d010101.0101a100", "EventTrack", "Track", true, {});
  builder.addSet("060e2b34.02530101.0d010101.0101a200", "TimelineTrack", "Track", true, {});
  builder.addCommonName(MetaMetadata::registerKey("060e2b34.02530101.0d010101.0101a200"), "Track");
  PartitionMetadata partition(builder.build());
  auto& event = partition.createMetadataSet("EventTrack");
  EXPECT_EQ(&partition.find("Track"), &event) << "without a TimelineTrack, any";
  auto& timeline = partition.createMetadataSet("TimelineTrack");
  event.set("Number", 3);
  EXPECT_EQ(&partition.find("Track"), &timeline);
  EXPECT_EQ(&partition.find("Track[1]"), &timeline);
  EXPECT_EQ(&partition.find("Track[Number=3]"), &event) << "where no TimelineTrack has it";
}

TEST_F(SetLookup, RemovesSetsFromEveryList) {
  auto& dark = *partition_.createMetadataSet(darkGroupKey());
  partition_.remove(first_);
  EXPECT_THAT(partition_.findByInstanceUID(uid(1)), IsEmpty());
  EXPECT_THAT(partition_.find(keyOf("Thing")), ElementsAre(&second_));
  EXPECT_EQ(&partition_.find("Thing"), &second_);
  EXPECT_THAT(partition_.sets(), ElementsAre(&other_, &second_, &dark));
  EXPECT_EQ(partition_.entries().size(), 3u);
  partition_.remove(dark);
  partition_.remove(second_);
  EXPECT_THAT(partition_.find(keyOf("Thing")), IsEmpty());
  EXPECT_THAT(partition_.sets(), ElementsAre(&other_));
}

TEST_F(SetLookup, RemovesDarkSets) {
  for (const uint8 octet : {uint8{1}, uint8{2}, uint8{3}}) {
    partition_.addDarkMetadataSet(std::make_unique<DarkMetadataSet>(darkSetKey(), uint8{4}, KLV::Value(Bytes{octet})));
  }
  auto* second = *std::next(partition_.darkBegin());
  partition_.remove(*second);
  std::vector<uint8> left;
  for (auto at = partition_.darkBegin(); at != partition_.darkEnd(); ++at) left.push_back((*at)->value().bytes()[0]);
  EXPECT_THAT(left, ElementsAre(1, 3));
  EXPECT_EQ(partition_.entries().size(), 5u);
}

TEST_F(SetLookup, RemovesSetsWhileTheListIsWalked) {
  for (MetadataSet* set : partition_.sets()) {
    if (set->definition()->symbol() != "Thing") continue;
    partition_.remove(*set);
    EXPECT_EQ(partition_.tryFind("Other"), &other_);
  }
  EXPECT_THAT(partition_.sets(), ElementsAre(&other_));
  for (auto& set : partition_.findAll("Other")) partition_.remove(set);
  EXPECT_THAT(partition_.sets(), IsEmpty());
  EXPECT_THAT(partition_.entries(), IsEmpty());
}

TEST_F(SetLookup, KeepsFileOrderAfterRemovals) {
  partition_.remove(first_);
  ASSERT_EQ(partition_.sets().size(), 2u);
  const auto& third = addSet(partition_, "Other", 3);
  second_.set("InstanceUID", uid(9));
  second_.set("InstanceUID", uid(3));
  EXPECT_THAT(partition_.findByInstanceUID(uid(3)), ElementsAre(&second_, &third));
  EXPECT_THAT(all("Other"), ElementsAre(&other_, &third));
  EXPECT_THAT(partition_.sets(), ElementsAre(&other_, &second_, &third));
}

TEST_F(SetLookup, IgnoresChangesOfRemovedSets) {
  partition_.remove(first_);
  first_.set("InstanceUID", uid(8));
  partition_.remove(first_);
  EXPECT_THAT(partition_.findByInstanceUID(uid(8)), IsEmpty());
  EXPECT_EQ(partition_.sets().size(), 2u);
}

TEST_F(SetLookup, RemovesManySetsInOneLoopQuickly) {
  constexpr uint32 kSets = 50000;
  for (uint32 i = 0; i < kSets; ++i)
    partition_.addMetadataSet(std::make_unique<MetadataSet>(keyOf("Preface"), nullptr));
  for (MetadataSet* set : partition_.find(keyOf("Preface"))) partition_.remove(*set);
  EXPECT_EQ(partition_.sets().size(), 3u) << "a scan for each would take minutes";
}

}  // namespace
}  // namespace Vantor
