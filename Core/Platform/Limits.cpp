#include "Core/Platform/Limits.h"

#include <algorithm>
#include <iterator>

#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

const LimitName& nameOf(uint64 Limits::*limit) {
  return *std::find_if(std::begin(kLimitNames), std::end(kLimitNames),
                       [limit](const LimitName& each) { return each.member == limit; });
}

void refuseBeyond(uint64 Limits::*limit, uint64 value, const std::string& place) {
  Exceptions::raise<Exceptions::LimitExceeded>(nameOf(limit).refusal, place.empty() ? place : place + ": ", value,
                                               nameOf(limit).name);
}

void refuseBeyondAt(uint64 line, uint64 column, uint64 Limits::*limit, uint64 value) {
  const std::string place = "line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
  Exceptions::raiseAt<Exceptions::LimitExceeded>(line, nameOf(limit).refusal, place, value, nameOf(limit).name);
}

}  // namespace Vantor
