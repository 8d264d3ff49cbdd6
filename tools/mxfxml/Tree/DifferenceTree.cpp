#include "Tree/DifferenceTree.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "Tree/PropertyLines.h"

namespace Vantor::Tool {

namespace {

using Difference = PartitionDifference::Kind;
using Pieces = PropertyLines::Pieces;

constexpr std::size_t kNone = SetPairing::kNone;

/// A partition with the texts of its sets.
struct ShownSide {
  ShownSide(const PartitionMetadata& of, const char* arrow) : metadata(of), names(of), properties(of, names, arrow) {}
  const PartitionMetadata& metadata;
  SetNames names;
  PropertyLines properties;
};

/// A set of the tree: of the right partition, or of the left one where it has no partner.
struct Node {
  const MetadataSet* set;
  std::size_t owner;  // among the nodes; kNone for a root
  OwnedSet owned;     // by which the owner has it
  bool isOwnedLeft;   // whether that is a property of the left partition
  std::size_t depth = 0;
  bool isShown = false;
  std::size_t lastBranch = kNone;  // the last node below it that is shown
};

class DifferenceTree {
 public:
  DifferenceTree(const PartitionMetadata& left, const PartitionMetadata& right, const SetPairing& pairs,
                 const PartitionComparison& comparison, const TreeStyle& style)
      : left_(left, style.hasBoxes ? "→" : "->"),
        right_(right, style.hasBoxes ? "→" : "->"),
        arrow_(style.hasBoxes ? " → " : " -> "),
        deepest_(deepestBranch(style)) {
    for (const auto& [one, other] : pairs.setPairs()) {
      toRight_.emplace(one, other);
      toLeft_.emplace(other, one);
    }
    for (const auto& difference : comparison.differences) enter(difference);
  }

  std::vector<TreeLine> lines() {
    addNodes();
    chooseShown();
    for (const auto& node : nodes_) {
      if (node.isShown) show(node);
    }
    showDark();
    return std::move(lines_);
  }

 private:
  void enter(const PartitionDifference& difference) {
    if (difference.place == nullptr) return dark_.push_back(&difference);
    differences_[nodeSetOf(difference.place)].push_back(&difference);
    differing_.push_back(nodeSetOf(difference.place));
  }

  /// The set that stands for one of the left partition.
  const MetadataSet* nodeSetOf(const MetadataSet* set) const {
    const auto partner = toRight_.find(set);
    return partner == toRight_.end() ? set : partner->second;
  }

  bool isLeftOnly(const MetadataSet* set) const {
    const auto found = differences_.find(set);
    return found != differences_.end() && found->second.front()->kind == Difference::kMissingSet;
  }
  bool isRightOnly(const MetadataSet* set) const {
    const auto found = differences_.find(set);
    return found != differences_.end() && found->second.front()->kind == Difference::kAddedSet;
  }

  void addNodes() {
    if (const auto* preface = right_.metadata.preface()) addTree(preface);
    if (const auto* preface = left_.metadata.preface()) addTree(nodeSetOf(preface));
    std::vector<const MetadataSet*> order;
    left_.metadata.calculateSerializationOrder(order, true, false);
    for (const auto* set : order) {
      if (differences_.count(nodeSetOf(set)) != 0) addTree(nodeSetOf(set));
    }
    right_.metadata.calculateSerializationOrder(order, true, false);
    for (const auto* set : order) {
      if (differences_.count(set) != 0) addTree(set);
    }
    for (const auto* set : differing_) addTree(set);
  }

  /// A set with all below it, depth first, unless it has a node already. Keeps its own stack.
  void addTree(const MetadataSet* root) {
    std::vector<Node> pending = {{root, kNone, {}, false}};
    while (!pending.empty()) {
      auto node = pending.back();
      pending.pop_back();
      if (!seen_.insert(node.set).second) continue;
      nodes_.push_back(node);
      const bool isNews = node.owner != kNone && (isLeftOnly(node.set) || isRightOnly(node.set));
      if (isNews) listsShown_[nodes_[node.owner].set].insert(symbolOf(node.owned));
      pushOwned(*node.set, nodes_.size() - 1, pending);
    }
  }

  void pushOwned(const MetadataSet& set, std::size_t owner, std::vector<Node>& pending) const {
    const bool isLeft = isLeftOnly(&set);
    const auto partner = toLeft_.find(&set);
    const MetadataSet* before = isLeft ? &set : partner == toLeft_.end() ? nullptr : partner->second;
    std::vector<Node> found;
    if (!isLeft) {
      for (const auto& owned : ownedSets(set, right_.metadata)) {
        if (owned.target != nullptr) found.push_back({owned.target, owner, owned, false});
      }
    }
    if (before != nullptr) {
      for (const auto& owned : ownedSets(*before, left_.metadata)) {
        if (owned.target != nullptr && isLeftOnly(owned.target)) found.push_back({owned.target, owner, owned, true});
      }
    }
    pending.insert(pending.end(), found.rbegin(), found.rend());
  }

  /// Owners stand before what they own.
  void chooseShown() {
    for (std::size_t i = nodes_.size(); i-- > 0;) {
      auto& node = nodes_[i];
      node.isShown = node.lastBranch != kNone || differences_.count(node.set) != 0;
      if (!node.isShown || node.owner == kNone) continue;
      auto& owner = nodes_[node.owner];
      if (owner.lastBranch == kNone) owner.lastBranch = i;
    }
    for (auto& node : nodes_) {
      if (node.owner != kNone) node.depth = nodes_[node.owner].depth + 1;
      if (node.depth > deepest_) node.depth = 0;
    }
  }

