#pragma once

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

namespace Vantor::Registers {

constexpr uint32 kChainEnd = 0xFFFFFFFF;

/// Cuts chains that lead into themselves, or have more links than a limit. Takes time in proportion to the links.
/// @param next  the place that a place leads to, or `kChainEnd`; asked again after a cut.
/// @param cut   ends the chain at a place; the second argument is whether the place led to itself.
template <class Next, class Cut>
void cutChains(uint32 places, uint32 mostLinks, Next&& next, Cut&& cut) {
  constexpr uint32 kUnknown = 0, kOnTheWay = 1;  // else the number of links, and two
  Templates::vector<uint32> lengths(places, kUnknown), way;
  for (uint32 start = 0; start < places; ++start) {
    uint32 at = start;
    for (; at != kChainEnd && lengths[at] == kUnknown; at = next(at)) {
      lengths[at] = kOnTheWay;
      way.push_back(at);
    }
    const uint32 circle = at != kChainEnd && lengths[at] == kOnTheWay ? at : kChainEnd;
    if (circle != kChainEnd) {
      cut(way.back(), true);
      at = kChainEnd;
    }
    bool isInCircle = circle != kChainEnd;
    uint32 length = at == kChainEnd ? kOnTheWay : lengths[at];
    for (; !way.empty(); way.pop_back()) {
      if (++length > mostLinks + kOnTheWay) {
        cut(way.back(), isInCircle);
        length = kOnTheWay + 1;
      }
      lengths[way.back()] = length;
      if (way.back() == circle) isInCircle = false;
    }
  }
}

}  // namespace Vantor::Registers
