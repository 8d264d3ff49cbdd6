#include "tools/mxfxml/NearestName.h"

#include <gtest/gtest.h>

namespace Vantor::Tool {
namespace {

const std::vector<std::string> kNames = {"export", "import", "verify", "info", "set", "diff"};

TEST(NearestName, IsOneEditAway) {
  EXPECT_EQ(nearestName("exort", kNames), "export");
  EXPECT_EQ(nearestName("exporrt", kNames), "export");
  EXPECT_EQ(nearestName("expart", kNames), "export");
  EXPECT_EQ(nearestName("exprot", kNames), "export");
}

TEST(NearestName, IgnoresCase) { EXPECT_EQ(nearestName("INFO", kNames), "info"); }

TEST(NearestName, IsTheFirstOfTheNearest) {
  EXPECT_EQ(nearestName("xport", {"export", "import"}), "export");
  EXPECT_EQ(nearestName("aa", {"ab", "ac"}), "ab");
}

TEST(NearestName, IsNoneWhereTooMuchDiffers) {
  EXPECT_EQ(nearestName("dance", kNames), "");
  EXPECT_EQ(nearestName("", kNames), "");
  EXPECT_EQ(nearestName("export", {}), "");
  EXPECT_EQ(suggestion("dance", kNames), "");
  EXPECT_EQ(suggestion("exprot", kNames), " (did you mean 'export'?)");
}

}  // namespace
}  // namespace Vantor::Tool
