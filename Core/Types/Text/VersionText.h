#pragma once

#include "Core/Types/Text/TypeText.h"

namespace Vantor::Types {

/// "1.3"
wstring printVersionType(const SimpleDataType& value);
/// "1.3", "1" for 1.0, and from 256 on 256 * major + minor, as documents have it.
ParsedValue parseVersionType(std::u16string_view text);

/// "1.2.3.4 release"; the number of a release that has no word: "1.2.3.4.17".
wstring printProductVersion(const SimpleDataType& value);
/// One to four numbers, then a word for the release, or its number behind a fifth point. Missing numbers are 0, a
/// missing release is unknown.
ParsedValue parseProductVersion(std::u16string_view text);

}  // namespace Vantor::Types
