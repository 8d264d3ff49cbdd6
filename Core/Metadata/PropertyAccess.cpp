#include <algorithm>
#include <limits>
#include <optional>

#include "Core/DataIO/File.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/NameSuggestions.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/PropertyText.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/UnreadValue.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "Core/Types/FinalNULs.h"
#include "Core/Types/Text/ListText.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Unknown.h"
#include "Core/Types/ValueText.h"

namespace Vantor {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using MetaMetadata::MetaElement;
using Types::Identifiers::Identifier;

bool isOfType(const Types::SimpleDataType& value, const MetaElement& definition) {
  if (value.identifier() != definition.dataType()) return false;
  const auto* type = MetaMetadata::asCollection(definition);
  if (type == nullptr) return true;
  const auto& collection = static_cast<const Types::Collection&>(value);
  for (uint32 i = 0; i < collection.size(); ++i) {
    if (collection.at(i).identifier() != type->dataSubType()) return false;
  }
  return true;
}

bool isInteger(Identifier type) {
  using namespace Types::Identifiers;
  constexpr Identifier kIntegers[] = {kInt8,   kInt16,  kInt32,    kInt64,       kUInt8,          kUInt16, kUInt32,
                                      kUInt64, kLength, kPosition, kOrientation, kSignalStandard, kBoolean};
  return std::find(std::begin(kIntegers), std::end(kIntegers), type) != std::end(kIntegers);
}

const Types::SimpleDataType* valueOf(const MetadataSet& set, std::string_view property) {
  const auto* element = set.find(property);
  return element == nullptr ? nullptr : element->wireValue();
}

Bytes bytesOfFile(const Path& path) {
  DataIO::File::FileDataSource file(path);
  if (file.size() > std::numeric_limits<uint32>::max()) {
    raise<InvalidFormat>("{} is too large for a value: 2^32 bytes or more", path.u8string());
  }
  Bytes bytes(file.size());
  file.read(bytes.data(), bytes.size());
  return bytes;
}

/// The value of a text that may name a file.
auto_ptr<Types::SimpleDataType> valueOfText(const PropertyPlace& place, std::u16string_view text, TextFiles files) {
  const auto word = Types::trimmed(text);
  const auto type = place.definition->dataType();
  if (!Types::isOctetType(type) || word.empty() || word.front() != u'@') return parseProperty(place, text);
  if (files == TextFiles::kRefuse) raise<InvalidFormat>("{}: files are not read here", Types::excerpt(text));
  const auto bytes = bytesOfFile(Path(wstring(word.substr(1))));
  return Types::Factories::fromBytes(type, bytes.data(), bytes.size());
}

/// The value of a text in the form of one that was read as octets: a list whose items have its items' size. Null for
/// any other text.
auto_ptr<Types::SimpleDataType> valueInFormOf(const Types::SimpleDataType& before, std::u16string_view text) {
  const auto type = before.identifier();
  if (type != Types::Identifiers::kArray && type != Types::Identifiers::kBatch) return nullptr;
  try {
    auto value = Types::parseList(type, Types::Identifiers::kUnknown, text);
    return value->serializedSize() == before.serializedSize() ? std::move(value) : nullptr;
  } catch (const InvalidFormat&) {
    return nullptr;
  }
}

/// Sets a property that was read as octets to the value of a text in the same form.
/// @return whether that changed it; none when the text is of another form.
std::optional<bool> setInOtherForm(Element& unread, const PropertyPlace& place, std::u16string_view text) {
  const auto before = unreadValueOf(*place.set, unread).value;
  if (before == nullptr) return std::nullopt;
  if (text == printProperty(place, *before)) return false;
  const auto after = valueInFormOf(*before, text);
  if (after == nullptr) return std::nullopt;
  setDecodedValue(unread, std::make_unique<Types::Unknown>(after->rawBuffer(), after->encodedSize()));
  return true;
}

}  // namespace

const Element* MetadataSet::find(std::string_view property) const {
  return const_cast<MetadataSet*>(this)->find(property);
}

Element* MetadataSet::find(std::string_view property) {
  const auto* attribute = definition_ == nullptr ? nullptr : definition_->findAttribute(property);
  if (attribute != nullptr) return find(attribute->metaElement()->key());
  for (const auto& element : invalid_) {
    const auto* definition = element->metaAttribute().metaElement();
    if (definition != nullptr && definition->isNamed(property)) return element.get();
  }
  return nullptr;
}

