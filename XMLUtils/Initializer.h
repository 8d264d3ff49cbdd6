#pragma once

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMImplementation;
class DOMImplementationLS;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// The XML stack of the process: Xerces-C++ and, where the library is built with it, XQilla.
///
/// The first call of `instance()` starts the stack, later ones only return it; any number of threads may call at once.
/// Code that calls `XMLPlatformUtils::Initialize` itself has to do so on a thread that does not race with the first
/// call, because Xerces counts its users without a lock.
///
/// The stack is never shut down. Shutting down frees the memory manager, transcoders and string tables that every
/// document uses until it is destroyed, and a document may live in a static of the application, which is destroyed at a
/// time that this library cannot know. The operating system takes the few hundred kilobytes back with the process.
class Initializer {
 public:
  /// Memory for the start is no part of the thread's budget (`Platform::MemoryBudget`).
  /// @throws Exceptions::StartFailure when Xerces cannot start (no transcoding service), std::bad_alloc when memory is
  ///         short. The process goes on, and a later call starts again what has not been started. What cannot be taken
  ///         back is a failure of XQilla's own start, for which memory was there; each later call throws then.
  static Initializer& instance();

  Initializer(const Initializer&) = delete;
  Initializer& operator=(const Initializer&) = delete;

  /// Makes documents. With XQilla their `createExpression` takes XPath 2, without it the XPath subset of Xerces.
  /// The object belongs to the process; its functions may be called from several threads.
  xercesc::DOMImplementation& domImplementation() const { return *implementation_; }

  /// The features by which the registry of Xerces finds that object.
  const XMLCh* features() const;

  /// Makes parsers, serializers and their inputs; the documents of its parsers are as those of `domImplementation()`.
  xercesc::DOMImplementationLS& domImplementationLS() const;

 private:
  Initializer();
  ~Initializer() = default;

  xercesc::DOMImplementation* implementation_;
};

}  // namespace Vantor::XMLUtils
