#include "JSON/PropertyValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Types.h"
#include "JSON/Refusal.h"
#include "JSON/Text.h"

namespace Vantor::JSON {
namespace {

using testing::HasSubstr;

/// A property of a set of the built-in dictionary.
class Property {
 public:
  Property(const char* set, const char* property)
      : set_(metadata_.createMetadataSet(set)),
        definition_(*set_.definition()->findAttribute(std::string_view(property))->metaElement()) {}

  PropertyPlace get() const { return {&set_, &definition_}; }
  MetadataSet& set() { return set_; }

  /// The JSON of a value of these octets.
  std::string json(const char* digits) const {
    const auto octets = *Platform::bytesFromHex(Platform::stringToWstring(digits));
    const auto value = decodeValue(definition_, octets.data(), octets.size());
    return value == nullptr ? "no value" : toLine(valueOf(get(), value.get()));
  }

  /// The octets of the value that JSON is, or why it is none.
  std::string octets(const std::string& json) const {
    const auto parsed = fromText("{\"v\": " + json + "}");
    Diagnostics diagnostics;
    try {
      const auto value = valueFrom(get(), *parsed.find("v"));
      if (value == nullptr) return "none";
      requireAgreement(get(), *parsed.find("v"), *value, diagnostics);
      return Platform::hexText<std::string>(value->rawBuffer(), value->encodedSize());
    } catch (const Refusal& refusal) {
      return refusal.place().pointer + " " + refusal.what();
    } catch (const Exceptions::InvalidFormat& error) {
      return error.message();
    }
  }

