#include "Core/Metadata/SetChoice.h"

#include <algorithm>

#include "Core/KLV/IdentifierDigits.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/NameSuggestions.h"
#include "Core/Metadata/PropertyText.h"
#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Metadata/SetDetails.h"
#include "Core/Metadata/UnreadValue.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/StringText.h"

namespace Vantor {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using Kinds = std::vector<const MetaMetadata::MetaMetadataSet*>;
using Sets = PartitionMetadata::Sets;

constexpr std::size_t kAllDigits = 2 * Types::UUID::kSize;
constexpr std::size_t kFewestDigits = 4;

/// The digits of an identifier or of its beginning; none for a text that is neither.
std::optional<std::string> digitsIn(const std::string& name) {
  auto digits = KLV::identifierDigits(name, kAllDigits);
  return digits && digits->size() >= kFewestDigits ? digits : std::nullopt;
}

std::string hexOfOctets(const uint8* octets) { return Platform::hexText<std::string>(octets, Types::UUID::kSize); }

bool isIdentifiedBy(const MetadataSet& set, const std::string& digits) {
  const auto* uid = set.instanceUID();
  return uid != nullptr && hexOfOctets(uid->rawBuffer()).compare(0, digits.size(), digits) == 0;
}

template <class Predicate>
Sets filtered(const Sets& sets, Predicate predicate) {
  Sets found;
  std::copy_if(sets.begin(), sets.end(), std::back_inserter(found), predicate);
  return found;
}

bool isOneOf(const MetadataSet& set, const Kinds& definitions) {
  return std::find(definitions.begin(), definitions.end(), set.definition()) != definitions.end();
}

bool inheritsOneOf(const MetadataSet& set, const Kinds& definitions) {
  return set.definition() != nullptr && std::any_of(definitions.begin(), definitions.end(), [&](const auto* kind) {
           return set.definition()->isOrInherits(*kind);
         });
}

bool hasAbstract(const Kinds& definitions) {
  return std::any_of(definitions.begin(), definitions.end(), [](const auto* kind) { return !kind->isConcrete(); });
}

const MetaMetadata::MetaElement* definitionIn(const MetadataSet& set, std::string_view property) {
  if (const auto* element = set.find(property)) return element->metaAttribute().metaElement();
  const auto* attribute = set.definition() == nullptr ? nullptr : set.definition()->findAttribute(property);
  return attribute == nullptr ? nullptr : attribute->metaElement();
}

Sets having(const Sets& sets, std::string_view property) {
  return filtered(sets, [&](const MetadataSet* set) { return definitionIn(*set, property) != nullptr; });
}

Kinds kindsOf(const Sets& sets) {
  Kinds kinds;
  for (const auto* set : sets) {
    const auto* kind = set->definition();
    if (kind != nullptr && std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) kinds.push_back(kind);
  }
  return kinds;
}

/// The text of a value, also of one that was read as octets; none where the property has no value.
std::optional<wstring> textOf(const MetadataSet& set, const MetaMetadata::MetaElement& definition) {
  const auto* element = set.find(definition.symbol());
  if (element != nullptr && element->wireValue() != nullptr) {
    return printProperty({&set, &definition}, *element->wireValue());
  }
  for (auto unread = set.invalidBegin(); unread != set.invalidEnd(); ++unread) {
    if ((*unread).metaAttribute().asUnknown() == nullptr || set.definitionOf(*unread) != &definition) continue;
    const auto value = unreadValueOf(set, *unread).value;
    return value == nullptr ? std::nullopt : std::optional(printProperty({&set, &definition}, *value));
  }
  return std::nullopt;
}

/// The value of a condition as `parseProperty` takes it. Quotes are part of the texts of text types.
wstring wantedText(const std::string& value, const MetaMetadata::MetaElement& definition) {
  const wstring text = Utils::stringToWstring(value);
  std::u16string_view rest = text;
  wstring inner;
  const bool isQuoted = !Types::isTextType(definition.dataType()) && Types::takeQuoted(rest, inner) && rest.empty();
  return isQuoted ? inner : text;
}

std::string inParentheses(const MetadataSet& set, const SetOwners& owners) {
  if (set.definition() == nullptr) return "";
  std::string text;
  const auto* package = owners.packageOf(set);
  for (const auto& detail : detailsOf(set)) text += (text.empty() ? "" : ", ") + detail;
  if (package != nullptr) text += (text.empty() ? "in " : ", in ") + package->name();
  return text.empty() ? "" : " (" + text + ")";
}

std::string countOf(std::size_t count) { return count == 1 ? "is 1" : "are " + std::to_string(count); }

[[noreturn]] void raiseNoProperty(const Sets& sets, const std::string& property) {
  const auto kinds = kindsOf(sets);
  std::string names;
  for (const auto* kind : kinds) names += (names.empty() ? "" : ", ") + kind->symbol();
  raise<InvalidFormat>("{} {} no property '{}'{}", names.empty() ? sets.front()->name() : names,
                       kinds.size() > 1 ? "have" : "has", property, suggestProperty(kinds, property));
}

std::string joined(const std::vector<std::string>& texts, const char* separator) {
  std::string all;
  for (const auto& text : texts) all += (all.empty() ? "" : separator) + text;
  return all;
}

/// "A, B or C".
std::string alternatives(std::vector<std::string> texts) {
  const std::string last = std::move(texts.back());
  texts.pop_back();
  return texts.empty() ? last : joined(texts, ", ") + " or " + last;
}

/// A path without a "[*]" at its end: an index in its place chooses among the same sets.
std::string withoutAll(const std::string& path) {
  constexpr std::string_view kAll = "[*]";
  const bool isForAll = path.size() > kAll.size() && path.compare(path.size() - kAll.size(), kAll.size(), kAll) == 0;
  return isForAll ? path.substr(0, path.size() - kAll.size()) : path;
}

/// Of sets with points between them, as in "MaterialPackage.Timecode": the path that is meant. Empty for other names.
std::string pathInsteadOf(const std::string& name, std::string_view property,
                          const MetaMetadata::Dictionary& dictionary) {
  std::string path = name;
  if (property.empty() || name.find('.') == name.npos) return "";
  for (std::size_t begin = 0; begin <= name.size();) {
    const auto end = std::min(name.find('.', begin), name.size());
    if (dictionary.findSetsByName(name.substr(begin, end - begin)).empty()) return "";
    if (end < name.size()) path[end] = '/';
    begin = end + 1;
  }
  return path;
}

}  // namespace

