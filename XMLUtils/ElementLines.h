#pragma once

#include <utility>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// The lines of the elements of a document, which the DOM does not keep. One thread at a time may use it.
class ElementLines {
 public:
  /// The line, from 1, on which the start tag of an element ends, or that of the element around any other node; 0 when
  /// it is not known.
  uint64 lineOf(const xercesc::DOMNode& node) const;

  /// Called once for each element.
  void enter(const xercesc::DOMNode& element, uint64 line);

 private:
  using Entry = std::pair<const xercesc::DOMNode*, uint64>;
  // Sorted by address on demand: a third of the memory of a hash table.
  mutable std::vector<Entry> lines_;
  mutable bool isSorted_ = true;
};

}  // namespace Vantor::XMLUtils
