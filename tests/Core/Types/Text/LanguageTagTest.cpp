#include "Core/Types/Text/LanguageTag.h"

#include <gtest/gtest.h>

namespace Vantor::Types {
namespace {

TEST(LanguageTag, HasTheFormOfRFC5646) {
  // From the examples of appendix A, and the irregular tags of section 2.1.
  for (const auto* tag : {u"de",
                          u"fr",
                          u"zh-Hant",
                          u"sr-Latn-RS",
                          u"zh-cmn-Hans-CN",
                          u"yue-HK",
                          u"sl-rozaj-biske",
                          u"de-CH-1901",
                          u"hy-Latn-IT-arevela",
                          u"es-419",
                          u"az-Arab-x-AZE-derbend",
                          u"x-whatever",
                          u"qaa-Qaaa-QM-x-southern",
                          u"en-US-u-islamcal",
                          u"zh-CN-a-myext-x-private",
                          u"en-a-myext-b-another",
                          u"EN-us",
                          u"i-klingon",
                          u"en-GB-oed",
                          u"sgn-CH-DE"}) {
    EXPECT_TRUE(isLanguageTag(tag)) << testing::PrintToString(std::u16string(tag));
  }
}

TEST(LanguageTag, HasNoOtherForm) {
  for (const auto* tag : {u"", u"e", u"en_GB", u"de-419-DE-FR", u"a-DE", u"english language", u"en-", u"-en", u"x",
                          u"en-x", u"en-a", u"123", u"en--GB", u"languagelong", u"en-GB-a-b"}) {
    EXPECT_FALSE(isLanguageTag(tag)) << testing::PrintToString(std::u16string(tag));
  }
}

TEST(LanguageTag, StandsInListsWithCommasOrWhiteSpace) {
  EXPECT_TRUE(isLanguageTagList(u"en, de-CH"));
  EXPECT_TRUE(isLanguageTagList(u"en de,fr"));
  EXPECT_TRUE(isLanguageTagList(u"en"));
  EXPECT_FALSE(isLanguageTagList(u"en;de"));
  EXPECT_TRUE(isLanguageTagList(u"en\tde"));
  EXPECT_FALSE(isLanguageTagList(u", "));
  EXPECT_FALSE(isLanguageTagList(u"en,"));
  EXPECT_FALSE(isLanguageTagList(u"en,,de"));
}

TEST(LanguageTag, IsNoCodeOfISO639UnlessItHasTwoOrThreeLetters) {
  EXPECT_TRUE(isLanguageCode(u"en"));
  EXPECT_TRUE(isLanguageCode(u"eng"));
  EXPECT_FALSE(isLanguageCode(u"english"));
  EXPECT_FALSE(isLanguageCode(u"e1"));
}

}  // namespace
}  // namespace Vantor::Types
