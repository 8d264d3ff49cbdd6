#include "Core/Metadata/SetChoice.h"

#include <algorithm>

#include "Core/KLV/IdentifierDigits.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/NameSuggestions.h"
#include "Core/Metadata/PropertyText.h"
#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"

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

const MetaMetadata::MetaElement* definitionIn(const MetadataSet& set, const std::string& property) {
  if (const auto* element = set.find(property)) return element->metaAttribute().metaElement();
  const auto* attribute = set.definition() == nullptr ? nullptr : set.definition()->findAttribute(property);
  return attribute == nullptr ? nullptr : attribute->metaElement();
}

}  // namespace

SetChoice::SetChoice(const PartitionMetadata& partition, const SetPath& path) : partition_(partition), path_(path) {
  for (const auto& step : path.steps()) {
    follow(step, &step == &path.steps().front());
    if (sets_.empty()) return;
  }
}

void SetChoice::follow(const Step& step, bool isFirst) {
  lastStep_ = &step;
  lastSelector_ = nullptr;
  if (isFirst) {
    sets_ = named(step.name);
  } else {
    sets_ = reachedFrom(sets_, partition_);
    keepNamed(step.name);
  }
  for (const auto& selector : step.selectors) {
    if (!sets_.empty()) select(selector);
  }
}

void SetChoice::select(const Selector& selector) {
  lastSelector_ = &selector;
  if (selector.kind == Selector::Kind::kAll) return;
  before_ = sets_;
  if (selector.kind == Selector::Kind::kCondition) return keepMatching(selector);
  const auto count = static_cast<int64>(sets_.size());
  const int64 place = selector.index > 0 ? selector.index - 1 : count + selector.index;
  sets_ = place >= 0 && place < count ? Sets{sets_[static_cast<std::size_t>(place)]} : Sets();
}

// The sets of one kind are found by their key; only others need a look at all sets.
SetChoice::Sets SetChoice::named(const std::string& name) const {
  const auto definitions = partition_.partitionDictionary().dictionary()->findSetsByName(name);
  if (definitions.empty()) {
    const auto digits = digitsIn(name);
    return digits ? identified(*digits) : Sets();
  }
  if (definitions.size() == 1 && !hasAbstract(definitions)) {
    auto found = filtered(partition_.find(definitions[0]->key()),
                          [&](const MetadataSet* set) { return set->definition() == definitions[0]; });
    if (!found.empty()) return found;
  }
  return filtered(partition_.sets(), [&](const MetadataSet* set) { return inheritsOneOf(*set, definitions); });
}

SetChoice::Sets SetChoice::identified(const std::string& digits) const {
  if (digits.size() == kAllDigits) {
    const auto octets = Platform::bytesFromHex(Platform::stringToWstring(digits)).value_or(Bytes(kAllDigits / 2));
    const auto& found = partition_.findByInstanceUID(Types::UUID(octets.data()));
    return !found.empty() ? found : partition_.find(KLV::Key(octets.data()));
  }
  return filtered(partition_.sets(), [&](const MetadataSet* set) { return isIdentifiedBy(*set, digits); });
}

void SetChoice::keepNamed(const std::string& name) {
  const auto definitions = partition_.partitionDictionary().dictionary()->findSetsByName(name);
  const auto digits = definitions.empty() ? digitsIn(name) : std::nullopt;
  if (digits) {
    sets_ = filtered(sets_, [&](const MetadataSet* set) { return isIdentifiedBy(*set, *digits); });
    return;
  }
  auto exact = filtered(sets_, [&](const MetadataSet* set) { return isOneOf(*set, definitions); });
  const bool isExact = !exact.empty() && !hasAbstract(definitions);
  sets_ = isExact ? std::move(exact)
                  : filtered(sets_, [&](const MetadataSet* set) { return inheritsOneOf(*set, definitions); });
}

void SetChoice::keepMatching(const Selector& selector) {
  mistake_.clear();
  isKnown_ = false;
  sets_ = filtered(sets_, [&](const MetadataSet* set) { return matches(*set, selector); });
}

// A text that one of several kinds cannot hold only matters where it matches none.
bool SetChoice::matches(const MetadataSet& set, const Selector& selector) {
  const auto* definition = definitionIn(set, selector.property);
  if (definition == nullptr) return false;
  isKnown_ = true;
  const auto* element = set.find(selector.property);
  const auto* value = element == nullptr ? nullptr : element->wireValue();
  try {
    const PropertyPlace place = {&set, definition};
    const auto wanted = parseProperty(place, Utils::stringToWstring(selector.value));
    return value != nullptr && printProperty(place, *value) == printProperty(place, *wanted);
  } catch (const InvalidFormat& error) {
    mistake_ = error.message();
    return false;
  }
}

void SetChoice::raiseNotFound() const {
  if (lastSelector_ != nullptr) raiseUnselected();
  raiseUnnamed();
}

void SetChoice::raiseUnselected() const {
  const auto text = textUpTo(lastSelector_->end);
  const auto count = before_.size();
  if (lastSelector_->kind == Selector::Kind::kIndex) {
    if (path_.steps().size() > 1)
      raise<InvalidFormat>("there is no {}: there {} of these sets", text,
                           count == 1 ? "is 1" : "are " + std::to_string(count));
    raise<InvalidFormat>("there is no {}: the partition has {} of these sets", text, count);
  }
  const auto& property = lastSelector_->property;
  const auto* kind = before_.front()->definition();
  if (!isKnown_) {
    raise<InvalidFormat>("{} has no property '{}'{}", before_.front()->name(), property,
                         kind == nullptr ? "" : suggestProperty(*kind, property));
  }
  if (!mistake_.empty()) raise<InvalidFormat>("{}: {}", text, mistake_);
  raise<InvalidFormat>("there is no {}: {} has another {}, or none", text,
                       count == 1 ? "the only set" : "each of " + std::to_string(count) + " sets", property);
}

void SetChoice::raiseUnnamed() const {
  const auto& name = lastStep_->name;
  const auto& dictionary = *partition_.partitionDictionary().dictionary();
  const bool isKind = !dictionary.findSetsByName(name).empty();
  const auto digits = digitsIn(name);
  if (!isKind && !digits) raise<InvalidFormat>("the dictionary has no set '{}'{}", name, suggestSet(dictionary, name));
  if (lastStep_->begin != 0) raise<InvalidFormat>("{} leads to no {}", textUpTo(lastStep_->begin - 1), name);
  if (isKind) raise<InvalidFormat>("the partition has no set {}", name);
  if (digits->size() == kAllDigits) raise<InvalidFormat>("the partition has no set with the identifier {}", name);
  raise<InvalidFormat>("the partition has no set whose InstanceUID begins with {}", name);
}

}  // namespace Vantor
