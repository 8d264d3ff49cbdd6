#pragma once

#include <unordered_map>
#include <xercesc/dom/DOMLSParser.hpp>

#include "Core/Platform/Types.h"
#include "XMLUtils/Holder.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// The lines on which the elements of a document start; the DOM does not keep them.
class ElementLines {
 public:
  /// A parser as `createParser` makes, that enters the elements of what it parses here. This object outlives it. The
  /// documents have no XPath engine.
  Holder<xercesc::DOMLSParser> createParser();

  /// The line, from 1, on which the start tag of an element ends, or that of the element around any other node; 0 when
  /// it is not known.
  uint64 lineOf(const xercesc::DOMNode& node) const;

  void enter(const xercesc::DOMNode& element, uint64 line) { lines_[&element] = line; }

 private:
  std::unordered_map<const xercesc::DOMNode*, uint64> lines_;
};

}  // namespace Vantor::XMLUtils
