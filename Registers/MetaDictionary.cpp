#include "Registers/MetaDictionary.h"

#include <utf8.h>

#include <algorithm>
#include <tuple>

#include "Core/DataIO/BigEndian.h"
#include "Core/Platform/Strings.h"
#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

using RegisterKeys::element;
using RegisterKeys::group;

constexpr uint64 kMetaDefinitionNode = 0x0d01010102000000;
constexpr KLV::Key definitionSet(uint8 number) { return group(kMetaDefinitionNode | uint64{number} << 16); }

constexpr KLV::Key kClassDefinition = definitionSet(0x01);
constexpr KLV::Key kPropertyDefinition = definitionSet(0x02);
constexpr KLV::Key kPropertyAliasDefinition = definitionSet(0x27);

constexpr KLV::Key kIdentification = element(0x0601010713000000);
constexpr KLV::Key kName = element(0x0302040102010000);
constexpr KLV::Key kParentClass = element(0x0601010701000000);
constexpr KLV::Key kProperties = element(0x0601010702000000);
constexpr KLV::Key kIsConcrete = element(0x0601010703000000);
constexpr KLV::Key kPropertyType = element(0x0601010704000000);
constexpr KLV::Key kIsOptional = element(0x0301020201000000);
constexpr KLV::Key kLocalIdentification = element(0x0601010705000000);
constexpr KLV::Key kMemberOf = element(0x0601010722000000);
constexpr KLV::Key kSize = element(0x0301020301000000);
constexpr KLV::Key kIsSigned = element(0x0301020302000000);

/// The set of a kind of type, the property with what the type is made of, and those with names and values.
struct TypeSet {
  KLV::Key set;
  TypeKind kind;
  KLV::Key base;
  KLV::Key names = {};
  KLV::Key values = {};
};
constexpr TypeSet kTypeSets[] = {
    {definitionSet(0x04), TypeKind::kInteger, {}},
    {definitionSet(0x05), TypeKind::kStrongReference, element(0x0601010709000000)},
    {definitionSet(0x06), TypeKind::kWeakReference, element(0x060101070a000000)},
    {definitionSet(0x07), TypeKind::kEnumeration, element(0x060101070b000000), element(0x0301020304000000),
     element(0x0301020305000000)},
    {definitionSet(0x08), TypeKind::kFixedArray, element(0x060101070c000000)},
    {definitionSet(0x09), TypeKind::kVariableArray, element(0x060101070d000000)},
    {definitionSet(0x0a), TypeKind::kSet, element(0x060101070e000000)},
    {definitionSet(0x0b), TypeKind::kString, element(0x060101070f000000)},
    {definitionSet(0x0c), TypeKind::kStream, {}},
    {definitionSet(0x0d), TypeKind::kRecord, {}},
    {definitionSet(0x0e), TypeKind::kRename, element(0x0601010712000000)},
    {definitionSet(0x20), TypeKind::kEnumeration, {}, element(0x0301020307000000), element(0x0301020308000000)},
    {definitionSet(0x21), TypeKind::kIndirect, {}},
    {definitionSet(0x22), TypeKind::kOpaque, {}},
    {definitionSet(0x23), TypeKind::kCharacter, {}},
};
constexpr KLV::Key kExtendible = definitionSet(0x20);

/// The octets of a property's value; none when the set does not have it, or its value does not decode.
struct Octets {
  Octets(const MetadataSet& set, const KLV::Key& property) {
    const auto* found = set.find(Types::UniversalLabel(property));
    const auto* value = found == nullptr ? nullptr : found->wireValue();
    if (value == nullptr) return;
    data = value->rawBuffer();
    size = value->encodedSize();
  }
  const uint8* data = nullptr;
  std::size_t size = 0;
};

template <class Number>
Number numberIn(const MetadataSet& set, const KLV::Key& property, Number byDefault) {
  const Octets octets(set, property);
  return octets.size == sizeof(Number) ? DataIO::readBigEndian<Number>(octets.data) : byDefault;
}

std::optional<KLV::Key> keyIn(const MetadataSet& set, const KLV::Key& property) {
  const Octets octets(set, property);
  return octets.size == KLV::Key::kSize ? std::optional(KLV::Key(octets.data)) : std::nullopt;
}

/// Texts in UTF-16 up to the last NUL or the end, in UTF-8; a lone surrogate becomes a question mark.
Templates::vector<std::string> textsIn(const MetadataSet& set, const KLV::Key& property) {
  const Octets octets(set, property);
  Templates::vector<std::string> texts;
  wstring text;
  const auto end = [&] {
    std::string narrow;
    utf8::utf16to8(text.begin(), text.end(), std::back_inserter(narrow));
    texts.push_back(std::move(narrow));
    text.clear();
  };
  const auto isSurrogate = [](char16_t unit) { return (unit & 0xF800) == 0xD800; };
  for (std::size_t at = 0; at + 1 < octets.size; at += 2) {
    const auto unit = static_cast<char16_t>(DataIO::readBigEndian<uint16>(octets.data + at));
    if (unit == 0) {
      end();
    } else {
      text += isSurrogate(unit) ? u'?' : unit;
    }
  }
  if (!text.empty()) end();
  return texts;
}