SetChoice::SetChoice(const PartitionMetadata& partition, const SetPath& path, std::string_view property)
    : partition_(partition), path_(path), property_(property) {
  for (const auto& step : path.steps()) {
    follow(step, &step == &path.steps().front());
    if (sets_.empty()) return;
  }
  if (!property.empty()) keepHaving(property);
}

void SetChoice::follow(const Step& step, bool isFirst) {
  lastStep_ = &step;
  lastSelector_ = nullptr;
  wider_.clear();
  if (!isFirst) sets_ = reachedFrom(sets_, partition_);
  const auto kinds = partition_.partitionDictionary().dictionary()->findSetsByName(step.name);
  const auto digits = kinds.empty() ? digitsIn(step.name) : std::nullopt;
  if (digits) {
    keepIdentified(*digits, isFirst);
  } else {
    takeKinds(kinds, step.name, isFirst);
  }
  for (const auto& selector : step.selectors) {
    if (!sets_.empty()) select(selector);
  }
}

// ST 377-1 has "Track" for the TimelineTrack, the registers for all tracks: the common name comes first where there are
// such sets.
void SetChoice::takeKinds(const Kinds& kinds, const std::string& name, bool isFirst) {
  const auto* common = partition_.partitionDictionary().dictionary()->commonNames().findSet(name);
  sets_ = ofKinds(kinds, isFirst);
  if (common == nullptr || std::find(kinds.begin(), kinds.end(), common) != kinds.end()) return;
  auto usual = filtered(sets_, [&](const MetadataSet* set) { return isOneOf(*set, {common}); });
  if (usual.empty() || usual.size() == sets_.size()) return;
  wider_ = std::move(sets_);
  sets_ = std::move(usual);
}

