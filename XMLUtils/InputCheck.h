#pragma once

#include <cstddef>
#include <xercesc/sax/SAXParseException.hpp>

#include "Core/Platform/Limits.h"
#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// The bytes of a document as the parser is to take them.
struct Input {
  const uint8* bytes;  ///< what follows the byte order mark, if there is one
  std::size_t size;
  wstring encoding;  ///< overrides the XML declaration
};

// These functions refuse input with an xercesc::SAXParseException, which has line and column; its message has neither.

/// Null counts as empty. Recognises UTF-16; takes the encoding of 8-bit text from the XML declaration, UTF-8 by
/// default.
///
/// Accepts the 8-bit encodings in which the bytes of markup are those of ASCII and mean nothing else, as `checkLimits`
/// requires: UTF-8, US-ASCII, ISO 8859 and the Windows code pages 1250 to 1258, also by names such as latin1 and
/// cp1252. Refuses any other.
Input recognise(const uint8* bytes, std::size_t size);

/// Refuses a document beyond `limits.nesting`, `limits.names` or `kMaximumAttributes` before a parser spends time and
/// memory on it, and text that the parser would misread or misplace: NUL characters, and what is not valid in UTF-8.
/// Xerces looks for a name among all names of a document that fall into one of a few hundred buckets, so that its time
/// grows with the square of different names; counting them takes time in proportion to the text. Names are those of
/// elements, attributes and namespaces. Besides that, finds only where comments, sections, instructions and tags start
/// and end; a document that is not well-formed is left to the parser, which stops at the first error.
/// @throws Exceptions::LimitExceeded with line and column.
void checkLimits(const Input& input, const Limits& limits = {});

}  // namespace Vantor::XMLUtils
