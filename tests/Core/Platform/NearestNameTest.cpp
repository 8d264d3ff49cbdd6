#include "Core/Platform/NearestName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Vantor::Platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kCommandNames = {"export", "import", "verify", "info", "set", "diff"};

TEST(NearestName, IsOneEditAway) {
  for (const auto* name : {"exort", "exporrt", "expart", "exprot"}) {
    EXPECT_THAT(nearestNames(name, kCommandNames), ElementsAre("export")) << name;
  }
}

TEST(NearestName, IgnoresCase) { EXPECT_THAT(nearestNames("INFO", kCommandNames), ElementsAre("info")); }

TEST(NearestName, IsEveryOneOfTheNearestUpToThree) {
  EXPECT_THAT(nearestNames("xport", {"export", "import"}), ElementsAre("export"));
  EXPECT_THAT(nearestNames("aaa", {"aab", "abb", "aac"}), ElementsAre("aab", "aac"));
  EXPECT_THAT(nearestNames("aaa", {"aab", "aac", "aab", "aad", "aae"}), ElementsAre("aab", "aac", "aad"));
}

TEST(NearestName, IsOneThatContainsItWhereNoneIsNear) {
  EXPECT_THAT(nearestNames("Company", {"ApplicationName", "companyName"}), ElementsAre("companyName"));
  EXPECT_THAT(nearestNames("Co", {"companyName"}), IsEmpty());
  EXPECT_THAT(nearestNames("Descriptor", {"description", "FileDescriptor"}), ElementsAre("FileDescriptor"));
  EXPECT_THAT(nearestNames("Descriptor", {"description"}), ElementsAre("description"));
}

TEST(NearestName, IsOneWithAWordOrFirstLettersOfWords) {
  EXPECT_THAT(nearestNames("ID", {"Identity", "TrackID", "IDAU"}), ElementsAre("TrackID"));
  EXPECT_THAT(nearestNames("OP", {"Open", "OperationalPattern", "Operation"}), ElementsAre("OperationalPattern"));
  EXPECT_THAT(nearestNames("Comapny", {"Preface", "CompanyName"}), ElementsAre("CompanyName"));
  EXPECT_THAT(nearestNames("Channels", {"ChannelCount", "Chain"}), ElementsAre("ChannelCount"));
  EXPECT_THAT(nearestNames("Titel", {"AS_11_Title"}), ElementsAre("AS_11_Title"));
}

TEST(NearestName, IsNoneWhereTooMuchDiffers) {
  EXPECT_THAT(nearestNames("dance", kCommandNames), IsEmpty());
  EXPECT_THAT(nearestNames("dance", {"date"}), IsEmpty()) << "two of five";
  EXPECT_THAT(nearestNames("x", {"y"}), IsEmpty());
  EXPECT_THAT(nearestNames("", {"a", ""}), IsEmpty());
  EXPECT_THAT(nearestNames("export", {}), IsEmpty());
  EXPECT_THAT(nearestNames(std::string(100000, 'a'), {std::string(100000, 'b')}), IsEmpty());
}

TEST(NearestName, IsSuggestedInOneSentence) {
  EXPECT_EQ(suggestion("dance", kCommandNames), "");
  EXPECT_EQ(suggestion("exprot", kCommandNames), " (did you mean 'export'?)");
  EXPECT_EQ(suggestion("aaa", {"aab", "aac"}), " (did you mean 'aab' or 'aac'?)");
  EXPECT_EQ(suggestion("aaa", {"aab", "aac", "aad"}), " (did you mean 'aab', 'aac' or 'aad'?)");
}

}  // namespace
}  // namespace Vantor::Platform
