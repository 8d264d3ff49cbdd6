#include "Core/Platform/Limits.h"

#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

namespace {

/// What there is more of than the limit allows: place, value and name.
const char* textOf(uint64 Limits::*limit) {
  if (limit == &Limits::sets) return "{}more than {} sets (limit '{}')";
  if (limit == &Limits::properties) return "{}more than {} properties (limit '{}')";
  if (limit == &Limits::nesting) return "{}elements nest deeper than {} levels (limit '{}')";
  if (limit == &Limits::valueSize) return "{}a value of more than {} bytes (limit '{}')";
  if (limit == &Limits::names) return "{}more than {} different names (limit '{}')";
  if (limit == &Limits::documentSize) return "{}a document of more than {} bytes (limit '{}')";
  if (limit == &Limits::outputSize) return "{}more than {} bytes to write (limit '{}')";
  if (limit == &Limits::memory) return "{}takes more than {} bytes of memory (limit '{}')";
  return "{}more than {} diagnostics (limit '{}')";
}

}  // namespace

std::string_view nameOf(uint64 Limits::*limit) {
  for (const auto& each : kLimitNames) {
    if (each.member == limit) return each.name;
  }
  return {};
}

void refuseBeyond(uint64 Limits::*limit, uint64 value, const std::string& place) {
  Exceptions::raise<Exceptions::LimitExceeded>(textOf(limit), place.empty() ? place : place + ": ", value,
                                               nameOf(limit));
}

void refuseBeyondAt(uint64 line, uint64 column, uint64 Limits::*limit, uint64 value) {
  const std::string place = "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
  Exceptions::raiseAt<Exceptions::LimitExceeded>(line, textOf(limit), place, value, nameOf(limit));
}

}  // namespace Vantor
