#include <gtest/gtest.h>

#include <future>
#include <string>

#include "Documents.h"

namespace Vantor::XMLUtils {
namespace {

/// Builds a document of its own, writes it, reads it back and returns its content.
std::string roundTrip(const std::string& name) {
  const auto document = newDocument(u"urn:s", Vantor::Utils::stringToWstring("s:" + name).c_str());
  for (int i = 0; i < 500; ++i) {
    auto& element = appendElement(document.root(), u"urn:t", u"t:element");
    element.setAttributeNS(u"urn:s", u"s:attribute", u"\x01\r");
    appendText(element, u"text $#x " + Vantor::Utils::stringToWstring(name));
  }
  return textOf(parsed(written(*document.dom, EncodingType::kUTF16Indented)));
}

TEST(XMLUtilsThreads, StartTheStackOnceAndWriteTheirOwnDocuments) {
  auto first = std::async(std::launch::async, roundTrip, "first");
  auto second = std::async(std::launch::async, roundTrip, "second");
  EXPECT_EQ(first.get(), roundTrip("first"));
  EXPECT_EQ(second.get(), roundTrip("second"));
}

TEST(XMLUtilsThreads, ReadOneBufferAtOnce) {
  const auto text = roundTrip("shared");
  const auto read = [&text] { return textOf(parsed(text)); };
  auto first = std::async(std::launch::async, read);
  auto second = std::async(std::launch::async, read);
  EXPECT_EQ(first.get(), text);
  EXPECT_EQ(second.get(), text);
}

}  // namespace
}  // namespace Vantor::XMLUtils
