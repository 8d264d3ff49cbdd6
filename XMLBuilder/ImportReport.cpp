#include "XMLBuilder/ImportReport.h"

#include <algorithm>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Strings.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

/// Without an InstanceUID that was made up.
std::string ImportReport::setName() const {
  if (set_ == nullptr) return {};
  return unnamed_.count(set_) != 0 ? set_->name() : set_->fullName();
}

ImportDiagnostic ImportReport::diagnostic(Kind kind, const xercesc::DOMNode& node, const std::string& message) const {
  return {kind, lineOf(node), setName(), property_ == nullptr ? "" : property_->symbol(), message};
}

void ImportReport::addUnconfirmed(Kind kind, const xercesc::DOMNode& node, const std::string& message,
                                  const Element* property) {
  result_.unconfirmed.push_back({diagnostic(kind, node, message), property == nullptr ? nullptr : set_, property});
}

void ImportReport::add(Kind kind, const xercesc::DOMNode& node, const std::string& message) {
  result_.diagnostics.push_back(diagnostic(kind, node, message));
}

void ImportReport::addUnread(Kind kind, const xercesc::DOMNode& node, const std::string& message) {
  add(kind, node, message);
  if (set_ != nullptr && property_ != nullptr) result_.unread.push_back({set_, property_->symbol()});
}

void ImportReport::addUnknown(const xercesc::DOMNode& node, const std::string& message) {
  add(Kind::kUnknownElement, node, message);
  result_.diagnostics.back().uri = Utils::wstringToString(XMLUtils::utf16ToWstring(node.getNamespaceURI()));
}

void ImportReport::addUnknownUnread(const xercesc::DOMNode& node, const std::string& message, bool isNewSet) {
  addUnread(Kind::kUnknownElement, node, message);
  result_.diagnostics.back().uri = Utils::wstringToString(XMLUtils::utf16ToWstring(node.getNamespaceURI()));
  result_.diagnostics.back().isNewSet = isNewSet;
}

ImportReport::Source* ImportReport::find(const Types::UUID& instanceUID) {
  const auto found = sources_.find(instanceUID);
  return found == sources_.end() ? nullptr : &found->second;
}

void ImportReport::refer(const Types::UUID& target, const xercesc::DOMNode& node, bool isDangling) {
  const std::string text = Utils::wstringToString(target.toString(kDottedForm));
  pointers_.push_back(
      {target, isDangling, diagnostic(Kind::kReference, node, "no set of the document has the InstanceUID " + text)});
}

void ImportReport::finish(const PartitionMetadata& partition) {
  // Sets are read property by property, in whichever order the document has these.
  std::stable_sort(result_.diagnostics.begin(), result_.diagnostics.end(),
                   [](const auto& left, const auto& right) { return left.line < right.line; });
  for (auto& pointer : pointers_) {
    if (!partition.findByInstanceUID(pointer.target).empty()) continue;
    if (pointer.isDangling) {
      result_.unconfirmed.push_back({std::move(pointer.place)});
    } else {
      result_.diagnostics.push_back(std::move(pointer.place));
    }
  }
}

}  // namespace Vantor::XML2Partition
