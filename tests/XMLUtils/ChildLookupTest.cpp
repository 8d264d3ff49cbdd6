#include "XMLUtils/ChildLookup.h"

#include <gtest/gtest.h>

#include <random>
#include <xercesc/dom/DOMXPathException.hpp>
#include <xercesc/dom/DOMXPathExpression.hpp>
#include <xercesc/dom/DOMXPathNSResolver.hpp>
#include <xercesc/dom/DOMXPathResult.hpp>
#if VANTOR_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#include <xqilla/xqilla-dom3.hpp>
#endif

#include "tests/Sanitized.h"
#include "tests/XMLUtils/Documents.h"
#include "tests/XMLUtils/LoadedXQilla.h"

namespace Vantor::XMLUtils {
namespace {

using xercesc::DOMElement;
using xercesc::DOMNode;

/// What elements have as the attribute "id".
std::string ids(const std::vector<DOMElement*>& elements) {
  std::string ids;
  for (const auto* element : elements) ids += Vantor::Utils::wstringToString(element->getAttribute(u"id")) + " ";
  return ids;
}

std::string id(const DOMElement* element) {
  return element == nullptr ? "none" : Vantor::Utils::wstringToString(element->getAttribute(u"id"));
}

constexpr const char* kDocument =
    "<r xmlns:a='urn:a' xmlns:b='urn:b'>text<a:x id='1'/><!-- --><b:x id='2'/><x id='3'/><?pi?><![CDATA[ ]]>"
    "<a:x id='4'><a:x id='5'/></a:x><c:x id='6' xmlns:c='urn:a'/><x id='7' xmlns='urn:a'/>"
    "<a:x id='8' xmlns:a='urn:b'><a:x id='9'/></a:x><a:y id='10'/><a:\u00e9 id='11'/></r>";

TEST(ChildElements, AreAllElementsAndNothingElse) {
  const auto document = parsed(kDocument);
  EXPECT_EQ(ids(childElements(document.root())), "1 2 3 4 6 7 8 10 11 ");
  EXPECT_EQ(id(firstChildElement(document.root())), "1");
  const auto* leaf = firstChildElement(document.root());
  EXPECT_TRUE(childElements(*leaf).empty());
  EXPECT_EQ(firstChildElement(*leaf), nullptr);
}

TEST(ChildElements, AreNoneOfAnAttribute) {
  const auto document = parsed(kDocument);
  const auto& attribute = *firstChildElement(document.root())->getAttributeNode(u"id");
  EXPECT_TRUE(childElements(attribute).empty());
  EXPECT_EQ(firstChildElement(attribute), nullptr);
}

TEST(ChildLookup, FindsChildrenByNamespaceAndName) {
  const auto document = parsed(kDocument);
  ChildLookup lookup(document.root());
  EXPECT_EQ(ids(lookup.all(document.root(), u"a", u"x")), "1 4 6 7 ");
  EXPECT_EQ(ids(lookup.all(document.root(), u"b", u"x")), "2 8 ");
  EXPECT_EQ(ids(lookup.all(document.root(), u"a", u"\u00e9")), "11 ");
  EXPECT_EQ(id(lookup.first(document.root(), u"a", u"x")), "1");
  EXPECT_EQ(id(lookup.first(document.root(), u"a", u"z")), "none");
}

TEST(ChildLookup, TakesPrefixesAsTheyStandAtTheScope) {
  const auto document = parsed(kDocument);
  auto& inner = *childElements(document.root())[6];
  ASSERT_EQ(id(&inner), "8");
  EXPECT_EQ(ids(ChildLookup(document.root()).all(inner, u"b", u"x")), "9 ");
  EXPECT_EQ(ids(ChildLookup(document.root()).all(inner, u"a", u"x")), "");
  EXPECT_EQ(ids(ChildLookup(inner).all(inner, u"a", u"x")), "9 ");
  EXPECT_EQ(ids(ChildLookup(inner).all(document.root(), u"a", u"x")), "2 8 ");
}

TEST(ChildLookup, TellsTheNamespaceOfAPrefix) {
  const auto document = parsed(kDocument);
  ChildLookup lookup(document.root());
  EXPECT_EQ(lookup.namespaceOf(u"a"), u"urn:a");
  EXPECT_EQ(lookup.namespaceOf(u"c"), u"");
  EXPECT_EQ(lookup.namespaceOf(u"a"), u"urn:a");
}

TEST(ChildLookup, BindsAPrefixThatIsNotBound) {
  const auto document = parsed(kDocument);
  ChildLookup lookup(document.root());
  lookup.bindIfUnbound(u"a", u"urn:b");
  EXPECT_EQ(ids(lookup.all(document.root(), u"a", u"y")), "10 ");
  lookup.bindIfUnbound(u"z", u"urn:a");
  EXPECT_EQ(ids(lookup.all(document.root(), u"z", u"y")), "10 ");
  lookup.bindIfUnbound(u"z", u"urn:b");
  EXPECT_EQ(lookup.namespaceOf(u"z"), u"urn:a");
}

/// The message of the engine, or of the library in its place.
std::string failure(const std::string& prefix, const std::string& name) {
  const auto document = parsed(kDocument);
  ChildLookup lookup(document.root());
  try {
    lookup.first(document.root(), Vantor::Utils::stringToWstring(prefix), Vantor::Utils::stringToWstring(name));
    return "";
  } catch (const xercesc::DOMException& exception) {
    return std::to_string(exception.code) + " " + Vantor::Utils::wstringToString(exception.getMessage());
  }
}

TEST(ChildLookup, NamesAPrefixThatIsNotBound) {
  EXPECT_EQ(failure("zz", "x"), "51 No namespace for prefix 'zz' [err:XPST0081] at :1:3");
}

TEST(ChildLookup, RefusesWhatIsNoName) {
  if (hasXQilla()) GTEST_SKIP() << "compared with the engine below";
  EXPECT_EQ(failure("", "x"), "51 './:x' names no child [err:XPST0003] at :1:3");
  EXPECT_EQ(failure("a", ""), "51 './a:' names no child [err:XPST0003] at :1:3");
  EXPECT_EQ(failure("a", "*"), "51 './a:*' names no child [err:XPST0003] at :1:3");
  EXPECT_EQ(failure("zz", "1x"), "51 './zz:1x' names no child [err:XPST0003] at :1:3");
}

#if VANTOR_WITH_XQILLA

/// What a look-up gives or throws, as text.
template <class Operation>
std::string outcome(Operation&& operation) {
  const auto told = [](const char* kind, short code, const XMLCh* message) {
    return std::string(kind) + " " + std::to_string(code) + " " +
           Vantor::Utils::wstringToString(utf16ToWstring(message));
  };
  try {
    return operation();
  } catch (const XQillaException& exception) {
    return told("XQillaException", exception.code, exception.getMessage());
  } catch (const XQException& exception) {
    return told("XQException", 0, exception.getError());
  } catch (const xercesc::DOMException& exception) {
    return told("DOMException", exception.code, exception.getMessage());
  }
}

/// The XPath engine, asked the long way.
class Engine {
 public:
  explicit Engine(const DOMNode& scope)
      : document_(*scope.getOwnerDocument()), resolver_(document_.createNSResolver(&scope)) {}

