#include "XMLBuilder/SetChildren.h"

#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

using xercesc::DOMElement;

namespace {

std::pair<std::u16string_view, std::u16string_view> nameOf(const DOMElement& element) {
  const auto* uri = element.getNamespaceURI();
  return {uri == nullptr ? std::u16string_view() : std::u16string_view(uri), element.getLocalName()};
}

}  // namespace

SetChildren::SetChildren(const DOMElement& element) {
  for (const DOMElement* child : XMLUtils::childElements(element)) {
    firsts_.emplace(nameOf(*child), children_.size());
    children_.push_back({child});
  }
}

const DOMElement* SetChildren::find(std::u16string_view uri, std::u16string_view name) const {
  const auto found = firsts_.find({uri, name});
  return found == firsts_.end() ? nullptr : children_[found->second].element;
}

const DOMElement* SetChildren::take(std::u16string_view uri, std::u16string_view name) {
  const auto found = firsts_.find({uri, name});
  if (found == firsts_.end()) return nullptr;
  children_[found->second].isTaken = true;
  return children_[found->second].element;
}

std::vector<SetChildren::Unread> SetChildren::unread() const {
  std::vector<Unread> unread;
  for (const Child& child : children_) {
    if (!child.isTaken) unread.push_back({child.element, children_[firsts_.at(nameOf(*child.element))].isTaken});
  }
  return unread;
}

}  // namespace Vantor::XML2Partition
