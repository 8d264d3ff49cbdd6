#include <algorithm>
#include <array>

#include "Core/Metadata/PropertyForm.h"
#include "Core/Types/Text/LanguageTag.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/ValueText.h"

/// Language tags of RFC 5646, in the properties whose definitions in the registers ask for them.
namespace Vantor {

namespace {

enum class Tags { kOne, kSeveral, kCode };

struct LanguageProperty {
  std::string_view symbol;
  Tags tags;
};

/// The register of elements (ST 335) gives their content as RFC 5646 or BCP 47, or as ISO 639.
constexpr std::array kLanguageProperties = {
    LanguageProperty{"RFC5646SpokenLanguage", Tags::kOne},
    LanguageProperty{"RFC5646TextLanguageCode", Tags::kOne},
    LanguageProperty{"RFC5646AdditionalSpokenLanguages", Tags::kSeveral},
    LanguageProperty{"RFC5646LanguageTagList", Tags::kSeveral},
    LanguageProperty{"EventTextLanguageCode", Tags::kOne},
    LanguageProperty{"ISO6391LanguageCode", Tags::kCode},
    LanguageProperty{"ISO6391LanguageCode_ISO639", Tags::kCode},
    LanguageProperty{"PrimarySpokenLanguageCode", Tags::kCode},
    LanguageProperty{"SecondarySpokenLanguageCode", Tags::kCode},
    LanguageProperty{"PrimaryOriginalLanguageCode", Tags::kCode},
    LanguageProperty{"SecondaryOriginalSpokenLanguageCode", Tags::kCode},
    LanguageProperty{"PrimaryExtendedSpokenLanguageCode", Tags::kCode},
    LanguageProperty{"metadataFrameworkTextLanguageCode", Tags::kCode},
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
  switch (languageProperty(place)->tags) {
    case Tags::kOne:
      return {"a language tag of RFC 5646", "en, de-CH or zh-Hant-TW"};
    case Tags::kSeveral:
      return {"a list of language tags of RFC 5646", "en, de-CH"};
    case Tags::kCode:
      return {"a language code of ISO 639", "en or eng"};
  }
  return {};
}

bool isLanguage(std::u16string_view text, Tags tags) {
  switch (tags) {
    case Tags::kOne:
      return Types::isLanguageTag(text);
    case Tags::kSeveral:
      return Types::isLanguageTagList(text);
    case Tags::kCode:
      return Types::isLanguageCode(text);
  }
  return false;
}

std::optional<wstring> printLanguage(const PropertyPlace&, const Types::SimpleDataType&) { return std::nullopt; }

std::optional<Types::ParsedValue> parseLanguage(const PropertyPlace& place, Types::Identifiers::Identifier type,
                                                std::u16string_view text) {
  auto parsed = Types::typeText(type)->parse(text);
  if (parsed.value == nullptr) return parsed;
  const wstring tags = Types::textOfValue(*parsed.value);
  if (isLanguage(tags, languageProperty(place)->tags)) return parsed;
  return Types::ParsedValue();
}

}  // namespace

const PropertyForm kLanguageForm = {holdsLanguage, nounOfLanguage, printLanguage, parseLanguage};

}  // namespace Vantor
