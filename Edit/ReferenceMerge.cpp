#include "Edit/ReferenceMerge.h"

#include <list>
#include <unordered_map>

namespace Vantor::Edit {

namespace {

/// The result under construction, which finds places by target.
class Row {
 public:
  using Place = std::list<Types::UUID>::iterator;

  explicit Row(const ReferenceTargets& targets) : row_(targets.begin(), targets.end()), last_(row_.end()) {
    for (auto at = row_.begin(); at != row_.end(); ++at) places_.emplace(*at, at);
  }

  /// Makes a target the place to insert behind, if it is there.
  void moveBehind(const Types::UUID& target) {
    const auto found = places_.find(target);
    if (found != places_.end()) last_ = found->second;
  }
  void insert(const Types::UUID& target) {
    last_ = row_.insert(last_ == row_.end() ? row_.begin() : std::next(last_), target);
    places_.emplace(target, last_);
  }
  ReferenceTargets targets() const { return {row_.begin(), row_.end()}; }

 private:
  std::list<Types::UUID> row_;
  Place last_;  // the place to insert behind; the end stands for the very front
  std::unordered_map<Types::UUID, Place> places_;
};

}  // namespace

ReferenceTargets mergeReferences(const ReferenceTargets& all, const ReferenceTargets& shown,
                                 const ReferenceTargets& theirs) {
  Row row(theirs);
  std::size_t next = 0;
  for (const auto& target : all) {
    if (next < shown.size() && target == shown[next]) {
      ++next;
      row.moveBehind(target);
    } else {
      row.insert(target);
    }
  }
  return row.targets();
}

}  // namespace Vantor::Edit
