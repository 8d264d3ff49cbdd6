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

  /// @param property  what the sets are to have: where a name stands for several kinds, only kinds that can have it
  ///                  count. An index counts all sets all the same. Empty for any set.
  SetChoice(const PartitionMetadata& partition, const SetPath& path, std::string_view property = {});

  /// Sets of a kind in file order; those of a later step with the nearest first.
  const Sets& sets() const { return sets_; }
  /// Of a path that leads to no sets: whether it can lead to none in any partition, since a set or a property has a
  /// name of none, or a condition has a value that its property cannot have.
  bool isMistaken() const;
  /// To be called when there are none. @throws InvalidFormat naming the part of the path that leads nowhere.
  [[noreturn]] void raiseNotFound() const;
  /// How many sets the caller can take.
  enum class Taken : uint8 { kOne, kSeveral };
  /// To be called when there are several. @throws InvalidFormat listing the choices, each with what distinguishes its
  /// set, and all of them where the caller takes several.
  [[noreturn]] void raiseAmbiguous(Taken taken) const;

 private:
  using Kinds = std::vector<const MetaMetadata::MetaMetadataSet*>;
  using Step = SetPath::Step;
  using Selector = SetPath::Selector;

  void follow(const Step& step, bool isFirst);
  void takeKinds(const Kinds& kinds, const std::string& name, bool isFirst);
  Sets ofKinds(const Kinds& kinds, bool isFirst) const;
  void select(const Selector& selector);
  void keepIdentified(const std::string& digits, bool isFirst);
  void keepMatching(const Selector& selector);
  void keepHaving(std::string_view property);
  bool matches(const MetadataSet& set, const Selector& selector);
  std::vector<std::string> firstChoices() const;
  std::string choiceOf(const MetadataSet& set) const;
  [[noreturn]] void raiseUnselected() const;
  [[noreturn]] void raiseUnnamed() const;
  std::string textUpTo(std::size_t end) const { return path_.text().substr(0, end); }

  const PartitionMetadata& partition_;
  const SetPath& path_;
  std::string property_;
  Sets sets_;
  Sets wider_;               // what the name means beside its usual sense; empty where there is nothing
  bool isNarrowed_ = false;  // by a property; `before_` are the sets before that
  // Where the path ends, once there are no sets.
  const Step* lastStep_ = nullptr;
  const Selector* lastSelector_ = nullptr;
  Sets before_;           // the sets that the selector or the property had to choose from
  std::string mistake_;   // why a condition holds for none of them
  bool isKnown_ = false;  // whether one of them can have the property of the condition
};

}  // namespace Vantor
