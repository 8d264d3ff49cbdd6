#pragma once

#include <cstddef>
#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"
#include "XMLUtils/Holder.h"
#include "XMLUtils/InputCheck.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMDocument;
class DOMLSParser;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace Vantor::XMLUtils {

class ElementLines;

/// One element may have this many attributes, declarations included: Xerces compares each with all others of its
/// element.
constexpr std::size_t kMaximumAttributes = 1000;

/// An element and all those around it may have this many attributes together: resolving a prefix looks through them
/// all.
constexpr std::size_t kMaximumAttributesInScope = 2000;

/// Makes a synchronous parser for the functions below.
/// @param lines  outlives the parser, which enters the elements of its documents, drops white space between them, and
///               gives its documents no XPath engine; null for a parser that does none of this.
Holder<xercesc::DOMLSParser> createParser(ElementLines* lines = nullptr);

/// Parses a document in memory.
///
/// UTF-16 is recognised with and without a byte order mark, UTF-8 with one, whatever the XML declaration names. Other
/// text is in the encoding that the declaration names, or else in UTF-8: US-ASCII, ISO 8859 or a Windows code page from
/// 1250 to 1258, also by names such as latin1 and cp1252. `$#x...;` of `escapeForbidden` is undone in text, CDATA
/// sections, attribute values, comments and processing instructions; `$#x0;` stays, as a DOM string ends at a NUL.
/// White space is kept: see `cleanEmptyTextNodes`.
///
/// Input is not trusted. A document type declaration is skipped unread, so there are no entities but the five of XML,
/// and a reference to another one is an error; a declaration with brackets or '>' in comments or literals, where
/// skipping would go wrong, is refused. Nothing outside the buffer is opened: no entity, no schema, no network.
/// Documents beyond `limits` or with more attributes than the limits above are refused before anything is built.
///
/// @param buffer  read during the call only; null counts as empty.
/// @param size    bytes.
/// @param parser  owns the document, which is valid until the parser is released or its document pool reset; several
///                documents of one parser may live side by side. The call sets the parser's features to the above for
///                good, and its error handler for its own duration. A parser serves one thread at a time.
/// @return never null.
/// @throws Exceptions::LimitExceeded with line and column;
///         xercesc::SAXParseException for anything that is not well-formed or not allowed; its message starts with
///         "line 3, column 7: ". The parser can be used again.
/// @throws xercesc::DOMException when the parser is busy; std::bad_alloc or xercesc::OutOfMemoryException.
xercesc::DOMDocument* loadDocumentFromBuffer(const uint8* buffer, std::size_t size, xercesc::DOMLSParser& parser,
                                             const Limits& limits = {});

/// The two steps of `loadDocumentFromBuffer`: the first refuses what is not read, whether or not it is well-formed, and
/// the second what is not well-formed. The result of the first refers to the buffer.
/// @param systemId  what exceptions name as the source.
Input checkedInput(const uint8* buffer, std::size_t size, const XMLCh* systemId = u"", const Limits& limits = {});
xercesc::DOMDocument* loadDocument(const Input& input, xercesc::DOMLSParser& parser, const XMLCh* systemId = u"");

/// Parses a file as `loadDocumentFromBuffer` parses a buffer.
/// @param path  NUL-terminated UTF-16, taken as the name itself and not as a URI; see `Platform::pathFromWstring`.
/// @throws xercesc::SAXException naming the path and the system's reason when the file cannot be read.
xercesc::DOMDocument* loadDocumentFromFile(const uint16* path, xercesc::DOMLSParser& parser, const Limits& limits = {});

/// Removes the text nodes below `node` that hold nothing but XML white space (blank, TAB, LF, CR) or nothing at all.
/// CDATA sections stay. Takes time linear in the nodes, whatever their depth.
void cleanEmptyTextNodes(xercesc::DOMNode& node);

}  // namespace Vantor::XMLUtils