  void bindIfUnbound(const wstring& prefix, const wstring& uri) {
    const auto* bound = resolver_->lookupNamespaceURI(prefix.c_str());
    if (bound == nullptr || *bound == 0) resolver_->addNamespaceBinding(prefix.c_str(), uri.c_str());
  }

  std::vector<DOMElement*> all(const DOMNode& context, const wstring& expression) {
    const Holder<xercesc::DOMXPathExpression> compiled(compile(expression));
    const auto result = evaluate(*compiled, context, XPath2Result::ITERATOR_RESULT);
    std::vector<DOMElement*> found;
    while (result->iterateNext()) found.push_back(dynamic_cast<DOMElement*>(result->getNodeValue()));
    return found;
  }

  DOMElement* first(const DOMNode& context, const wstring& expression) {
    const Holder<xercesc::DOMXPathExpression> compiled(compile(expression));
    const auto result = evaluate(*compiled, context, XPath2Result::FIRST_RESULT);
    return result->isNode() ? dynamic_cast<DOMElement*>(result->getNodeValue()) : nullptr;
  }

 private:
  xercesc::DOMXPathExpression* compile(const wstring& expression) {
    return document_.createExpression(expression.c_str(), resolver_.get());
  }
  static Holder<xercesc::DOMXPathResult> evaluate(const xercesc::DOMXPathExpression& compiled, const DOMNode& context,
                                                  int type) {
    return Holder<xercesc::DOMXPathResult>(
        compiled.evaluate(&context, static_cast<xercesc::DOMXPathResult::ResultType>(type), nullptr));
  }

