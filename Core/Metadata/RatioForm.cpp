#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Text/RationalText.h"

/// Aspect ratios.
namespace Vantor {

namespace {

bool isAspectRatio(const PropertyPlace& place, Types::Identifiers::Identifier type) {
  return type == Types::Identifiers::kRational && place.definition->symbol().find("AspectRatio") != std::string::npos;
}

TextNoun nounOfRatio(const PropertyPlace&) { return {"an aspect ratio", "16:9, 4/3, 1.85 or 2.39:1"}; }

std::optional<wstring> printAspectRatio(const PropertyPlace&, const Types::SimpleDataType& item) {
  return Types::printRatio(item);
}

/// "16x9" is 16:9.
std::optional<Types::ParsedValue> parseAspectRatio(const PropertyPlace&, Types::Identifiers::Identifier,
                                                   std::u16string_view text) {
  wstring ratio(text);
  const auto mark = ratio.find_first_of(u"x\u00d7", 1);
  if (mark == wstring::npos || text.substr(0, 2) == u"0x") return std::nullopt;
  ratio[mark] = u':';
  return Types::parseRational(ratio);
}

}  // namespace

const PropertyForm kAspectRatioForm = {isAspectRatio, nounOfRatio, printAspectRatio, parseAspectRatio};

}  // namespace Vantor
