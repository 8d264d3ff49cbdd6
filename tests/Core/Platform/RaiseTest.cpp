#include "Core/Platform/Raise.h"

#include <gtest/gtest.h>

namespace Vantor::Exceptions {
namespace {

TEST(Raise, PutsArgumentsIntoTheMessageAndKeepsThem) {
  try {
    raise<ParseError>("the set {} ends at offset {}", wstring(u"Pr\u00E9face"), 12U);
  } catch (const ParseError& error) {
    EXPECT_EQ(error.message(),
              "the set Pr\xC3\xA9"
              "face ends at offset 12");
    EXPECT_EQ(error.format(), "the set {} ends at offset {}");
    EXPECT_EQ(error.arguments(), (std::vector<std::string>{"Pr\xC3\xA9"
                                                           "face",
                                                           "12"}));
  }
}

TEST(Raise, NamesTheSourceFromTheRootOfTheRepository) {
  try {
    raise<InvalidFormat>("wrong");
  } catch (const InvalidFormat& error) {
    EXPECT_EQ(error.line(), __LINE__ - 2);
    EXPECT_EQ(error.file(), "tests/Core/Platform/RaiseTest");
  }
}

TEST(Raise, KeepsAPlaceThatCallersRelyOn) {
  try {
    raise<InvalidFormat>({"odd", {"XMLBuilder\\XML2Partition", 89}});
  } catch (const InvalidFormat& error) {
    EXPECT_EQ(error.file(), "XMLBuilder\\XML2Partition");
    EXPECT_EQ(error.line(), 89);
  }
}

TEST(Raise, LeavesBracesInArgumentsAlone) {
  try {
    raise<IOError>("cannot open '{}'", "{}.mxf");
  } catch (const IOError& error) {
    EXPECT_STREQ(error.what(), "cannot open '{}.mxf'");
  }
}

}  // namespace
}  // namespace Vantor::Exceptions