// The sets of one kind are found by their key. A look at all sets carries out removals: who walks them and looks for
// sets of one kind on the way does without.
SetChoice::Sets SetChoice::ofKinds(const Kinds& kinds, bool isFirst) const {
  const auto isExact = [&](const MetadataSet* set) { return isOneOf(*set, kinds); };
  if (kinds.empty()) return {};
  const bool isAbstract = hasAbstract(kinds);
  if (isFirst && kinds.size() == 1 && !isAbstract) {
    auto exact = filtered(partition_.find(kinds[0]->key()), isExact);
    if (!exact.empty()) return exact;
  }
  const Sets& among = isFirst ? partition_.sets() : sets_;
  auto exact = isAbstract ? Sets() : filtered(among, isExact);
  if (!exact.empty()) return exact;
  return filtered(among, [&](const MetadataSet* set) { return inheritsOneOf(*set, kinds); });
}

void SetChoice::select(const Selector& selector) {
  lastSelector_ = &selector;
  if (selector.kind == Selector::Kind::kAll) return;
  before_ = sets_;
  if (selector.kind == Selector::Kind::kCondition) return keepMatching(selector);
  wider_.clear();
  const auto count = static_cast<int64>(sets_.size());
  const int64 place = selector.index > 0 ? selector.index - 1 : count + selector.index;
  sets_ = place >= 0 && place < count ? Sets{sets_[static_cast<std::size_t>(place)]} : Sets();
}

void SetChoice::keepIdentified(const std::string& digits, bool isFirst) {
  const auto isIdentified = [&](const MetadataSet* set) { return isIdentifiedBy(*set, digits); };
  if (!isFirst || digits.size() < kAllDigits) {
    sets_ = filtered(isFirst ? partition_.sets() : sets_, isIdentified);
    return;
  }
  const auto octets = Platform::bytesFromHex(Platform::stringToWstring(digits)).value_or(Bytes(kAllDigits / 2));
  const auto& found = partition_.findByInstanceUID(Types::UUID(octets.data()));
  sets_ = !found.empty() ? found : partition_.find(KLV::Key(octets.data()));
}

void SetChoice::keepMatching(const Selector& selector) {
  mistake_.clear();
  isKnown_ = false;
  const auto isMatching = [&](const MetadataSet* set) { return matches(*set, selector); };
  sets_ = filtered(before_, isMatching);
  if (sets_.empty() && !wider_.empty()) {
    before_ = wider_;
    sets_ = filtered(before_, isMatching);
  }
  wider_.clear();
}

void SetChoice::keepHaving(std::string_view property) {
  before_ = sets_;
  isNarrowed_ = true;
  auto found = having(sets_, property);
  if (found.empty()) found = having(wider_, property);
  if (!found.empty()) sets_ = std::move(found);
}

// A text that one of several kinds cannot hold only matters where it matches none.
bool SetChoice::matches(const MetadataSet& set, const Selector& selector) {
  const auto* definition = definitionIn(set, selector.property);
  if (definition == nullptr) return false;
  isKnown_ = true;
  const auto text = textOf(set, *definition);
  const auto wanted = wantedText(selector.value, *definition);
  if (text && *text == wanted) return true;
  try {
    const PropertyPlace place = {&set, definition};
    const auto value = parseProperty(place, wanted);
    return text && *text == printProperty(place, *value);
  } catch (const InvalidFormat& error) {
    mistake_ = error.message();
    return false;
  }
}

bool SetChoice::isMistaken() const {
  if (lastSelector_ != nullptr) {
    return lastSelector_->kind == Selector::Kind::kCondition && (!isKnown_ || !mistake_.empty());
  }
  const auto kinds = partition_.partitionDictionary().dictionary()->findSetsByName(lastStep_->name);
  return kinds.empty() && !digitsIn(lastStep_->name);
}

