#include <unordered_set>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/ReferenceTargets.h"

namespace Vantor {

namespace {

/// Walks a partition's sets depth first along references, each set once. Keeps its own stack, since a damaged or
/// hostile file may chain as many sets as it has bytes for.
class DepthFirstWalk {
 public:
  DepthFirstWalk(const PartitionMetadata& partition, ReferenceKinds kinds, std::vector<const MetadataSet*>& order)
      : partition_(partition), kinds_(kinds), order_(order) {}

  void from(const MetadataSet* start) {
    pending_.push_back(start);
    while (!pending_.empty()) {
      const MetadataSet* set = pending_.back();
      pending_.pop_back();
      if (!reached_.insert(set).second) continue;
      order_.push_back(set);
      pushTargets(*set);
    }
  }

  bool hasReached(const MetadataSet* set) const { return reached_.count(set) != 0; }

 private:
  void pushTargets(const MetadataSet& set) {
    const auto targets = targetsOf(set, partition_, kinds_);
    pending_.insert(pending_.end(), targets.rbegin(), targets.rend());
  }

  const PartitionMetadata& partition_;
  ReferenceKinds kinds_;
  std::vector<const MetadataSet*>& order_;
  std::vector<const MetadataSet*> pending_;
  std::unordered_set<const MetadataSet*> reached_;
};

/// The sets that some other unreached set refers to: they follow that set.
std::unordered_set<const MetadataSet*> referredTo(const std::vector<const MetadataSet*>& unreached,
                                                  const PartitionMetadata& partition, ReferenceKinds kinds) {
  std::unordered_set<const MetadataSet*> targets;
  for (const MetadataSet* set : unreached) {
    for (const MetadataSet* target : targetsOf(*set, partition, kinds)) {
      if (target != set) targets.insert(target);
    }
  }
  return targets;
}

}  // namespace

uint32 PartitionMetadata::calculateSerializationOrder(std::vector<const MetadataSet*>& order, bool withUnreached,
                                                      bool followWeak) const {
  order.clear();
  const ReferenceKinds kinds{followWeak};
  DepthFirstWalk walk(*this, kinds, order);
  if (const auto* start = preface()) walk.from(start);
  if (!withUnreached) return 0;

  const std::size_t reached = order.size();
  std::vector<const MetadataSet*> unreached;
  for (const MetadataSet* set : sets()) {
    if (!walk.hasReached(set)) unreached.push_back(set);
  }
  const auto inner = referredTo(unreached, *this, kinds);
  for (const MetadataSet* set : unreached) {
    if (inner.count(set) == 0) walk.from(set);
  }
  for (const MetadataSet* set : unreached) walk.from(set);  // the rest refer to one another in circles
  return static_cast<uint32>(order.size() - reached);
}

}  // namespace Vantor
