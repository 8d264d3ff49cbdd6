#include <cstdio>

#include "Core/Platform/Exceptions.h"

namespace {

// The exception's type has to be the same one on both sides of the library's boundary.
bool catchesWhatTheLibraryDefines() {
  try {
    throw Vantor::Exceptions::ParseError("message", "consumer", 1);
  } catch (const Vantor::Exceptions::BaseException& error) {
    return error.message() == "message" && error.line() == 1;
  }
}

}  // namespace

int main() {
  if (!catchesWhatTheLibraryDefines()) return std::puts("a ParseError was not caught as a BaseException"), 1;
  std::puts("the installed package works");
  return 0;
}
