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
#include "Core/Metadata/SetValues.h"
#include "Core/Metadata/UnreadValue.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"
#include "Core/Types/Factories.h"
#include "Core/Types/FinalNULs.h"
#include "Core/Types/Text/ListText.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/StringText.h"
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

/// @param size  of the type; 0 for those of any size.
Bytes bytesOfFile(const Path& path, uint32 size) {
  DataIO::File::FileDataSource file(path);
  if (size != 0 && file.size() != size) {
    raise<InvalidFormat>("{} has {} octets, not {}", Platform::pathToUTF8(path), file.size(), size);
  }
  if (file.size() > std::numeric_limits<uint32>::max()) {
    raise<InvalidFormat>("{} is too large for a value: 2^32 bytes or more", Platform::pathToUTF8(path));
  }
  Bytes bytes(file.size());
  file.read(bytes.data(), bytes.size());
  return bytes;
}

bool isFileName(Identifier type, std::u16string_view text) {
  const auto word = Types::trimmed(text);
  return Types::isWrittenInOctets(type) && !word.empty() && word.front() == u'@';
}

auto_ptr<Types::SimpleDataType> valueInFile(Identifier type, std::u16string_view text, TextFiles files) {
  const auto name = Types::trimmed(text).substr(1);
  if (files == TextFiles::kRefuse) raise<InvalidFormat>("{}: files are not read here", Types::excerpt(text));
  const auto bytes = bytesOfFile(Path(wstring(name)), Types::Identifiers::typeSize(type));
  auto value = Types::Factories::fromBytes(type, bytes.data(), bytes.size());
  if (value == nullptr) {
    raise<InvalidFormat>("the octets of {} are no {}", Types::excerpt(name), Types::Identifiers::name(type));
  }
  return value;
}

/// Whether a text ends as long values do that messages cut.
bool isCut(std::u16string_view text) {
  const auto word = Types::trimmed(text);
  const auto at = word.rfind(u"... (");
  if (at == std::u16string_view::npos) return false;
  const auto size = word.substr(at + 5);
  const auto digits = size.find_first_not_of(u"0123456789");
  if (digits == 0 || digits == std::u16string_view::npos) return false;
  const auto unit = size.substr(digits);
  for (const std::u16string_view cut : {u" code units)", u" items)", u" octets)", u" characters)"}) {
    if (unit == cut || unit == wstring(cut) + u"]") return true;
  }
  return false;
}

/// A text property may hold such an end unless it is that of a quoted text.
void refuseCut(const MetaElement& definition, std::u16string_view text) {
  const auto word = Types::trimmed(text);
  const bool isQuoted = !word.empty() && word.front() == u'"' && word.find(u"\"... (") != std::u16string_view::npos;
  if (!isCut(text) || (Types::isTextType(definition.dataType()) && !isQuoted)) return;
  raise<InvalidFormat>("{} is a value that was cut when it was printed; give all of it", Types::excerpt(text));
}

/// The octets in "0x[D83D]"; none for another text.
std::optional<Bytes> rawOctetsIn(std::u16string_view text) {
  constexpr std::u16string_view kStart = u"0x[";
  const auto word = Types::trimmed(text);
  if (word.substr(0, kStart.size()) != kStart || word.back() != u']') return std::nullopt;
  return Types::octetsInGroups(word.substr(kStart.size(), word.size() - kStart.size() - 1));
}

auto_ptr<Types::SimpleDataType> valueOfOctets(const MetaElement& definition, Bytes octets) {
  auto value = decodeValue(definition, octets.data(), octets.size());
  if (value != nullptr) return value;
  return std::make_unique<Types::Unknown>(std::move(octets));
}

/// The list that a text is, of items of a size, as octets.
auto_ptr<Types::SimpleDataType> parseListOfSize(const MetaElement& definition, uint32 size, std::u16string_view text) {
  const std::string noun = "a list of items of " + std::to_string(size) + " octets";
  const std::string example = "[85" + std::string(2 * size - 2, '0') + "]";
  try {
    const auto list = Types::parseList(definition.dataType(), Types::Identifiers::kUnknown, text);
    if (static_cast<const Types::Collection&>(*list).itemSize() == size) {
      return std::make_unique<Types::Unknown>(list->rawBuffer(), list->encodedSize());
    }
  } catch (const InvalidFormat&) {
    // Refused with an example of that size.
  }
  Types::refuseText(text, noun, "", example);
}

/// The size that items of a list have, where it is not that of their type: as they are in the file, or else as
/// standards have them; 0 for that of the type.
uint32 itemSizeOf(const MetaElement& definition, const Types::SimpleDataType* before,
                  const Types::SimpleDataType* unread) {
  if (MetaMetadata::asCollection(definition) == nullptr) return 0;
  if (unread != nullptr) return static_cast<const Types::Collection*>(unread)->itemSize();
  const bool isEmpty = before == nullptr || static_cast<const Types::Collection*>(before)->size() == 0;
  return isEmpty ? otherItemSize(definition) : 0;
}

bool isEmptyList(std::u16string_view text) {
  return text.find_first_not_of(u"[] \t") == std::u16string_view::npos && text.find(u'[') != std::u16string_view::npos;
}