 private:
  PartitionMetadata metadata_{builtInDictionary()};
  MetadataSet& set_;
  const MetaMetadata::MetaElement& definition_;
};

void expectBoth(const Property& place, const char* octets, const std::string& json) {
  EXPECT_EQ(place.json(octets), json);
  EXPECT_EQ(place.octets(json), octets);
}

TEST(JSONValue, OfAnIntegerIsANumber) {
  const Property trackID("TimelineTrack", "TrackID");
  expectBoth(trackID, "00000007", "7");
  EXPECT_EQ(trackID.octets("\"7\""), "00000007");
  EXPECT_THAT(trackID.octets("4294967296"), HasSubstr("is not a whole number from 0 to 4294967295"));
  EXPECT_THAT(trackID.octets("-1"), HasSubstr("is not a whole number from 0 to 4294967295"));
  EXPECT_THAT(trackID.octets("7.0"), HasSubstr("it is no whole number"));
  EXPECT_THAT(trackID.octets("true"), HasSubstr("it is a Boolean, not a text"));
  EXPECT_THAT(trackID.octets("{}"), HasSubstr("the member \"value\" is missing"));
  EXPECT_THAT(trackID.octets(R"({"value": 7, "unit": 1})"), HasSubstr("there is no member \"unit\" here"));
}

TEST(JSONValue, OfAnIntegerBeyondTheRangeOfDoublesIsText) {
  const Property origin("TimelineTrack", "Origin");
  expectBoth(origin, "0020000000000000", "9007199254740992");
  expectBoth(origin, "0020000000000001", "\"9007199254740993\"");
  expectBoth(origin, "8000000000000000", "\"-9223372036854775808\"");
  EXPECT_EQ(origin.octets("9007199254740993"), "0020000000000001");
}

TEST(JSONValue, OfAnEnumerationHasTheName) {
  const Property layout("CDCIDescriptor", "FrameLayout");
  expectBoth(layout, "01", R"({"value":1,"text":"SeparateFields"})");
  expectBoth(layout, "63", R"({"value":99,"text":"99"})");
  EXPECT_EQ(layout.octets("1"), "01");
  EXPECT_EQ(layout.octets("\"SeparateFields\""), "01");
  EXPECT_EQ(layout.octets(R"({"value": 1, "text": "OneField"})"),
            "/text \"text\" has 'OneField', but the value is SeparateFields; correct one, or leave \"text\" out");
}

TEST(JSONValue, OfATimecodeHasItsText) {
  Property start("Timecode", "StartTimecode");
  start.set().set("FramesPerSecond", 25);
  start.set().set("DropFrame", false);
  expectBoth(start, "00000000000DBBA0", R"({"value":900000,"text":"10:00:00:00"})");
  EXPECT_EQ(start.octets("\"10:00:00:00\""), "00000000000DBBA0");
  EXPECT_THAT(start.octets(R"({"value": 900000, "text": "10:00:00:01"})"), HasSubstr("but the value is 10:00:00:00"));
}

TEST(JSONValue, OfABooleanIsOne) {
  const Property drop("Timecode", "DropFrame");
  expectBoth(drop, "01", "true");
  expectBoth(drop, "00", "false");
  EXPECT_EQ(drop.octets("\"yes\""), "01");
  EXPECT_THAT(drop.octets("1"), HasSubstr("it is a number, not a text"));
}

TEST(JSONValue, OfARationalHasNumeratorAndDenominator) {
  const Property rate("TimelineTrack", "EditRate");
  expectBoth(rate, "00007530000003E9",
             R"({"numerator":30000,"denominator":1001,"value":29.97002997002997,"text":"30000/1001"})");
  expectBoth(rate, "0000000100000000", R"({"numerator":1,"denominator":0,"text":"1/0"})");
  EXPECT_EQ(rate.octets("\"29.97\""), "00007530000003E9");
  EXPECT_EQ(rate.octets(R"({"numerator": 25, "denominator": 1, "value": 25})"), "0000001900000001");
  EXPECT_THAT(rate.octets(R"({"numerator": 25, "denominator": 1, "value": 24})"),
              HasSubstr("/value \"value\" has '24"));
  EXPECT_THAT(rate.octets(R"({"numerator": 25, "denominator": 1, "text": "24"})"),
              HasSubstr("/text \"text\" has '24'"));
  EXPECT_THAT(rate.octets(R"({"numerator": 25})"), HasSubstr("\"denominator\" is missing"));
  EXPECT_THAT(rate.octets(R"({"numerator": 2147483648, "denominator": 1})"),
              HasSubstr("/numerator it is no whole number from -2147483648 to 2147483647"));
}

TEST(JSONValue, OfAVersionHasItsNumbers) {
  expectBoth(Property("Preface", "FormatVersion"), "0103", R"({"value":259,"text":"1.3"})");
  expectBoth(Property("Identification", "ToolkitVersion"), "00010002000300040001",
             R"({"major":1,"minor":2,"patch":3,"build":4,"release":1,"text":"1.2.3.4 release"})");
}

TEST(JSONValue, OfATimestampIsText) {
  const Property modified("Preface", "FileLastModified");
  expectBoth(modified, "07E8020903040502", "\"2024-02-09T03:04:05.008\"");
  expectBoth(modified, "07E80209030405FF", "\"0x07E80209030405FF\"");
  EXPECT_THAT(modified.octets("\"yesterday\""), HasSubstr("is not a date and time"));
}

TEST(JSONValue, OfATextIsOneWithoutItsFinalNULs) {
  const Property name("MaterialPackage", "PackageName");
  EXPECT_EQ(name.json("0041006C00E90000"), "\"Alé\"");
  expectBoth(name, "", "\"\"");
  expectBoth(name, "00220041000A0022", R"("\"A\n\"")");
  expectBoth(name, "D83DDE00", "\"😀\"");
  EXPECT_EQ(name.json("D83D0041"), "no value");  // an unpaired surrogate: the property is unknown then
  EXPECT_THAT(name.octets(R"("a\u0000b")"), HasSubstr("NUL"));
  EXPECT_THAT(name.octets("1"), HasSubstr("it is a number, not a text"));
}

TEST(JSONValue, OfALabelHasItsSymbol) {
  const Property pattern("Preface", "OperationalPattern");
  const std::string label = "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00";
  expectBoth(pattern, "060E2B34040101010D01020101010900",
             R"({"value":")" + label + R"(","label":"MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal"})");
  expectBoth(pattern, "060E2B34040101010D010201010109F0",
             R"({"value":"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.F0"})");
  EXPECT_EQ(pattern.octets('"' + label + '"'), "060E2B34040101010D01020101010900");
  EXPECT_EQ(pattern.octets("\"MXFOP1aSingleItemSinglePackageMultiTrackStreamInternal\""),
            "060E2B34040101010D01020101010900");
}

TEST(JSONValue, CountsWhereTheDictionaryDoesNotKnowTheLabel) {
  const Property pattern("Preface", "OperationalPattern");
  const std::string value = R"({"value": "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00", "label": ")";
  EXPECT_EQ(pattern.octets(value + "AcmePattern\"}"), "060E2B34040101010D01020101010900");
  EXPECT_THAT(pattern.octets(value + "MXFOPAtom1Track1SourceClip\"}"), HasSubstr("/label \"label\" has 'MXFOPAtom"));
}

TEST(JSONValue, OfAReferenceIsTheInstanceUIDOfItsTarget) {
  const Property sequence("TimelineTrack", "TrackSegment");
  expectBoth(sequence, "00112233445566778899AABBCCDDEEFF", "\"00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF\"");
}

TEST(JSONValue, OfOctetsHasDigits) {
  const Property layout("RGBADescriptor", "PixelLayout");
  const std::string octets = "52084708420800000000000000000000";
  EXPECT_THAT(layout.json(octets.c_str()), HasSubstr(R"("octets":")" + octets + '"'));
  EXPECT_EQ(layout.octets(layout.json(octets.c_str())), octets);
  EXPECT_EQ(layout.octets(R"({"octets": "00"})"), " its 1 octets are no RGBALayout");
  EXPECT_EQ(layout.octets(R"({"octets": "0"})"), " \"octets\" are hexadecimal digits, two to an octet");
}

TEST(JSONValue, OfACollectionIsAnArray) {
  const Property lines("CDCIDescriptor", "VideoLineMap");
  expectBoth(lines, "00000002000000040000001500000248", "[21,584]");
  expectBoth(lines, "0000000000000004", "[]");
  EXPECT_EQ(lines.json("0000000000000000"), "[]");  // the size of no items is left out
  EXPECT_THAT(lines.octets("[21, \"x\"]"), HasSubstr("/1 "));
  EXPECT_THAT(lines.octets("21"), HasSubstr("it is a number, not an array"));
  EXPECT_EQ(lines.octets(R"({"octets": "0000000000000004"})"), "0000000000000004");
  EXPECT_EQ(lines.octets(R"([{"octets": "00000015"}])"), "000000010000000400000015");
}

TEST(JSONValue, OfNothingIsNull) {
  const Property lines("CDCIDescriptor", "VideoLineMap");
  EXPECT_EQ(toLine(valueOf(lines.get(), nullptr)), "null");
  EXPECT_EQ(lines.octets("null"), "none");
}

}  // namespace
}  // namespace Vantor::JSON
