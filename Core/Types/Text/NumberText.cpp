#include "Core/Types/Text/NumberText.h"

#include <algorithm>
#include <array>

namespace Vantor::Types {

wstring printBoolean(const SimpleDataType& value) {
  return static_cast<const Boolean&>(value).value() ? u"true" : u"false";
}

ParsedValue parseBoolean(std::u16string_view text) {
  constexpr std::array<std::u16string_view, 4> kTrue = {u"true", u"yes", u"on", u"1"};
  constexpr std::array<std::u16string_view, 4> kFalse = {u"false", u"no", u"off", u"0"};
  const wstring word = lowerCaseOf(trimmed(text));
  const bool isTrue = std::find(kTrue.begin(), kTrue.end(), word) != kTrue.end();
  const bool isFalse = std::find(kFalse.begin(), kFalse.end(), word) != kFalse.end();
  return isTrue || isFalse ? ParsedValue(std::make_unique<Boolean>(isTrue)) : ParsedValue();
}

}  // namespace Vantor::Types
