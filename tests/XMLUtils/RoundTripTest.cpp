#include <gtest/gtest.h>

#include <random>

#include "Documents.h"

namespace Vantor::XMLUtils {
namespace {

/// Reads back what was written, as text and as bytes in every encoding, and compares with the original.
void expectSameWhenReadBack(const Document& document) {
  document.root().normalize();
  for (const auto encoding : {EncodingType::kUTF8, EncodingType::kUTF16}) {
    EXPECT_TRUE(parsed(written(*document.dom, encoding)).root().isEqualNode(&document.root()));
    std::string bytes;
    domToBytes(document.dom, bytes, encoding);
    EXPECT_TRUE(parsed(bytes).root().isEqualNode(&document.root())) << bytes.substr(0, 2000);
  }
}

Document documentWith(const wstring& value) {
  auto document = newDocument(nullptr, u"a");
  document.root().setAttributeNS(nullptr, u"b", value.c_str());
  appendText(document.root(), value);
  return document;
}

TEST(RoundTrip, KeepsEveryCodeUnit) {
  wstring all;
  for (char32_t unit = 1; unit <= 0xFFFF; ++unit) all += static_cast<char16_t>(unit);
  expectSameWhenReadBack(documentWith(all));
  // Downwards, so that no two surrogates make a pair.
  expectSameWhenReadBack(documentWith(wstring(all.rbegin(), all.rend())));
}

TEST(RoundTrip, KeepsTextThatLooksLikeMarkupOrEscapes) {
  for (const auto* text : {u"]]>", u"<![CDATA[x]]>", u"&amp;", u"&#x1;", u"$#x1;", u"$#x24;#x1;", u"$#x0;", u"$$#x",
                           u"\r\n", u" \t ", u"\r", u"$#xD800;\xFFFF"}) {
    expectSameWhenReadBack(documentWith(text));
  }
}

/// Makes documents out of the characters and structures that are easiest to get wrong.
class RandomDocument {
 public:
  explicit RandomDocument(uint32 seed) : random_(seed) {}

  Document make() {
    auto document = newDocument(u"urn:0", u"p0:root");
    document.root().setAttributeNS(kXmlnsUri, u"xmlns:p0", u"urn:0");
    document.root().setAttributeNS(kXmlnsUri, u"xmlns:p1", u"urn:1");
    fill(document.root(), 5);
    return document;
  }

 private:
  uint32 below(uint32 limit) { return std::uniform_int_distribution<uint32>(0, limit - 1)(random_); }

  wstring text() {
    static const wstring kOdd = u"$#x124;<>&\"'\t\n\r ]-?" + wstring{0x01, 0x1F, 0x7F, 0x85, 0x2028, 0xD800, 0xDBFF} +
                                wstring{0xDC00, 0xDFFF, 0xFFFD, 0xFFFE, 0xFFFF, 0xE9};
    wstring text;
    for (uint32 count = 1 + below(12); count > 0; --count) text += kOdd[below(static_cast<uint32>(kOdd.size()))];
    return text;
  }

  void fill(xercesc::DOMElement& element, uint32 levels) {
    static const wstring kUris[] = {u"urn:0", u"urn:1"};
    static const wstring kNames[] = {u"p0:a", u"p1:b"};
    for (uint32 i = 0; i < 2; ++i) {
      if (below(2) == 0) element.setAttributeNS(kUris[i].c_str(), kNames[i].c_str(), text().c_str());
    }
    for (uint32 count = below(5); count > 0; --count) {
      const auto i = below(2);
      if (below(3) == 0 || levels == 0) {
        appendText(element, text());
      } else {
        fill(appendElement(element, kUris[i].c_str(), kNames[i].c_str()), levels - 1);
      }
    }
  }

  std::mt19937 random_;
};

TEST(RoundTrip, KeepsRandomDocuments) {
  for (uint32 seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE(seed);
    expectSameWhenReadBack(RandomDocument(seed).make());
    if (HasFailure()) return;
  }
}

TEST(RoundTrip, KeepsWhatIsIndentedButForTheWhiteSpaceBetweenElements) {
  for (uint32 seed = 0; seed < 200; ++seed) {
    SCOPED_TRACE(seed);
    const auto document = RandomDocument(seed).make();
    document.root().normalize();
    const auto back = parsed(written(*document.dom, EncodingType::kUTF16Indented));
    cleanEmptyTextNodes(*document.dom);
    cleanEmptyTextNodes(*back.dom);
    ASSERT_TRUE(back.root().isEqualNode(&document.root()));
  }
}

TEST(RoundTrip, KeepsSectionsCommentsAndInstructions) {
  const std::string text = "<!--c--><a>x<![CDATA[<&]]>y<!-- d --><?p q?></a><?e?>";
  EXPECT_EQ(textOf(parsed(text)), text);
}

TEST(RoundTrip, KeepsForbiddenCharactersOfSectionsCommentsAndInstructions) {
  const auto document = newDocument(nullptr, u"a");
  document.root().appendChild(document->createCDATASection(u"\x01$#x"));
  document.root().appendChild(document->createComment(u"\x02$#x"));
  document.root().appendChild(document->createProcessingInstruction(u"p", u"\x03$#x"));
  EXPECT_TRUE(parsed(written(*document.dom)).root().isEqualNode(&document.root()));
}

}  // namespace
}  // namespace Vantor::XMLUtils
