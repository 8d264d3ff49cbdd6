#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;

const std::string kThing = "Thing 00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01";

template <class Function>
std::string refusal(Function&& function) {
  try {
    function();
  } catch (const Exceptions::InvalidFormat& error) {
    return error.what();
  }
  return "none";
}

class PropertyAccess : public testing::Test {
 protected:
  PropertyAccess() : thing_(addSet(partition_, "Thing", 1)) {}

  std::string text(const std::string& property) const { return Utils::wstringToString(thing_.text(property)); }

  PartitionMetadata partition_{testDictionary()};
  MetadataSet& thing_;
};

TEST_F(PropertyAccess, SetsAndGetsValuesOfEveryKindOfProperty) {
  EXPECT_TRUE(thing_.set("Number", Types::UInt32(7)));
  EXPECT_EQ(thing_.get<Types::UInt32>("Number").value(), 7u);
  EXPECT_TRUE(thing_.set("Peer", Types::WeakReference(uid(5))));
  EXPECT_EQ(thing_.get<Types::WeakReference>("Peer").target(), uid(5));
  Types::Array numbers(2);
  numbers.append(std::make_unique<Types::UInt16>(uint16{3}));
  EXPECT_TRUE(thing_.set("Numbers", numbers));
  EXPECT_EQ(thing_.get<Types::Array>("Numbers"), numbers);
}

TEST_F(PropertyAccess, TakesIntegersForIntegersOfAnyWidth) {
  EXPECT_TRUE(thing_.set("Number", 9));
  EXPECT_TRUE(thing_.set("Dynamic", uint64{255}));
  EXPECT_TRUE(thing_.set("Flag", true));
  EXPECT_EQ(text("Number") + text("Dynamic") + text("Flag"), "9255true");
  EXPECT_EQ(refusal([&] { thing_.set("Dynamic", 256); }),
            "Dynamic of " + kThing + ": '256' is not a whole number from 0 to 255; for example 25 or 0x19");
  EXPECT_EQ(refusal([&] { thing_.set("Number", -1); }),
            "Number of " + kThing + ": '-1' is not a whole number from 0 to 4294967295; for example 25 or 0x19");
  EXPECT_EQ(refusal([&] { thing_.set("Version", 1); }),
            "Version of " + kThing + " takes ProductVersion, not an integer");
  EXPECT_EQ(text("Dynamic"), "255");
}

TEST_F(PropertyAccess, SetsValuesFromTheirTexts) {
  thing_.set("Text", u"\u00e4");
  thing_.set("Version", u"1.2.3.4.5");
  thing_.set("Numbers", u"[1, 2]");
  thing_.set("Texts", u"[\"a\", \"bc\"]");
  thing_.set("Child", u"urn:uuid:00000000-0000-0000-0000-000000000005");
  EXPECT_EQ(text("Text"), "\u00e4");
  EXPECT_EQ(text("Version"), "1.2.3.4 private");
  EXPECT_EQ(text("Numbers"), "[1, 2]");
  EXPECT_EQ(text("Texts"), R"(["a", "bc"])");
  EXPECT_EQ(thing_.get<Types::StrongReference>("Child").target(), uid(5));
}

TEST_F(PropertyAccess, RefusesATextThatIsNoValueAndKeepsTheOldOne) {
  thing_.set("Number", 1);
  EXPECT_EQ(refusal([&] { thing_.set("Number", u"x"); }),
            "Number of " + kThing + ": 'x' is not a whole number from 0 to 4294967295; for example 25 or 0x19");
  EXPECT_EQ(refusal([&] { thing_.set("Numbers", u"[x]"); }),
            "Numbers of " + kThing + ": 'x' is not a whole number from 0 to 65535; for example 25 or 0x19");
  EXPECT_EQ(text("Number"), "1");
  EXPECT_FALSE(thing_.has("Numbers"));
}

TEST_F(PropertyAccess, NamesTheTypesThatDoNotMatch) {
  EXPECT_EQ(refusal([&] { thing_.set("Number", Types::UInt16(1)); }),
            "Number of " + kThing + " takes UInt32, not UInt16");
  EXPECT_EQ(refusal([&] { thing_.set("Needed", Types::Array()); }),
            "Needed of " + kThing + " takes Batch of UInt16, not Array");
  Types::Array wrong;
  wrong.append(std::make_unique<Types::UInt8>(uint8{1}));
  EXPECT_EQ(refusal([&] { thing_.set("Numbers", wrong); }),
            "Numbers of " + kThing + " takes Array of UInt16, not Array");
  thing_.set("Number", 1);
  EXPECT_EQ(refusal([&] { thing_.get<Types::UInt16>("Number"); }),
            "Number of " + kThing + " is of type UInt32, not UInt16");
  EXPECT_EQ(refusal([&] { thing_.tryGet<Types::UInt8>("Flag"); }),
            "Flag of " + kThing + " is of type Boolean, not UInt8");
}

