#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/Core/Types/Samples.h"

namespace Vantor::Types {
namespace {

/// What the tests need of a type, compiled once for each; the tests are compiled once for all.
struct TypeCase {
  Identifiers::Identifier type;
  uint32 fixedSize;
  Bytes (*bytes)();
  std::vector<Bytes> (*undecodable)();
  auto_ptr<SimpleDataType> (*value)();
  auto_ptr<SimpleDataType> (*other)();
  auto_ptr<SimpleDataType> (*initial)();
  /// `other()`, to which `value()` was assigned.
  auto_ptr<SimpleDataType> (*assigned)();
  /// By the type's own operators.
  bool (*isEqual)(const SimpleDataType& left, const SimpleDataType& right);
  bool (*isUnequal)(const SimpleDataType& left, const SimpleDataType& right);
};

template <class T>
auto_ptr<SimpleDataType> onHeap(T value) {
  return auto_ptr<SimpleDataType>(new T(value));
}

template <class T>
TypeCase caseOf() {
  return {T::kIdentifier,
          TypeTraits<T>::kSize,
          Sample<T>::bytes,
          Sample<T>::undecodable,
          [] { return onHeap(Sample<T>::value()); },
          [] { return onHeap(Sample<T>::other()); },
          [] { return onHeap(T{}); },
          [] {
            T value = Sample<T>::other();
            value = Sample<T>::value();
            return onHeap(value);
          },
          [](const SimpleDataType& left, const SimpleDataType& right) {
            return dynamic_cast<const T&>(left) == dynamic_cast<const T&>(right);
          },
          [](const SimpleDataType& left, const SimpleDataType& right) {
            return dynamic_cast<const T&>(left) != dynamic_cast<const T&>(right);
          }};
}

#define VANTOR_LIST_CASE(Type, number, octets) caseOf<Type>(),
std::vector<TypeCase> allTypes() { return {VANTOR_FOR_EACH_TYPE(VANTOR_LIST_CASE)}; }
#undef VANTOR_LIST_CASE

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

class AllTypesTest : public ::testing::TestWithParam<TypeCase> {
 protected:
  auto_ptr<SimpleDataType> read(const Bytes& bytes) const {
    return Factories::fromBytes(type.type, bytes.data(), bytes.size());
  }
  bool decodes(const Bytes& bytes) const { return read(bytes) != nullptr; }

  const TypeCase& type = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Types, AllTypesTest, ::testing::ValuesIn(allTypes()),
                         [](const auto& each) { return std::string(Identifiers::name(each.param.type)); });

TEST_P(AllTypesTest, WritesTheOctetsOfTheSample) { EXPECT_EQ(toBytes(*type.value()), type.bytes()); }

TEST_P(AllTypesTest, ReadsWhatItWrote) {
  const Bytes bytes = type.bytes();
  const auto value = read(bytes);
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->identifier(), type.type);
  EXPECT_TRUE(value->equals(*type.value()));
  EXPECT_EQ(toBytes(*value), bytes);
}

TEST_P(AllTypesTest, HasTheSizeOfItsOctets) {
  const auto value = type.value();
  const uint32 listed = Identifiers::typeSize(type.type);
  EXPECT_EQ(value->encodedSize(), type.bytes().size());
  EXPECT_TRUE(listed == 0 || listed == value->encodedSize()) << listed;
  EXPECT_EQ(listed, type.fixedSize);
}

TEST_P(AllTypesTest, DefaultValueWritesWhatItsTypeReads) {
  const auto value = type.initial();
  ASSERT_NE(value->rawBuffer(), nullptr);
  const auto again = read(toBytes(*value));
  ASSERT_NE(again, nullptr);
  EXPECT_TRUE(type.isEqual(*again, *value));
}

TEST_P(AllTypesTest, EqualsAnotherObjectOfItsValueOnly) {
  const auto value = type.value(), same = type.value(), other = type.other();
  EXPECT_TRUE(type.isEqual(*value, *same));
  EXPECT_FALSE(type.isUnequal(*value, *same));
  EXPECT_FALSE(type.isEqual(*value, *other));
  EXPECT_TRUE(type.isUnequal(*value, *other));
  EXPECT_TRUE(value->equals(*same));
  EXPECT_FALSE(value->equals(*other));
}

TEST_P(AllTypesTest, DiffersFromTheSameOctetsAsAnotherType) {
  const Bytes bytes = type.bytes();
  const DataStream stream{bytes};
  const DataValue data{bytes};
  const auto value = type.value();
  EXPECT_EQ(value->equals(stream), type.type == Identifiers::kDataStream);
  EXPECT_EQ(value->equals(data), type.type == Identifiers::kDataValue);
}

TEST_P(AllTypesTest, CloneIsEqualAndStandsAlone) {
  auto value = type.value();
  const auto clone = value->clone();
  EXPECT_NE(clone->rawBuffer(), value->rawBuffer());
  value.reset();
  EXPECT_TRUE(clone->equals(*type.value()));
  EXPECT_EQ(toBytes(*clone), type.bytes());
}

TEST_P(AllTypesTest, TakesAnAssignedValue) {
  const auto value = type.assigned();
  EXPECT_TRUE(type.isEqual(*value, *type.value()));
  EXPECT_EQ(toBytes(*value), type.bytes());
}

TEST_P(AllTypesTest, CallsTheOperationOfItsTypeOnce) {
  const auto value = type.value();
  RecordingVisitor visitor;
  value->accept(visitor);
  ASSERT_EQ(visitor.calls.size(), 1u);
  EXPECT_EQ(visitor.calls[0].operation, Identifiers::name(type.type));
  EXPECT_EQ(visitor.calls[0].value, value.get());
}

TEST_P(AllTypesTest, RefusesOctetsThatAreNoValue) {
  for (const Bytes& bytes : type.undecodable()) {
    EXPECT_FALSE(decodes(bytes)) << ::testing::PrintToString(bytes);
  }
}

TEST_P(AllTypesTest, RefusesAnotherCountOfOctetsThanAFixedSize) {
  Bytes bytes = type.bytes();
  const bool isFixed = type.fixedSize != 0;
  bytes.push_back(0);
  EXPECT_TRUE(!isFixed || !decodes(bytes));
  bytes.resize(bytes.size() - 2);
  EXPECT_TRUE(!isFixed || !decodes(bytes));
  EXPECT_TRUE(!isFixed || !decodes({}));
}

TEST_P(AllTypesTest, WritesWhatItReadWhateverTheOctets) {
  std::mt19937 random(type.type);
  int decoded = 0;
  for (int round = 0; round < 2000; ++round) {
    Bytes bytes(type.fixedSize != 0 ? type.fixedSize : random() % 24);
    // Mostly small octets, so that texts, counts and Booleans have a chance to be well-formed.
    for (uint8& octet : bytes) octet = static_cast<uint8>(random() % 8 == 0 ? random() : random() % 3);
    const auto value = read(bytes);
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
