#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "Core/Platform/MemoryBudget.h"
#include "Core/Platform/Types.h"

namespace Vantor {

/// How much readers and writers take on before they refuse, so that a file from a stranger costs its reader no more
/// than that. The defaults are far beyond the files that people exchange: the largest headers known have a few hundred
/// thousand sets. What is refused is thrown as `Exceptions::LimitExceeded`, which names the limit.
struct Limits {
  uint64 sets = 5'000'000;                ///< of a partition, dark sets included
  uint64 properties = 100'000'000;        ///< of all its sets
  uint64 nesting = 1000;                  ///< levels of elements in a document
  uint64 valueSize = uint64{1} << 30;     ///< octets of one KLV
  uint64 names = 20'000;                  ///< different names of elements, attributes and namespaces in a document
  uint64 documentSize = uint64{1} << 32;  ///< bytes of a document that is read
  uint64 outputSize = uint64{1} << 32;    ///< bytes of a document that is written as text
  uint64 diagnostics = 1000;              ///< that an import lists; further ones are only counted
  uint64 memory = uint64{1} << 31;        ///< bytes beyond what the thread had before the call: see `MemoryBudget`
};

/// A limit by the name that people set it by.
struct LimitName {
  std::string_view name;
  uint64 Limits::*member;
  const char* refusal;  ///< a format for place, value and name; null for a limit beyond which nothing is refused
};
inline constexpr LimitName kLimitNames[] = {
    {"sets", &Limits::sets, "{}more than {} sets (limit '{}')"},
    {"properties", &Limits::properties, "{}more than {} properties (limit '{}')"},
    {"nesting", &Limits::nesting, "{}elements nest deeper than {} levels (limit '{}')"},
    {"value", &Limits::valueSize, "{}a value of more than {} bytes (limit '{}')"},
    {"names", &Limits::names, "{}more than {} different names (limit '{}')"},
    {"document", &Limits::documentSize, "{}a document of more than {} bytes (limit '{}')"},
    {"output", &Limits::outputSize, "{}an output of more than {} bytes (limit '{}')"},
    {"diagnostics", &Limits::diagnostics, nullptr},
    {"memory", &Limits::memory, "{}takes more than {} bytes of memory (limit '{}')"},
};
/// @param limit  one of the table.
const LimitName& nameOf(uint64 Limits::*limit);

/// Throws LimitExceeded for a limit: "more than 20000 different names (limit 'names')".
/// @param place  goes in front, followed by a colon: "at byte offset 120"; empty for none.
[[noreturn]] void refuseBeyond(uint64 Limits::*limit, uint64 value, const std::string& place = {});
/// The same for a place in a document, from line and column 1; the exception carries the line (`DocumentLine`).
[[noreturn]] void refuseBeyondAt(uint64 line, uint64 column, uint64 Limits::*limit, uint64 value);

/// Runs `work` with at most `limits.memory` more bytes of the counted memory, and returns its result.
/// @throws Exceptions::LimitExceeded in the place of MemoryLimitReached, and what `work` throws.
template <class Work>
auto withinMemory(const Limits& limits, Work&& work) {
  try {
    const Platform::MemoryBudget budget(limits.memory);
    return std::forward<Work>(work)();
  } catch (const Platform::MemoryLimitReached& reached) {
    refuseBeyond(&Limits::memory, reached.limit());
  }
}

}  // namespace Vantor
