#include <gtest/gtest.h>

#include "Documents.h"

namespace Vantor::XMLUtils {
namespace {

/// A root that binds `s` to "urn:s" and `t` to "urn:t".
Document declared() {
  auto document = newDocument(u"urn:s", u"s:root");
  document.root().setAttributeNS(kXmlnsUri, u"xmlns:s", u"urn:s");
  document.root().setAttributeNS(kXmlnsUri, u"xmlns:t", u"urn:t");
  return document;
}

/// The text of the root's content.
std::string contentOf(const Document& document) {
  const std::string start = R"(<s:root xmlns:s="urn:s" xmlns:t="urn:t">)";
  const std::string end = "</s:root>";
  const auto text = textOf(document);
  EXPECT_EQ(text.substr(0, start.size()), start);
  return text.substr(start.size(), text.size() - start.size() - end.size());
}

/// Whether a parser sees the same names and namespaces, declarations aside.
void expectSameNames(const xercesc::DOMNode& a, const xercesc::DOMNode& b) {
  EXPECT_EQ(utf16ToWstring(a.getLocalName()), utf16ToWstring(b.getLocalName()));
  EXPECT_EQ(utf16ToWstring(a.getNamespaceURI()), utf16ToWstring(b.getNamespaceURI()));
  const auto& attributes = *a.getAttributes();
  for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
    const auto& attribute = *attributes.item(i);
    if (wstring(attribute.getNodeName()).compare(0, 5, u"xmlns") == 0) continue;
    const auto* other = b.getAttributes()->getNamedItemNS(attribute.getNamespaceURI(), attribute.getLocalName());
    ASSERT_NE(other, nullptr) << textOf(b);
    EXPECT_EQ(utf16ToWstring(attribute.getNodeValue()), utf16ToWstring(other->getNodeValue()));
  }
  const auto* first = a.getFirstChild();
  const auto* second = b.getFirstChild();
  for (; first != nullptr && second != nullptr; first = first->getNextSibling(), second = second->getNextSibling()) {
    expectSameNames(*first, *second);
  }
  EXPECT_EQ(first, second);
}

std::string contentThatReadsBack(const Document& document) {
  expectSameNames(document.root(), parsed(textOf(document)).root());
  return contentOf(document);
}

TEST(NamespaceDeclaration, AddsNothingToWhatIsDeclared) {
  const auto document = declared();
  appendElement(appendElement(document.root(), u"urn:s", u"s:a"), u"urn:t", u"t:b");
  EXPECT_EQ(contentThatReadsBack(document), "<s:a><t:b/></s:a>");
}

TEST(NamespaceDeclaration, DeclaresAPrefixThatMeansAnotherNamespace) {
  const auto document = declared();
  auto& code = appendElement(document.root(), u"urn:other", u"t:Code");
  appendElement(code, u"urn:other", u"t:inner");
  appendElement(code, u"urn:t", u"t:back");
  appendElement(document.root(), u"urn:t", u"t:next");
  EXPECT_EQ(contentThatReadsBack(document),
            "<t:Code xmlns:t=\"urn:other\"><t:inner/><t:back xmlns:t=\"urn:t\"/></t:Code><t:next/>");
}

TEST(NamespaceDeclaration, DeclaresAnUnknownPrefixWhereItIsUsed) {
  const auto document = declared();
  appendElement(document.root(), u"urn:u", u"u:a");
  appendElement(document.root(), u"urn:u", u"u:a");
  EXPECT_EQ(contentThatReadsBack(document), "<u:a xmlns:u=\"urn:u\"/><u:a xmlns:u=\"urn:u\"/>");
}

TEST(NamespaceDeclaration, DeclaresAndTakesBackTheDefaultNamespace) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:d", u"a");
  appendElement(a, u"urn:d", u"b");
  appendElement(appendElement(a, nullptr, u"c"), nullptr, u"d");
  appendElement(document.root(), nullptr, u"e");
  EXPECT_EQ(contentThatReadsBack(document), "<a xmlns=\"urn:d\"><b/><c xmlns=\"\"><d/></c></a><e/>");
}

TEST(NamespaceDeclaration, TreatsElementsMadeWithoutNamespacesAsInNone) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:d", u"a");
  a.appendChild(document->createElement(u"b"));
  auto* own = document->createElement(u"c");
  own->setAttribute(u"xmlns", u"urn:e");
  a.appendChild(own);
  a.appendChild(document->createElement(u"t:d"));
  EXPECT_EQ(contentOf(document), "<a xmlns=\"urn:d\"><b xmlns=\"\"/><c xmlns=\"urn:e\"/><t:d/></a>");
}

