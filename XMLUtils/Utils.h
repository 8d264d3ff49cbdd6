#pragma once

#include "Core/Platform/Raise.h"

/// The failures of the XML stack as the core library's exceptions.
namespace Vantor::XMLUtils::Utils {

/// The place of every converted exception, wherever the failure was: callers rely on it.
constexpr Exceptions::SourcePlace kPlace = {"XMLUtils/Utils", 207};

/// To be called in a handler: throws what the handler caught, as `convertingExceptions` lets it out.
[[noreturn]] void rethrowConverted(const char* source, int line);

/// Calls `operation` and lets only exceptions of the core library out: those of Xerces and XQilla become `ParseError`
/// with their message, the core library's own pass unchanged, and anything else becomes a `ParseError` "Unknown error
/// in Xerces or XQilla", of the class `OutOfMemory` where memory is short.
/// @param source, line  the place of that last one.
template <class Operation>
auto convertingExceptions(Operation&& operation, const char* source, int line) -> decltype(operation()) {
  try {
    return operation();
  } catch (...) {
    rethrowConverted(source, line);
  }
}

}  // namespace Vantor::XMLUtils::Utils
