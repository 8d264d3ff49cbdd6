#include "XMLUtils/Strings.h"

#include "Core/Platform/Strings.h"

namespace Vantor::XMLUtils {

wstring utf16ToWstring(const XMLCh* text) { return text == nullptr ? wstring() : wstring(text); }

wstring utf16ToWstring(const uint16* text) { return Platform::utf16ToWstring(text); }

}  // namespace Vantor::XMLUtils
