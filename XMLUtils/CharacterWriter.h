#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include "Core/Platform/Types.h"

namespace Vantor::XMLUtils {

/// Where characters stand in XML text, which decides how they are written.
enum class Place { kText, kAttribute, kCDATA, kComment, kInstruction };

/// Appends NUL-terminated characters in a form that parses back to them: as they stand, as references, or as the
/// escapes of `appendEscape`. In a comment "--" becomes "- -", in an instruction "?>" becomes "? >", and a CDATA
/// section ends and starts anew where it has to.
void writeCharacters(wstring& out, const XMLCh* text, Place place);

}  // namespace Vantor::XMLUtils
