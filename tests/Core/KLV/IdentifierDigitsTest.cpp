#include "Core/KLV/IdentifierDigits.h"

#include <gtest/gtest.h>

namespace Vantor::KLV {
namespace {

TEST(IdentifierDigits, ComeFromEverySpelling) {
  const std::string digits = "8D9DADD1E1B5476393E47F251BC8BF00";
  for (const auto* text :
       {"8D9DADD1E1B5476393E47F251BC8BF00", "8d9dadd1e1b5476393e47f251bc8bf00", "0x8d9dadd1e1b5476393e47f251bc8bf00",
        "8D.9D.AD.D1.E1.B5.47.63.93.E4.7F.25.1B.C8.BF.00", "8d9dadd1.e1b54763.93e47f25.1bc8bf00",
        "8d9dadd1-e1b5-4763-93e4-7f251bc8bf00", "{8d9dadd1-e1b5-4763-93e4-7f251bc8bf00}",
        "8d 9d ad d1 e1 b5 47 63 93 e4 7f 25 1b c8 bf 00", "urn:uuid:8d9dadd1-e1b5-4763-93e4-7f251bc8bf00",
        "URN:UUID:8D9DADD1-E1B5-4763-93E4-7F251BC8BF00", "urn:smpte:ul:8d9dadd1.e1b54763.93e47f25.1bc8bf00",
        "8d:9d:ad:d1:e1:b5:47:63:93:e4:7f:25:1b:c8:bf:00", "8d9dadd1_e1b54763_93e47f25_1bc8bf00",
        "8d,9d,ad,d1,e1,b5,47,63,93,e4,7f,25,1b,c8,bf,00", "0x8d9dadd1 0xe1b54763 0x93e47f25 0x1bc8bf00",
        "0x8d, 0x9d, 0xad, 0xd1, 0xe1, 0xb5, 0x47, 0x63, 0x93, 0xe4, 0x7f, 0x25, 0x1b, 0xc8, 0xbf, 0x00",
        "8d9dadd1  e1b54763  93e47f25  1bc8bf00"}) {
    EXPECT_EQ(identifierDigits(text).value_or("none"), digits) << text;
  }
}

TEST(IdentifierDigits, MayBeTheBeginning) {
  EXPECT_EQ(identifierDigits("8d9").value_or("none"), "8D9");
  EXPECT_EQ(identifierDigits("8D.9D.").value_or("none"), "8D9D");
  EXPECT_EQ(identifierDigits("{8d9dadd1-e1").value_or("none"), "8D9DADD1E1");
  EXPECT_EQ(identifierDigits("urn:uuid:8d9d").value_or("none"), "8D9D");
}

TEST(IdentifierDigits, AreNoneInOtherTexts) {
  for (const std::string text : {"", "{}", "0x", "urn:uuid:", "Preface", ".8d9d", "8d..9d", "8d9d}", "8d9g", "8d/9d",
                                 "8d0x9d", "8d:-9d", "8d::9d"}) {
    EXPECT_FALSE(identifierDigits(text)) << text;
  }
  EXPECT_FALSE(identifierDigits(std::string(33, 'a')));
  EXPECT_TRUE(identifierDigits(std::string(33, 'a'), 64));
}

}  // namespace
}  // namespace Vantor::KLV
