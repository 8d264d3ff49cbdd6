#pragma once

#include <string>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Limits.h"
#include "Core/Platform/Types.h"
#include "XMLUtils/EncodingType.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

/// Writes a document, or the part of one below a node, as XML 1.0 text.
///
/// `out` receives UTF-16 code units in any case; the XML declaration names the encoding that the caller is going to
/// store the text in ("UTF-8" or "UTF-16"). Only a document gets a declaration. A null node leaves `out` empty.
///
/// What a parser reads back equals the DOM:
/// - Plain forms add no white space at all. Indented forms put children on lines of their own, two spaces per level,
///   and end with a line feed. An element with a text child, however blank, stays as it is with everything below it,
///   as does content under `xml:space="preserve"`. No text is ever dropped.
/// - Text that XML cannot hold, and `$#x`, which announces it, is written in the form of `escapeForbidden`. The DOM has
///   the characters themselves; `loadDocumentFromBuffer` and `loadDocumentFromFile` bring them back.
/// - CR in text, and TAB, LF and CR in attribute values, are written as character references, so that they survive the
///   parser's normalisation.
/// - Attributes come in the DOM's order. A namespace that no attribute in scope declares for the prefix at hand is
///   declared on the element that needs it, ahead of what needs it; a declaration that contradicts its own element's
///   name is corrected, and an attribute whose prefix is taken gets another. The DOM is not touched.
/// - What would end a comment or a processing instruction too early gets a blank put in ("- -", "? >"); a CDATA section
///   is split. Adjacent text nodes read back as one.
///
/// Time and memory are linear in the text, and depth costs heap instead of stack. (Xerces' DOMLSSerializer fails at the
/// first character that XML forbids, adds white space that cannot be controlled, and recurses once per level.)
///
/// The node is only read; two threads may write two documents at once, but not one document, since reading a DOM node
/// may fill caches of its document.
/// @throws std::bad_alloc; Exceptions::LimitExceeded when the text takes more bytes in UTF-16 than `limits.outputSize`.
///         `out` then holds a part of the text.
void domToBuffer(const xercesc::DOMNode* node, wstring& out, EncodingType encoding);
void domToBuffer(const xercesc::DOMNode* node, wstring& out, EncodingType encoding, const Limits& limits);

/// The same as bytes to store in a file: UTF-8 without a byte order mark, or UTF-16 in little-endian order with one, on
/// every machine. Null gives no bytes. The limit of the output is for these bytes.
void domToBytes(const xercesc::DOMNode* node, std::string& out, EncodingType encoding);
void domToBytes(const xercesc::DOMNode* node, std::string& out, EncodingType encoding, const Limits& limits);

}  // namespace Vantor::XMLUtils
