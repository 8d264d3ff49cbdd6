#include "XMLUtils/Initializer.h"

#include <new>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>
#include <xercesc/util/XMLUni.hpp>
#if VANTOR_WITH_XQILLA
#include <xqilla/utils/XQillaPlatformUtils.hpp>
#endif

#include "Core/Platform/MemoryBudget.h"
#include "Core/Platform/Raise.h"

namespace Vantor::XMLUtils {

namespace {

#if VANTOR_WITH_XQILLA
constexpr const XMLCh* kFeatures = u"XPath2 3.0";
void startXPath() { XQillaPlatformUtils::initialize(); }
#else
constexpr const XMLCh* kFeatures = u"LS";
void startXPath() {}
#endif

/// The C heap without a budget. The messages of Xerces' exceptions come from it, so that one about memory has room.
class PlainHeap : public xercesc::MemoryManager {
 public:
  void* allocate(XMLSize_t size) override {
    void* memory = ::operator new(size, std::nothrow);
    if (memory == nullptr) throw xercesc::OutOfMemoryException();
    return memory;
  }
  void deallocate(void* memory) override { ::operator delete(memory); }
  MemoryManager* getExceptionMemoryManager() override { return this; }
};

/// Documents, parsers and serializers, charged to the budget of the thread.
class ChargedHeap : public xercesc::MemoryManager {
 public:
  void* allocate(XMLSize_t size) override {
    try {
      return Platform::allocateMemory(size);
    } catch (const Platform::MemoryLimitReached&) {
      throw;
    } catch (const std::bad_alloc&) {
      throw xercesc::OutOfMemoryException();
    }
  }
  void deallocate(void* memory) override { Platform::releaseMemory(memory); }
  MemoryManager* getExceptionMemoryManager() override { return &forExceptions_; }

 private:
  PlainHeap forExceptions_;
};

/// Xerces calls it where it cannot start; its own one would end the process.
class ThrowingPanic : public xercesc::PanicHandler {
 public:
  void panic(PanicReasons reason) override {
    Exceptions::raise<Exceptions::StartFailure>("the XML parser cannot start: {}", getPanicReasonString(reason));
  }
};

void start() {
  // Xerces and its users keep them until the end of the process.
  static auto& heap = *new ChargedHeap;
  static auto& panic = *new ThrowingPanic;
  xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, &panic, &heap);
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
