#include "Core/Metadata/SetReader.h"

#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Unknown.h"

namespace Vantor {

namespace {

constexpr KLV::Key kGenerationUID({0x06, 0x0e, 0x2b, 0x34, 0x01, 0x01, 0x01, 0x02,  // ST 377-1
                                   0x05, 0x20, 0x07, 0x01, 0x08, 0x00, 0x00, 0x00});

/// Whether a property identifies a set or its generation, which it does in its own set alone.
bool isIdentifier(const MetaMetadata::MetaElement& definition) {
  const auto& key = definition.key().key();
  return key.matches(MetaMetadata::MetaMetadataSet::kInstanceUID) || key.matches(kGenerationUID);
}

}  // namespace

void SetReader::read(const KLV::LocalSetItem& item) {
  Element& element = place(item);
  element.setLocalTag(item.tag);
  element.setLengthOctets(item.lengthOctets);
  set_.readOrder_.push_back(&element);
}

Element& SetReader::place(const KLV::LocalSetItem& item) {
  Element* placed = nullptr;
  if (const auto* attribute = tags_.findAttribute(*set_.definition(), item.tag)) {
    placed = placeValid(*attribute, item);
  } else if (const auto* definition = tags_.findElement(item.tag)) {
    placed = placeMisplaced(*definition, item);
  }
  return placed != nullptr ? *placed : placeUnknown(item);
}

Element* SetReader::placeValid(const MetaMetadata::MetaAttribute& attribute, const KLV::LocalSetItem& item) {
  const Element* earlier = set_.find(attribute.metaElement()->key());
  if (earlier != nullptr && earlier->isPresent()) return nullptr;
  auto value = decodeValue(*attribute.metaElement(), item.value, item.size);
  if (value == nullptr) return nullptr;
  Element& element = set_.createElement(attribute);
  setDecodedValue(element, std::move(value));
  return &element;
}

Element* SetReader::placeMisplaced(const MetaMetadata::MetaElement& definition, const KLV::LocalSetItem& item) {
  if (isIdentifier(definition)) return nullptr;
  auto value = decodeValue(definition, item.value, item.size);
  if (value == nullptr) return nullptr;
  Element& element = set_.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(&definition));
  setDecodedValue(element, std::move(value));
  return &element;
}

Element& SetReader::placeUnknown(const KLV::LocalSetItem& item) {
  Element& element =
      set_.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(item.tag)));
  setDecodedValue(element, std::make_unique<Types::Unknown>(item.value, item.size));
  return element;
}

}  // namespace Vantor
