#include "Core/KLV/IdentifierText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;

/// 0xA0, 0xA1, ... : every byte differs and every second digit is a letter.
Bytes counting(std::size_t size) {
  Bytes bytes(size);
  std::iota(bytes.begin(), bytes.end(), uint8{0xA0});
  return bytes;
}

const std::u16string kUl = u"urn:smpte:ul:a0a1a2a3.a4a5a6a7.a8a9aaab.acadaeaf";
const std::u16string kUuid = u"urn:uuid:a0a1a2a3-a4a5-a6a7-a8a9-aaabacadaeaf";
const std::u16string kUmid32 =
    u"urn:smpte:umid:a0a1a2a3.a4a5a6a7.a8a9aaab.acadaeaf.b0b1b2b3.b4b5b6b7.b8b9babb.bcbdbebf";
const std::u16string kUmid64 = kUmid32 + u".c0c1c2c3.c4c5c6c7.c8c9cacb.cccdcecf.d0d1d2d3.d4d5d6d7.d8d9dadb.dcdddedf";

std::u16string upperCase(std::u16string text) {
  for (char16_t& unit : text) {
    if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 32);
  }
  return text;
}

TEST(IdentifierText, WritesTheDottedFormOfAnySize) {
  EXPECT_EQ(dottedText(nullptr, 0), u"");
  EXPECT_EQ(dottedText(counting(1).data(), 1), u"A0");
  EXPECT_EQ(dottedText(counting(16).data(), 16), u"A0.A1.A2.A3.A4.A5.A6.A7.A8.A9.AA.AB.AC.AD.AE.AF");
  EXPECT_EQ(dottedText(counting(32).data(), 32).size(), 95u);
  EXPECT_EQ(dottedText(counting(64).data(), 64).size(), 191u);
}

TEST(IdentifierText, WritesUrnsInLowerCase) {
  EXPECT_EQ(ulUrn(counting(16).data()), kUl.c_str());
  EXPECT_EQ(uuidUrn(counting(16).data()), kUuid.c_str());
  EXPECT_EQ(umidUrn(counting(32).data(), 32), kUmid32.c_str());
  EXPECT_EQ(umidUrn(counting(64).data(), 64), kUmid64.c_str());
}

/// A text form, whose reader is bound to its number of bytes.
struct Form {
  std::u16string text;
  std::size_t size;
  bool (*parse)(std::u16string_view, uint8*);
};

const Form kForms[] = {
    {u"A0", 1, [](std::u16string_view text, uint8* bytes) { return parseDotted(text, bytes, 1); }},
    {u"A0.A1", 2, [](std::u16string_view text, uint8* bytes) { return parseDotted(text, bytes, 2); }},
    {kUl, 16, parseUlUrn},
    {kUuid, 16, parseUuidUrn},
    {kUmid32, 32, [](std::u16string_view text, uint8* bytes) { return parseUmidUrn(text, bytes, 32); }},
    {kUmid64, 64, [](std::u16string_view text, uint8* bytes) { return parseUmidUrn(text, bytes, 64); }},
};

TEST(IdentifierText, ReadsEveryFormInEitherCase) {
  for (const Form& form : kForms) {
    Bytes bytes(form.size);
    EXPECT_TRUE(form.parse(form.text, bytes.data()));
    EXPECT_EQ(bytes, counting(form.size));
    std::fill(bytes.begin(), bytes.end(), uint8{0});
    EXPECT_TRUE(form.parse(upperCase(form.text), bytes.data()));
    EXPECT_EQ(bytes, counting(form.size));
  }
}

TEST(IdentifierText, RefusesATextThatIsCutShortAnywhere) {
  for (const Form& form : kForms) {
    Bytes bytes(form.size);
    for (std::size_t units = 0; units < form.text.size(); ++units) {
      EXPECT_FALSE(form.parse(form.text.substr(0, units), bytes.data())) << units;
    }
  }
}

TEST(IdentifierText, RefusesATextThatGoesOn) {
  for (const Form& form : kForms) {
    Bytes bytes(form.size);
    for (const char16_t* rest : {u" ", u".", u"0", u".00", u"-00"}) {
      EXPECT_FALSE(form.parse(form.text + rest, bytes.data()));
      EXPECT_FALSE(form.parse(rest + form.text, bytes.data()));
    }
  }
}

TEST(IdentifierText, RefusesAnyUnitReplacedByOneThatDoesNotBelongThere) {
  for (const Form& form : kForms) {
    Bytes bytes(form.size);
    for (std::size_t i = 0; i < form.text.size(); ++i) {
      // The last two have the low octet of a hexadecimal digit and of a point.
      for (const char16_t wrong : {u'g', u'/', u'@', u'`', u'\u0130', u'\u042E'}) {
        std::u16string text = form.text;
        text[i] = wrong;
        EXPECT_FALSE(form.parse(text, bytes.data())) << i;
      }
    }
  }
}

TEST(IdentifierText, RefusesOneFormForAnother) {
  Bytes bytes(64);
  EXPECT_FALSE(parseUlUrn(kUuid, bytes.data()));
  EXPECT_FALSE(parseUuidUrn(kUl, bytes.data()));
  EXPECT_FALSE(parseUmidUrn(kUmid64, bytes.data(), 32));
  EXPECT_FALSE(parseUmidUrn(kUmid32, bytes.data(), 64));
  EXPECT_FALSE(parseDotted(kUl, bytes.data(), 16));
}

TEST(IdentifierText, NamesTextAndTypeWhenRefused) {
  EXPECT_THAT([] { raiseInvalidText(u"caf\u00E9", "UUID"); },
              ThrowsMessage<Exceptions::InvalidFormat>(StrEq("'caf\xC3\xA9' is not the text of a UUID")));
}

TEST(IdentifierText, KeepsBracesOfATextInItsMessage) {
  EXPECT_THAT([] { raiseInvalidText(u"{0}", "AUID"); },
              ThrowsMessage<Exceptions::InvalidFormat>(StrEq("'{0}' is not the text of an AUID")));
}

TEST(IdentifierText, CutsALongTextInItsMessage) {
  const std::u16string longText(100000, u'x');
  EXPECT_THAT(
      [&] { raiseInvalidText(longText, "UUID"); },
      ThrowsMessage<Exceptions::InvalidFormat>(StrEq("'" + std::string(200, 'x') + "...' is not the text of a UUID")));
}

}  // namespace
}  // namespace Vantor::KLV
