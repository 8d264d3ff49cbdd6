#include "Core/Platform/Path.h"

#include <gtest/gtest.h>

namespace Vantor::Platform {
namespace {

TEST(Path, IsItsNameInUTF16) {
  EXPECT_EQ(pathToWstring(std::filesystem::u8path("a/\u00dc\u5b9f \U0001f39e")), u"a/\u00dc\u5b9f \U0001f39e");
  EXPECT_EQ(pathFromWstring(u"a/\u00dc\u5b9f \U0001f39e").u8string(), "a/\u00dc\u5b9f \U0001f39e");
  EXPECT_EQ(pathToWstring({}), u"");
  EXPECT_EQ(pathFromWstring(u""), Path());
}

#ifndef _WIN32
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
