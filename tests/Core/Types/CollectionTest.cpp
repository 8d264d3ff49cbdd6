#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/Core/Types/Samples.h"

namespace Vantor::Types {
namespace {

template <class T>
auto_ptr<SimpleDataType> item(T value) {
  return auto_ptr<SimpleDataType>(new T(std::move(value)));
}

template <class T>
auto_ptr<SimpleDataType> read(Identifiers::Identifier itemType, const Bytes& bytes) {
  return Factories::collectionFromBytes(T::kIdentifier, itemType, bytes.data(), bytes.size());
}

/// Three 16-bit numbers: 1, 2, 0xffff.
const Bytes kNumbers = {0, 0, 0, 3, 0, 0, 0, 2, 0, 1, 0, 2, 0xff, 0xff};

template <class T>
class CollectionTest : public ::testing::Test {};
using Collections = ::testing::Types<Array, Batch>;
TYPED_TEST_SUITE(CollectionTest, Collections, TypeNames);

TYPED_TEST(CollectionTest, ReadsCountItemSizeAndItems) {
  const auto value = read<TypeParam>(Identifiers::kUInt16, kNumbers);
  ASSERT_NE(value, nullptr);
  const auto& numbers = dynamic_cast<const TypeParam&>(*value);
  ASSERT_EQ(numbers.size(), 3u);
  EXPECT_EQ(dynamic_cast<const UInt16&>(numbers.at(2)).value(), 0xffff);
  EXPECT_EQ(numbers.itemSize(), 2u);
  EXPECT_EQ(numbers.serializedSize(), 2u);
  EXPECT_EQ(numbers.encodedSize(), 14u);
  EXPECT_EQ(toBytes(numbers), kNumbers);
}

TYPED_TEST(CollectionTest, WritesAppendedItems) {
  TypeParam numbers(2);
  for (const uint16 number : {uint16{1}, uint16{2}, uint16{0xffff}}) numbers.append(item(UInt16(number)));
  EXPECT_EQ(toBytes(numbers), kNumbers);
  EXPECT_TRUE(numbers.equals(*read<TypeParam>(Identifiers::kUInt16, kNumbers)));
}

TYPED_TEST(CollectionTest, EmptyKeepsTheItemSizeThatWasRead) {
  for (const uint8 itemSize : {0, 2, 16, 255}) {
    const Bytes empty = {0, 0, 0, 0, 0, 0, 0, itemSize};
    const auto value = read<TypeParam>(Identifiers::kUInt16, empty);
    ASSERT_NE(value, nullptr) << int{itemSize};
    EXPECT_EQ(value->serializedSize(), itemSize);
    EXPECT_EQ(toBytes(*value), empty);
    EXPECT_EQ(toBytes(*value->clone()), empty);
  }
  const Bytes huge = {0, 0, 0, 0, 0xff, 0xff, 0xff, 0xff};
  EXPECT_EQ(toBytes(*read<TypeParam>(Identifiers::kUInt16, huge)), huge);
}

TYPED_TEST(CollectionTest, EmptyWritesTheItemSizeThatItWasMadeWith) {
  EXPECT_EQ(toBytes(TypeParam(16)), (Bytes{0, 0, 0, 0, 0, 0, 0, 16}));
  EXPECT_EQ(toBytes(TypeParam(0)), Bytes(8));
  EXPECT_THROW(TypeParam(-1), Exceptions::InvalidLength);
}

TYPED_TEST(CollectionTest, FirstItemFixesAnItemSizeOfZero) {
  TypeParam numbers(0);
  numbers.append(item(UInt32(1)));
  EXPECT_EQ(numbers.itemSize(), 4u);
  EXPECT_EQ(toBytes(numbers), (Bytes{0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 1}));
  EXPECT_THROW(numbers.append(item(UInt16(1))), Exceptions::InvalidLength);
}

TYPED_TEST(CollectionTest, RefusesAnItemOfAnotherSizeAndStaysAsItWas) {
  TypeParam numbers(2);
  numbers.append(item(UInt16(7)));
  const Bytes before = toBytes(numbers);
  EXPECT_THROW(numbers.append(item(UInt8(7))), Exceptions::InvalidLength);
  EXPECT_THROW(numbers.append(item(UInt32(7))), Exceptions::InvalidLength);
  EXPECT_EQ(numbers.size(), 1u);
  EXPECT_EQ(toBytes(numbers), before);
}

TYPED_TEST(CollectionTest, NamesBothSizesOfAnItemThatDoesNotFit) {
  TypeParam numbers(2);
  try {
    numbers.append(item(UInt32(7)));
    FAIL() << "was appended";
  } catch (const Exceptions::InvalidLength& error) {
    EXPECT_NE(error.message().find("4 octets"), std::string::npos) << error.message();
    EXPECT_NE(error.message().find("2 octets"), std::string::npos) << error.message();
  }
}

TYPED_TEST(CollectionTest, AppendsNothingForNull) {
  TypeParam numbers(2);
  numbers.append(nullptr);
  EXPECT_EQ(numbers.size(), 0u);
  EXPECT_EQ(toBytes(numbers), (Bytes{0, 0, 0, 0, 0, 0, 0, 2}));
}

TYPED_TEST(CollectionTest, HoldsItemsOfNoOctetsWhenTheyAreAppended) {
  TypeParam texts(0);
  texts.append(item(ISO7String()));
  texts.append(item(ISO7String()));
  EXPECT_EQ(toBytes(texts), (Bytes{0, 0, 0, 2, 0, 0, 0, 0}));
  EXPECT_THROW(texts.append(item(ISO7String("a"))), Exceptions::InvalidLength);
}

TYPED_TEST(CollectionTest, FillsThePlaceOfAnItemWithoutOctets) {
  const Bytes texts = {0, 0, 0, 4, 0, 0, 0, 3, 0, 0, 0, 'a', 'b', 'c', 0, 0, 0, 'd', 'e', 'f'};
  TypeParam made(3);
  for (const char* text : {"", "abc", "", "def"}) made.append(item(ISO7String(text)));
  EXPECT_EQ(toBytes(made), texts);
  EXPECT_EQ(toBytes(*made.clone()), texts);
  EXPECT_EQ(made.at(0).encodedSize(), 0u);
  EXPECT_TRUE(made.equals(*read<TypeParam>(Identifiers::kISO7String, texts)));
}

TYPED_TEST(CollectionTest, RemovesThePlaceOfAnItemWithoutOctets) {
  TypeParam texts(3);
  for (const char* text : {"", "abc", ""}) texts.append(item(ISO7String(text)));
  texts.removeAt(0);
  EXPECT_EQ(toBytes(texts), (Bytes{0, 0, 0, 2, 0, 0, 0, 3, 'a', 'b', 'c', 0, 0, 0}));
  EXPECT_STREQ(dynamic_cast<const ISO7String&>(texts.at(0)).value(), "abc");
}

TYPED_TEST(CollectionTest, RemovesItemsAndKeepsTheItemSize) {
  const auto value = read<TypeParam>(Identifiers::kUInt16, kNumbers);
  auto& numbers = dynamic_cast<TypeParam&>(*value);
  numbers.removeAt(1);
  EXPECT_EQ(toBytes(numbers), (Bytes{0, 0, 0, 2, 0, 0, 0, 2, 0, 1, 0xff, 0xff}));
  EXPECT_EQ(dynamic_cast<const UInt16&>(numbers.at(1)).value(), 0xffff);
  numbers.removeAt(1);
  numbers.removeAt(0);
  EXPECT_EQ(toBytes(numbers), (Bytes{0, 0, 0, 0, 0, 0, 0, 2}));
  EXPECT_THROW(numbers.removeAt(0), Exceptions::InvalidLength);
}

TYPED_TEST(CollectionTest, HasNoItemBeyondItsEnd) {
  const auto value = read<TypeParam>(Identifiers::kUInt16, kNumbers);
  const auto& numbers = dynamic_cast<const TypeParam&>(*value);
  EXPECT_THROW(numbers.at(3), Exceptions::InvalidLength);
  EXPECT_THROW(TypeParam().at(0), Exceptions::InvalidLength);
}

TYPED_TEST(CollectionTest, RefusesHeadersThatDoNotFitTheOctets) {
  for (const auto itemType :
       {Identifiers::kUnknown, Identifiers::kISO7String, Identifiers::kUUID, Identifiers::kArray}) {
    for (const Bytes& bytes : kNoCollections) {
      EXPECT_EQ(read<TypeParam>(itemType, bytes), nullptr) << ::testing::PrintToString(bytes);
    }
  }
}

TYPED_TEST(CollectionTest, RefusesItemsThatDoNotDecode) {
  const Bytes two = {0, 0, 0, 2, 0, 0, 0, 1, 0x01, 0x02};
  EXPECT_NE(read<TypeParam>(Identifiers::kUInt8, two), nullptr);
  EXPECT_EQ(read<TypeParam>(Identifiers::kBoolean, two), nullptr);
  EXPECT_EQ(read<TypeParam>(Identifiers::kUInt16, two), nullptr);
  EXPECT_EQ(read<TypeParam>(Identifiers::kNone, two), nullptr);
}

TYPED_TEST(CollectionTest, ReadsTextsPaddedToOneSize) {
  const Bytes texts = {0, 0, 0, 2, 0, 0, 0, 3, 'a', 'b', 'c', 'd', 0, 0};
  const auto value = read<TypeParam>(Identifiers::kISO7String, texts);
  ASSERT_NE(value, nullptr);
  EXPECT_STREQ(dynamic_cast<const ISO7String&>(dynamic_cast<const TypeParam&>(*value).at(1)).value(), "d");
  EXPECT_EQ(toBytes(*value), texts);
}

TYPED_TEST(CollectionTest, EqualsByItemsTheirTypeAndTheirSize) {
  const auto numbers = read<TypeParam>(Identifiers::kUInt16, kNumbers);
  EXPECT_TRUE(numbers->equals(*read<TypeParam>(Identifiers::kUInt16, kNumbers)));
  EXPECT_FALSE(numbers->equals(*read<TypeParam>(Identifiers::kInt16, kNumbers)));
  EXPECT_NE(TypeParam(2), TypeParam(4));
  EXPECT_EQ(TypeParam(2), TypeParam(2));
}

TYPED_TEST(CollectionTest, CopyHasItsOwnItems) {
  TypeParam numbers(2);
  numbers.append(item(UInt16(1)));
  TypeParam copy = numbers;
  EXPECT_NE(&copy.at(0), &numbers.at(0));
  copy.append(item(UInt16(2)));
  EXPECT_EQ(numbers.size(), 1u);
  EXPECT_EQ(copy.size(), 2u);
  const TypeParam& itself = copy;
  copy = itself;
  EXPECT_EQ(copy.size(), 2u);
}

TYPED_TEST(CollectionTest, HoldsMoreThan65535Octets) {
  TypeParam numbers(4);
  for (uint32 number = 0; number < 20000; ++number) numbers.append(item(UInt32(number)));
  const Bytes bytes = toBytes(numbers);
  EXPECT_EQ(bytes.size(), 80008u);
  const auto value = read<TypeParam>(Identifiers::kUInt32, bytes);
  ASSERT_NE(value, nullptr);
  EXPECT_TRUE(numbers.equals(*value));
  EXPECT_EQ(dynamic_cast<const UInt32&>(dynamic_cast<const TypeParam&>(*value).at(19999)).value(), 19999u);
}

TYPED_TEST(CollectionTest, WritesWhatItReadWhateverTheOctets) {
  std::mt19937 random(TypeParam::kIdentifier);
  int decoded = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto itemType = static_cast<Identifiers::Identifier>(random() % 44);
    const uint32 listed = Identifiers::typeSize(itemType);
    const uint32 itemSize = listed != 0 && random() % 4 != 0 ? listed : random() % 9;
    const uint32 count = random() % 4;
    Bytes bytes = {0, 0, 0, static_cast<uint8>(count), 0, 0, 0, static_cast<uint8>(itemSize)};
    for (uint32 octet = 0; octet < count * itemSize; ++octet) bytes.push_back(static_cast<uint8>(random() % 3));
    if (random() % 8 == 0) bytes.resize(bytes.size() - 1);
    const auto value = read<TypeParam>(itemType, bytes);
    if (value == nullptr) continue;
    ++decoded;
    ASSERT_EQ(toBytes(*value), bytes);
  }
  EXPECT_GT(decoded, 1000);
}

TEST(CollectionFactory, MakesCollectionsOnly) {
  EXPECT_EQ(Factories::collectionFromBytes(Identifiers::kUInt16, Identifiers::kUInt16, kNumbers.data(), 14), nullptr);
  EXPECT_NE(Factories::collectionFromBytes(Identifiers::kBatch, Identifiers::kUInt16, kNumbers.data(), 14), nullptr);
}

TEST(CollectionFactory, ReadsCollectionsInACollection) {
  const Bytes nested = {0, 0, 0, 2, 0, 0, 0, 9,         // two items of 9 octets
                        0, 0, 0, 1, 0, 0, 0, 1, 0x61,   // one of 1 octet
                        0, 0, 0, 1, 0, 0, 0, 1, 0x62};  // one of 1 octet
  const auto value = read<Array>(Identifiers::kBatch, nested);
  ASSERT_NE(value, nullptr);
  const auto& inner = dynamic_cast<const Batch&>(dynamic_cast<const Array&>(*value).at(1));
  EXPECT_TRUE(inner.at(0).equals(Unknown(Bytes{0x62})));
  EXPECT_EQ(toBytes(*value), nested);
}

TEST(Collections, OfTwoKindsAreNotEqual) { EXPECT_FALSE(Array(2).equals(Batch(2))); }

}  // namespace
}  // namespace Vantor::Types