/// What a property holds before it is set.
struct ValueBefore {
  const Types::SimpleDataType* value = nullptr;  ///< of its type
  auto_ptr<Types::SimpleDataType> unread;        ///< of another form
};

/// Whether a text is how a value is printed.
bool isPrinted(const PropertyPlace& place, const Types::SimpleDataType& value, std::u16string_view text) {
  if (text == printProperty(place, value)) return true;
  const auto type = value.identifier();
  const bool isString = Types::isTextType(type) && type != Types::Identifiers::kUTF16;
  return isString && text == Types::quotedText(Types::textOfValue(value));
}

bool isThere(const PropertyPlace& place, const ValueBefore& before, std::u16string_view text) {
  if (before.value != nullptr) return isPrinted(place, *before.value, text);
  return before.unread != nullptr && isPrinted(place, *before.unread, text);
}

/// The value that a text is, of the property's type, or of the type Unknown for octets of another form.
auto_ptr<Types::SimpleDataType> valueOfText(const PropertyPlace& place, const ValueBefore& before,
                                            std::u16string_view text, TextFiles files) {
  const auto& definition = *place.definition;
  refuseCut(definition, text);
  if (isFileName(definition.dataType(), text)) return valueInFile(definition.dataType(), text, files);
  if (auto octets = rawOctetsIn(text)) return valueOfOctets(definition, std::move(*octets));
  const uint32 itemSize = itemSizeOf(definition, before.value, before.unread.get());
  if (itemSize != 0 && !isEmptyList(text)) return parseListOfSize(definition, itemSize, text);
  return parseProperty(place, text);
}

bool hasOctetsOf(const Element& element, const Types::SimpleDataType& value) {
  const auto* there = element.wireValue();
  return there != nullptr && there->encodedSize() == value.encodedSize() &&
         std::equal(there->rawBuffer(), there->rawBuffer() + there->encodedSize(), value.rawBuffer());
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

const Element* MetadataSet::findPresent(std::string_view property) const {
  const auto* element = find(property);
  if (element != nullptr && element->isPresent()) return element;
  const auto* attribute = definition_ == nullptr ? nullptr : definition_->findAttribute(property);
  return attribute == nullptr ? nullptr : findUnread(*attribute->metaElement());
}

bool MetadataSet::has(std::string_view property) const { return findPresent(property) != nullptr; }

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
  if (unread != nullptr && unread->wireValue() != nullptr) return printRawOctets(*unread->wireValue());
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

/// The octets take the place of a value, or of other octets.
void MetadataSet::setOctets(std::string_view property, auto_ptr<Types::SimpleDataType> octets) {
  const auto* attribute = definition_->findAttribute(property);
  if (attribute == nullptr) raise<InvalidFormat>("octets of another form are for properties that the set lists");
  if (auto* unread = findUnread(*attribute->metaElement())) return setDecodedValue(*unread, std::move(octets));
  const auto* before = find(property);
  uint16 tag = before == nullptr ? uint16{0} : before->localTag();
  if (tag == 0 && partition_ != nullptr) {
    auto& tags = partition_->partitionDictionary();
    tag = tags.findOrGenerate(attribute->metaElement()->key(), attribute->staticLocalTag()).value();
  }
  if (tag == 0) tag = attribute->staticLocalTag();
  Element& created = createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(tag)));
  created.setLocalTag(tag);
  setDecodedValue(created, std::move(octets));
  if (before == nullptr) return;
  created.setLengthOctets(before->lengthOctets());
  std::replace<std::vector<const Element*>::iterator, const Element*>(readOrder_.begin(), readOrder_.end(), before,
                                                                      &created);
  remove(*before);
}

bool MetadataSet::set(std::string_view property, std::u16string_view text, TextFiles files) {
  const auto& definition = definitionOf(property);
  refuseInstanceUID(property, "be set from a text");
  const PropertyPlace place = {this, &definition};
  ValueBefore before = {valueOf(*this, property), nullptr};
  const auto* unread = before.value == nullptr ? findUnread(definition) : nullptr;
  if (unread != nullptr) before.unread = unreadValueOf(*this, *unread).value;
  if (isThere(place, before, text)) return false;
  auto_ptr<Types::SimpleDataType> value;
  try {
    value = valueOfText(place, before, text, files);
  } catch (const InvalidFormat& error) {
    raise<InvalidFormat>("{} of {}: {}", namesOf(property), fullName(), error.message());
  } catch (const Exceptions::IOError& error) {
    raise<Exceptions::IOError>("{} of {}: {}", namesOf(property), fullName(), error.message());
  }
  if (unread != nullptr && hasOctetsOf(*unread, *value)) return false;
  if (before.unread != nullptr && before.unread->equals(*value)) return false;
  if (!isOfType(*value, definition)) {
    setOctets(property, std::move(value));
    return true;
  }
  // Texts, unlike values, do not show final NULs, so that those in the file stay.
  const auto* there = before.value;
  if (there != nullptr && Types::printValue(*there) == Types::printValue(*value)) return false;
  if (there != nullptr) value = Types::withFinalNULs(std::move(value), Types::finalNULsOf(*there));
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
  const auto* element = findPresent(property);
  if (element == nullptr) return false;
  remove(*element);
  return true;
}

}  // namespace Vantor
