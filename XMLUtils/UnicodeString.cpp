#include "XMLUtils/UnicodeString.h"

#include "Core/Platform/Strings.h"

namespace Vantor::XMLUtils {

UnicodeString::UnicodeString(const char* text) : UnicodeString(std::string(text == nullptr ? "" : text)) {}

UnicodeString::UnicodeString(const std::string& text) : text_(Platform::stringToWstring(text)) {}

const uint16* UnicodeString::utf16() const noexcept { return reinterpret_cast<const uint16*>(text_.c_str()); }

}  // namespace Vantor::XMLUtils