std::string MetadataSet::namesOf(std::string_view property) const {
  const auto& definition = definitionOf(property);
  return definition_ == nullptr ? definition.symbol() : MetaMetadata::namesOf(*definition_, definition, property);
}

std::string_view MetadataSet::otherNameOf(std::string_view property) const {
  if (definition_ == nullptr) return {};
  if (property.empty()) return MetaMetadata::otherNameOf(*definition_);
  const auto* attribute = definition_->findAttribute(property);
  return attribute == nullptr ? std::string_view() : MetaMetadata::otherNameOf(*definition_, *attribute->metaElement());
}

bool MetadataSet::has(std::string_view property) const {
  const auto* element = find(property);
  return element != nullptr && element->isPresent();
}

const MetaElement& MetadataSet::definitionOf(std::string_view property) const {
  if (const auto* element = find(property)) return *element->metaAttribute().metaElement();
  const auto* attribute = definition_ == nullptr ? nullptr : definition_->findAttribute(property);
  if (attribute == nullptr) {
    const auto near = definition_ == nullptr ? std::string() : suggestProperty({definition_}, property);
    raise<InvalidFormat>("{} has no property '{}'{}", fullName(), property, near);
  }
  return *attribute->metaElement();
}

const Types::SimpleDataType* MetadataSet::valueOfType(std::string_view property, Identifier type) const {
  const auto& definition = definitionOf(property);
  const auto* value = valueOf(*this, property);
  const auto found = value == nullptr ? definition.dataType() : value->identifier();
  if (found == type) return value;
  raise<InvalidFormat>("{} of {} is of type {}, not {}", property, fullName(), Types::Identifiers::name(found),
                       Types::Identifiers::name(type));
}

const Types::SimpleDataType& MetadataSet::requiredValue(std::string_view property, Identifier type) const {
  if (const auto* value = valueOfType(property, type)) return *value;
  raise<InvalidFormat>("{} of {} has no value", namesOf(property), fullName());
}

wstring MetadataSet::text(std::string_view property) const {
  const auto& definition = definitionOf(property);
  const PropertyPlace place = {this, &definition};
  if (const auto* value = valueOf(*this, property)) return printProperty(place, *value);
  const auto* unread = findUnread(definition);
  const auto value = unread == nullptr ? nullptr : unreadValueOf(*this, *unread).value;
  if (value != nullptr) return printProperty(place, *value);
  raise<InvalidFormat>("{} of {} has no value", namesOf(property), fullName());
}

const MetaElement* MetadataSet::definitionOf(const Element& element) const {
  const auto* unknown = element.metaAttribute().asUnknown();
  if (unknown == nullptr) return element.metaAttribute().metaElement();
  const auto tag = unknown->localTag().value();
  if (partition_ != nullptr) return partition_->partitionDictionary().findElement(tag);
  const auto* attribute = definition_ == nullptr ? nullptr : definition_->findAttributeByStaticTag(tag);
  return attribute == nullptr ? nullptr : attribute->metaElement();
}

Element* MetadataSet::findUnread(const MetaElement& definition) {
  const auto found = std::find_if(invalid_.begin(), invalid_.end(), [&](const auto& element) {
    return element->metaAttribute().asUnknown() != nullptr && definitionOf(*element) == &definition;
  });
  return found == invalid_.end() ? nullptr : found->get();
}

const Element* MetadataSet::findUnread(const MetaElement& definition) const {
  return const_cast<MetadataSet*>(this)->findUnread(definition);
}

/// The octets of a value that did not decode make place for the new property.
Element& MetadataSet::createElement(std::string_view property) {
  if (Element* there = find(property)) return *there;
  const auto& attribute = *definition_->findAttribute(property);
  Element& created = createElement(attribute);
  const auto* unread = findUnread(*attribute.metaElement());
  if (unread == nullptr) return created;
  created.setLocalTag(unread->localTag());
  created.setLengthOctets(unread->lengthOctets());
  std::replace<std::vector<const Element*>::iterator, const Element*>(readOrder_.begin(), readOrder_.end(), unread,
                                                                      &created);
  const auto isUnread = [unread](const auto& element) { return element.get() == unread; };
  invalid_.erase(std::find_if(invalid_.begin(), invalid_.end(), isUnread));
  return created;
}

