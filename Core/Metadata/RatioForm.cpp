#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Text/RationalText.h"

/// Aspect ratios.
namespace Vantor {

namespace {

bool isAspectRatio(const PropertyPlace& place, Types::Identifiers::Identifier type) {
  return type == Types::Identifiers::kRational && place.definition->symbol().find("AspectRatio") != std::string::npos;
}

TextNoun nounOfRatio(const PropertyPlace&) { return {"an aspect ratio", "16:9, 4/3 or 1.85"}; }

std::optional<wstring> printAspectRatio(const PropertyPlace&, const Types::SimpleDataType& item) {
  return Types::printRatio(item);
}

std::optional<Types::ParsedValue> parseAspectRatio(const PropertyPlace&, Types::Identifiers::Identifier,
                                                   std::u16string_view) {
  return std::nullopt;
}

}  // namespace

const PropertyForm kAspectRatioForm = {isAspectRatio, nounOfRatio, printAspectRatio, parseAspectRatio};

}  // namespace Vantor
