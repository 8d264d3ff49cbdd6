#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/Core/Types/Samples.h"

namespace Vantor::Types {
namespace {

template <class Nothing, class... Listed>
struct TestTypes {
  using Types = ::testing::Types<Listed...>;
};
#define VANTOR_LIST_TYPE(Type, number, octets) , Type
using AllTypes = TestTypes<void VANTOR_FOR_EACH_TYPE(VANTOR_LIST_TYPE)>::Types;
#undef VANTOR_LIST_TYPE

/// Notes which operations were called, with which values.
class RecordingVisitor : public Visitors::Visitor {
 public:
  struct Call {
    std::string operation;
    const SimpleDataType* value;
  };

#define VANTOR_RECORD_VISIT(Type, number, octets) \
  void visit(const Type& value) override { calls.push_back({#Type, &value}); }
  VANTOR_FOR_EACH_TYPE(VANTOR_RECORD_VISIT)
#undef VANTOR_RECORD_VISIT

  std::vector<Call> calls;
};

template <class T>
class AllTypesTest : public ::testing::Test {};
TYPED_TEST_SUITE(AllTypesTest, AllTypes, TypeNames);

TYPED_TEST(AllTypesTest, WritesTheOctetsOfTheSample) {
  EXPECT_EQ(toBytes(Sample<TypeParam>::value()), Sample<TypeParam>::bytes());
}

TYPED_TEST(AllTypesTest, ReadsWhatItWrote) {
  const Bytes bytes = Sample<TypeParam>::bytes();
  const auto value = Factories::fromBytes(TypeParam::kIdentifier, bytes.data(), bytes.size());
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->identifier(), TypeParam::kIdentifier);
  EXPECT_TRUE(value->equals(Sample<TypeParam>::value()));
  EXPECT_EQ(toBytes(*value), bytes);
}

TYPED_TEST(AllTypesTest, HasTheSizeOfItsOctets) {
  const TypeParam value = Sample<TypeParam>::value();
  const uint32 listed = Identifiers::typeSize(TypeParam::kIdentifier);
  EXPECT_EQ(value.encodedSize(), Sample<TypeParam>::bytes().size());
  EXPECT_TRUE(listed == 0 || listed == value.encodedSize()) << listed;
  EXPECT_EQ(listed, TypeTraits<TypeParam>::kSize);
}

TYPED_TEST(AllTypesTest, DefaultValueWritesWhatItsTypeReads) {
  const TypeParam value{};
  ASSERT_NE(value.rawBuffer(), nullptr);
  EXPECT_EQ(fromBytes<TypeParam>(toBytes(value)), value);
}

TYPED_TEST(AllTypesTest, EqualsAnotherObjectOfItsValueOnly) {
  const TypeParam value = Sample<TypeParam>::value();
  const TypeParam same = Sample<TypeParam>::value();
  const TypeParam other = Sample<TypeParam>::other();
  EXPECT_TRUE(value == same);
  EXPECT_FALSE(value != same);
  EXPECT_FALSE(value == other);
  EXPECT_TRUE(value != other);
  EXPECT_TRUE(value.equals(same));
  EXPECT_FALSE(value.equals(other));
}

TYPED_TEST(AllTypesTest, DiffersFromTheSameOctetsAsAnotherType) {
  const Bytes bytes = Sample<TypeParam>::bytes();
  const DataStream stream{bytes};
  const DataValue data{bytes};
  const TypeParam value = Sample<TypeParam>::value();
  EXPECT_EQ(value.equals(stream), TypeParam::kIdentifier == Identifiers::kDataStream);
  EXPECT_EQ(value.equals(data), TypeParam::kIdentifier == Identifiers::kDataValue);
}

TYPED_TEST(AllTypesTest, CloneIsEqualAndStandsAlone) {
  auto value = auto_ptr<TypeParam>(new TypeParam(Sample<TypeParam>::value()));
  const auto clone = value->clone();
  EXPECT_NE(clone->rawBuffer(), value->rawBuffer());
  value.reset();
  EXPECT_TRUE(clone->equals(Sample<TypeParam>::value()));
  EXPECT_EQ(toBytes(*clone), Sample<TypeParam>::bytes());
}

TYPED_TEST(AllTypesTest, TakesAnAssignedValue) {
  TypeParam value = Sample<TypeParam>::other();
  value = Sample<TypeParam>::value();
  EXPECT_EQ(value, Sample<TypeParam>::value());
  EXPECT_EQ(toBytes(value), Sample<TypeParam>::bytes());
}

TYPED_TEST(AllTypesTest, CallsTheOperationOfItsTypeOnce) {
  const TypeParam value = Sample<TypeParam>::value();
  RecordingVisitor visitor;
  static_cast<const SimpleDataType&>(value).accept(visitor);
  ASSERT_EQ(visitor.calls.size(), 1u);
  EXPECT_EQ(visitor.calls[0].operation, Identifiers::name(TypeParam::kIdentifier));
  EXPECT_EQ(visitor.calls[0].value, &value);
}

TYPED_TEST(AllTypesTest, RefusesOctetsThatAreNoValue) {
  for (const Bytes& bytes : Sample<TypeParam>::undecodable()) {
    EXPECT_FALSE(decodes<TypeParam>(bytes)) << ::testing::PrintToString(bytes);
  }
}

TYPED_TEST(AllTypesTest, RefusesAnotherCountOfOctetsThanAFixedSize) {
  Bytes bytes = Sample<TypeParam>::bytes();
  const bool isFixed = TypeTraits<TypeParam>::kSize != 0;
  bytes.push_back(0);
  EXPECT_TRUE(!isFixed || !decodes<TypeParam>(bytes));
  bytes.resize(bytes.size() - 2);
  EXPECT_TRUE(!isFixed || !decodes<TypeParam>(bytes));
  EXPECT_TRUE(!isFixed || !decodes<TypeParam>({}));
}

TYPED_TEST(AllTypesTest, WritesWhatItReadWhateverTheOctets) {
  std::mt19937 random(TypeParam::kIdentifier);
  int decoded = 0;
  for (int round = 0; round < 2000; ++round) {
    const std::size_t fixed = TypeTraits<TypeParam>::kSize;
    Bytes bytes(fixed != 0 ? fixed : random() % 24);
    // Mostly small octets, so that texts, counts and Booleans have a chance to be well-formed.
    for (uint8& octet : bytes) octet = static_cast<uint8>(random() % 8 == 0 ? random() : random() % 3);
    const auto value = Factories::fromBytes(TypeParam::kIdentifier, bytes.data(), bytes.size());
    if (value == nullptr) continue;
    ++decoded;
    ASSERT_EQ(toBytes(*value), bytes);
    ASSERT_TRUE(value->equals(*value->clone()));
  }
  EXPECT_GT(decoded, 0);
}

TEST(TypeList, GivesTheIdentifiersTheirNumbers) {
  const std::map<std::string, uint32> numbers = {{"Boolean", 2},
                                                 {"DataStream", 3},
                                                 {"Int16", 5},
                                                 {"Int32", 6},
                                                 {"Int64", 7},
                                                 {"Int8", 8},
                                                 {"ISO7String", 9},
                                                 {"Length", 11},
                                                 {"LocalTag", 12},
                                                 {"Position", 13},
                                                 {"ProductVersion", 14},
                                                 {"Rational", 15},
                                                 {"Timestamp", 16},
                                                 {"UInt16", 17},
                                                 {"UInt32", 18},
                                                 {"UInt64", 19},
                                                 {"UInt8", 20},
                                                 {"UMID32", 21},
                                                 {"UMID64", 22},
                                                 {"UniversalLabel", 23},
                                                 {"Unknown", 24},
                                                 {"UTF16", 25},
                                                 {"UTF16String", 26},
                                                 {"UUID", 27},
                                                 {"VersionType", 28},
                                                 {"StrongReference", 29},
                                                 {"WeakReference", 30},
                                                 {"Array", 31},
                                                 {"Batch", 32},
                                                 {"Orientation", 33},
                                                 {"RGBALayout", 34},
                                                 {"SignalStandard", 35},
                                                 {"DataValue", 36},
                                                 {"J2KPictureComponent", 37},
                                                 {"J2KCodingStyleDefault", 38},
                                                 {"J2KQuantisationDefault", 39},
                                                 {"ISO8String", 40},
                                                 {"AUID", 41},
                                                 {"UTF8String", 42}};
  std::map<std::string, uint32> listed;
#define VANTOR_NOTE_TYPE(Type, number, octets) listed[Identifiers::name(Identifiers::k##Type)] = Identifiers::k##Type;
  VANTOR_FOR_EACH_TYPE(VANTOR_NOTE_TYPE)
#undef VANTOR_NOTE_TYPE
  EXPECT_EQ(listed, numbers);
}

TEST(TypeList, KnowsNothingOfOtherNumbers) {
  const Bytes bytes(16);
  for (const uint32 number : {0u, 1u, 4u, 10u, 43u, 0xffffffffu}) {
    const auto type = static_cast<Identifiers::Identifier>(number);
    EXPECT_EQ(Identifiers::typeSize(type), 0u) << number;
    EXPECT_STREQ(Identifiers::name(type), "") << number;
    EXPECT_EQ(Factories::fromBytes(type, bytes.data(), bytes.size()), nullptr) << number;
  }
}

TEST(NullVisitor, LetsADerivedClassTreatOneType) {
  struct FindsLabels : Visitors::NullVisitor {
    using NullVisitor::visit;
    void visit(const UniversalLabel&) override { ++found; }
    int found = 0;
  };
  FindsLabels visitor;
  UniversalLabel().accept(visitor);
  UUID().accept(visitor);
  Array().accept(visitor);
  EXPECT_EQ(visitor.found, 1);
}

}  // namespace
}  // namespace Vantor::Types
