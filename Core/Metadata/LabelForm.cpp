#include <algorithm>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/LabelKinds.h"
#include "Core/Metadata/PropertyForm.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/AUID.h"
#include "Core/Types/UniversalLabel.h"
#include "Core/Types/ValueText.h"

/// Labels by the symbols and names that the registers give them.
namespace Vantor {

namespace {

using MetaMetadata::LabelNames;
using Types::Identifiers::Identifier;
using Found = std::vector<const LabelNames*>;

constexpr std::size_t kMostShown = 4;
constexpr std::size_t kQualifiersAt = 15;  // ST 378: the octet of an operational pattern that holds its qualifiers

bool holdsLabels(const PropertyPlace& place, Identifier type) {
  const bool isLabel = type == Types::Identifiers::kUniversalLabel || type == Types::Identifiers::kAUID;
  return isLabel && place.set != nullptr && place.set->definition() != nullptr;
}

const MetaMetadata::LabelIndex& labelsOf(const PropertyPlace& place) {
  return place.set->definition()->dictionary().labels();
}

const LabelKind* kindOf(const PropertyPlace& place) { return labelKindOf(place.definition->symbol()); }

TextNoun nounOfLabel(const PropertyPlace& place) { return {nounOf(kindOf(place)), examplesOf(kindOf(place))}; }

auto_ptr<Types::SimpleDataType> labelValue(Identifier type, const Types::UniversalLabel& label) {
  if (type == Types::Identifiers::kAUID) return std::make_unique<Types::AUID>(label.rawBuffer());
  return std::make_unique<Types::UniversalLabel>(label);
}

/// The symbol where it is read as these octets.
std::optional<wstring> printSymbol(const PropertyPlace& place, const Types::SimpleDataType& item) {
  const Types::UniversalLabel label(item.rawBuffer());
  const auto* known = labelsOf(place).find(label);
  if (known == nullptr || !mayBeOfKind(kindOf(place), label)) return std::nullopt;
  if (labelsOf(place).findSymbol(known->symbol) != known) return std::nullopt;
  return Utils::stringToWstring(std::string(known->symbol));
}

/// A short name such as "OP1a" leaves the qualifiers of an operational pattern as they are in the file.
Found withQualifiersOf(const PropertyPlace& place, Found found) {
  const auto* element = place.set->find(place.definition->key());
  const auto* value = element == nullptr ? nullptr : element->wireValue();
  if (place.definition->symbol() != "OperationalPattern" || value == nullptr || found.size() < 2) return found;
  const Types::UniversalLabel before(value->rawBuffer());
  const auto differs = [&before](const LabelNames* label) {
    return label->key.octet(kQualifiersAt) != before.octet(kQualifiersAt);
  };
  Found kept = found;
  kept.erase(std::remove_if(kept.begin(), kept.end(), differs), kept.end());
  return kept.size() == 1 ? kept : found;
}

std::string candidatesText(const Found& found) {
  std::string text = std::to_string(found.size()) + " labels have that name: ";
  for (std::size_t i = 0; i < std::min(found.size(), kMostShown); ++i) {
    text += (i == 0 ? "" : ", ") + std::string(found[i]->symbol);
  }
  return found.size() > kMostShown ? text + " and more" : text;
}

/// The reason for a text that names no label of the kind.
std::string otherKindText(const PropertyPlace& place, const std::string& name) {
  const auto* other = labelsOf(place).findSymbol(name);
  return other == nullptr ? "" : "that is the label " + other->key.dottedText();
}

std::optional<Types::ParsedValue> parseLabel(const PropertyPlace& place, Identifier type, std::u16string_view text) {
  auto octets = Types::typeText(type)->parse(text);
  if (octets.value != nullptr) return octets;
  const auto name = Utils::wstringToString(wstring(Types::trimmed(text)));
  const auto* kind = kindOf(place);
  const auto* exact = labelsOf(place).findSymbol(name);
  if (exact != nullptr && mayBeOfKind(kind, exact->key)) return labelValue(type, exact->key);
  auto found = labelsOf(place).findNamed(name, [kind](const auto& label) { return isOfKind(kind, label); });
  found = withQualifiersOf(place, std::move(found));
  if (found.size() == 1) return labelValue(type, found.front()->key);
  if (!found.empty()) return Types::ParsedValue(candidatesText(found));
  return Types::ParsedValue(octets.reason.empty() ? otherKindText(place, name) : std::move(octets.reason));
}

}  // namespace

const PropertyForm kLabelForm = {holdsLabels, nounOfLabel, printSymbol, parseLabel};

}  // namespace Vantor