std::string textIn(const MetadataSet& set, const KLV::Key& property) {
  const auto texts = textsIn(set, property);
  return texts.empty() ? "" : texts.front();
}

/// Calls back with each item of a collection whose items have this size.
template <class Fn>
void forEachItem(const MetadataSet& set, const KLV::Key& property, std::size_t size, Fn&& fn) {
  constexpr std::size_t kHeader = 2 * sizeof(uint32);
  const Octets octets(set, property);
  for (std::size_t at = kHeader; at + size <= octets.size; at += size) fn(octets.data + at);
}

/// With what all definitions have.
template <class Definition>
Definition definitionIn(const MetadataSet& set, uint32 number) {
  Definition found;
  found.identification = keyIn(set, kIdentification);
  found.name = textIn(set, kName);
  if (const auto* instanceUID = set.instanceUID()) found.instanceUID = *instanceUID;
  found.number = number;
  return found;
}

FileClass classIn(const MetadataSet& set, uint32 number) {
  auto found = definitionIn<FileClass>(set, number);
  found.parent = keyIn(set, kParentClass);
  found.isConcrete = numberIn<uint8>(set, kIsConcrete, 1) != 0;
  forEachItem(set, kProperties, KLV::Key::kSize, [&](const uint8* item) { found.properties.emplace_back(item); });
  return found;
}

FileProperty propertyIn(const MetadataSet& set, uint32 number) {
  auto found = definitionIn<FileProperty>(set, number);
  found.type = keyIn(set, kPropertyType);
  found.memberOf = keyIn(set, kMemberOf);
  found.isOptional = numberIn<uint8>(set, kIsOptional, 1) != 0;
  found.localTag = numberIn<uint16>(set, kLocalIdentification, 0);
  return found;
}

FileType typeIn(const MetadataSet& set, const TypeSet& kind, uint32 number) {
  auto found = definitionIn<FileType>(set, number);
  found.kind = kind.kind;
  found.isExtendible = kind.set == kExtendible;
  if (kind.base != KLV::Key()) found.base = keyIn(set, kind.base);
  found.size = numberIn<uint8>(set, kSize, 0);
  found.isSigned = numberIn<uint8>(set, kIsSigned, 0) != 0;
  if (kind.kind != TypeKind::kEnumeration) return found;
  found.elementNames = textsIn(set, kind.names);
  if (found.isExtendible) {
    forEachItem(set, kind.values, KLV::Key::kSize, [&](const uint8* item) { found.elementLabels.emplace_back(item); });
  } else {
    forEachItem(set, kind.values, sizeof(int64), [&](const uint8* item) {
      found.elementNumbers.push_back(static_cast<int64>(DataIO::readBigEndian<uint64>(item)));
    });
  }
  return found;
}

const TypeSet* typeSetOf(const KLV::Key& key) {
  const auto* const found = std::find_if(std::begin(kTypeSets), std::end(kTypeSets),
                                         [&](const TypeSet& one) { return one.set.matches(key); });
  return found == std::end(kTypeSets) ? nullptr : found;
}

template <class Definition>
void sort(Templates::vector<Definition>& definitions) {
  const auto orderOf = [](const FileDefinition& one) {
    return std::tie(one.identification, one.name, one.instanceUID);
  };
  std::stable_sort(definitions.begin(), definitions.end(),
                   [&](const Definition& left, const Definition& right) { return orderOf(left) < orderOf(right); });
}

}  // namespace

MetaDictionary::MetaDictionary(const PartitionMetadata& metadata) {
  uint32 number = 0;
  for (const auto* set : metadata.sets()) {
    ++number;
    const auto& key = set->key();
    if (set->definition() == nullptr) continue;
    if (kClassDefinition.matches(key)) {
      classes.push_back(classIn(*set, number));
    } else if (kPropertyDefinition.matches(key) || kPropertyAliasDefinition.matches(key)) {
      properties.push_back(propertyIn(*set, number));
    } else if (const auto* kind = typeSetOf(key)) {
      types.push_back(typeIn(*set, *kind, number));
    }
  }
  sort(classes);
  sort(properties);
  sort(types);
  for (uint32 place = 0; place < properties.size(); ++place) {
    if (properties[place].instanceUID) propertiesByInstance.emplace(*properties[place].instanceUID, place);
  }
  for (const auto& one : classes) enter(one);
  for (const auto& one : properties) enter(one);
  for (const auto& one : types) enter(one);
}

void MetaDictionary::enter(const FileDefinition& one) {
  if (!one.instanceUID || !one.identification) return;
  identificationsByInstance.emplace(KLV::Key(one.instanceUID->rawBuffer()), *one.identification);
}

KLV::Key MetaDictionary::identificationOf(const KLV::Key& reference) const {
  const auto found = identificationsByInstance.find(reference);
  return found == identificationsByInstance.end() ? reference : found->second;
}

}  // namespace Vantor::Registers
