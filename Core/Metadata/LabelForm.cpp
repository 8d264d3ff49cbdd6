#include <algorithm>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/CommonLabelNames.h"
#include "Core/Metadata/LabelKinds.h"
#include "Core/Metadata/PropertyForm.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/AUID.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/UniversalLabel.h"
#include "Core/Types/ValueText.h"

/// Labels by the symbols and names that the registers give them.
namespace Vantor {

namespace {

using MetaMetadata::LabelNames;
using Types::Identifiers::Identifier;
using Found = std::vector<const LabelNames*>;

constexpr std::size_t kMostShown = 12;
constexpr std::size_t kFewestOctets = 10;  // a text of fewer is rather meant as a name
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

/// Refuses a text that several labels have, or one of which they are a part, and lists them in the place of examples.
Types::ParsedValue refusalWith(const Found& found, const std::string& beginning) {
  Types::ParsedValue refused(beginning);
  for (std::size_t i = 0; i < std::min(found.size(), kMostShown); ++i) {
    refused.reason += (i == 0 ? ": " : ", ") + std::string(found[i]->symbol);
  }
  if (found.size() > kMostShown) refused.reason += " and " + std::to_string(found.size() - kMostShown) + " more";
  refused.hasExamples = true;
  return refused;
}

std::string labelsText(const Found& found, const char* one, const char* several) {
  return found.size() == 1 ? one : std::to_string(found.size()) + " labels " + several;
}

/// Whether a text is meant as octets, although it has too few or too many.
bool isMeantAsOctets(std::u16string_view text) {
  const auto word = Types::trimmed(text);
  if (Types::hasHexPrefix(word) || word.find(u':') != std::u16string_view::npos) return true;
  const auto octets = Types::octetsInGroups(word);
  return octets && octets->size() >= kFewestOctets;
}

/// The label with a common name: none with one that several share.
const LabelNames* findCommon(const PropertyPlace& place, const std::vector<std::string_view>& symbols) {
  for (const auto symbol : symbols) {
    const auto* label = labelsOf(place).findSymbol(symbol);
    if (label != nullptr && isOfKind(kindOf(place), label->key)) return label;
  }
  return nullptr;
}

/// The refusal of a text that names no label of the kind.
Types::ParsedValue refuseName(const PropertyPlace& place, const std::string& name, const Found& near) {
  if (!near.empty()) {
    return refusalWith(near,
                       "no label has that name; " + labelsText(near, "one has it in its name", "have it in theirs"));
  }
  const auto* other = labelsOf(place).findSymbol(name);
  return Types::ParsedValue(other == nullptr ? "no label has that name"
                                             : "that is the label " + other->key.dottedText());
}

Types::ParsedValue parseName(const PropertyPlace& place, Identifier type, const std::string& name) {
  const auto* kind = kindOf(place);
  const auto ofKind = [kind](const auto& label) { return isOfKind(kind, label); };
  const auto* exact = labelsOf(place).findSymbol(name);
  if (exact != nullptr && mayBeOfKind(kind, exact->key)) return labelValue(type, exact->key);
  const auto common = symbolsOfCommonName(name);
  if (const auto* label = findCommon(place, common)) return labelValue(type, label->key);
  const bool isShared = !common.empty() && common.front().empty();
  auto found = labelsOf(place).findNamed(name, ofKind);
  if (found.empty()) return refuseName(place, name, labelsOf(place).findContaining(name, ofKind));
  found = withQualifiersOf(place, std::move(found));
  if (isShared) return refusalWith(found, "it has several systems");
  if (found.size() == 1) return labelValue(type, found.front()->key);
  return refusalWith(found, labelsText(found, "", "have it in their names"));
}

std::optional<Types::ParsedValue> parseLabel(const PropertyPlace& place, Identifier type, std::u16string_view text) {
  auto octets = Types::typeText(type)->parse(text);
  if (octets.value != nullptr || (!octets.reason.empty() && isMeantAsOctets(text))) return octets;
  if (hasNoNames(kindOf(place))) return Types::ParsedValue();
  const auto name = Utils::wstringToString(wstring(Types::trimmed(text)));
  return name.empty() ? Types::ParsedValue() : parseName(place, type, name);
}

}  // namespace

const PropertyForm kLabelForm = {holdsLabels, nounOfLabel, printSymbol, parseLabel};

}  // namespace Vantor
