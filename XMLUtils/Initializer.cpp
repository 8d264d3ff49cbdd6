#include "XMLUtils/Initializer.h"

#include <memory>
#include <new>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLInitializer.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#if VANTOR_WITH_XQILLA
#include <xqilla/utils/XQillaPlatformUtils.hpp>
#endif

#include "Core/Platform/MemoryBudget.h"
#include "Core/Platform/Raise.h"
#include "XMLUtils/XercesHeap.h"

namespace Vantor::XMLUtils {

namespace {

#if VANTOR_WITH_XQILLA
constexpr const XMLCh* kFeatures = u"XPath2 3.0";

/// XQilla cannot take back a start, and its arithmetic ends the process where memory is short. There has to be more
/// than it needs.
void startXPath() {
  static bool isBeyondRepair = false;
  if (isBeyondRepair) {
    Exceptions::raise<Exceptions::StartFailure>("the XPath engine cannot start: an earlier start failed half-way");
  }
  constexpr std::size_t kReserve = std::size_t{16} << 20;
  Platform::releaseMemory(Platform::allocateMemory(kReserve));
  isBeyondRepair = true;
  try {
    XQillaPlatformUtils::initialize();
  } catch (...) {
    Exceptions::raise<Exceptions::StartFailure>("the XPath engine cannot start");
  }
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
    lacksTranscoder_ = reason == Panic_NoDefTranscoder;
    Exceptions::raise<Exceptions::StartFailure>("the XML parser cannot start: {}", getPanicReasonString(reason));
  }
  void forget() { lacksTranscoder_ = false; }
  /// Whether the last one came before Xerces had the transcoder that its static data need.
  bool lacksTranscoder() const { return lacksTranscoder_; }

 private:
  bool lacksTranscoder_ = false;
};

// Xerces lets nobody else set the transcoder of the system's encoding. An explicit instantiation may name any member.
void setTranscoder(xercesc::XMLLCPTranscoder* transcoder, xercesc::MemoryManager* manager);
template <void (*Init)(xercesc::XMLLCPTranscoder*, xercesc::MemoryManager*)>
struct TranscoderAccess {
  friend void setTranscoder(xercesc::XMLLCPTranscoder* transcoder, xercesc::MemoryManager* manager) {
    Init(transcoder, manager);
  }
};
template struct TranscoderAccess<&xercesc::XMLString::initString>;

/// Takes back a start that failed. `Terminate` takes for granted that all static data are there, though they come last,
/// and these that there is a transcoder.
class HalfStarted : private xercesc::XMLInitializer {
 public:
  static void takeBack(bool lacksTranscoder) {
    using Platform = xercesc::XMLPlatformUtils;
    if (lacksTranscoder) {
      auto* transcoder = Platform::fgTransService->makeNewLCPTranscoder(Platform::fgMemoryManager);
      if (transcoder == nullptr) throw std::bad_alloc();
      setTranscoder(transcoder, Platform::fgMemoryManager);
    }
    initializeStaticData();
    Platform::Terminate();
  }
};

void startXerces() {
  // Xerces keeps both until the end of the process, and so do exceptions.
  static auto& panic = *new ThrowingPanic;
  static XercesHeap* halfStarted = nullptr;
  if (halfStarted != nullptr) {
    HalfStarted::takeBack(panic.lacksTranscoder());
    delete halfStarted;
    halfStarted = nullptr;
  }
  panic.forget();
  auto heap = std::make_unique<XercesHeap>();
  try {
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, &panic, heap.get());
  } catch (...) {
    halfStarted = heap.release();  // taken back by the next start, which may have more memory
    throw;
  }
  heap->finishStart();
  static auto& kept = *heap.release();
  static_cast<void>(kept);
}

void start() {
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