  xercesc::DOMDocument& document_;
  Holder<xercesc::DOMXPathNSResolver> resolver_;
};

/// Documents of a few names, prefixes and namespaces, in all combinations.
class RandomDocument {
 public:
  explicit RandomDocument(unsigned seed) : random_(seed) { text_ = element(0, {}); }

  const std::string& text() const { return text_; }

  static constexpr const char* kNames[] = {"x", "y", "\u00e9", "a-b", "text", "div", "_1.2", "\u4e2d", "x\u0301"};
  static constexpr const char* kPrefixes[] = {"a", "b", "types", "groups"};

 private:
  using Prefixes = std::vector<std::string>;

  unsigned below(unsigned bound) { return random_() % bound; }
  template <std::size_t kCount>
  std::string oneOf(const char* const (&choice)[kCount]) {
    return choice[below(kCount)];
  }

  std::string element(int depth, Prefixes declared) {
    std::string attributes = " id='" + std::to_string(++elements_) + "'";
    for (const std::string prefix : kPrefixes) {
      if (below(5) != 0) continue;
      attributes += " xmlns:" + prefix + "='urn:" + std::to_string(below(3)) + "'";
      declared.push_back(prefix);
    }
    if (below(6) == 0) attributes += below(3) == 0 ? " xmlns=''" : " xmlns='urn:" + std::to_string(below(3)) + "'";
    const auto prefix = declared.empty() || below(3) == 0 ? "" : declared[below(declared.size())] + ":";
    const auto name = prefix + oneOf(kNames);
    return "<" + name + attributes + ">" + content(depth, declared) + "</" + name + ">";
  }

  std::string content(int depth, const Prefixes& declared) {
    std::string text;
    const auto children = depth < 4 ? below(8) : 0;
    for (unsigned child = 0; child < children; ++child) {
      text += below(2) == 0 ? other() : "";
      text += element(depth + 1, declared);
    }
    return text + other();
  }

  std::string other() {
    static constexpr const char* kOthers[] = {"", " ", "text", "<!-- <x/> -->", "<?x y?>", "<![CDATA[<x/>]]>"};
    return oneOf(kOthers);
  }

  std::mt19937 random_;
  std::string text_;
  int elements_ = 0;
};

constexpr const char* kAskedPrefixes[] = {"a",  "b",  "types", "groups", "zz", "",  "xml",   "xmlns", "fn",
                                          "xs", "1a", "a b",   "\u00e9", "a:", "*", "child", "a\"",   "."};
constexpr const char* kAskedNames[] = {
    "x",  "y",  "\u00e9", "a-b",        "text",    "div", "_1.2", "\u4e2d", "x\u0301", "z",     "*",   "a:*",
    "1x", "",   "x y",    "x/y",        "x[1]",    "x()", ".",    "@id",    "x|y",     "for",   "*:x", "\u00b7",
    "-x", "x.", "x:y",    "\U0001F600", "x\u00b7", "x ",  " x",   "x#",     "text()",  "node()"};

class Comparison {
 public:
  explicit Comparison(unsigned seed) : random_(seed), source_(RandomDocument(seed).text()), document_(parsed(source_)) {
    collect(document_.root());
  }

  /// How many comparisons found something, and how many were of errors.
  struct Counts {
    int found = 0;
    int failed = 0;
  };

  explicit Comparison(unsigned seed, Counts& counts) : Comparison(seed) { counts_ = &counts; }

  /// Compares `all`, and sometimes `first`, in one random place.
  void compareOnce() {
    const auto& scope = *elements_[random_() % elements_.size()];
    const auto& context = random_() % 2 == 0 ? scope : *elements_[random_() % elements_.size()];
    const auto* child = childOf(context);
    if (random_() % 3 == 0 || child == nullptr) {
      compareStep(scope, context, anyOf(kAskedPrefixes), anyOf(kAskedNames));
    } else {
      compareStep(scope, context, prefixFor(scope, *child), child->getLocalName());
    }
  }

