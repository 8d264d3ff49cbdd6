#include "XMLBuilder/SetChildren.h"

#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using xercesc::DOMElement;

namespace {

std::pair<std::u16string_view, std::u16string_view> nameOf(const DOMElement& element) {
  return {XMLUtils::viewOf(element.getNamespaceURI()), element.getLocalName()};
}

}  // namespace

SetChildren::SetChildren(const DOMElement& element) : element_(element) {
  for (const DOMElement* child : XMLUtils::childElements(element)) firsts_.emplace(nameOf(*child), First{child});
}

const DOMElement* SetChildren::find(std::u16string_view uri, std::u16string_view name) const {
  const auto found = firsts_.find({uri, name});
  return found == firsts_.end() ? nullptr : found->second.element;
}

const DOMElement* SetChildren::take(std::u16string_view uri, std::u16string_view name) {
  const auto found = firsts_.find({uri, name});
  if (found == firsts_.end()) return nullptr;
  found->second.isTaken = true;
  return found->second.element;
}

std::vector<SetChildren::Unread> SetChildren::unread() const {
  std::vector<Unread> unread;
  for (const DOMElement* child : XMLUtils::childElements(element_)) {
    const auto& first = firsts_.at(nameOf(*child));
    if (!first.isTaken || first.element != child) unread.push_back({child, first.isTaken});
  }
  return unread;
}

}  // namespace Vantor::XML2Partition
