#include "tools/mxfxml/OperationalPattern.h"

#include <gtest/gtest.h>

namespace Vantor::Tool {
namespace {

std::string nameOf(const wstring& label) { return operationalPatternName(Types::UniversalLabel(label, kDottedForm)); }

TEST(OperationalPattern, NamesThePatternsByItemAndPackageComplexity) {
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"), "OP1a");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.02.01.00"), "OP1b");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.02.03.05.00"), "OP2c");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.03.03.01.00"), "OP3c");
}

TEST(OperationalPattern, IgnoresTheVersionOfTheRegister) {
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.0A.0D.01.02.01.01.01.09.00"), "OP1a");
}

TEST(OperationalPattern, KnowsAtoms) {
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.00.00.00"), "OP-Atom");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.03.00.00"), "OP-Atom");
}

TEST(OperationalPattern, TellsSpecializedFromUnknownPatterns) {
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.11.00.00.00"), "specialized pattern");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.7F.00.00.00"), "specialized pattern");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.80.01.00.00"), "unknown pattern");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.04.01.00.00"), "unknown pattern");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.04.00.00"), "unknown pattern");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.02.01.00.01.00.00"), "unknown pattern");
  EXPECT_EQ(nameOf(u"06.0E.2B.34.04.01.01.01.0D.01.03.01.01.01.00.00"), "unknown pattern");
  EXPECT_EQ(nameOf(u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00"), "unknown pattern");
}

}  // namespace
}  // namespace Vantor::Tool
