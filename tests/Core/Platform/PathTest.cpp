#include "Core/Platform/Path.h"

#include <gtest/gtest.h>

namespace Vantor::Platform {
namespace {

TEST(Path, IsItsNameInUTF16) {
  EXPECT_EQ(pathToWstring(Platform::pathFromUTF8("a/\u00dc\u5b9f \U0001f39e")), u"a/\u00dc\u5b9f \U0001f39e");
  EXPECT_EQ(Platform::pathToUTF8(pathFromWstring(u"a/\u00dc\u5b9f \U0001f39e")), "a/\u00dc\u5b9f \U0001f39e");
  EXPECT_EQ(pathToWstring({}), u"");
  EXPECT_EQ(pathFromWstring(u""), Path());
}

TEST(Path, IsItsNameInUTF8) {
  const std::string name = "a/\xc3\x9c\xe5\xae\x9f \xf0\x9f\x8e\x9e";
  EXPECT_EQ(pathToUTF8(pathFromUTF8(name)), name);
  EXPECT_EQ(pathFromUTF8(name), pathFromWstring(u"a/\u00dc\u5b9f \U0001f39e"));
  EXPECT_EQ(pathToUTF8({}), "");
}

#ifndef _WIN32
TEST(Path, HasItsOctetsInUTF8WhateverTheyAre) {
  EXPECT_EQ(pathToUTF8(Path("caf\xe9.xml")), "caf\xe9.xml");
  EXPECT_EQ(pathFromUTF8("caf\xe9.xml").native(), "caf\xe9.xml");
}

TEST(Path, ComesBackWhateverItsOctets) {
  EXPECT_EQ(pathToWstring(Path("caf\xe9.xml")), wstring(u"caf\xdce9.xml"));
  std::string all;
  for (int octet = 1; octet < 256; ++octet) all += static_cast<char>(octet);
  for (const std::string& name : {all, std::string("\xff\xfe"), std::string("\xed\xa0\x80\xed\xb2\x80"),
                                  std::string("\xf0\x9f\x8e\x9e\x9e"), std::string("\xc3")}) {
    EXPECT_EQ(pathFromWstring(pathToWstring(Path(name))).native(), name);
  }
}
#endif

}  // namespace
}  // namespace Vantor::Platform
