#include "Core/Platform/Exceptions.h"

#include <gtest/gtest.h>

namespace Vantor::Exceptions {
namespace {

TEST(Exceptions, CarryMessageSourceNameAndLine) {
  const ParseError error("at byte offset 4: expected a key", "Core/KLV/Key", 12);
  EXPECT_STREQ(error.what(), "at byte offset 4: expected a key");
  EXPECT_EQ(error.message(), "at byte offset 4: expected a key");
  EXPECT_EQ(error.file(), "Core/KLV/Key");
  EXPECT_EQ(error.line(), 12);
}

TEST(Exceptions, TakeAWideMessageAsUtf8) {
  const InvalidFormat error(wstring(u"'\u00E9\U0001F600' is not a number"), "XMLBuilder/X", 1);
  EXPECT_STREQ(error.what(), "'\xC3\xA9\xF0\x9F\x98\x80' is not a number");
}

template <class Kind>
class ExceptionKind : public testing::Test {};
using Kinds = testing::Types<ParseError, InvalidFormat, InvalidLength, NotFoundInPrimer, NestingTooDeep, IOError>;
TYPED_TEST_SUITE(ExceptionKind, Kinds, );

TYPED_TEST(ExceptionKind, IsCaughtAsBaseExceptionAndAsStandardException) {
  EXPECT_THROW(throw TypeParam("message", "file", 1), BaseException);
  EXPECT_THROW(throw TypeParam("message", "file", 1), std::exception);
}

TYPED_TEST(ExceptionKind, KeepsItsMessageWhenCopied) {
  const TypeParam original("message", "file", 7);
  const TypeParam copy = original;
  EXPECT_STREQ(copy.what(), "message");
  EXPECT_EQ(copy.line(), 7);
}

}  // namespace
}  // namespace Vantor::Exceptions
