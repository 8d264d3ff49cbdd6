#pragma once

#include <unordered_map>
#include <xercesc/dom/DOMLSParser.hpp>

#include "Core/Platform/Types.h"
#include "XMLUtils/Holder.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// The lines of the elements of a document, which the DOM does not keep.
class ElementLines {
 public:
  /// A parser as `createParser` makes it, which records here the lines of the elements that it parses. This object
  /// outlives it. Its documents have no XPath engine.
  Holder<xercesc::DOMLSParser> createParser();

  /// The line, from 1, on which the start tag of an element ends, or that of the element around any other node; 0 when
  /// it is not known.
  uint64 lineOf(const xercesc::DOMNode& node) const;

  void enter(const xercesc::DOMNode& element, uint64 line) { lines_[&element] = line; }

 private:
  std::unordered_map<const xercesc::DOMNode*, uint64> lines_;
};

}  // namespace Vantor::XMLUtils
