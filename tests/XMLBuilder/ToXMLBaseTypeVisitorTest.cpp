#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMText.hpp>

#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

constexpr const char16_t* kSt434Types = u"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012";

std::u16string_view viewOf(const XMLCh* text) { return text == nullptr ? u"(null)" : text; }

void write(const TestDocument& document, const Types::SimpleDataType& value) {
  NamespaceMap namespaces;
  ToXMLBaseTypeVisitor writer(document.element(), namespaces);
  value.accept(writer);
}

/// The text nodes of an element that has no other children.
std::vector<std::u16string> textNodes(const xercesc::DOMElement& element) {
  std::vector<std::u16string> texts;
  for (const auto* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    EXPECT_EQ(child->getNodeType(), xercesc::DOMNode::TEXT_NODE);
    texts.emplace_back(child->getNodeValue());
  }
  return texts;
}

using Texts = std::vector<std::u16string>;

TEST(ToXMLBaseTypeVisitor, EntersEachLegacyNamespaceOnce) {
  const TestDocument document;
  NamespaceMap namespaces;
  const ToXMLBaseTypeVisitor first(document.element(), namespaces);
  const ToXMLBaseTypeVisitor second(document.element(), namespaces);
  EXPECT_EQ(namespaces.size(), 3u);
  EXPECT_EQ(namespaces.uriOf(u"types"), u"urn:SMPTE:Types:MXF");
  EXPECT_EQ(namespaces.uriOf(u"s422mTypes"), u"urn:SMPTE:S422MTypes:MXF");
}

TEST(ToXMLBaseTypeVisitor, LeavesAMapAloneInWhichAnotherURIHasThePrefix) {
  const TestDocument document;
  NamespaceMap namespaces;
  namespaces.insert(u"urn:x", u"types");
  namespaces.insert(u"urn:y", u"s422mTypes");
  const ToXMLBaseTypeVisitor writer(document.element(), namespaces);
  EXPECT_EQ(namespaces.size(), 3u);
  EXPECT_EQ(namespaces.uriOf(u"types"), u"urn:x");
  EXPECT_EQ(namespaces.uriOf(u"s422mTypes"), u"urn:y");
}

TEST(ToXMLBaseTypeVisitor, EntersOnlyTheTypesNamespaceOfSt434ForATargetOfThatStandard) {
  const TestDocument document(kSt434Elements);
  NamespaceMap namespaces;
  const ToXMLBaseTypeVisitor first(document.element(), namespaces);
  const ToXMLBaseTypeVisitor second(document.element(), namespaces);
  EXPECT_EQ(namespaces.size(), 2u);
  EXPECT_EQ(namespaces.uriOf(u"st377Types"), kSt434Types);
}

TEST(ToXMLBaseTypeVisitor, EntersNothingWhereSt377TypesIsBoundAlready) {
  const TestDocument document(kSt434Elements);
  NamespaceMap namespaces;
  namespaces.insert(u"urn:x", u"st377Types");
  const ToXMLBaseTypeVisitor writer(document.element(), namespaces);
  EXPECT_EQ(namespaces.size(), 2u);
}

