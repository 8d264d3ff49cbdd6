#include "Tree/SetTree.h"

#include <deque>
#include <unordered_map>
#include <unordered_set>

#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Platform/Strings.h"
#include "Tree/PropertyLines.h"

namespace Vantor::Tool {

namespace {

using LineKind = TreeLine::Kind;
using Pieces = PropertyLines::Pieces;

Pieces joined(Pieces left, const Pieces& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// Walks from roots along strong references, each set once.
class TreeWalk {
 public:
  TreeWalk(const PartitionMetadata& metadata, const TreeOptions& options)
      : metadata_(metadata), options_(options), names_(metadata), properties_(metadata, names_, options.arrow) {}

  /// Whether a set is shown, or below one that is.
  bool hasSeen(const MetadataSet* set) const { return seen_.count(set) != 0 || hidden_.count(set) != 0; }

  void addHeading(const std::string& text) { lines_.push_back({LineKind::kHeading, 0, false, false, {{text}}}); }

  /// A root with all below it, and what is too deep apart, behind it.
  void addRoot(const MetadataSet& root) {
    seen_.insert(&root);
    walk(root, {});
    for (; !continued_.empty(); continued_.pop_front()) walk(*continued_.front(), {{"continued: ", Style::kDim}});
  }

  std::vector<TreeLine> take() { return std::move(lines_); }

 private:
  /// A set on the way, with the sets that it owns and has not shown yet.
  struct Step {
    const MetadataSet* set;
    std::vector<OwnedSet> owned;
    std::size_t next = 0;
  };

  void walk(const MetadataSet& root, const Pieces& before) {
    open(root, 0, false, before);
    while (!path_.empty()) {
      auto& step = path_.back();
      if (step.next == step.owned.size()) {
        onPath_.erase(step.set);
        path_.pop_back();
        continue;
      }
      const auto& owned = step.owned[step.next++];
      follow(*step.set, owned, step.next == step.owned.size());
    }
  }

  /// Shows a set with its values and puts it on the path.
  void open(const MetadataSet& set, std::size_t depth, bool isLast, const Pieces& before) {
    const bool isCut = options_.depth && depth >= *options_.depth;
    auto owned = ownedSets(set, metadata_);
    const bool hasBranches = !isCut && !owned.empty();
    lines_.push_back({LineKind::kSet, depth, isLast, hasBranches, joined(before, properties_.nameOf(set))});
    for (const auto* element : inOrderOfInterest(set)) addValue(set, *element, depth, hasBranches);
    if (isCut) addCounts(set, owned, depth);
    if (isCut) hideBelow(owned);
    path_.push_back({&set, isCut ? std::vector<OwnedSet>() : std::move(owned)});
    onPath_.insert(&set);
  }

  void addValue(const MetadataSet& set, const Element& element, std::size_t depth, bool hasBranches) {
    const bool isShown = options_.showsReferences || !isIdentifierOfSet(set, element);
    std::vector<Types::UUID> owned;
    if (ownsSets(element)) element.appendTargets(ReferenceKinds{}, owned);
    if (!isShown || !owned.empty()) return;
    const auto pieces = ownsSets(element) ? Pieces{{properties_.propertyName(set, element)}, {": none", Style::kDim}}
                                          : properties_.valueOf(set, element, options_.showsReferences);
    lines_.push_back({LineKind::kValue, depth, false, hasBranches, pieces});
  }

  /// Those by which sets refer to one another: InstanceUID, and GenerationUID, which is of an Identification.
  static bool isIdentifierOfSet(const MetadataSet& set, const Element& element) {
    const auto* definition = element.metaAttribute().metaElement();
    return set.isInstanceUID(element) || (definition != nullptr && definition->symbol() == "GenerationUID");
  }

  /// In the place of the sets that a property owns, at the greatest depth: how many there are.
  void addCounts(const MetadataSet& set, const std::vector<OwnedSet>& owned, std::size_t depth) {
    for (std::size_t i = 0; i < owned.size();) {
      const auto* element = owned[i].element;
      std::size_t count = 0;
      for (; i < owned.size() && owned[i].element == element; ++i) ++count;
      lines_.push_back({LineKind::kValue,
                        depth,
                        false,
                        false,
                        {{properties_.propertyName(set, *element)},
                         {": " + std::to_string(count) + (count == 1 ? " set" : " sets") + " below", Style::kDim}}});
    }
  }

  /// Takes all sets below the greatest depth for shown, each once.
  void hideBelow(const std::vector<OwnedSet>& owned) {
    std::vector<const MetadataSet*> pending;
    for (const auto& each : owned) pending.push_back(each.target);
    while (!pending.empty()) {
      const auto* set = pending.back();
      pending.pop_back();
      if (set == nullptr || !hidden_.insert(set).second) continue;
      for (const auto* target : targetsOf(*set, metadata_, ReferenceKinds{})) pending.push_back(target);
    }
  }

  void follow(const MetadataSet& owner, const OwnedSet& owned, bool isLast) {
    const std::size_t depth = path_.size();
    auto before = properties_.ownerOf(owner, owned);
    if (owned.target == nullptr) {
      before.push_back({"no set " + owned.identifier.dottedText(), Style::kMark});
      lines_.push_back({LineKind::kSet, depth, isLast, false, std::move(before)});
    } else if (!seen_.insert(owned.target).second) {
      pointTo(*owned.target, onPath_.count(owned.target) != 0 ? " (circular, above)" : " (above)", depth, isLast,
              std::move(before));
    } else if (depth >= options_.deepestBranch) {
      pointTo(*owned.target, " (continued below)", depth, isLast, std::move(before));
      continued_.push_back(owned.target);
    } else {
      open(*owned.target, depth, isLast, before);
    }
  }

  void pointTo(const MetadataSet& target, const char* where, std::size_t depth, bool isLast, Pieces before) {
    before.push_back({options_.arrow + (" " + names_.fullName(target)), Style::kReference});
    before.push_back({where, Style::kDim});
    lines_.push_back({LineKind::kSet, depth, isLast, false, std::move(before)});
  }

  const PartitionMetadata& metadata_;
  const TreeOptions& options_;
  SetNames names_;
  PropertyLines properties_;
  std::unordered_set<const MetadataSet*> seen_;
  std::unordered_set<const MetadataSet*> hidden_;  // below the greatest depth
  std::unordered_set<const MetadataSet*> onPath_;
  std::vector<Step> path_;
  std::deque<const MetadataSet*> continued_;  // too deep where they are owned
  std::vector<TreeLine> lines_;
};

void addUnreached(const PartitionMetadata& metadata, TreeWalk& walk) {
  std::vector<const MetadataSet*> order;
  const auto unreached = metadata.calculateSerializationOrder(order, true, false);
  bool isFirst = true;
  for (std::size_t i = order.size() - unreached; i < order.size(); ++i) {
    if (walk.hasSeen(order[i])) continue;
    if (isFirst) walk.addHeading("Not reached from the Preface:");
    isFirst = false;
    walk.addRoot(*order[i]);
  }
}

std::vector<TreeLine> darkLines(const PartitionMetadata& metadata) {
  std::vector<TreeLine> lines;
  for (auto at = metadata.darkBegin(); at != metadata.darkEnd(); ++at) {
    if (lines.empty()) lines.push_back({LineKind::kHeading, 0, false, false, {{"Dark sets:"}}});
    const auto key = Utils::wstringToString((*at)->key().toString());
    const auto size = std::to_string((*at)->value().serializedSize());
    lines.push_back({LineKind::kSet, 0, false, false, {{key, Style::kMark}, {"  " + size + " octets"}}});
  }
  return lines;
}

}  // namespace

std::vector<TreeLine> treeOf(const PartitionMetadata& metadata, const TreeOptions& options) {
  TreeWalk walk(metadata, options);
  if (!options.roots.empty()) {
    for (const auto* root : options.roots) {
      if (!walk.hasSeen(root)) walk.addRoot(*root);
    }
    return walk.take();
  }
  if (const auto* preface = metadata.preface()) walk.addRoot(*preface);
  addUnreached(metadata, walk);
  auto lines = walk.take();
  auto dark = darkLines(metadata);
  lines.insert(lines.end(), dark.begin(), dark.end());
  return lines;
}

}  // namespace Vantor::Tool
