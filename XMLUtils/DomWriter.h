#pragma once

#include <cstddef>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"
#include "XMLUtils/EncodingType.h"
#include "XMLUtils/StartTagWriter.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// Writes one DOM tree as XML text, in the form that `domToBuffer` describes; one object per call.
///
/// Walks by the nodes' own links and keeps one small record per open element.
class DomWriter {
 public:
  /// How much is written.
  struct Bound {
    uint64 bytes;     ///< of the output
    uint64 unitSize;  ///< bytes that a code unit takes at least
  };
  /// @param out  receives the text; empty before.
  DomWriter(wstring& out, EncodingType encoding, Bound bound);

  /// @throws Exceptions::LimitExceeded behind the first node that goes beyond the bound.
  void write(const xercesc::DOMNode& top);

 private:
  /// A node whose children are being written.
  struct Frame {
    const xercesc::DOMNode* node;
    std::size_t scope;  // of its namespace declarations
    bool verbatim;      // nothing may be added between its children
  };

  void keepBound() const;
  const xercesc::DOMNode* open(const xercesc::DOMNode& node);
  const xercesc::DOMNode* openDocument(const xercesc::DOMNode& document);
  const xercesc::DOMNode* openFragment(const xercesc::DOMNode& fragment);
  const xercesc::DOMNode* openElement(const xercesc::DOMNode& element);
  const xercesc::DOMNode* nextAfter(const xercesc::DOMNode* node);
  void closeElement(const Frame& frame);

  void writeText(const xercesc::DOMNode& text);
  void writeSection(const xercesc::DOMNode& section);
  void writeComment(const xercesc::DOMNode& comment);
  void writeInstruction(const xercesc::DOMNode& instruction);
  void writeDoctype(const xercesc::DOMNode& node);

  bool isVerbatim() const { return frames_.empty() ? !indented_ : frames_.back().verbatim; }
  void separate();
  void breakLine();

  wstring& out_;
  EncodingType encoding_;
  Bound bound_;
  bool indented_;
  std::size_t depth_ = 0;  // open elements
  std::vector<Frame> frames_;
  StartTagWriter startTags_;
};

}  // namespace Vantor::XMLUtils