TEST_F(PropertyAccess, TellsAbsentPropertiesFromThoseThatASetCannotHave) {
  EXPECT_FALSE(thing_.has("Number"));
  EXPECT_EQ(thing_.tryGet<Types::UInt32>("Number"), nullptr);
  EXPECT_EQ(refusal([&] { thing_.get<Types::UInt32>("Number"); }), "Number of " + kThing + " has no value");
  EXPECT_EQ(refusal([&] { thing_.text("Number"); }), "Number of " + kThing + " has no value");
  EXPECT_FALSE(thing_.remove("Number"));
  EXPECT_FALSE(thing_.has("Foreign"));
  const std::string unknown = kThing + " has no property 'Foreign'";
  EXPECT_EQ(refusal([&] { thing_.tryGet<Types::UInt16>("Foreign"); }), unknown);
  EXPECT_EQ(refusal([&] { thing_.text("Foreign"); }), unknown);
  EXPECT_EQ(refusal([&] { thing_.set("Foreign", 1); }), unknown);
  EXPECT_EQ(refusal([&] { thing_.set("Foreign", u"1"); }), unknown);
  EXPECT_EQ(refusal([&] { thing_.remove("Foreign"); }), unknown);
  auto& dark = readSet(partition_, darkGroupKey(), Items().instanceUID(2));
  EXPECT_FALSE(dark.has("InstanceUID"));
  EXPECT_EQ(refusal([&] { dark.set("Number", 1); }), dark.fullName() + " has no property 'Number'");
}

TEST_F(PropertyAccess, FindsMisplacedPropertiesThatAreThere) {
  auto& set = readSet(partition_, "Thing", Items().instanceUID(2).item(0x5001, "0009"));
  EXPECT_TRUE(set.has("Foreign"));
  EXPECT_EQ(set.get<Types::UInt16>("Foreign").value(), 9);
  EXPECT_TRUE(set.set("Foreign", u"10"));
  EXPECT_EQ(set.text("Foreign"), u"10");
  EXPECT_TRUE(set.remove("Foreign"));
  EXPECT_FALSE(set.has("Foreign"));
}

TEST_F(PropertyAccess, KeepsTagLengthOctetsAndPlaceOfAChangedProperty) {
  const auto items = Items(1).item(0x4003, "01").lengthOctets(4).item(0x4001, "00000007").lengthOctets(1);
  auto& set = readSet(partition_, KLV::Key(hex("060e2b34 02130101 0d010101 0101a000").data()),
                      Items(items).item(0x4002, "0041").instanceUID(2));
  const Bytes before = written(set, partition_);
  EXPECT_FALSE(set.set("Number", 7));
  EXPECT_FALSE(set.set("Number", u"7"));
  EXPECT_FALSE(set.set("Number", Types::UInt32(7)));
  EXPECT_FALSE(set.set("Text", u"A"));
  EXPECT_EQ(written(set, partition_), before);
  EXPECT_TRUE(set.set("Number", 8));
  std::string expected = hexOf(before);
  const std::string number = "40018300000400000007";
  ASSERT_NE(expected.find(number), std::string::npos);
  expected[expected.find(number) + number.size() - 1] = '8';
  EXPECT_EQ(hexOf(written(set, partition_)), expected);
}

TEST_F(PropertyAccess, KeepsFinalNULsOfATextThatStays) {
  auto& set = readSet(partition_, "Thing",
                      Items().item(0x4002, "0041 0000 0000").item(0x400d, "00000002 00000004 0041 0000 0042 0043"));
  const Bytes before = written(set, partition_);
  EXPECT_FALSE(set.set("Text", u"A"));
  EXPECT_FALSE(set.set("Texts", u"[A, BC]"));
  EXPECT_EQ(written(set, partition_), before);
  EXPECT_TRUE(set.set("Texts", u"[A, B]"));
  EXPECT_EQ(set.text("Texts"), u"[\"A\", \"B\"]");
}

