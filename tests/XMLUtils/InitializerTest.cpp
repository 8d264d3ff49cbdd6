#include "XMLUtils/Initializer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "Documents.h"
#include "tests/XMLUtils/LoadedXQilla.h"

namespace Vantor::XMLUtils {
namespace {

using xercesc::DOMNode;

TEST(Initializer, IsOneForTheProcess) {
  auto& first = Initializer::instance();
  EXPECT_EQ(&first, &Initializer::instance());
  EXPECT_EQ(&first.domImplementation(), &Initializer::instance().domImplementation());
}

TEST(Initializer, HandsOutAnImplementationThatMakesParsersAndDocuments) {
  auto& initializer = Initializer::instance();
  using LS = xercesc::DOMImplementationLS;
  const Holder<xercesc::DOMLSParser> parser(initializer.domImplementationLS().createLSParser(
      LS::MODE_SYNCHRONOUS, nullptr, xercesc::XMLPlatformUtils::fgMemoryManager, nullptr));
  const std::string text = "<a/>";
  auto* document = loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *parser);
  EXPECT_EQ(utf16ToWstring(document->getDocumentElement()->getNodeName()), u"a");
}

TEST(Initializer, StartsXQillaWhereTheLibraryIsBuiltWithIt) {
#if VANTOR_WITH_XQILLA
  // CTest runs these tests twice, the second time with the variable and with another XMLUtils.
  EXPECT_EQ(hasXQilla(), std::getenv("VANTOR_TESTS_WITHOUT_XQILLA") == nullptr);
#else
  EXPECT_FALSE(hasXQilla());
#endif
}

#if VANTOR_WITH_XQILLA
/// Elements that `expression` selects from the root, by an iterator of XQilla.
int countOf(const Document& document, const XMLCh* expression) {
  constexpr auto kIterator = static_cast<xercesc::DOMXPathResult::ResultType>(101);
  const Holder<xercesc::DOMXPathNSResolver> resolver(document->createNSResolver(&document.root()));
  const Holder<xercesc::DOMXPathExpression> compiled(document->createExpression(expression, resolver.get()));
  const Holder<xercesc::DOMXPathResult> result(compiled->evaluate(&document.root(), kIterator, nullptr));
  int count = 0;
  while (result->iterateNext()) ++count;
  return count;
}

TEST(Initializer, GivesDocumentsThatEvaluateXPath2) {
  if (!hasXQilla()) GTEST_SKIP() << "XMLUtils is built without XQilla";
  const auto loaded = parsed("<p:a xmlns:p='urn:p'><p:b/>x<b/><p:b><p:b/></p:b></p:a>");
  EXPECT_EQ(countOf(loaded, u"./*"), 3);
  EXPECT_EQ(countOf(loaded, u"./p:b"), 2);
  EXPECT_EQ(countOf(loaded, u"for $n in (1, 2) return ./p:b[$n]"), 2);
  const auto made = newDocument(nullptr, u"a");
  appendElement(made.root(), nullptr, u"b");
  EXPECT_EQ(countOf(made, u"./*"), 1);
}
#endif

TEST(Initializer, LetsADocumentBeDestroyedThroughItsNode) {
  auto* document = Initializer::instance().domImplementation().createDocument(nullptr, u"a", nullptr);
  document->getDocumentElement()->appendChild(document->createTextNode(u"text"));
  std::unique_ptr<DOMNode> owner(document);
  owner.reset();
  EXPECT_EQ(owner, nullptr);
}

/// Destroyed after everything that the tests start, when the process ends.
std::unique_ptr<DOMNode> documentOfTheProcess;
Document parsedDocumentOfTheProcess;

TEST(Initializer, LetsDocumentsOutliveEveryStatic) {
  documentOfTheProcess.reset(Initializer::instance().domImplementation().createDocument(nullptr, u"a", nullptr));
  parsedDocumentOfTheProcess = parsed("<a>text</a>");
  EXPECT_EQ(textOf(*documentOfTheProcess), "<a/>");
  EXPECT_EQ(textOf(parsedDocumentOfTheProcess), "<a>text</a>");
}

}  // namespace
}  // namespace Vantor::XMLUtils