  void compareChildren() {
    for (const auto* element : elements_) {
      Engine engine(*element);
      ASSERT_EQ(childElements(*element), engine.all(*element, u"./*")) << source_;
      ASSERT_EQ(firstChildElement(*element), engine.first(*element, u"./*")) << source_;
    }
  }

  /// The child step that stands without "./".
  void compareExtensions() {
    for (const auto* element : elements_) {
      Engine engine(*element);
      ChildLookup lookup(*element);
      if (lookup.namespaceOf(u"groups").empty()) continue;
      for (const auto* name : {u"x", u"y", u"text"}) {
        ASSERT_EQ(lookup.first(*element, u"groups", name), engine.first(*element, wstring(u"groups:") + name))
            << source_;
      }
    }
  }

 private:
  void collect(const DOMElement& element) {
    elements_.push_back(&element);
    for (const auto* child : childElements(element)) collect(*child);
  }

  template <std::size_t kCount>
  wstring anyOf(const char* const (&choice)[kCount]) {
    return Vantor::Utils::stringToWstring(choice[random_() % kCount]);
  }

  const DOMElement* childOf(const DOMElement& element) {
    const auto children = childElements(element);
    return children.empty() ? nullptr : children[random_() % children.size()];
  }

  /// What the scope calls the namespace of an element, if it has a prefix for it.
  wstring prefixFor(const DOMElement& scope, const DOMElement& element) {
    const auto* prefix = element.getNamespaceURI() == nullptr ? nullptr : scope.lookupPrefix(element.getNamespaceURI());
    return prefix == nullptr ? anyOf(RandomDocument::kPrefixes) : wstring(prefix);
  }

  void compareStep(const DOMElement& scope, const DOMElement& context, const wstring& prefix, const wstring& name) {
    ChildLookup lookup(scope);
    Engine engine(scope);
    if (random_() % 3 == 0) {
      lookup.bindIfUnbound(prefix, u"urn:1");
      engine.bindIfUnbound(prefix, u"urn:1");
    }
    const wstring expression = u"./" + prefix + u":" + name;
    const auto place = Vantor::Utils::wstringToString(expression) + " at " + id(&context) + ", prefixes of " +
                       id(&scope) + ", in " + source_;
    const auto expected = outcome([&] { return ids(engine.all(context, expression)); });
    ASSERT_EQ(outcome([&] { return ids(lookup.all(context, prefix, name)); }), expected) << place;
    if (!expected.empty()) ++(expected.find("Exception ") != std::string::npos ? counts_->failed : counts_->found);
    if (random_() % 4 != 0) return;
    ASSERT_EQ(outcome([&] { return id(lookup.first(context, prefix, name)); }),
              outcome([&] { return id(engine.first(context, expression)); }))
        << place;
  }

  std::mt19937 random_;
  std::string source_;
  Document document_;
  std::vector<const DOMElement*> elements_;
  Counts unread_;
  Counts* counts_ = &unread_;
};

TEST(ChildLookup, GivesAndThrowsWhatTheXPathEngineGivesAndThrows) {
  if (!hasXQilla()) GTEST_SKIP() << "XMLUtils is built without XQilla";
  const int kDocuments = isSanitized() ? 50 : 250;
  Comparison::Counts counts;
  for (int seed = 0; seed < kDocuments; ++seed) {
    Comparison comparison(static_cast<unsigned>(seed), counts);
    for (int i = 0; i < 48; ++i) {
      comparison.compareOnce();
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(counts.found, 4 * kDocuments);
  EXPECT_GT(counts.failed, 4 * kDocuments);
}

TEST(ChildElements, AreWhatTheXPathEngineFinds) {
  if (!hasXQilla()) GTEST_SKIP() << "XMLUtils is built without XQilla";
  for (unsigned seed = 0; seed < (isSanitized() ? 4 : 12); ++seed) {
    Comparison comparison(seed);
    comparison.compareChildren();
    comparison.compareExtensions();
    if (HasFatalFailure()) return;
  }
}

#endif

}  // namespace
}  // namespace Vantor::XMLUtils
