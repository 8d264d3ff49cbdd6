#include "XMLUtils/Utils.h"

#include <gtest/gtest.h>

#include <xercesc/dom/DOMXPathException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/UTFDataFormatException.hpp>

#include <ostream>
#include <stdexcept>

#if VANTOR_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#include <xqilla/exceptions/XQillaException.hpp>
#endif

#include "XMLUtils/Initializer.h"
#include "XMLUtils/Strings.h"
#include "tests/XMLUtils/LoadedXQilla.h"

namespace Vantor::XMLUtils {
namespace {

/// What leaves `convertingExceptions`.
struct Told {
  std::string kind;
  std::string message;
  std::string file;
  int line = 0;

  friend bool operator==(const Told& left, const Told& right) {
    return left.kind == right.kind && left.message == right.message && left.file == right.file &&
           left.line == right.line;
  }
  friend std::ostream& operator<<(std::ostream& stream, const Told& told) {
    return stream << told.kind << " \"" << told.message << "\" from " << told.file << ":" << told.line;
  }
};

template <class Exception>
Told converted(const Exception& exception, const char* source = "Source", int line = 1) {
  const auto told = [](const char* kind, const Exceptions::BaseException& error) {
    return Told{kind, error.message(), error.file(), error.line()};
  };
  try {
    Utils::convertingExceptions([&]() -> int { throw exception; }, source, line);
    return {};
  } catch (const Exceptions::ParseError& error) {
    return told("ParseError", error);
  } catch (const Exceptions::InvalidLength& error) {
    return told("InvalidLength", error);
  } catch (const Exceptions::BaseException& error) {
    return told("BaseException", error);
  }
}

Told parseError(const std::string& message) { return {"ParseError", message, "XMLUtils/Utils", 207}; }

std::string narrow(const XMLCh* text) { return Vantor::Utils::wstringToString(utf16ToWstring(text)); }

template <class Exception>
std::string className() {
  return typeid(Exception).name();
}

class ErrorConversion : public ::testing::Test {
 protected:
  ErrorConversion() { Initializer::instance(); }
};

TEST_F(ErrorConversion, ReturnsWhatTheOperationReturns) {
  EXPECT_EQ(Utils::convertingExceptions([] { return 42; }, "Source", 1), 42);
  int calls = 0;
  Utils::convertingExceptions([&calls] { ++calls; }, "Source", 1);
  EXPECT_EQ(calls, 1);
}

TEST_F(ErrorConversion, TellsMessageAndCodeOfADOMException) {
  const xercesc::DOMException exception(xercesc::DOMException::HIERARCHY_REQUEST_ERR);
  ASSERT_NE(narrow(exception.getMessage()), "");
  EXPECT_EQ(converted(exception), parseError("DOMException:: " + narrow(exception.getMessage()) + "(3)"));
  const xercesc::DOMXPathException path(xercesc::DOMXPathException::TYPE_ERR);
  EXPECT_EQ(converted(path), parseError("DOMException:: " + narrow(path.getMessage()) + "(52)"));
}

TEST_F(ErrorConversion, TellsClassAndMessageOfASAXException) {
  EXPECT_EQ(converted(xercesc::SAXException(u"a \u20ac")),
            parseError(className<xercesc::SAXException>() + ": a \u20ac"));
  EXPECT_EQ(converted(xercesc::SAXNotSupportedException(u"b")),
            parseError(className<xercesc::SAXNotSupportedException>() + ": b"));
  EXPECT_EQ(converted(xercesc::SAXParseException(u"c", u"", u"", 1, 1)),
            parseError(className<xercesc::SAXParseException>() + ": c"));
}

TEST_F(ErrorConversion, TellsClassAndMessageOfAnXMLException) {
  const xercesc::RuntimeException runtime("", 1, xercesc::XMLExcepts::CPtr_PointerIsZero);
  ASSERT_NE(narrow(runtime.getMessage()), "");
  EXPECT_EQ(converted(runtime),
            parseError(className<xercesc::RuntimeException>() + ": " + narrow(runtime.getMessage())));
  const xercesc::UTFDataFormatException format("", 1, xercesc::XMLExcepts::UTF8_Invalid_3BytesSeq, u"x", u"y");
  ASSERT_NE(narrow(format.getMessage()), "");
  EXPECT_EQ(converted(format),
            parseError(className<xercesc::UTFDataFormatException>() + ": " + narrow(format.getMessage())));
}

#if VANTOR_WITH_XQILLA
TEST_F(ErrorConversion, TellsTheMessageOfAnXQillaException) {
  if (!hasXQilla()) GTEST_SKIP() << "XMLUtils is built without XQilla";
  EXPECT_EQ(converted(XQillaException(51, u"a \u20ac")), parseError("XQillaException:: a \u20ac"));
}

TEST_F(ErrorConversion, TellsTheMessageOfAnXQException) {
  if (!hasXQilla()) GTEST_SKIP() << "XMLUtils is built without XQilla";
  EXPECT_EQ(converted(XQException(u"b", u"", 1, 2, "", 3)), parseError("XQException:: b"));
}
#endif

TEST_F(ErrorConversion, LetsExceptionsOfTheCoreLibraryPass) {
  EXPECT_EQ(converted(Exceptions::ParseError(std::string("a"), "File", 1)), (Told{"ParseError", "a", "File", 1}));
  EXPECT_EQ(converted(Exceptions::InvalidLength(std::string("b"), "File", 2)), (Told{"InvalidLength", "b", "File", 2}));
  EXPECT_EQ(converted(Exceptions::BaseException(std::string("c"), "File", 3)), (Told{"BaseException", "c", "File", 3}));
}

TEST_F(ErrorConversion, TellsAnythingElseAsUnknownFromWhereTheCallerSays) {
  for (const int line : {282, 298, 313}) {
    const Told unknown{"ParseError", "Unknown error in Xerces or XQilla", "XMLBuilder\\XML2Partition", line};
    const auto from = [line](const auto& exception) { return converted(exception, "XMLBuilder\\XML2Partition", line); };
    EXPECT_EQ(from(42), unknown);
    EXPECT_EQ(from(std::bad_alloc()), unknown);
    EXPECT_EQ(from(std::logic_error("any")), unknown);
    EXPECT_EQ(from(xercesc::OutOfMemoryException()), unknown);
  }
}

TEST_F(ErrorConversion, ConvertsOnceWhenCallsNest) {
  const auto inner = [] { return Utils::convertingExceptions([]() -> int { throw 42; }, "Inner", 1); };
  try {
    Utils::convertingExceptions(inner, "Outer", 2);
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::ParseError& error) {
    EXPECT_EQ(error.file(), "Inner");
    EXPECT_EQ(error.line(), 1);
  }
}

}  // namespace
}  // namespace Vantor::XMLUtils
