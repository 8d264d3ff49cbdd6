#include "XMLUtils/Initializer.h"

#include <memory>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLInitializer.hpp>
#include <xercesc/util/XMLUni.hpp>
#if VANTOR_WITH_XQILLA
#include <xqilla/utils/XQillaPlatformUtils.hpp>
#endif

#include "Core/Platform/MemoryBudget.h"
#include "Core/Platform/Raise.h"
#include "XMLUtils/XercesHeap.h"

namespace Vantor::XMLUtils {

namespace {

bool isBeyondRepair = false;

#if VANTOR_WITH_XQILLA
constexpr const XMLCh* kFeatures = u"XPath2 3.0";

/// XQilla cannot take back a start, and its arithmetic ends the process where memory is short. There has to be more
/// than it needs.
void startXPath() {
  constexpr std::size_t kReserve = std::size_t{16} << 20;
  Platform::releaseMemory(Platform::allocateMemory(kReserve));
  isBeyondRepair = true;
  XQillaPlatformUtils::initialize();
  isBeyondRepair = false;
}
#else
constexpr const XMLCh* kFeatures = u"LS";
void startXPath() {}
#endif

/// Xerces calls it where it cannot start; its own one would end the process.
class ThrowingPanic : public xercesc::PanicHandler {
 public:
  void panic(PanicReasons reason) override {
    Exceptions::raise<Exceptions::StartFailure>("the XML parser cannot start: {}", getPanicReasonString(reason));
  }
};

/// Takes back a start that failed. `Terminate` takes for granted that all static data are there, though they come last.
class HalfStarted : private xercesc::XMLInitializer {
 public:
  static void takeBack() {
    initializeStaticData();
    xercesc::XMLPlatformUtils::Terminate();
  }
};

void startXerces() {
  // Xerces keeps both until the end of the process, and so do exceptions.
  static auto& panic = *new ThrowingPanic;
  auto heap = std::make_unique<XercesHeap>();
  try {
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, &panic, heap.get());
  } catch (...) {
    isBeyondRepair = true;
    auto* const used = heap.release();
    HalfStarted::takeBack();
    delete used;
    isBeyondRepair = false;
    throw;
  }
  heap->finishStart();
  static auto& kept = *heap.release();
  static_cast<void>(kept);
}

void start() {
  if (isBeyondRepair) {
    Exceptions::raise<Exceptions::StartFailure>("the XML parser cannot start: an earlier start failed half-way");
  }
  const Platform::BudgetPause pause;
  static bool hasXerces = false;
  if (!hasXerces) startXerces();
  hasXerces = true;
  startXPath();
}

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
