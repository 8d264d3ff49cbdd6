#include "tools/mxfxml/DocumentSize.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/mxfxml/ErrorText.h"

namespace Vantor::Tool {
namespace {

TEST(DocumentSize, IsKeptUpToTheMostThatCanBeRead) {
  EXPECT_EQ(documentSize(0), 0u);
  EXPECT_EQ(documentSize(0xFFFFFFFF), 0xFFFFFFFFu);
}

TEST(DocumentSize, IsRefusedWhereOnlyAPartWouldBeRead) {
  EXPECT_THAT([] { documentSize(uint64{1} << 32); },
              testing::ThrowsMessage<CommandError>(
                  "the metadata make a document of 4294967296 bytes; no more than 4294967295 can be read"));
}

}  // namespace
}  // namespace Vantor::Tool
