#include "Edit/ReferenceMerge.h"

#include <algorithm>
#include <list>
#include <unordered_map>

namespace Vantor {

namespace {

/// Which of the original's references are shown; none when the shown ones are not among them in this order.
std::optional<std::vector<bool>> findShown(const ReferenceTargets& original, const ReferenceTargets& shown) {
  std::vector<bool> isShown(original.size());
  std::size_t next = 0;
  for (std::size_t i = 0; i < original.size(); ++i) {
    isShown[i] = next < shown.size() && original[i] == shown[next];
    if (isShown[i]) ++next;
  }
  if (next != shown.size()) return std::nullopt;
  return isShown;
}

/// How many more of each target the edited document has than the unedited one.
std::unordered_map<Types::UUID, int64> countAdded(const ReferenceTargets& shown, const ReferenceTargets& edited) {
  std::unordered_map<Types::UUID, int64> added;
  for (const auto& target : edited) ++added[target];
  for (const auto& target : shown) --added[target];
  return added;
}

/// The result while it grows; finds places by target.
class Row {
 public:
  using Place = std::list<Types::UUID>::iterator;

  explicit Row(const ReferenceTargets& targets) : row_(targets.begin(), targets.end()), last_(row_.end()) {
    for (auto at = row_.begin(); at != row_.end(); ++at) places_.emplace(*at, at);
  }

  /// What follows goes behind a target, if it is there.
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
  Place last_;  // the end for the very first place
  std::unordered_map<Types::UUID, Place> places_;
};

}  // namespace

std::optional<ReferenceTargets> mergeReferences(const ReferenceTargets& original, const ReferenceTargets& shown,
                                                const ReferenceTargets& edited) {
  const auto isShown = findShown(original, shown);
  if (!isShown) return std::nullopt;
  auto added = countAdded(shown, edited);
  Row row(edited);
  for (std::size_t i = 0; i < original.size(); ++i) {
    const auto extra = added.find(original[i]);
    if ((*isShown)[i]) {
      row.moveBehind(original[i]);
    } else if (extra != added.end() && extra->second > 0) {
      --extra->second;
      row.moveBehind(original[i]);
    } else {
      row.insert(original[i]);
    }
  }
  return row.targets();
}

}  // namespace Vantor
