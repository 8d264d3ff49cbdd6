#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "XMLBuilder/ImportDocument.h"

namespace Vantor::XML2Partition {

/// The child elements of a set's element, found by namespace and name and ticked off once they are read.
class SetChildren {
 public:
  explicit SetChildren(const xercesc::DOMElement& element);

  /// The first child of that name, ticked off; null when there is none.
  const xercesc::DOMElement* take(std::u16string_view uri, const wstring& name);

  struct Unread {
    const xercesc::DOMElement* element;
    bool isSecond;  ///< whether one of the same namespace and name was read
  };
  /// The children that were not taken, in document order.
  std::vector<Unread> unread() const;

 private:
  struct Child {
    const xercesc::DOMElement* element;
    bool isTaken = false;
  };
  std::vector<Child> children_;
  std::unordered_multimap<wstring, std::size_t, TextHash> byName_;
};

}  // namespace Vantor::XML2Partition
