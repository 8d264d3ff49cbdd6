#include "Core/MXF/OperationalPattern.h"

#include <gtest/gtest.h>

namespace Vantor::MXF {
namespace {

/// @param items, packages, qualifiers  octets 13 to 15.
Types::UniversalLabel patternOf(uint8 items, uint8 packages, uint8 qualifiers) {
  return Types::UniversalLabel(KLV::Key({0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x02,  //
                                         0x0d, 0x01, 0x02, 0x01, items, packages, qualifiers, 0x00}));
}

TEST(OperationalPatternLabel, IsOneInAnyVersionOfTheRegister) {
  EXPECT_TRUE(isOperationalPattern(patternOf(1, 1, 9)));
  const auto key = patternOf(1, 1, 9).key();
  EXPECT_TRUE(isOperationalPattern(Types::UniversalLabel(key.withOctet(KLV::Key::kVersionOctet, 0x7f))));
  EXPECT_FALSE(isOperationalPattern(Types::UniversalLabel(key.withOctet(11, 3))));
  EXPECT_FALSE(isOperationalPattern(Types::UniversalLabel()));
}

TEST(OperationalPatternLabel, AsksForInternalEssenceUnlessItsQualifiersOrItsKindSayExternal) {
  EXPECT_TRUE(hasInternalEssence(patternOf(1, 1, 0x09)));
  EXPECT_TRUE(hasInternalEssence(patternOf(3, 3, 0x01)));
  EXPECT_FALSE(hasInternalEssence(patternOf(1, 2, 0x0b)));
  EXPECT_FALSE(hasInternalEssence(patternOf(0x10, 0, 0)));
  EXPECT_FALSE(hasInternalEssence(Types::UniversalLabel()));
}

std::string patternNameOf(const wstring& label) {
  return operationalPatternName(Types::UniversalLabel(label, kDottedForm));
}

TEST(OperationalPatternName, NamesThePatternsByItemAndPackageComplexity) {
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"), "OP1a");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.02.01.00"), "OP1b");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.02.03.05.00"), "OP2c");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.03.03.01.00"), "OP3c");
}

TEST(OperationalPatternName, IgnoresTheVersionOfTheRegister) {
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.0A.0D.01.02.01.01.01.09.00"), "OP1a");
}

TEST(OperationalPatternName, KnowsAtoms) {
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.00.00.00"), "OP-Atom");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.03.00.00"), "OP-Atom");
}

TEST(OperationalPatternName, TellsSpecializedFromUnknownPatterns) {
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.11.00.00.00"), "specialized pattern");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.7F.00.00.00"), "specialized pattern");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.80.01.00.00"), "unknown pattern");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.04.01.00.00"), "unknown pattern");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.04.00.00"), "unknown pattern");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.00.01.00.00"), "unknown pattern");
  EXPECT_EQ(patternNameOf(u"06.0E.2B.34.04.01.01.01.0D.01.03.01.01.01.00.00"), "unknown pattern");
  EXPECT_EQ(patternNameOf(u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00"), "unknown pattern");
}

}  // namespace
}  // namespace Vantor::MXF
