#include <gtest/gtest.h>

#include "Core/Types/Types.h"
#include "tests/XMLBuilder/GoldenValues.h"
#include "tests/XMLBuilder/ImportSupport.h"

namespace Vantor::XML2Partition {
namespace {

using namespace Types::Identifiers;
using MetaMetadata::arrayOf;
using MetaMetadata::DataType;
using Types::SimpleDataType;
using XMLBuilder::exported;
using XMLBuilder::Golden;
using XMLBuilder::kSt434Elements;

using OwnedValue = auto_ptr<SimpleDataType>;

constexpr XMLName kLegacy{u"p", u"urn:p"};
constexpr XMLName kSt434{u"st434", kSt434Elements};

/// What a value comes back as from the document that it was exported to; null for no value.
template <class T>
struct ComesBack {
  static OwnedValue as(const SimpleDataType& value) { return value.clone(); }
};

/// An empty text gives an element without text, which is read as no value.
struct UnlessEmpty {
  static OwnedValue as(const SimpleDataType& value) { return value.encodedSize() == 0 ? nullptr : value.clone(); }
};
template <>
struct ComesBack<Types::UTF16String> : UnlessEmpty {};
template <>
struct ComesBack<Types::UTF8String> : UnlessEmpty {};
template <>
struct ComesBack<Types::ISO7String> : UnlessEmpty {};
template <>
struct ComesBack<Types::ISO8String> : UnlessEmpty {};
template <>
struct ComesBack<Types::DataStream> : UnlessEmpty {};
template <>
struct ComesBack<Types::Unknown> : UnlessEmpty {};
template <>
struct ComesBack<Types::UTF16> {
  static OwnedValue as(const SimpleDataType& value) {
    return static_cast<const Types::UTF16&>(value).value() == 0 ? nullptr : value.clone();
  }
};

/// Types that are written, but that no reader knows.
struct AsNothing {
  static OwnedValue as(const SimpleDataType&) { return nullptr; }
};
template <>
struct ComesBack<Types::LocalTag> : AsNothing {};
template <>
struct ComesBack<Types::DataValue> : AsNothing {};

/// Written in units of four milliseconds, read in milliseconds.
template <>
struct ComesBack<Types::Timestamp> {
  static OwnedValue as(const SimpleDataType& value) {
    const auto& time = static_cast<const Types::Timestamp&>(value);
    return std::make_unique<Types::Timestamp>(time.year(), time.month(), time.day(), time.hour(), time.minute(),
                                              time.second(), static_cast<uint16>(time.milliSecond() / 4));
  }
};

/// Five components are written.
template <>
struct ComesBack<Types::RGBALayout> {
  static OwnedValue as(const SimpleDataType& value) {
    auto layout = std::make_unique<Types::RGBALayout>();
    for (uint32 i = 0; i < 5; ++i) layout->set(i, static_cast<const Types::RGBALayout&>(value).get(i));
    return layout;
  }
};

TestPartition withProperty(DataType type, const XMLName& name) {
  TestDictionary dictionary;
  return TestPartition(dictionary.property("Prop", type, name).set("Preface", {"Prop"}));
}

/// The property "Prop" of a partition that was exported and imported again.
class Reimported {
 public:
  Reimported(DataType type, const SimpleDataType& value, const XMLName& name, Entry entry)
      : partition_(withProperty(type, name)) {
    const auto original = withProperty(type, name);
    original.add("Preface", 1).value("Prop", value);
    importRaw(exported(original), *partition_, entry);
  }
  Reimported(DataType type, const Types::Collection& items, const XMLName& name, Entry entry)
      : partition_(withProperty(type, name)) {
    const auto original = withProperty(type, name);
    auto set = original.add("Preface", 1);
    for (uint32 i = 0; i < items.size(); ++i) set.item("Prop", items.at(i));
    importRaw(exported(original), *partition_, entry);
  }

  const SimpleDataType* value() const { return valueOf(*partition_->sets().front(), "Prop"); }

