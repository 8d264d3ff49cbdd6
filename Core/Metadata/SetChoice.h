#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/SetPath.h"

namespace Vantor {

/// The sets of a partition that a path leads to, and why there are none. Lives no longer than both.
class SetChoice {
 public:
  using Sets = PartitionMetadata::Sets;

  SetChoice(const PartitionMetadata& partition, const SetPath& path);

  /// Sets of a kind in file order; those of a later step with the nearest first.
  const Sets& sets() const { return sets_; }
  /// To be called when there are none. @throws InvalidFormat naming the part of the path that leads nowhere.
  [[noreturn]] void raiseNotFound() const;

 private:
  using Step = SetPath::Step;
  using Selector = SetPath::Selector;

  void follow(const Step& step, bool isFirst);
  void select(const Selector& selector);
  Sets named(const std::string& name) const;
  Sets identified(const std::string& digits) const;
  void keepNamed(const std::string& name);
  void keepMatching(const Selector& selector);
  bool matches(const MetadataSet& set, const Selector& selector);
  [[noreturn]] void raiseUnselected() const;
  [[noreturn]] void raiseUnnamed() const;
  std::string textUpTo(std::size_t end) const { return path_.text().substr(0, end); }

  const PartitionMetadata& partition_;
  const SetPath& path_;
  Sets sets_;
  // Where the path ends, once there are no sets.
  const Step* lastStep_ = nullptr;
  const Selector* lastSelector_ = nullptr;
  Sets before_;           // the sets that the selector had to choose from
  std::string mistake_;   // why a condition holds for none of them
  bool isKnown_ = false;  // whether one of them can have the property of the condition
};

}  // namespace Vantor
