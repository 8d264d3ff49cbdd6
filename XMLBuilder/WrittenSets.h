#pragma once

#include <unordered_set>

#include "Core/Metadata/MetadataSet.h"

namespace Vantor::XMLBuilder {

/// The sets that one pass over a partition has written. Each is written once, which also ends circles of references.
class WrittenSets {
 public:
  /// How many references may lead from the set that a pass starts with to a set that is written inside it.
  static constexpr unsigned kMaximumDepth = 1000;

  /// Counts one set as being written for as long as it lives.
  class Level {
   public:
    /// @throws NestingTooDeep naming the set.
    Level(WrittenSets& sets, const MetadataSet& set);
    ~Level() { --sets_.depth_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

   private:
    WrittenSets& sets_;
  };

  /// Enters a set; returns false when it is there already.
  bool insert(const MetadataSet& set) { return sets_.insert(&set).second; }
  bool contains(const MetadataSet& set) const { return sets_.count(&set) != 0; }

  std::unordered_set<const MetadataSet*>::const_iterator begin() const { return sets_.begin(); }
  std::unordered_set<const MetadataSet*>::const_iterator end() const { return sets_.end(); }

 private:
  std::unordered_set<const MetadataSet*> sets_;
  unsigned depth_ = 0;
};

}  // namespace Vantor::XMLBuilder
