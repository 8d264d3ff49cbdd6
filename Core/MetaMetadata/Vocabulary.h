#pragma once

#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::MetaMetadata {

/// The namespaces that a dictionary uses. The names in them are the same.
enum class Vocabulary : uint8 {
  /// Sets in "urn:SMPTE:S377M", properties in "urn:SMPTE:RP210".
  kLegacy,
  /// The schemas of SMPTE ST 434:2014.
  kST434_2014,
};

struct Namespace {
  std::u16string_view prefix;
  std::u16string_view uri;
};

inline constexpr Namespace kLegacySets{u"s377m", u"urn:SMPTE:S377M"};
inline constexpr Namespace kLegacyElements{u"rp210", u"urn:SMPTE:RP210"};
/// SMPTE ST 434:2014, for the groups of ST 395, the elements of ST 335 and the types of ST 377-1.
inline constexpr Namespace kST434Sets{u"st395", u"http://www.smpte-ra.org/schemas/434/2014/groups/395/2012"};
inline constexpr Namespace kST434Elements{u"st335", u"http://www.smpte-ra.org/schemas/434/2014/elements/335/2012"};
inline constexpr Namespace kST434Types{u"st377Types", u"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012"};

constexpr Namespace setNamespace(Vocabulary vocabulary) {
  return vocabulary == Vocabulary::kLegacy ? kLegacySets : kST434Sets;
}

/// Properties of these two names identify their set and stay in the legacy namespace in either vocabulary.
constexpr bool isIdentifierName(std::u16string_view tagName) {
  return tagName == u"InstanceUID" || tagName == u"GenerationUID";
}

constexpr Namespace elementNamespace(Vocabulary vocabulary, std::u16string_view tagName) {
  return vocabulary == Vocabulary::kLegacy || isIdentifierName(tagName) ? kLegacyElements : kST434Elements;
}

}  // namespace Vantor::MetaMetadata
