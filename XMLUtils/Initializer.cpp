#include "XMLUtils/Initializer.h"

#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#if VANTOR_WITH_XQILLA
#include <xqilla/utils/XQillaPlatformUtils.hpp>
#endif

namespace Vantor::XMLUtils {

namespace {

#if VANTOR_WITH_XQILLA
constexpr const XMLCh* kFeatures = u"XPath2 3.0";
void start() { XQillaPlatformUtils::initialize(); }
#else
constexpr const XMLCh* kFeatures = u"LS";
void start() { xercesc::XMLPlatformUtils::Initialize(); }
#endif

}  // namespace

Initializer::Initializer() {
  start();
  implementation_ = xercesc::DOMImplementationRegistry::getDOMImplementation(kFeatures);
  if (implementation_ == nullptr) {
    ThrowXML(xercesc::RuntimeException, xercesc::XMLExcepts::CPtr_PointerIsZero);
  }
}

Initializer& Initializer::instance() {
  static Initializer initializer;
  return initializer;
}

const XMLCh* Initializer::features() const { return kFeatures; }

xercesc::DOMImplementationLS& Initializer::domImplementationLS() const { return *implementation_; }

}  // namespace Vantor::XMLUtils
