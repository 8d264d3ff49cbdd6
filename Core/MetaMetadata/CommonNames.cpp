#include "Core/MetaMetadata/CommonNames.h"

#include <cstdint>
#include <utility>

#include "Core/MetaMetadata/LabelHash.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"

namespace Vantor::MetaMetadata {

namespace {

uint32 hashOfAddress(const void* definition) { return hashOf(reinterpret_cast<std::uintptr_t>(definition)); }

const CommonNames::Entry* entryAt(const Templates::vector<CommonNames::Entry>& entries, uint32 place) {
  return place == HashIndex::kNotFound ? nullptr : &entries[place];
}

std::string_view nameIn(const CommonNames::Entry* entry) {
  return entry == nullptr ? std::string_view() : std::string_view(entry->name);
}

template <class Definition>
std::string_view unlessNamed(const Definition& definition, std::string_view common) {
  return definition.isNamed(common) ? std::string_view() : common;
}

std::string withCommonName(std::string_view shown, std::string_view common) {
  return std::string(shown) + (common.empty() ? "" : " (" + std::string(common) + ")");
}

}  // namespace

void CommonNames::add(Entry entry) {
  const auto place = static_cast<uint32>(entries_.size());
  const void* definition = entry.element;
  byName_.insert(hashOfText(entry.name), place);
  byDefinition_.insert(hashOfAddress(definition != nullptr ? definition : entry.set), place);
  entries_.push_back(std::move(entry));
}

const MetaMetadataSet* CommonNames::findSet(std::string_view name) const {
  const auto* entry = entryAt(entries_, byName_.find(hashOfText(name), [&](uint32 candidate) {
    return entries_[candidate].element == nullptr && entries_[candidate].name == name;
  }));
  return entry == nullptr ? nullptr : entry->set;
}

const MetaAttribute* CommonNames::findAttribute(const MetaMetadataSet& set, std::string_view name) const {
  const auto* entry = entryAt(entries_, byName_.find(hashOfText(name), [&](uint32 candidate) {
    const auto& known = entries_[candidate];
    return known.element != nullptr && known.name == name && set.isOrInherits(*known.set);
  }));
  return entry == nullptr ? nullptr : set.findAttribute(entry->element->key());
}

std::string_view CommonNames::nameOf(const MetaMetadataSet& set) const {
  return nameIn(entryAt(entries_, byDefinition_.find(hashOfAddress(&set), [&](uint32 candidate) {
    return entries_[candidate].element == nullptr && entries_[candidate].set == &set;
  })));
}

std::string_view CommonNames::nameOf(const MetaMetadataSet& set, const MetaElement& element) const {
  return nameIn(entryAt(entries_, byDefinition_.find(hashOfAddress(&element), [&](uint32 candidate) {
    return entries_[candidate].element == &element && set.isOrInherits(*entries_[candidate].set);
  })));
}

std::string_view otherNameOf(const MetaMetadataSet& set) { return unlessNamed(set, set.commonName()); }
std::string_view otherNameOf(const MetaMetadataSet& set, const MetaElement& element) {
  return unlessNamed(element, set.commonNameOf(element));
}

std::string namesOf(const MetaMetadataSet& set) { return withCommonName(set.symbol(), otherNameOf(set)); }

std::string namesOf(const MetaMetadataSet& set, const MetaElement& element) {
  return namesOf(set, element, element.symbol());
}

std::string namesOf(const MetaMetadataSet& set, const MetaElement& element, std::string_view asked) {
  const std::string_view shown = element.isNamed(asked) ? asked : std::string_view(element.symbol());
  return withCommonName(shown, otherNameOf(set, element));
}

}  // namespace Vantor::MetaMetadata