bool MetadataSet::set(std::string_view property, const Types::SimpleDataType& value) {
  const auto& definition = definitionOf(property);
  if (!isOfType(value, definition)) {
    raise<InvalidFormat>("{} of {} takes {}, not {}", property, fullName(), typeName(definition),
                         Types::Identifiers::name(value.identifier()));
  }
  const auto* before = valueOf(*this, property);
  if (before != nullptr && before->equals(value)) return false;
  setDecodedValue(createElement(property), value.clone());
  return true;
}

bool MetadataSet::set(std::string_view property, std::u16string_view text, TextFiles files) {
  const auto& definition = definitionOf(property);
  refuseInstanceUID(property, "be set from a text");
  const PropertyPlace place = {this, &definition};
  const auto* before = valueOf(*this, property);
  if (before != nullptr && text == printProperty(place, *before)) return false;
  auto* unread = before == nullptr ? findUnread(definition) : nullptr;
  if (unread != nullptr) {
    if (const auto changed = setInOtherForm(*unread, place, text)) return *changed;
  }
  auto_ptr<Types::SimpleDataType> value;
  try {
    value = valueOfText(place, text, files);
  } catch (const InvalidFormat& error) {
    raise<InvalidFormat>("{} of {}: {}", namesOf(property), fullName(), error.message());
  }
  // Texts, unlike values, do not show final NULs, so that those in the file stay.
  if (before != nullptr && Types::printValue(*before) == Types::printValue(*value)) return false;
  if (before != nullptr) value = Types::withFinalNULs(std::move(value), Types::finalNULsOf(*before));
  setDecodedValue(createElement(property), std::move(value));
  return true;
}

bool MetadataSet::setNumber(std::string_view property, const wstring& digits) {
  const auto& definition = definitionOf(property);
  if (isInteger(definition.dataType())) return set(property, digits);
  raise<InvalidFormat>("{} of {} takes {}, not an integer", namesOf(property), fullName(), typeName(definition));
}

bool MetadataSet::set(std::string_view property, const MetadataSet& target) {
  const auto& definition = definitionOf(property);
  if (!isReference(definition) || MetaMetadata::asCollection(definition) != nullptr) {
    raise<InvalidFormat>("{} of {} takes {}, not a reference to a set", property, fullName(), typeName(definition));
  }
  return set(property, *makeReference(definition.dataType(), &target));
}

void MetadataSet::append(std::string_view property, const Types::SimpleDataType& item) {
  const auto& definition = definitionOf(property);
  const auto* collection = MetaMetadata::asCollection(definition);
  if (collection == nullptr || collection->dataSubType() != item.identifier()) {
    raise<InvalidFormat>("{} of {} is of type {} and takes no item of type {}", property, fullName(),
                         typeName(definition), Types::Identifiers::name(item.identifier()));
  }
  static_cast<CollectionElement&>(createElement(property)).append(item.clone());
}

void MetadataSet::append(std::string_view property, const MetadataSet& target) {
  const auto& definition = definitionOf(property);
  const auto* collection = MetaMetadata::asCollection(definition);
  if (collection == nullptr || !isReference(definition)) {
    raise<InvalidFormat>("{} of {} is of type {}, not a collection of references", property, fullName(),
                         typeName(definition));
  }
  append(property, *makeReference(collection->dataSubType(), &target));
}

void MetadataSet::refuseInstanceUID(std::string_view property, const char* verb) const {
  const auto* attribute = definition_ == nullptr ? nullptr : definition_->instanceUIDAttribute();
  if (attribute == nullptr || &definitionOf(property) != attribute->metaElement()) return;
  raise<InvalidFormat>("the {} of {} cannot {}: references to the set would break", namesOf(property), fullName(),
                       verb);
}

bool MetadataSet::remove(std::string_view property) {
  definitionOf(property);
  refuseInstanceUID(property, "be removed");
  const auto* element = find(property);
  if (element == nullptr || !element->isPresent()) return false;
  remove(*element);
  return true;
}

}  // namespace Vantor
