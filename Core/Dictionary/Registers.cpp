#include "Core/Dictionary/Registers.h"

#include "Core/Platform/Exceptions.h"

namespace Vantor {

void Registers::refuse(const Origin& origin, const std::string& what, const char* source, int line) const {
  throw Exceptions::InvalidFormat(where(origin) + ": " + what, source, line);
}

std::string Registers::where(const Origin& origin) const {
  return files[origin.source] + ":" + std::to_string(origin.line);
}

}  // namespace Vantor