TEST(NamespaceDeclaration, WritesAPrefixWithoutNamespaceAsItStands) {
  const auto document = declared();
  document.root().appendChild(document->createElement(u"nowhere:a"));
  EXPECT_EQ(contentOf(document), "<nowhere:a/>");
}

TEST(NamespaceDeclaration, CorrectsADeclarationThatContradictsItsElement) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:u", u"u:a");
  a.setAttributeNS(kXmlnsUri, u"xmlns:u", u"urn:wrong");
  auto& b = appendElement(document.root(), nullptr, u"b");
  b.setAttributeNS(kXmlnsUri, u"xmlns", u"urn:wrong");
  EXPECT_EQ(contentThatReadsBack(document), "<u:a xmlns:u=\"urn:u\"/><b xmlns=\"\"/>");
  EXPECT_EQ(utf16ToWstring(a.getAttribute(u"xmlns:u")), u"urn:wrong");
}

TEST(NamespaceDeclaration, LeavesOutADeclarationThatXmlCannotHold) {
  const auto document = declared();
  appendElement(document.root(), nullptr, u"a").setAttributeNS(kXmlnsUri, u"xmlns:u", u"");
  EXPECT_EQ(contentThatReadsBack(document), "<a/>");
}

TEST(NamespaceDeclaration, DeclaresTheNamespacesOfAttributes) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:s", u"s:a");
  a.setAttributeNS(u"urn:t", u"t:known", u"1");
  a.setAttributeNS(u"urn:u", u"u:first", u"2");
  a.setAttributeNS(u"urn:u", u"u:second", u"3");
  EXPECT_EQ(contentThatReadsBack(document), "<s:a t:known=\"1\" xmlns:u=\"urn:u\" u:first=\"2\" u:second=\"3\"/>");
}

TEST(NamespaceDeclaration, RedeclaresAnInheritedPrefixForAnAttribute) {
  const auto document = declared();
  appendElement(document.root(), u"urn:s", u"s:a").setAttributeNS(u"urn:u", u"t:b", u"1");
  EXPECT_EQ(contentThatReadsBack(document), "<s:a xmlns:t=\"urn:u\" t:b=\"1\"/>");
}

TEST(NamespaceDeclaration, GivesAnAttributeAnotherPrefixWhenItsOwnIsTaken) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:t", u"t:a");
  a.setAttributeNS(u"urn:u", u"t:b", u"1");
  a.setAttributeNS(u"urn:s", u"t:c", u"2");
  EXPECT_EQ(contentThatReadsBack(document), "<t:a xmlns:ns0=\"urn:u\" ns0:b=\"1\" s:c=\"2\"/>");
}

TEST(NamespaceDeclaration, GivesAnAttributeAPrefixWhenItHasNone) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:d", u"a");
  a.setAttributeNS(u"urn:d", u"b", u"1");
  a.setAttributeNS(u"urn:t", u"c", u"2");
  a.setAttributeNS(nullptr, u"d", u"3");
  appendElement(document.root(), u"urn:s", u"s:e").setAttributeNS(u"urn:f", u"g", u"4");
  EXPECT_EQ(contentThatReadsBack(document),
            "<a xmlns=\"urn:d\" xmlns:ns0=\"urn:d\" ns0:b=\"1\" t:c=\"2\" d=\"3\"/>"
            "<s:e xmlns:ns0=\"urn:f\" ns0:g=\"4\"/>");
}

TEST(NamespaceDeclaration, KeepsTwoAttributesOfOnePrefixApart) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:s", u"s:a");
  a.setAttributeNS(u"urn:u", u"p:b", u"1");
  a.setAttributeNS(u"urn:v", u"p:c", u"2");
  a.setAttributeNS(u"urn:t", u"d", u"3");
  a.setAttributeNS(u"urn:w", u"t:e", u"4");
  contentThatReadsBack(document);
}

TEST(NamespaceDeclaration, KnowsTheXmlPrefix) {
  const auto document = declared();
  document.root().setAttributeNS(u"http://www.w3.org/XML/1998/namespace", u"xml:lang", u"en");
  EXPECT_EQ(textOf(document), "<s:root xml:lang=\"en\" xmlns:s=\"urn:s\" xmlns:t=\"urn:t\"/>");
}

TEST(NamespaceDeclaration, DeclaresForAPartOfADocumentWhatItsAncestorsDeclared) {
  const auto document = declared();
  auto& a = appendElement(document.root(), u"urn:t", u"t:a");
  appendElement(a, u"urn:s", u"s:b");
  EXPECT_EQ(textOf(a), "<t:a xmlns:t=\"urn:t\"><s:b xmlns:s=\"urn:s\"/></t:a>");
}

}  // namespace
}  // namespace Vantor::XMLUtils