TEST_F(PropertyAccess, KeepsTheNumberOfFinalNULsOfATextThatChanges) {
  auto& set = readSet(partition_, "Thing", Items().item(0x4002, "0041 0000 0000"));
  const Bytes before = written(set, partition_);
  EXPECT_TRUE(set.set("Text", u"ABC"));
  const auto* value = set.find("Text")->wireValue();
  EXPECT_EQ(hexOf(value->rawBuffer(), value->encodedSize()), "00410042004300000000");
  EXPECT_TRUE(set.set("Text", u"A"));
  EXPECT_EQ(written(set, partition_), before);
  EXPECT_TRUE(set.set("Text", Types::UTF16String(u"AB")));
  EXPECT_EQ(set.find("Text")->wireValue()->encodedSize(), 4u) << "a value is taken as it is";
}

TEST_F(PropertyAccess, ReplacesAValueThatDidNotDecode) {
  auto& set = readSet(partition_, "Thing", Items().item(0x4001, "0007").item(0x4003, "01").instanceUID(2));
  EXPECT_TRUE(set.has("Number"));
  EXPECT_TRUE(set.set("Number", 7));
  EXPECT_EQ(set.invalidBegin(), set.invalidEnd());
  const auto& expected =
      readSet(partition_, "Thing", Items().item(0x4001, "00000007").item(0x4003, "01").instanceUID(2));
  EXPECT_EQ(hexOf(written(set, partition_)), hexOf(written(expected, partition_)));
}

TEST_F(PropertyAccess, RefersToSets) {
  auto& other = addSet(partition_, "Other", 2);
  EXPECT_TRUE(thing_.set("Child", other));
  EXPECT_FALSE(thing_.set("Child", other));
  EXPECT_TRUE(thing_.set("Peer", other));
  thing_.append("Children", other);
  thing_.append("Children", Types::StrongReference(uid(3)));
  thing_.append("Peers", other);
  EXPECT_EQ(thing_.get<Types::StrongReference>("Child").target(), uid(2));
  EXPECT_EQ(thing_.get<Types::WeakReference>("Peer").target(), uid(2));
  EXPECT_EQ(thing_.get<Types::Batch>("Children").size(), 2u);
  EXPECT_EQ(thing_.get<Types::Array>("Peers").at(0).identifier(), Types::Identifiers::kWeakReference);
  EXPECT_EQ(refusal([&] { thing_.set("Number", other); }),
            "Number of " + kThing + " takes UInt32, not a reference to a set");
  EXPECT_EQ(refusal([&] { thing_.set("Children", other); }),
            "Children of " + kThing + " takes Batch of StrongReference, not a reference to a set");
  EXPECT_EQ(refusal([&] { thing_.append("Numbers", other); }),
            "Numbers of " + kThing + " is of type Array of UInt16, not a collection of references");
  auto& nameless = readSet(partition_, "Other", Items());
  EXPECT_EQ(refusal([&] { thing_.set("Child", nameless); }), "set Other has no InstanceUID to refer to");
  EXPECT_EQ(thing_.get<Types::StrongReference>("Child").target(), uid(2));
}

TEST_F(PropertyAccess, AppendsItemsToACollectionThatItMakes) {
  thing_.append("Numbers", Types::UInt16(1));
  thing_.append("Numbers", Types::UInt16(2));
  EXPECT_EQ(text("Numbers"), "[1, 2]");
  EXPECT_EQ(refusal([&] { thing_.append("Numbers", Types::UInt8(2)); }),
            "Numbers of " + kThing + " is of type Array of UInt16 and takes no item of type UInt8");
  EXPECT_EQ(refusal([&] { thing_.append("Number", Types::UInt32(2)); }),
            "Number of " + kThing + " is of type UInt32 and takes no item of type UInt32");
}

TEST_F(PropertyAccess, ChangesTheInstanceUIDOnlyByValue) {
  EXPECT_EQ(refusal([&] { thing_.set("InstanceUID", u"00.00"); }),
            "the InstanceUID of " + kThing + " cannot be set from a text: references to the set would break");
  EXPECT_EQ(refusal([&] { thing_.remove("InstanceUID"); }),
            "the InstanceUID of " + kThing + " cannot be removed: references to the set would break");
  EXPECT_TRUE(thing_.set("InstanceUID", uid(9)));
  EXPECT_THAT(partition_.findByInstanceUID(uid(9)), ElementsAre(&thing_));
}

TEST_F(PropertyAccess, RemovesPropertiesByName) {
  thing_.set("Number", 1);
  EXPECT_TRUE(thing_.remove("Number"));
  EXPECT_FALSE(thing_.has("Number"));
  EXPECT_TRUE(thing_.set("Number", 2));
  EXPECT_EQ(text("Number"), "2");
}

}  // namespace
}  // namespace Vantor
