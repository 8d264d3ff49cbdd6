#include "XMLUtils/Utils.h"

#include <new>
#include <typeinfo>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#if VANTOR_WITH_XQILLA
#include <xqilla/exceptions/XQException.hpp>
#include <xqilla/exceptions/XQillaException.hpp>
#endif

#include "Core/Platform/Numbers.h"
#include "Core/Platform/Strings.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XMLUtils::Utils {

namespace {

constexpr const char* kUnknownError = "Unknown error in Xerces or XQilla";

/// `kind` begins the message. The three kinds without a class name of their own end in a colon already, and keep it:
/// "DOMException:: ...".
[[noreturn]] void raiseParseError(const wstring& kind, const wstring& message) {
  Exceptions::raise<Exceptions::ParseError>({"{}: {}", kPlace}, kind, message);
}

#if VANTOR_WITH_XQILLA
[[noreturn]] void convert(const XQillaException& exception) {
  raiseParseError(u"XQillaException:", utf16ToWstring(exception.getMessage()));
}
[[noreturn]] void convert(const XQException& exception) {
  raiseParseError(u"XQException:", utf16ToWstring(exception.getError()));
}
#endif
[[noreturn]] void convert(const xercesc::DOMException& exception) {
  raiseParseError(u"DOMException:", utf16ToWstring(exception.getMessage()) + u"(" +
                                        Platform::toDecimal(static_cast<int>(exception.code)) + u")");
}
/// A SAXException or XMLException, with its class as the compiler names it.
template <class Exception>
[[noreturn]] void convert(const Exception& exception) {
  raiseParseError(Vantor::Utils::stringToWstring(typeid(exception).name()), utf16ToWstring(exception.getMessage()));
}

}  // namespace

void rethrowConverted(const char* source, int line) {
  try {
    throw;
  }
#if VANTOR_WITH_XQILLA
  catch (const XQillaException& exception) {
    convert(exception);
  } catch (const XQException& exception) {
    convert(exception);
  }
#endif
  catch (const xercesc::DOMException& exception) {
    convert(exception);
  } catch (const xercesc::SAXException& exception) {
    convert(exception);
  } catch (const xercesc::XMLException& exception) {
    convert(exception);
  } catch (const Exceptions::BaseException&) {
    throw;
  } catch (const std::bad_alloc&) {
    Exceptions::raise<Exceptions::OutOfMemory>({kUnknownError, {source, line}});
  } catch (const xercesc::OutOfMemoryException&) {
    Exceptions::raise<Exceptions::OutOfMemory>({kUnknownError, {source, line}});
  } catch (...) {
    Exceptions::raise<Exceptions::ParseError>({kUnknownError, {source, line}});
  }
}

}  // namespace Vantor::XMLUtils::Utils
