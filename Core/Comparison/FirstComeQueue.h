#pragma once

#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vantor {

/// Things that wait for a partner, in one queue for each kind.
template <class Kind, class Thing, class Hash = std::hash<Kind>>
class FirstComeQueue {
 public:
  void add(const Kind& kind, Thing thing) { lines_[kind].things.push_back(std::move(thing)); }

  /// Takes out the first thing of a kind that is free, and drops everything before it.
  /// @return null when there is none; else valid until the next `add`.
  template <class IsFree>
  const Thing* take(const Kind& kind, IsFree&& isFree) {
    const auto found = lines_.find(kind);
    if (found == lines_.end()) return nullptr;
    Line& line = found->second;
    while (line.next < line.things.size()) {
      const Thing& thing = line.things[line.next++];
      if (isFree(thing)) return &thing;
    }
    return nullptr;
  }
  const Thing* take(const Kind& kind) {
    return take(kind, [](const Thing&) { return true; });
  }

 private:
  struct Line {
    std::vector<Thing> things;
    std::size_t next = 0;
  };
  std::unordered_map<Kind, Line, Hash> lines_;
};

}  // namespace Vantor
