#pragma once

#include <cstddef>
#include <xercesc/sax/SAXParseException.hpp>

#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// The bytes of a document as the parser is to take them.
struct Input {
  const uint8* bytes;  ///< what follows the byte order mark, if there is one
  std::size_t size;
  wstring encoding;  ///< overrides what the XML declaration says
};

/// Tells UTF-16 from 8-bit text, and takes the encoding of the latter from the XML declaration, UTF-8 by default.
///
/// 8-bit encodings are taken if `<` and the other characters of markup are what they are in ASCII and nothing else is:
/// UTF-8, US-ASCII, ISO 8859 and the Windows code pages 1250 to 1258. That is what `checkLimits` relies on.
/// @throws xercesc::SAXParseException for any other.
Input recognise(const uint8* bytes, std::size_t size);

/// Refuses a document beyond `kMaximumDepth` or `kMaximumAttributes` before a parser spends time and memory on it.
/// Text of another encoding that goes for UTF-8 is refused, too. Besides that,
/// looks at nothing but where comments, sections, instructions and tags start and end; a document that is not
/// well-formed is left to the parser, which stops at the first error.
/// @throws xercesc::SAXParseException
void checkLimits(const Input& input, const XMLCh* systemId);

/// Makes an exception whose message starts with "line 3, column 7: ".
xercesc::SAXParseException parseException(const wstring& message, const XMLCh* systemId, uint64 line, uint64 column);

}  // namespace Vantor::XMLUtils