void SetChoice::raiseNotFound() const {
  if (lastSelector_ != nullptr) raiseUnselected();
  raiseUnnamed();
}

void SetChoice::raiseAmbiguous(Taken taken) const {
  const auto& text = path_.text();
  const auto choices = firstChoices();
  const bool isCut = choices.size() < sets_.size();
  if (taken == Taken::kOne) {
    raise<InvalidFormat>("{} is ambiguous: {} sets (see \"mxfxml info --sets\"); use {}", text, sets_.size(),
                         isCut ? joined(choices, ", ") + ", or another one" : alternatives(choices));
  }
  raise<InvalidFormat>("{} is ambiguous: {} sets (see \"mxfxml info --sets\"); use {}, {}or {}[*] for all", text,
                       sets_.size(), joined(choices, ", "), isCut ? "... " : "", text);
}

std::vector<std::string> SetChoice::firstChoices() const {
  constexpr std::size_t kMostNamed = 4;
  const SetOwners owners(partition_);
  std::vector<std::string> choices;
  for (std::size_t i = 0; i < std::min(sets_.size(), kMostNamed); ++i) {
    choices.push_back(choiceOf(*sets_[i]) + inParentheses(*sets_[i], owners));
  }
  return choices;
}

/// An index counts the sets before a property left some of them out.
std::string SetChoice::choiceOf(const MetadataSet& set) const {
  const auto& counted = isNarrowed_ ? before_ : sets_;
  const auto found = std::find(counted.begin(), counted.end(), &set);
  if (found == counted.end()) return set.instanceUID() == nullptr ? set.name() : set.instanceUID()->dottedText();
  return withoutAll(path_.text()) + "[" + std::to_string(found - counted.begin() + 1) + "]";
}

void SetChoice::raiseUnselected() const {
  const auto text = textUpTo(lastSelector_->end);
  const auto count = before_.size();
  if (lastSelector_->kind == Selector::Kind::kIndex) {
    if (path_.steps().size() > 1) raise<InvalidFormat>("there is no {}: there {} of these sets", text, countOf(count));
    raise<InvalidFormat>("there is no {}: the partition has {} of these sets", text, count);
  }
  const auto& property = lastSelector_->property;
  if (!isKnown_) raiseNoProperty(before_, property);
  if (!mistake_.empty()) raise<InvalidFormat>("{}: {}", text, mistake_);
  raise<InvalidFormat>("there is no {}: {} has another {}, or none", text,
                       count == 1 ? "the only set" : "each of " + std::to_string(count) + " sets", property);
}

void SetChoice::raiseUnnamed() const {
  const auto& name = lastStep_->name;
  const auto& dictionary = *partition_.partitionDictionary().dictionary();
  const auto kinds = dictionary.findSetsByName(name);
  const auto digits = digitsIn(name);
  const auto path = kinds.empty() ? pathInsteadOf(name, property_, dictionary) : "";
  if (!path.empty()) {
    raise<InvalidFormat>("the dictionary has no set '{}'; write {}.{} for the {} that it leads to", name,
                         textUpTo(lastStep_->begin) + path, property_, path.substr(path.rfind('/') + 1));
  }
  if (kinds.empty() && !digits) {
    raise<InvalidFormat>("the dictionary has no set '{}'{}", name, suggestSet(partition_, name));
  }
  const auto shown = kinds.empty() ? name : namesOf(*kinds.front());
  if (lastStep_->begin != 0) raise<InvalidFormat>("{} leads to no {}", textUpTo(lastStep_->begin - 1), shown);
  if (!kinds.empty()) raise<InvalidFormat>("the partition has no set {}", shown);
  if (digits->size() == kAllDigits) raise<InvalidFormat>("the partition has no set with the identifier {}", name);
  raise<InvalidFormat>("the partition has no set whose InstanceUID begins with {}", name);
}

}  // namespace Vantor
