#include "XMLBuilder/LosslessReport.h"

#include <algorithm>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Strings.h"

namespace Vantor::XML2Partition {

LosslessXML::Place LosslessReport::placeOf(const xercesc::DOMNode& node) const {
  LosslessXML::Place place = {lineOf(node)};
  if (current_.set != nullptr) place.set = current_.isNamed ? current_.set->fullName() : current_.set->name();
  if (current_.property != nullptr) place.property = current_.property->symbol();
  return place;
}

bool LosslessReport::lists(Kind kind) {
  const auto bit = uint64{1} << static_cast<unsigned>(kind);
  const bool isFirst = (listedKinds_ & bit) == 0;
  listedKinds_ |= bit;
  if (isFirst || result_.diagnostics.size() < limit_) return true;
  auto& further = result_.furtherDiagnostics;
  const auto found = std::find_if(further.begin(), further.end(), [kind](const auto& one) { return one.kind == kind; });
  if (found == further.end()) {
    further.push_back({kind, 1});
  } else {
    ++found->count;
  }
  return false;
}

void LosslessReport::add(Kind kind, const xercesc::DOMNode& node, std::vector<std::string> arguments) {
  if (kind == Kind::kUnknownSet || kind == Kind::kSetOfOtherNamespace) unknownSets_.insert(arguments.back());
  if (!lists(kind)) return;
  result_.diagnostics.push_back({kind, placeOf(node), std::move(arguments)});
}

void LosslessReport::addUnread(Kind kind, const xercesc::DOMNode& node, std::vector<std::string> arguments) {
  add(kind, node, std::move(arguments));
  if (current_.set != nullptr && current_.property != nullptr) {
    result_.unread.push_back({current_.set, current_.property->symbol()});
  }
}

LosslessReport::Source* LosslessReport::find(const Types::UUID& instanceUID) {
  const auto found = sources_.find(instanceUID);
  return found == sources_.end() ? nullptr : &found->second;
}

void LosslessReport::refer(const Types::UUID& target, const xercesc::DOMNode& node, bool isDangling) {
  pointers_.push_back({target, isDangling, placeOf(node)});
}

void LosslessReport::finish(const PartitionMetadata& partition) {
  newSets_.requireAllDefined();
  // Sets are read in the order of their definitions, not in that of the document.
  std::stable_sort(result_.diagnostics.begin(), result_.diagnostics.end(),
                   [](const auto& left, const auto& right) { return left.place.line < right.place.line; });
  for (auto& pointer : pointers_) {
    if (!partition.findByInstanceUID(pointer.target).empty() || unknownSets_.count(pointer.target.dottedText()) != 0) {
      continue;
    }
    if (base_.isKnown() ? base_.hasTarget(pointer.target) : pointer.isDangling) continue;
    if (!lists(Kind::kMissingTarget)) continue;
    result_.diagnostics.push_back({Kind::kMissingTarget,
                                   std::move(pointer.place),
                                   {Utils::wstringToString(pointer.target.toString(kDottedForm))}});
  }
}

}  // namespace Vantor::XML2Partition