 private:
  TestPartition partition_;
};

::testing::AssertionResult cameBack(const SimpleDataType* actual, const OwnedValue& expected) {
  if (expected != nullptr) return holds(actual, *expected);
  if (actual == nullptr) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "a value instead of none";
}

template <class T>
void expectValues(Identifier type, const XMLName& name) {
  for (const auto& golden : Golden<T>::values()) {
    for (const auto entry : kEntries) {
      EXPECT_TRUE(cameBack(Reimported(type, *golden.value, name, entry).value(), ComesBack<T>::as(*golden.value)))
          << golden.legacy;
    }
  }
}

/// Items of one size: all golden values of a type that has a size, else twice each of those that are not empty.
template <class T>
std::vector<Types::Array> goldenArrays(Identifier type) {
  std::vector<Types::Array> arrays;
  if (typeSize(type) != 0) arrays.emplace_back(static_cast<int>(typeSize(type)));
  for (const auto& golden : Golden<T>::values()) {
    if (typeSize(type) == 0 && golden.value->encodedSize() == 0) continue;
    if (typeSize(type) == 0) arrays.emplace_back(0);
    for (int i = 0; i < 2; ++i) arrays.back().append(golden.value->clone());
  }
  return arrays;
}

/// An item without text is passed over, so that the others move up.
template <class T>
Types::Array expectedArray(const Types::Array& array) {
  Types::Array expected(static_cast<int>(array.itemSize()));
  for (uint32 i = 0; i < array.size(); ++i) expected.append(ComesBack<T>::as(array.at(i)));
  return expected;
}

template <class T>
void expectItems(Identifier type, const XMLName& name) {
  for (const auto& array : goldenArrays<T>(type)) {
    for (const auto entry : kEntries) {
      EXPECT_TRUE(holds(Reimported(arrayOf(type), array, name, entry).value(), expectedArray<T>(array)));
    }
  }
}

constexpr Identifier kMadeOfElements[] = {kRational, kTimestamp, kProductVersion, kRGBALayout};
constexpr Identifier kJpeg2000[] = {kJ2KPictureComponent, kJ2KCodingStyleDefault, kJ2KQuantisationDefault};
constexpr Identifier kReferences[] = {kStrongReference, kWeakReference};
constexpr Identifier kCollections[] = {kArray, kBatch};

template <std::size_t kCount>
bool isOneOf(const Identifier (&types)[kCount], Identifier type) {
  return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

template <class T>
Failure failureOf(Identifier type, const XMLName& name) {
  return XML2Partition::failureOf([&] { Reimported(type, *Golden<T>::values().front().value, name, Entry::kBuffer); });
}

/// A reference keeps its kind; no set has what it leads to.
void expectReference(Identifier type, const XMLName& name) {
  const auto original = withProperty(type, name);
  original.add("Preface", 1).refer("Prop", 7);
  for (const auto entry : kEntries) {
    const auto partition = withProperty(type, name);
    importRaw(exported(original), *partition, entry);
    const auto* value = valueOf(*partition->sets().front(), "Prop");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->identifier(), type);
    EXPECT_TRUE(partition->findByInstanceUID(dynamic_cast<const Types::Reference&>(*value).target()).empty());
  }
}

void expectCollection(Identifier type, const XMLName& name) {
  Types::Array numbers;
  for (const uint16 number : {uint16{3}, uint16{1}, uint16{65535}})
    numbers.append(std::make_unique<Types::UInt16>(number));
  for (const auto entry : kEntries) {
    const Reimported property(DataType(type, kUInt16), numbers, name, entry);
    ASSERT_NE(property.value(), nullptr);
    EXPECT_EQ(property.value()->identifier(), type);
    const auto& collection = dynamic_cast<const Types::Collection&>(*property.value());
    ASSERT_EQ(collection.size(), 3u);
    for (uint32 i = 0; i < 3; ++i) EXPECT_TRUE(holds(&collection.at(i), numbers.at(i)));
  }
}

/// JPEG 2000 values are written without the element around them that is looked for.
template <class T>
void expectComesBack(Identifier type) {
  if (isOneOf(kReferences, type)) return expectReference(type, kLegacy);
  if (isOneOf(kCollections, type)) return expectCollection(type, kLegacy);
  if (isOneOf(kJpeg2000, type)) {
    const std::map<Identifier, int> lines = {
        {kJ2KPictureComponent, 255}, {kJ2KCodingStyleDefault, 296}, {kJ2KQuantisationDefault, 337}};
    const std::string symbol = name(type);
    const std::string property = type == kJ2KPictureComponent ? "PictureComponentSizing" : symbol.substr(3);
    EXPECT_EQ(failureOf<T>(type, kLegacy), invalidFormat("domComponentElement != 0: No '" + symbol +
                                                             "' element from '" + property + "' in XML metadata",
                                                         lines.at(type)));
    return;
  }
  expectValues<T>(type, kLegacy);
  if (type != kDataValue) expectItems<T>(type, kLegacy);
}

/// Values that are made of elements are looked for in the legacy namespaces only, which the root does not declare then.
template <class T>
void expectComesBackFromSt434(Identifier type) {
  if (isOneOf(kReferences, type)) return expectReference(type, kSt434);
  if (isOneOf(kCollections, type)) return expectCollection(type, kSt434);
  if (isOneOf(kMadeOfElements, type)) {
    EXPECT_EQ(failureOf<T>(type, kSt434), pathFailure("No namespace for prefix 'types' [err:XPST0081] at :1:3"));
  } else if (isOneOf(kJpeg2000, type)) {
    EXPECT_EQ(failureOf<T>(type, kSt434), pathFailure("No namespace for prefix 's422mTypes' [err:XPST0081] at :1:3"));
  } else {
    expectValues<T>(type, kSt434);
    if (type != kDataValue) expectItems<T>(type, kSt434);
  }
}

#define VANTOR_TEST_TYPE(Type, number, octets)                                     \
  TEST(ValueRoundTrip, Type##ComesBack) { expectComesBack<Types::Type>(k##Type); } \
  TEST(ValueRoundTrip, Type##ComesBackFromTheNamespaceOfSt434) { expectComesBackFromSt434<Types::Type>(k##Type); }
VANTOR_FOR_EACH_TYPE(VANTOR_TEST_TYPE)
#undef VANTOR_TEST_TYPE

TEST(ValueRoundTrip, DataValuesOfACollectionAreRefused) {
  Types::Array array;
  array.append(std::make_unique<Types::DataValue>(Bytes{1}));
  EXPECT_EQ(XML2Partition::failureOf([&] { Reimported(arrayOf(kDataValue), array, kLegacy, Entry::kBuffer); }).line,
            970);
}

TEST(ValueRoundTrip, AnEmptyTextComesBackAsNoValue) {
  for (const auto entry : kEntries) {
    EXPECT_EQ(Reimported(kUTF16String, Types::UTF16String(), kLegacy, entry).value(), nullptr);
    EXPECT_EQ(Reimported(kISO7String, Types::ISO7String(), kLegacy, entry).value(), nullptr);
  }
}

TEST(ValueRoundTrip, ABlankTextComesBackFromAFileOnly) {
  const Types::UTF16String blank(u" \t");
  EXPECT_EQ(Reimported(kUTF16String, blank, kLegacy, Entry::kBuffer).value(), nullptr);
  EXPECT_EQ(Reimported(kUTF16String, blank, kLegacy, Entry::kString).value(), nullptr);
  EXPECT_TRUE(holds(Reimported(kUTF16String, blank, kLegacy, Entry::kFile).value(), blank));
}

TEST(ValueRoundTrip, TextsThatXmlCannotHoldComeBack) {
  for (const auto entry : kEntries) {
    for (const auto& text :
         {wstring(u"\x01\x1f\ufffe\uffff"), wstring(u"$#x1;"), wstring(u"a\r\nb\r"), wstring(u"]]>&<>\"'")}) {
      EXPECT_TRUE(
          holds(Reimported(kUTF16String, Types::UTF16String(text), kLegacy, entry).value(), Types::UTF16String(text)));
    }
    EXPECT_TRUE(holds(Reimported(kUTF16, Types::UTF16(0xd83d), kLegacy, entry).value(), Types::UTF16(0xd83d)));
  }
}

TEST(ValueRoundTrip, ABlankCodeUnitComesBackFromNothing) {
  EXPECT_EQ(Reimported(kUTF16, Types::UTF16(' '), kLegacy, Entry::kBuffer).value(), nullptr);
  EXPECT_TRUE(holds(Reimported(kUTF16, Types::UTF16(' '), kLegacy, Entry::kFile).value(), Types::UTF16(0)));
}

TEST(ValueRoundTrip, FinalNULsOfATextDoNotComeBack) {
  const Bytes padded = {'a', 'b', 0, 0};
  const auto value = Types::Factories::fromBytes(kISO7String, padded.data(), padded.size());
  const Reimported property(kISO7String, *value, kLegacy, Entry::kBuffer);
  EXPECT_TRUE(holds(property.value(), *value));
  EXPECT_EQ(property.value()->encodedSize(), 2u);
}

TEST(ValueRoundTrip, MillisecondsComeBackAsUnitsOfFour) {
  const Reimported property(kTimestamp, Types::Timestamp(2024, 2, 29, 1, 2, 3, 999), kLegacy, Entry::kBuffer);
  EXPECT_EQ(dynamic_cast<const Types::Timestamp&>(*property.value()).milliSecond(), 249);
}

TEST(ValueRoundTrip, ComponentsAfterTheFifthDoNotComeBack) {
  Types::RGBALayout layout;
  for (uint32 i = 0; i < 8; ++i) layout.set(i, {'A', 8});
  const Reimported property(kRGBALayout, layout, kLegacy, Entry::kBuffer);
  EXPECT_EQ(dynamic_cast<const Types::RGBALayout&>(*property.value()).get(4), (Types::RGBAComponent{'A', 8}));
  EXPECT_EQ(dynamic_cast<const Types::RGBALayout&>(*property.value()).get(5), Types::RGBAComponent());
}

/// A dictionary with one property in the namespace of ST 434 and one that makes the root declare the legacy prefixes.
TestDictionary& mixed(TestDictionary& dictionary, Identifier type) {
  dictionary.property("Prop", type, kSt434).property("Legacy", kRational);
  return dictionary.set("Preface", {"Legacy", "Prop"});
}

/// The property of ST 434 of a document whose root declares the legacy prefixes.
OwnedValue besideLegacy(Identifier type, const SimpleDataType& value) {
  TestDictionary dictionary;
  TestDictionary again;
  const TestPartition original(mixed(dictionary, type));
  original.add("Preface", 1).value("Prop", value).value("Legacy", Types::Rational(1, 2));
  const TestPartition partition(mixed(again, type));
  importRaw(exported(original), *partition);
  const auto* result = valueOf(*partition->sets().front(), "Prop");
  return result == nullptr ? nullptr : result->clone();
}

TEST(ValueRoundTrip, ValuesOfSt434AreNotFoundInTheLegacyNamespace) {
  EXPECT_TRUE(holds(besideLegacy(kRational, Types::Rational(1, 2)).get(), Types::Rational(0, 0)));
  const Types::ProductVersion version(1, 2, 3, 4, Types::ReleaseVersion::kBeta);
  EXPECT_TRUE(holds(besideLegacy(kProductVersion, version).get(), Types::ProductVersion()));
  Types::RGBALayout layout;
  layout.set(0, {'R', 10});
  EXPECT_TRUE(holds(besideLegacy(kRGBALayout, layout).get(), Types::RGBALayout()));
  EXPECT_EQ(XML2Partition::failureOf([] { besideLegacy(kTimestamp, Types::Timestamp(2024, 1, 2, 3, 4, 5, 6)); }),
            invalidFormat("!secondsValue.empty (): No 'Second' element in XML metadata", 374));
}

TEST(ValueRoundTrip, AStreamOfMoreThan65535BytesComesBack) {
  const Types::DataStream stream(Bytes(70000, 0x5a));
  for (const auto entry : kEntries) {
    EXPECT_TRUE(holds(Reimported(kDataStream, stream, kLegacy, entry).value(), stream));
  }
}

TEST(ValueRoundTrip, AnEmptyRequiredCollectionComesBackEmpty) {
  TestDictionary dictionary;
  dictionary.property("Numbers", arrayOf(kUInt32)).property("Texts", MetaMetadata::batchOf(kISO7String));
  dictionary.property("Strong", arrayOf(kStrongReference)).property("Weak", MetaMetadata::batchOf(kWeakReference));
  const auto built = dictionary.set("Preface", {{"Numbers", 0}, {"Texts", 0}, {"Strong", 0}, {"Weak", 0}}).build();
  const TestPartition original(built);
  original.add("Preface", 1).emptied("Numbers").emptied("Texts").emptied("Strong").emptied("Weak");
  const TestPartition partition(built);
  importRaw(exported(original), *partition);
  const std::pair<const char*, uint32> sizes[] = {{"Numbers", 4}, {"Texts", 0}, {"Strong", 16}, {"Weak", 16}};
  for (const auto& [symbol, itemSize] : sizes) {
    const auto* value = valueOf(*partition->sets().front(), symbol);
    ASSERT_NE(value, nullptr) << symbol;
    EXPECT_EQ(dynamic_cast<const Types::Collection&>(*value).size(), 0u) << symbol;
    EXPECT_EQ(dynamic_cast<const Types::Collection&>(*value).itemSize(), itemSize) << symbol;
  }
}

TEST(ValueRoundTrip, TextsPaddedToOneSizeAreRefusedWhenTheirTextsHaveSeveral) {
  const Bytes texts = {0, 0, 0, 2, 0, 0, 0, 2, 'a', 'b', 'c', 0};
  const auto array = Types::Factories::collectionFromBytes(kArray, kISO7String, texts.data(), texts.size());
  const auto failure = XML2Partition::failureOf(
      [&] { Reimported(arrayOf(kISO7String), static_cast<const Types::Array&>(*array), kLegacy, Entry::kBuffer); });
  EXPECT_EQ(failure.line, 970);
}

/// References of every kind to a leaf, to nothing, and by an identifier that no set has.
TestDictionary& references(TestDictionary& dictionary) {
  dictionary.property("Strong", kStrongReference).property("Weak", kWeakReference);
  dictionary.property("Strongs", arrayOf(kStrongReference)).property("Weaks", MetaMetadata::batchOf(kWeakReference));
  return dictionary.set("Preface", {"Strong", "Weak", "Strongs", "Weaks"}).set("Leaf");
}

TEST(ValueRoundTrip, ReferencesComeBackToTheSameSets) {
  TestDictionary dictionary;
  const auto built = references(dictionary).build();
  for (const auto flags : {XMLBuilder::kNested, XMLBuilder::kFlat}) {
    const TestPartition original(built);
    auto preface = original.add("Preface", 1).refer("Strong", 2).refer("Weak", 3);
    preface.refer("Strongs", 3).refer("Strongs", 4).refer("Weaks", 2).refer("Weaks", 9).refer("Weaks", 1);
    for (const uint32 number : {2, 3, 4}) original.add("Leaf", number);
    const auto before = exported(original, flags);
    for (const auto entry : kEntries) {
      const TestPartition partition(built);
      importRaw(before, *partition, entry);
      EXPECT_EQ(partition->sets().size(), 4u);
      EXPECT_XML(renumbered(exported(partition, flags)), renumbered(before));
    }
  }
}

TEST(ValueRoundTrip, AReferenceToNothingComesBackAsOneToAnIdentifierThatNoSetHas) {
  TestDictionary dictionary;
  const auto built = references(dictionary).build();
  const TestPartition original(built);
  original.add("Preface", 1).refer("Strong", 0).refer("Weak", 0);
  const TestPartition partition(built);
  importRaw(exported(original), *partition);
  auto& set = *partition->sets().front();
  const auto target = dynamic_cast<const Types::Reference&>(*valueOf(set, "Strong")).target();
  EXPECT_NE(target, uid(0));
  EXPECT_TRUE(partition->findByInstanceUID(target).empty());
  EXPECT_TRUE(holds(valueOf(set, "Weak"), Types::WeakReference(target)));
}

}  // namespace
}  // namespace Vantor::XML2Partition
