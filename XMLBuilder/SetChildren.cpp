#include "XMLBuilder/SetChildren.h"

#include <algorithm>
#include <set>
#include <utility>

#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition {

using xercesc::DOMElement;

namespace {

std::u16string_view namespaceOf(const DOMElement& element) {
  const auto* uri = element.getNamespaceURI();
  return uri == nullptr ? std::u16string_view() : std::u16string_view(uri);
}

}  // namespace

SetChildren::SetChildren(const DOMElement& element) {
  for (const DOMElement* child : XMLUtils::childElements(element)) {
    const wstring name = XMLUtils::utf16ToWstring(child->getLocalName());
    const auto known = byName_.equal_range(name);
    // Of a name in one namespace only the first is ever asked for.
    const bool isFirst = std::none_of(known.first, known.second, [&](const auto& entry) {
      return namespaceOf(*children_[entry.second].element) == namespaceOf(*child);
    });
    if (isFirst) byName_.emplace(name, children_.size());
    children_.push_back({child});
  }
}

const DOMElement* SetChildren::take(std::u16string_view uri, const wstring& name) {
  const auto named = byName_.equal_range(name);
  for (auto at = named.first; at != named.second; ++at) {
    Child& child = children_[at->second];
    if (namespaceOf(*child.element) != uri) continue;
    child.isTaken = true;
    return child.element;
  }
  return nullptr;
}

std::vector<SetChildren::Unread> SetChildren::unread() const {
  std::set<std::pair<std::u16string_view, std::u16string_view>> taken;
  std::vector<Unread> unread;
  for (const Child& child : children_) {
    const std::pair<std::u16string_view, std::u16string_view> name(namespaceOf(*child.element),
                                                                   child.element->getLocalName());
    if (child.isTaken) {
      taken.insert(name);
    } else {
      unread.push_back({child.element, taken.count(name) != 0});
    }
  }
  return unread;
}

}  // namespace Vantor::XML2Partition
