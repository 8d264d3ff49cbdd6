#include "Registers/RegisterTypes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SomeRegisters.h"

namespace Vantor::Registers {
namespace {

using namespace Types::Identifiers;

constexpr uint64 kUInt8Tail = 0x0101010000000000;
constexpr uint64 kNewTail = 0x0f01000000000000;
constexpr uint64 kNewerTail = 0x0f02000000000000;

/// "UInt8", "Array of UInt8", and after a comma the enumeration.
std::string told(const RegisteredType& type) {
  const std::string collection = type.collection == kNone ? "" : std::string(name(type.collection)) + " of ";
  return collection + name(type.value) + (type.enumeration == nullptr ? "" : ", " + type.enumeration->symbol);
}

/// The core types of the type that was added last.
std::string carrier(const Entries& registers) {
  const auto type = RegisterTypes(registers).find(registers.types.back().key);
  return type ? told(*type) : "none";
}

std::string refusal(const Entries& registers) {
  return refusalOf([&] { carrier(registers); });
}

SomeRegisters withUInt8() {
  SomeRegisters registers;
  registers.integer(kUInt8Tail, "UInt8", 1);
  return registers;
}

TEST(RegisterTypes, CarriesIntegersByTheirSizeAndSign) {
  const auto carried = [](uint32 size, bool isSigned) {
    SomeRegisters registers;
    registers.integer(kNewTail, "Number", size, isSigned);
    return carrier(registers);
  };
  EXPECT_EQ(carried(1, false), "UInt8");
  EXPECT_EQ(carried(2, false), "UInt16");
  EXPECT_EQ(carried(4, false), "UInt32");
  EXPECT_EQ(carried(8, false), "UInt64");
  EXPECT_EQ(carried(1, true), "Int8");
  EXPECT_EQ(carried(2, true), "Int16");
  EXPECT_EQ(carried(4, true), "Int32");
  EXPECT_EQ(carried(8, true), "Int64");
  EXPECT_EQ(carried(3, true), "DataStream");
  EXPECT_EQ(carried(0, false), "DataStream");
}

TEST(RegisterTypes, CarriesFloatingPointNumbersAsBytesAlthoughTheyAreRegisteredAsIntegers) {
  SomeRegisters registers;
  registers.integer(0x0102010000000000, "Float", 4, true);
  EXPECT_EQ(carrier(registers), "DataStream");
  registers.integer(0x0102020000000000, "Double", 8, true);
  EXPECT_EQ(carrier(registers), "DataStream");
  registers.type(kNewTail, "HalfFloats", TypeKind::kVariableArray, 0x0102020000000000);
  EXPECT_EQ(carrier(registers), "DataStream");
}

TEST(RegisterTypes, GivesTheReasonForBytes) {
  const auto reason = [](TypeKind kind) {
    SomeRegisters registers;
    registers.type(kNewTail, "Type", kind);
    return RegisterTypes(registers).find(registers.types.back().key)->whyBytes;
  };
  EXPECT_EQ(reason(TypeKind::kRecord), BytesReason::kRecord);
  EXPECT_EQ(reason(TypeKind::kFixedArray), BytesReason::kFixedArray);
  EXPECT_EQ(reason(TypeKind::kIndirect), BytesReason::kIndirect);
  EXPECT_EQ(reason(TypeKind::kString), BytesReason::kCharacters);
  EXPECT_EQ(reason(TypeKind::kInteger), BytesReason::kIntegerSize);
  EXPECT_EQ(reason(TypeKind::kStrongReference), BytesReason::kNone);
}

TEST(RegisterTypes, CarriesARenamedTypeAsWhatItRenames) {
  auto registers = withUInt8();
  registers.type(kNewTail, "Renamed", TypeKind::kRename, kUInt8Tail);
  EXPECT_EQ(carrier(registers), "UInt8");
  registers.type(kNewerTail, "RenamedAgain", TypeKind::kRename, kNewTail);
  EXPECT_EQ(carrier(registers), "UInt8");
}

TEST(RegisterTypes, CarriesWhatHasACoreTypeByItsKeyWhateverItIsMadeOf) {
  const auto carried = [](uint64 tail, TypeKind kind) {
    auto registers = withUInt8();
    registers.type(tail, "Known", kind, kUInt8Tail);
    return carrier(registers);
  };
  EXPECT_EQ(carried(0x0101200100000000, TypeKind::kRename), "Position");
  EXPECT_EQ(carried(0x0101200200000000, TypeKind::kRename), "Length");
  EXPECT_EQ(carried(0x0103010000000000, TypeKind::kOther), "AUID");
  EXPECT_EQ(carried(0x0103020000000000, TypeKind::kOther), "UMID32");
  EXPECT_EQ(carried(0x0103030000000000, TypeKind::kOther), "UUID");
  EXPECT_EQ(carried(0x0104010000000000, TypeKind::kEnumeration), "Boolean");
  EXPECT_EQ(carried(0x0201012700000000, TypeKind::kEnumeration), "SignalStandard, Known");
  EXPECT_EQ(carried(0x0201012800000000, TypeKind::kEnumeration), "Orientation, Known");
  EXPECT_EQ(carried(0x0301010000000000, TypeKind::kOther), "Rational");
  EXPECT_EQ(carried(0x0301020000000000, TypeKind::kOther), "ProductVersion");
  EXPECT_EQ(carried(0x0301030000000000, TypeKind::kOther), "VersionType");
  EXPECT_EQ(carried(0x0301070000000000, TypeKind::kOther), "Timestamp");
  EXPECT_EQ(carried(0x03010a0000000000, TypeKind::kOther), "J2KPictureComponent");
  EXPECT_EQ(carried(0x0402010000000000, TypeKind::kOther), "RGBALayout");
  EXPECT_EQ(carried(0x0410010000000000, TypeKind::kVariableArray), "DataStream");
}

TEST(RegisterTypes, FindsTheCoreTypeOfAKeyInAnotherVersion) {
  SomeRegisters registers;
  registers.type(0x0301010000000000, "Rational", TypeKind::kOther).key =
      KLV::Key({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x04, 0x01, 0x0e, 0x03, 0x01, 0x01, 0, 0, 0, 0, 0});
  EXPECT_EQ(carrier(registers), "Rational");
}

TEST(RegisterTypes, CarriesEnumerationsOfNumbersByTheNumberAndKeepsTheNames) {
  auto registers = withUInt8();
  registers.enumeration(kNewTail, "LayoutType", kUInt8Tail, {{"0", "FullFrame"}});
  EXPECT_EQ(carrier(registers), "UInt8, LayoutType");
  registers.type(kNewerTail, "Renamed", TypeKind::kRename, kNewTail);
  EXPECT_EQ(carrier(registers), "UInt8, LayoutType");
}

TEST(RegisterTypes, CarriesEnumerationsOfIdentifiersAsLabelsAndThoseOfTextsAsTexts) {
  SomeRegisters registers;
  registers.type(0x0103010000000000, "AUID", TypeKind::kOther);
  registers.enumeration(kNewTail, "UsageType", 0x0103010000000000, {});
  EXPECT_EQ(carrier(registers), "UniversalLabel");
  registers.type(0x0110040000000000, "ISO7", TypeKind::kString, 0x0110030000000000);
  registers.enumeration(kNewerTail, "GammaCode", 0x0110040000000000, {});
  EXPECT_EQ(carrier(registers), "ISO7String");
}

TEST(RegisterTypes, CarriesStringsByTheTypeOfTheirCharacters) {
  const auto carried = [](uint64 character) {
    SomeRegisters registers;
    registers.type(kNewTail, "Text", TypeKind::kString, character);
    return carrier(registers);
  };
  EXPECT_EQ(carried(0x0110010000000000), "UTF16String");
  EXPECT_EQ(carried(0x0110030000000000), "ISO7String");
  EXPECT_EQ(carried(0x0110050000000000), "UTF8String");
  EXPECT_EQ(carried(0x0110070000000000), "DataStream");
  EXPECT_EQ(carried(0), "DataStream");
}

TEST(RegisterTypes, CarriesVariableArraysAsArraysAndSetsAsBatches) {
  auto registers = withUInt8();
  registers.type(kNewTail, "Numbers", TypeKind::kVariableArray, kUInt8Tail);
  EXPECT_EQ(carrier(registers), "Array of UInt8");
  registers.type(kNewerTail, "NumberSet", TypeKind::kSet, kUInt8Tail);
  EXPECT_EQ(carrier(registers), "Batch of UInt8");
  registers.enumeration(0x0f03000000000000, "LayoutType", kUInt8Tail, {});
  registers.type(0x0f04000000000000, "Layouts", TypeKind::kVariableArray, 0x0f03000000000000);
  EXPECT_EQ(carrier(registers), "Array of UInt8, LayoutType");
}

TEST(RegisterTypes, CarriesCollectionsAsBytesWhenTheirItemsCannotBeToldApart) {
  auto registers = withUInt8();
  registers.type(kNewTail, "Numbers", TypeKind::kVariableArray, kUInt8Tail);
  registers.type(kNewerTail, "NumberLists", TypeKind::kVariableArray, kNewTail);
  EXPECT_EQ(carrier(registers), "DataStream");
  registers.type(0x0110020000000000, "UTF16String", TypeKind::kString, 0x0110010000000000);
  registers.type(0x0f05000000000000, "Texts", TypeKind::kSet, 0x0110020000000000);
  EXPECT_EQ(carrier(registers), "DataStream");
  registers.type(0x0f06000000000000, "Record", TypeKind::kOther);
  registers.type(0x0f07000000000000, "Records", TypeKind::kSet, 0x0f06000000000000);
  EXPECT_EQ(carrier(registers), "DataStream");
}

TEST(RegisterTypes, KeepsTheGroupThatAReferenceLeadsTo) {
  SomeRegisters registers;
  registers.reference(kNewTail, "TrackReference", TypeKind::kStrongReference, 0x0d01);
  EXPECT_EQ(carrier(registers), "StrongReference");
  registers.type(kNewerTail, "TrackReferences", TypeKind::kVariableArray, kNewTail);
  EXPECT_EQ(carrier(registers), "Array of StrongReference");
  const RegisterTypes types(registers);
  EXPECT_EQ(types.find(RegisterKeys::type(kNewerTail))->target, RegisterKeys::group(0x0d01));
  registers.type(0x0f03000000000000, "Anything", TypeKind::kWeakReference);
  EXPECT_EQ(carrier(registers), "WeakReference");
}

TEST(RegisterTypes, CarriesEveryOtherTypeAsBytes) {
  SomeRegisters registers;
  registers.type(kNewTail, "DateStruct", TypeKind::kOther);
  EXPECT_EQ(carrier(registers), "DataStream");
  EXPECT_FALSE(RegisterTypes(registers).find(RegisterKeys::type(kNewerTail)).has_value());
}

TEST(RegisterTypes, RefusesATypeThatIsMadeOfNothing) {
  SomeRegisters registers;
  registers.type(kNewTail, "Renamed", TypeKind::kRename);
  EXPECT_EQ(refusal(registers),
            "Types.xml:1: the type Renamed is made of nothing, which is no type of the register; name one that is as "
            "its base");
  registers.type(kNewerTail, "Numbers", TypeKind::kSet, kUInt8Tail);
  EXPECT_EQ(refusal(registers),
            "Types.xml:2: the type Numbers is made of 060e2b34.01040101.01010100.00000000, which is no type of the "
            "register; name one that is as its base");
}

TEST(RegisterTypes, RefusesTypesThatAreMadeOfThemselves) {
  SomeRegisters registers;
  registers.type(kNewTail, "Odd", TypeKind::kRename, kNewTail);
  EXPECT_EQ(refusal(registers),
            "Types.xml:1: the type Odd is made of itself, or of more than 100 types in a row; give it another base");
  SomeRegisters more;
  more.type(kNewTail, "Egg", TypeKind::kRename, kNewerTail);
  more.type(kNewerTail, "Hens", TypeKind::kVariableArray, kNewTail);
  more.type(kUInt8Tail, "Basket", TypeKind::kSet, kNewerTail);
  EXPECT_THAT(refusal(more), ::testing::HasSubstr(" is made of itself, or of more than 100 types in a row;"));
}

TEST(RegisterTypes, RefusesTwoTypesOfOneKey) {
  auto registers = withUInt8();
  registers.integer(kUInt8Tail, "Octet", 1);
  EXPECT_EQ(refusal(registers),
            "Types.xml:2: Octet has the UL 060e2b34.01040101.01010100.00000000 of UInt8 (Types.xml:1); take one of the "
            "two entries away");
}

TEST(RegisterTypes, FollowsAHundredNames) {
  auto registers = withUInt8();
  for (uint64 i = 1; i <= 100; ++i) {
    registers.type(kNewTail + i, "T", TypeKind::kRename, i == 1 ? kUInt8Tail : kNewTail + i - 1);
  }
  EXPECT_EQ(carrier(registers), "UInt8");
  registers.type(kNewTail + 101, "T", TypeKind::kRename, kNewTail + 100);
  EXPECT_EQ(refusal(registers),
            "Types.xml:2: the type T is made of itself, or of more than 100 types in a row; give it another base");
}

}  // namespace
}  // namespace Vantor::Registers
