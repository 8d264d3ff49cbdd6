#include "XMLUtils/DomToBuffer.h"

#include <gtest/gtest.h>

#include "Documents.h"

namespace Vantor::XMLUtils {
namespace {

constexpr auto kIndented = EncodingType::kUTF8Indented;

TEST(DomToBuffer, NamesTheEncodingAskedFor) {
  const auto document = newDocument(nullptr, u"a");
  EXPECT_EQ(written(*document.dom, EncodingType::kUTF8), u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>");
  EXPECT_EQ(written(*document.dom, EncodingType::kUTF16), u"<?xml version=\"1.0\" encoding=\"UTF-16\"?><a/>");
  EXPECT_EQ(written(*document.dom, EncodingType::kUTF8Indented), u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a/>\n");
  EXPECT_EQ(written(*document.dom, EncodingType::kUTF16Indented),
            u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<a/>\n");
}

TEST(DomToBuffer, WritesNothingForNull) {
  wstring text = u"old";
  domToBuffer(nullptr, text, EncodingType::kUTF8Indented);
  EXPECT_EQ(text, u"");
  std::string bytes = "old";
  domToBytes(nullptr, bytes, EncodingType::kUTF16);
  EXPECT_EQ(bytes, "");
}

TEST(DomToBuffer, WritesAnElementWithoutDeclaration) {
  const auto document = parsed("<a><b>x</b></a>");
  EXPECT_EQ(textOf(*document.root().getFirstChild()), "<b>x</b>");
  EXPECT_EQ(textOf(*document.root().getFirstChild()->getFirstChild(), kIndented), "x");
}

TEST(DomToBuffer, KeepsTheStandaloneMark) {
  EXPECT_EQ(written(*parsed("<?xml version='1.0' standalone='yes'?><a/>").dom),
            u"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?><a/>");
}

TEST(DomToBuffer, EscapesMarkupWhereItWouldBeRead) {
  const auto document = newDocument(nullptr, u"a");
  document.root().setAttribute(u"b", u"<&>\"'");
  appendText(document.root(), u"<&>\"']]>");
  EXPECT_EQ(textOf(document), "<a b=\"&lt;&amp;>&quot;'\">&lt;&amp;&gt;\"']]&gt;</a>");
}

TEST(DomToBuffer, WritesAsReferencesWhatAParserWouldNormalise) {
  const auto document = newDocument(nullptr, u"a");
  document.root().setAttribute(u"b", u"\t\n\r");
  appendText(document.root(), u"\t\n\r");
  EXPECT_EQ(textOf(document), "<a b=\"&#x9;&#xA;&#xD;\">\t\n&#xD;</a>");
}

TEST(DomToBuffer, WritesForbiddenCharactersAsEscapes) {
  const auto document = newDocument(nullptr, u"a");
  document.root().setAttribute(u"b", u"\x01$#x");
  appendText(document.root(), u"\x1F\xFFFE$#x41;" + wstring(1, 0xD800));
  EXPECT_EQ(textOf(document), "<a b=\"$#x1;$#x24;#x\">$#x1F;$#xFFFE;$#x24;#x41;$#xD800;</a>");
  EXPECT_EQ(utf16ToWstring(document.root().getAttribute(u"b")), u"\x01$#x");
}

TEST(DomToBuffer, TreatsAdjacentTextNodesAsOneText) {
  const auto document = newDocument(nullptr, u"a");
  for (const wstring& part : {wstring(u"$#"), wstring(u"x1;"), wstring{0xD83D}, wstring{0xDE00}}) {
    appendText(document.root(), part);
  }
  EXPECT_EQ(textOf(document), "<a>$#x24;#x1;\U0001F600</a>");
}

TEST(DomToBuffer, SplitsSectionsWhereTheyWouldEndOrLoseACharacter) {
  const auto document = newDocument(nullptr, u"a");
  document.root().appendChild(document->createCDATASection(u"<]]>]]]>\r>\x01"));
  const std::string expected = "<a><![CDATA[<]]]]><![CDATA[>]]]]]><![CDATA[>]]>&#xD;<![CDATA[>$#x1;]]></a>";
  EXPECT_EQ(textOf(document), expected);
  EXPECT_EQ(utf16ToWstring(parsed(expected).root().getTextContent()), u"<]]>]]]>\r>\x01");
}

TEST(DomToBuffer, PutsBlanksWhereCommentsAndInstructionsWouldEnd) {
  const auto document = newDocument(nullptr, u"a");
  document.root().appendChild(document->createComment(u"-a--b---"));
  document.root().appendChild(document->createProcessingInstruction(u"p", u"?\?>?"));
  document.root().appendChild(document->createProcessingInstruction(u"q", u""));
  const std::string expected = "<a><!---a- -b- - - --><?p ?\? >?\?><?q?></a>";
  EXPECT_EQ(textOf(document), expected);
  EXPECT_EQ(textOf(parsed(expected)), expected);
}

TEST(DomToBuffer, WritesTheDocumentType) {
  auto& implementation = Initializer::instance().domImplementation();
  auto* doctype = implementation.createDocumentType(u"a", u"public", u"sys\"tem");
  const Holder<xercesc::DOMDocument> document(implementation.createDocument(nullptr, u"a", doctype));
  EXPECT_EQ(textOf(*document), "<!DOCTYPE a PUBLIC \"public\" 'sys\"tem'><a/>");
}

TEST(DomToBuffer, IndentsElementsCommentsAndInstructions) {
  const auto document = parsed("<!--c--><a x='1'><b><c/><!--d--></b><?p q?><e/></a>");
  EXPECT_EQ(textOf(document, kIndented), R"(
<!--c-->
<a x="1">
  <b>
    <c/>
    <!--d-->
  </b>
  <?p q?>
  <e/>
</a>
)");
}

TEST(DomToBuffer, LeavesElementsWithTextAndAllBelowAsTheyAre) {
  const auto document = parsed("<a><b>x</b><c>x<d><e/></d></c><f> <g/></f><h><![CDATA[]]><i/></h></a>");
  EXPECT_EQ(textOf(document, kIndented), R"(
<a>
  <b>x</b>
  <c>x<d><e/></d></c>
  <f> <g/></f>
  <h><![CDATA[]]><i/></h>
</a>
)");
}

TEST(DomToBuffer, LeavesPreservedSpaceAsItIs) {
  EXPECT_EQ(textOf(parsed("<a><b xml:space='preserve'><c><d/></c></b></a>"), kIndented),
            "\n<a>\n  <b xml:space=\"preserve\"><c><d/></c></b>\n</a>\n");
}

TEST(DomToBuffer, DoesNotIndentTwice) {
  const auto once = textOf(parsed("<a><b><c/></b></a>"), kIndented);
  EXPECT_EQ(textOf(parsed(once), kIndented), once);
  EXPECT_EQ(textOf(parsed(once)), once.substr(1, once.size() - 2));
}

TEST(DomToBuffer, WritesDepthsThatNoStackWouldHold) {
  constexpr int kDepth = 100000;
  const auto document = newDocument(nullptr, u"a");
  xercesc::DOMNode* node = &document.root();
  for (int i = 1; i < kDepth; ++i) node = &appendElement(*node, nullptr, u"a");
  const auto text = textOf(document);
  EXPECT_EQ(text.size(), std::string("<a></a>").size() * kDepth - std::string("</a>").size() + 1);
  EXPECT_EQ(text.substr(text.size() - 8), "</a></a>");
}

TEST(DomToBytes, WritesUtf8WithoutByteOrderMark) {
  const auto document = newDocument(nullptr, u"\u00E9");
  appendText(document.root(), u"\U0001F600");
  std::string bytes;
  domToBytes(document.dom, bytes, EncodingType::kUTF8);
  EXPECT_EQ(bytes, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><\xC3\xA9>\xF0\x9F\x98\x80</\xC3\xA9>");
}

TEST(DomToBytes, WritesUtf16InLittleEndianOrderWithByteOrderMark) {
  const auto document = newDocument(nullptr, u"\u20AC");
  std::string bytes;
  domToBytes(&document.root(), bytes, EncodingType::kUTF16);
  EXPECT_EQ(bytes, std::string("\xFF\xFE<\0\xAC\x20/\0>\0", 10));
}

}  // namespace
}  // namespace Vantor::XMLUtils