  void show(const Node& node) {
    const bool isAdded = isRightOnly(node.set), isRemoved = isLeftOnly(node.set);
    const auto& side = isRemoved ? left_ : right_;
    const char sign = isAdded ? '+' : isRemoved ? '-' : ' ';
    const bool hasBranches = node.lastBranch != kNone;
    lines_.push_back({TreeLine::Kind::kSet, node.depth, isLast(node), hasBranches, headOf(node, side, sign), sign});
    if (isAdded || isRemoved) return addValues(node, side, sign);
    const auto found = differences_.find(node.set);
    if (found == differences_.end()) return;
    for (const auto* difference : found->second) {
      if (!isShownBySets(*difference, node.set)) addDifference(*difference, node.depth, hasBranches);
    }
  }

  static std::string symbolOf(const OwnedSet& owned) { return owned.element->metaAttribute().metaElement()->symbol(); }

  /// Whether a property differs by references to sets that stand below as added or removed.
  bool isShownBySets(const PartitionDifference& difference, const MetadataSet* set) const {
    const auto lists = listsShown_.find(set);
    const auto property = difference.property.substr(0, difference.property.find('['));
    return lists != listsShown_.end() && lists->second.count(property) != 0;
  }

  bool isLast(const Node& node) const { return node.owner != kNone && &node == &nodes_[nodes_[node.owner].lastBranch]; }

  Pieces headOf(const Node& node, const ShownSide& side, char sign) const {
    Pieces pieces;
    if (node.owner != kNone) {
      const auto& owner = *nodes_[node.owner].set;
      pieces = (node.isOwnedLeft ? left_ : right_).properties.ownerOf(owner, node.owned);
    }
    if (node.owner != kNone && node.depth == 0) pieces.insert(pieces.begin(), {"continued: ", Style::kDim});
    for (auto piece : side.properties.nameOf(*node.set)) {
      if (sign != ' ') piece.style = sign == '+' ? Style::kAdded : Style::kRemoved;
      pieces.push_back(std::move(piece));
    }
    return pieces;
  }

  void addValues(const Node& node, const ShownSide& side, char sign) {
    const auto style = sign == '+' ? Style::kAdded : Style::kRemoved;
    for (const auto* element : inOrderOfInterest(*node.set)) {
      if (ownsSets(*element) || node.set->isInstanceUID(*element)) continue;
      auto pieces = side.properties.valueOf(*node.set, *element, false);
      for (auto& piece : pieces) piece.style = style;
      lines_.push_back({TreeLine::Kind::kValue, node.depth, false, node.lastBranch != kNone, std::move(pieces), sign});
    }
  }

  void addDifference(const PartitionDifference& difference, std::size_t depth, bool hasBranches) {
    const bool isAdded = difference.kind == Difference::kAddedProperty,
               isRemoved = difference.kind == Difference::kMissingProperty;
    Pieces pieces = {{difference.property}, {": ", Style::kDim}};
    if (!isAdded) pieces.push_back({difference.left, Style::kRemoved});
    if (!isAdded && !isRemoved) pieces.push_back({arrow_, Style::kDim});
    if (!isRemoved) pieces.push_back({difference.right, Style::kAdded});
    const char sign = isAdded ? '+' : isRemoved ? '-' : '~';
    lines_.push_back({TreeLine::Kind::kValue, depth, false, hasBranches, std::move(pieces), sign});
  }

  void showDark() {
    for (const auto* difference : dark_) {
      if (difference == dark_.front()) lines_.push_back({TreeLine::Kind::kHeading, 0, false, false, {{"Dark sets:"}}});
      const char sign = difference->kind == Difference::kAddedSet     ? '+'
                        : difference->kind == Difference::kMissingSet ? '-'
                                                                      : '~';
      lines_.push_back({TreeLine::Kind::kSet, 0, false, false, {{difference->set, Style::kMark}}, sign});
      if (sign == '~') addDifference(*difference, 0, false);
    }
  }

  ShownSide left_;
  ShownSide right_;
  const char* arrow_;
  std::size_t deepest_;
  std::unordered_map<const MetadataSet*, const MetadataSet*> toRight_;
  std::unordered_map<const MetadataSet*, const MetadataSet*> toLeft_;
  std::unordered_map<const MetadataSet*, std::vector<const PartitionDifference*>> differences_;  // by the set of a node
  std::unordered_map<const MetadataSet*, std::unordered_set<std::string>> listsShown_;           // symbols, by owner
  std::vector<const MetadataSet*> differing_;
  std::vector<const PartitionDifference*> dark_;
  std::vector<Node> nodes_;
  std::unordered_set<const MetadataSet*> seen_;
  std::vector<TreeLine> lines_;
};

}  // namespace

std::vector<TreeLine> differenceTree(const PartitionMetadata& left, const PartitionMetadata& right,
                                     const SetPairing& pairs, const PartitionComparison& comparison,
                                     const TreeStyle& style) {
  return DifferenceTree(left, right, pairs, comparison, style).lines();
}

}  // namespace Vantor::Tool
