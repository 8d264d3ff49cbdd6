#include <gtest/gtest.h>

#include <map>
#include <string>
#include <unordered_set>
#include <vector>

#include "Core/Platform/Strings.h"
#include "tests/Core/Types/Samples.h"

namespace Vantor::Types {
namespace {

const Bytes kLabel = {0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x0d, 0x0d, 0x01, 0x03, 0x01, 0x02, 0x06, 0x03, 0xff};
const wstring kDottedLabel = u"06.0E.2B.34.04.01.01.0D.0D.01.03.01.02.06.03.FF";
const wstring kLabelUrn = u"urn:smpte:ul:060e2b34.0401010d.0d010301.020603ff";
const wstring kDottedSixteen = u"00.11.22.33.44.55.66.77.88.99.AA.BB.CC.DD.EE.FF";
const wstring kSixteenUrn = u"urn:uuid:00112233-4455-6677-8899-aabbccddeeff";

wstring lowerCase(wstring text) {
  for (char16_t& unit : text) unit = unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
  return text;
}

wstring upperCase(wstring text) {
  for (char16_t& unit : text) unit = unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  return text;
}

/// The text is read under either form, in either case, and from either kind of string.
template <class T>
void expectRead(const wstring& text, const Bytes& octets) {
  for (const wstring& spelling : {text, lowerCase(text), upperCase(text)}) {
    for (const auto form : {kDottedForm, kUrnForm}) {
      EXPECT_EQ(toBytes(T(spelling, form)), octets) << Platform::wstringToString(spelling);
      EXPECT_EQ(toBytes(T(Utf16(spelling), form)), octets) << Platform::wstringToString(spelling);
    }
  }
}

template <class T>
void expectForms(const Bytes& octets, const wstring& dotted, const wstring& urn) {
  const T value(octets.data());
  EXPECT_EQ(value.toString(kDottedForm), dotted);
  EXPECT_EQ(value.toString(), dotted);
  EXPECT_EQ(value.toString(kUrnForm), urn);
  expectRead<T>(dotted, octets);
  expectRead<T>(urn, octets);
}

template <class T, class... Form>
void expectRefused(const wstring& text, Form... form) {
  const std::string shown = Utils::wstringToString(text);
  try {
    const T value(text, form...);
    ADD_FAILURE() << "read '" << shown << "'";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_NE(error.message().find("'" + shown.substr(0, 200)), std::string::npos) << error.message();
  }
}

TEST(UniversalLabel, HasADottedFormAndAUrn) {
  expectForms<UniversalLabel>(kLabel, kDottedLabel, kLabelUrn);
  EXPECT_EQ(kDottedLabel.size(), 47u);
}

TEST(UUID, HasADottedFormAndAUrn) { expectForms<UUID>(kSixteen, kDottedSixteen, kSixteenUrn); }

TEST(AUID, HasTheUrnOfALabelWhenItBeginsAsOne) { expectForms<AUID>(kLabel, kDottedLabel, kLabelUrn); }

TEST(AUID, HasTheUrnOfAUUIDOtherwise) {
  expectForms<AUID>(kSixteen, kDottedSixteen, kSixteenUrn);
  Bytes nearly = kLabel;
  nearly[3] = 0x35;
  EXPECT_EQ(AUID(nearly.data()).toString(kUrnForm), u"urn:uuid:060e2b35-0401-010d-0d01-0301020603ff");
}

TEST(UMID32, HasADottedFormAndAUrn) {
  const wstring dotted =
      u"80.81.82.83.84.85.86.87.88.89.8A.8B.8C.8D.8E.8F.90.91.92.93.94.95.96.97.98.99.9A.9B.9C.9D.9E.9F";
  EXPECT_EQ(dotted.size(), 95u);
  expectForms<UMID32>(Bytes(kSixtyFour.begin(), kSixtyFour.begin() + 32), dotted,
                      u"urn:smpte:umid:80818283.84858687.88898a8b.8c8d8e8f.90919293.94959697.98999a9b.9c9d9e9f");
}

TEST(UMID64, HasADottedFormAndAUrn) {
  const wstring dotted =
      u"80.81.82.83.84.85.86.87.88.89.8A.8B.8C.8D.8E.8F.90.91.92.93.94.95.96.97.98.99.9A.9B.9C.9D.9E.9F."
      u"A0.A1.A2.A3.A4.A5.A6.A7.A8.A9.AA.AB.AC.AD.AE.AF.B0.B1.B2.B3.B4.B5.B6.B7.B8.B9.BA.BB.BC.BD.BE.BF";
  EXPECT_EQ(dotted.size(), 191u);
  expectForms<UMID64>(kSixtyFour, dotted,
                      u"urn:smpte:umid:80818283.84858687.88898a8b.8c8d8e8f.90919293.94959697.98999a9b.9c9d9e9f."
                      u"a0a1a2a3.a4a5a6a7.a8a9aaab.acadaeaf.b0b1b2b3.b4b5b6b7.b8b9babb.bcbdbebf");
}

TEST(LocalTag, HasOneFormAndReadsTwo) {
  const LocalTag tag(0x3c0a);
  EXPECT_EQ(tag.toString(kDottedForm), u"3C.0A");
  EXPECT_EQ(tag.toString(kUrnForm), u"3C.0A");
  expectRead<LocalTag>(u"3C.0A", {0x3c, 0x0a});
  expectRead<LocalTag>(u"3C0A", {0x3c, 0x0a});
}

TEST(LocalTag, IsStaticBelow8000) {
  EXPECT_TRUE(LocalTag(0).isStaticLocalTag());
  EXPECT_TRUE(LocalTag(0x7fff).isStaticLocalTag());
  EXPECT_FALSE(LocalTag(0x8000).isStaticLocalTag());
  EXPECT_FALSE(LocalTag(uint16{0xffff}).isStaticLocalTag());
  EXPECT_EQ(LocalTag(Bytes{0x80, 0x01}.data()).value(), 0x8001);
}

template <class T>
class IdentifierTest : public ::testing::Test {};
using IdentifierTypes = ::testing::Types<UniversalLabel, UUID, AUID, UMID32, UMID64, LocalTag>;
TYPED_TEST_SUITE(IdentifierTest, IdentifierTypes, TypeNames);

TYPED_TEST(IdentifierTest, RefusesMalformedTexts) {
  const wstring dotted = Sample<TypeParam>::value().toString(kDottedForm);
  wstring noHexadecimal = dotted;
  noHexadecimal[1] = u'G';
  wstring otherSeparator = dotted;
  otherSeparator[2] = u'-';
  wstring wide = dotted;
  wide[0] = u'\uff10';  // a digit of another script
  const std::vector<wstring> malformed = {u"",
                                          u".",
                                          u"urn:",
                                          u"urn:uuid:",
                                          u"urn:smpte:ul:",
                                          u"urn:smpte:umid:",
                                          noHexadecimal,
                                          otherSeparator,
                                          wide,
                                          dotted.substr(1),
                                          dotted.substr(0, dotted.size() - 1),
                                          dotted.substr(3),
                                          dotted + u".00",
                                          dotted + u".",
                                          dotted + u"0",
                                          u" " + dotted,
                                          dotted + u" ",
                                          u"0x" + dotted,
                                          dotted + wstring(1, u'\0')};
  for (const wstring& text : malformed) {
    expectRefused<TypeParam>(text, kDottedForm);
    expectRefused<TypeParam>(text, kUrnForm);
  }
}

TYPED_TEST(IdentifierTest, RefusesAMalformedUrn) {
  const wstring urn = Sample<TypeParam>::value().toString(kUrnForm);
  wstring otherDigit = urn;
  otherDigit.back() = u'g';
  for (const wstring& text : {u"x" + urn, urn + u"0", urn.substr(0, urn.size() - 1), otherDigit}) {
    expectRefused<TypeParam>(text, kUrnForm);
  }
}

TYPED_TEST(IdentifierTest, NamesTheTypeOfAMalformedText) {
  try {
    const TypeParam value(wstring(u"nonsense"), kDottedForm);
    FAIL() << "was read";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_NE(error.message().find("'nonsense'"), std::string::npos) << error.message();
    EXPECT_NE(error.message().find(Identifiers::name(TypeParam::kIdentifier)), std::string::npos) << error.message();
  }
}

TYPED_TEST(IdentifierTest, TakesANullPointerForAnEmptyText) {
  EXPECT_THROW(TypeParam(static_cast<const uint16*>(nullptr), kDottedForm), Exceptions::InvalidFormat);
}

TYPED_TEST(IdentifierTest, OrdersOctetByOctetFromTheFirst) {
  Bytes low = toBytes(TypeParam());
  Bytes high = low;
  low.back() = 0xff;
  high.front() = 0x01;
  EXPECT_TRUE(TypeParam(low.data()) < TypeParam(high.data()));
  EXPECT_FALSE(TypeParam(high.data()) < TypeParam(low.data()));
  EXPECT_FALSE(TypeParam(low.data()) < TypeParam(low.data()));
}

TYPED_TEST(IdentifierTest, IsAKeyOfMaps) {
  const TypeParam zero;
  const TypeParam sample = Sample<TypeParam>::value();
  const std::map<TypeParam, int> ordered = {{sample, 1}, {zero, 0}};
  EXPECT_EQ(ordered.at(sample), 1);
  EXPECT_EQ(ordered.begin()->first, zero);
  const std::unordered_set<TypeParam> hashed = {sample, zero, sample};
  EXPECT_EQ(hashed.size(), 2u);
  EXPECT_EQ(hashed.count(Sample<TypeParam>::value()), 1u);
}

TYPED_TEST(IdentifierTest, CountsItsOctetsFromOne) {
  const Bytes octets = Sample<TypeParam>::bytes();
  EXPECT_EQ(Sample<TypeParam>::value().octet(1), octets.front());
  EXPECT_EQ(Sample<TypeParam>::value().octet(TypeParam::kSize), octets.back());
}

TEST(Identifiers, DoNotReadTheUrnOfAnotherType) {
  expectRefused<UniversalLabel>(kSixteenUrn, kUrnForm);
  expectRefused<UUID>(kLabelUrn, kUrnForm);
  expectRefused<UMID64>(UMID32().toString(kUrnForm), kUrnForm);
  expectRefused<UMID32>(UMID64().toString(kUrnForm), kUrnForm);
  expectRefused<UMID64>(UMID32().toString(kDottedForm), kDottedForm);
  expectRefused<UMID32>(UMID64().toString(kDottedForm), kDottedForm);
}

TEST(Identifiers, AreZeroWhenMadeFromNothing) {
  EXPECT_EQ(UUID().toString(), u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00");
  EXPECT_EQ(LocalTag().value(), 0);
}

TEST(UniversalLabel, IsTheSameAsAKey) {
  const KLV::Key key(kLabel.data());
  EXPECT_EQ(toBytes(UniversalLabel(key)), kLabel);
  EXPECT_EQ(UniversalLabel(kLabel.data()).key(), key);
}

template <class T>
class ReferenceTest : public ::testing::Test {};
using ReferenceTypes = ::testing::Types<StrongReference, WeakReference>;
TYPED_TEST_SUITE(ReferenceTest, ReferenceTypes, TypeNames);

TYPED_TEST(ReferenceTest, HoldsTheInstanceUIDOfItsTarget) {
  const UUID target(kSixteen.data());
  const TypeParam reference(target);
  EXPECT_EQ(reference.target(), target);
  EXPECT_EQ(static_cast<const Reference&>(reference).toString(), kDottedSixteen);
  EXPECT_EQ(toBytes(reference), kSixteen);
}

TYPED_TEST(ReferenceTest, IsMadeFromEitherTextForm) {
  const TypeParam reference(kSixteen.data());
  EXPECT_EQ(TypeParam(kDottedSixteen), reference);
  EXPECT_EQ(TypeParam(kSixteenUrn), reference);
  EXPECT_EQ(TypeParam(Utf16(kDottedSixteen)), reference);
  expectRefused<TypeParam>(u"00.11");
  EXPECT_THROW(TypeParam(static_cast<const uint16*>(nullptr)), Exceptions::InvalidFormat);
}

TEST(References, OfTwoKindsAreNotEqual) {
  EXPECT_FALSE(StrongReference(kSixteen.data()).equals(WeakReference(kSixteen.data())));
}

}  // namespace
}  // namespace Vantor::Types