TEST(ToXMLBaseTypeVisitor, WritesInTheLegacyFormIntoATargetWithoutNamespace) {
  const TestDocument document;
  auto* target = document->createElement(u"Prop");
  NamespaceMap namespaces;
  ToXMLBaseTypeVisitor writer(*target, namespaces);
  uid(1).accept(writer);
  EXPECT_EQ(textNodes(*target), (Texts{u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01"}));
}

TEST(ToXMLBaseTypeVisitor, SetsTheValueOfAnAttributeInTheDottedFormWhateverTheElement) {
  const TestDocument document(kSt434Elements);
  auto* attribute = document->createAttributeNS(u"urn:a", u"a:Id");
  document.element().setAttributeNodeNS(attribute);
  ToXMLBaseTypeVisitor writer(*attribute);
  uid(0xab).accept(writer);
  EXPECT_EQ(viewOf(attribute->getValue()), u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.AB");
  EXPECT_EQ(document.element().getFirstChild(), nullptr);
}

TEST(ToXMLBaseTypeVisitor, SetsTheValueOfAnAttributeToAReference) {
  const TestDocument document;
  auto* attribute = document->createAttributeNS(u"urn:a", u"a:Id");
  ToXMLBaseTypeVisitor writer(*attribute);
  Types::StrongReference(uid(1)).accept(writer);
  EXPECT_EQ(viewOf(attribute->getValue()), u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.01");
  Types::WeakReference(uid(2)).accept(writer);
  EXPECT_EQ(viewOf(attribute->getValue()), u"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.02");
}

TEST(ToXMLBaseTypeVisitor, SurvivesAnyValueForAnAttribute) {
  const TestDocument document;
  auto* attribute = document->createAttributeNS(u"urn:a", u"a:Id");
  ToXMLBaseTypeVisitor writer(*attribute);
  Types::UInt8(7).accept(writer);
  EXPECT_EQ(viewOf(attribute->getValue()), u"7");
  Types::Rational(1, 2).accept(writer);
  Types::RGBALayout().accept(writer);
  Types::J2KCodingStyleDefault().accept(writer);
  EXPECT_EQ(viewOf(attribute->getValue()), u"7");
}

TEST(ToXMLBaseTypeVisitor, WritesTheItemsOfACollectionAsTextNodesOfTheirOwn) {
  Types::Batch batch;
  for (uint8 number = 1; number <= 3; ++number) batch.append(Types::UInt8(number).clone());
  const TestDocument document;
  write(document, batch);
  EXPECT_EQ(textNodes(document.element()), (Texts{u"1", u"2", u"3"}));
  EXPECT_XML(textOf(document.element()), "<p:Prop {p}>123</p:Prop>");
}

TEST(ToXMLBaseTypeVisitor, AppendsToWhatTheTargetHolds) {
  const TestDocument document;
  write(document, Types::UInt8(1));
  write(document, Types::UInt8(1));
  write(document, Types::Rational(1, 2));
  write(document, Types::ISO7String("x"));
  EXPECT_XML(textOf(document.element()), R"(
    <p:Prop {p}>11<types:Numerator {types}>1</types:Numerator><types:Denominator {types}>2</types:Denominator>x</p:Prop>)");
}

TEST(ToXMLBaseTypeVisitor, WritesAnEmptyTextNodeForNoBytesAndForNoText) {
  for (const auto& value : {SharedPtr<Types::SimpleDataType>(new Types::DataStream()),
                            SharedPtr<Types::SimpleDataType>(new Types::Unknown()),
                            SharedPtr<Types::SimpleDataType>(new Types::UTF16String()),
                            SharedPtr<Types::SimpleDataType>(new Types::ISO7String())}) {
    const TestDocument document;
    write(document, *value);
    EXPECT_EQ(textNodes(document.element()), (Texts{u""}));
  }
}

TEST(ToXMLBaseTypeVisitor, WritesNothingForAnEmptyCollection) {
  const TestDocument document;
  write(document, Types::Array());
  write(document, Types::Batch(16));
  EXPECT_EQ(document.element().getFirstChild(), nullptr);
}

TEST(ToXMLBaseTypeVisitor, WritesOneCodeUnitEvenHalfASurrogatePair) {
  const TestDocument document;
  write(document, Types::UTF16(0xd83d));
  EXPECT_EQ(textNodes(document.element()), (Texts{std::u16string(1, char16_t{0xd83d})}));
}

TEST(ToXMLBaseTypeVisitor, WritesTextThatXMLCannotHoldAsItIsIntoTheDOM) {
  const TestDocument document;
  write(document, Types::UTF8String(wstring(u"a\u0001\uffff")));
  EXPECT_EQ(textNodes(document.element()), (Texts{u"a\u0001\uffff"}));
}

TEST(ToXMLBaseTypeVisitor, MakesNamespaceAwareChildren) {
  const TestDocument document(kSt434Elements);
  write(document, Types::RGBALayout());
  const auto* component = document.element().getFirstElementChild();
  EXPECT_EQ(viewOf(component->getNamespaceURI()), kSt434Types);
  EXPECT_EQ(viewOf(component->getLocalName()), u"RGBAComponent");
  EXPECT_EQ(viewOf(component->getPrefix()), u"types");
  EXPECT_EQ(viewOf(component->getFirstElementChild()->getNamespaceURI()), kSt434Types);
  EXPECT_FALSE(component->hasAttributes());
}

}  // namespace
}  // namespace Vantor::XMLBuilder
