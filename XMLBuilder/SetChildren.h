#pragma once

#include <map>
#include <string_view>
#include <utility>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace Vantor::XML2Partition {

/// The child elements of a set's element, found by namespace and name, and ticked off once they are read. Valid as long
/// as the document.
class SetChildren {
 public:
  explicit SetChildren(const xercesc::DOMElement& element);

  /// The first child of that name; null when there is none.
  const xercesc::DOMElement* find(std::u16string_view uri, std::u16string_view name) const;
  /// The same, ticked off.
  const xercesc::DOMElement* take(std::u16string_view uri, std::u16string_view name);

  struct Unread {
    const xercesc::DOMElement* element;
    bool isSecond;  ///< whether one of the same namespace and name was read
  };
  /// The children that were not taken, in document order.
  std::vector<Unread> unread() const;

 private:
  struct First {
    const xercesc::DOMElement* element;
    bool isTaken = false;
  };

  const xercesc::DOMElement& element_;
  // By namespace and name. Ordered, because a hostile document could choose names whose hashes collide.
  std::map<std::pair<std::u16string_view, std::u16string_view>, First> firsts_;
};

}  // namespace Vantor::XML2Partition
