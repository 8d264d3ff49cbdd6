#include <algorithm>
#include <array>

#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Text/LanguageTag.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/ValueText.h"

/// Language tags of RFC 5646, in the properties whose definitions in the registers ask for them.
namespace Vantor {

namespace {

enum class Tags { kOne, kSeveral };

struct LanguageProperty {
  std::string_view symbol;
  Tags tags;
};

/// The register of elements (ST 335) gives their content as RFC 5646 or BCP 47.
constexpr std::array kLanguageProperties = {
    LanguageProperty{"RFC5646SpokenLanguage", Tags::kOne},
    LanguageProperty{"RFC5646TextLanguageCode", Tags::kOne},
    LanguageProperty{"RFC5646AdditionalSpokenLanguages", Tags::kSeveral},
    LanguageProperty{"RFC5646LanguageTagList", Tags::kSeveral},
    LanguageProperty{"EventTextLanguageCode", Tags::kOne},
    LanguageProperty{"AS_07_Core_DMS_AudioTrackPrimaryLanguage", Tags::kOne},
    LanguageProperty{"AS_07_Core_DMS_AudioTrackSecondaryLanguage", Tags::kSeveral},
    LanguageProperty{"AS_07_GSP_TD_DMS_PrimaryRFC5646LanguageCode", Tags::kOne},
    LanguageProperty{"AS_07_GSP_TD_DMS_SecondaryRFC5646LanguageCode", Tags::kSeveral},
    LanguageProperty{"audioContentLanguageCode", Tags::kOne},
    LanguageProperty{"audioProgrammeLanguageCode", Tags::kOne},
    LanguageProperty{"captioningLanguageCode", Tags::kOne},
    LanguageProperty{"dataTrackLanguageCode", Tags::kOne},
    LanguageProperty{"formatGroupLanguageCode", Tags::kOne},
    LanguageProperty{"languageCode", Tags::kOne},
    LanguageProperty{"signingTrackLanguageCode", Tags::kOne},
    LanguageProperty{"statusGroupLanguageCode", Tags::kOne},
    LanguageProperty{"subtitlingLanguageCode", Tags::kOne},
    LanguageProperty{"textLanguageCode", Tags::kOne},
    LanguageProperty{"trackLanguageCode", Tags::kOne},
    LanguageProperty{"typeGroupLanguageCode", Tags::kOne}};

const LanguageProperty* languageProperty(const PropertyPlace& place) {
  const auto* found = std::find_if(
      kLanguageProperties.begin(), kLanguageProperties.end(),
      [&place](const LanguageProperty& property) { return property.symbol == place.definition->symbol(); });
  return found == kLanguageProperties.end() ? nullptr : found;
}

bool holdsLanguage(const PropertyPlace& place, Types::Identifiers::Identifier) {
  return languageProperty(place) != nullptr;
}

TextNoun nounOfLanguage(const PropertyPlace& place) {
  if (languageProperty(place)->tags == Tags::kOne) return {"a language tag of RFC 5646", "en, de-CH or zh-Hant-TW"};
  return {"a list of language tags of RFC 5646", "en, de-CH"};
}

std::optional<wstring> printLanguage(const PropertyPlace&, const Types::SimpleDataType&) { return std::nullopt; }

std::optional<Types::ParsedValue> parseLanguage(const PropertyPlace& place, Types::Identifiers::Identifier type,
                                                std::u16string_view text) {
  auto parsed = Types::typeText(type)->parse(text);
  if (parsed.value == nullptr) return parsed;
  const wstring tags = Types::textOfValue(*parsed.value);
  const bool isOne = languageProperty(place)->tags == Tags::kOne;
  if (isOne ? Types::isLanguageTag(tags) : Types::isLanguageTagList(tags)) return parsed;
  return Types::ParsedValue();
}

}  // namespace

const PropertyForm kLanguageForm = {holdsLanguage, nounOfLanguage, printLanguage, parseLanguage};

}  // namespace Vantor
