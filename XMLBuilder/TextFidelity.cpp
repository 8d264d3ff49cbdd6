#include "XMLBuilder/TextFidelity.h"

#include <algorithm>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"
#include "XMLBuilder/ToXMLBaseTypeVisitor.h"

namespace Vantor::XMLBuilder {

using namespace Types::Identifiers;

namespace {

bool isCutOff(const Types::RGBALayout& layout) {
  for (uint32 i = ToXMLBaseTypeVisitor::kRGBAComponents; i < Types::RGBALayout::kComponents; ++i) {
    if (layout.get(i) != Types::RGBAComponent()) return true;
  }
  return false;
}

/// A fraction of 1,024 ms or more loses its high bits on the wire, but not in the text.
bool hasLargeFraction(const Types::Timestamp& timestamp) { return timestamp.milliSecond() / 4 > 0xFF; }

/// Readers skip blanks ahead of a single code unit.
bool isBlank(const Types::UTF16& unit) {
  return unit.value() == u' ' || (unit.value() >= u'\t' && unit.value() <= u'\r');
}

bool isAscii(const Types::ISO7String& text) {
  return std::all_of(text.rawBuffer(), text.rawBuffer() + text.encodedSize(),
                     [](uint8 octet) { return octet <= 0x7F; });
}

bool isRestored(const Types::SimpleDataType& value) {
  const auto type = value.identifier();
  if (type == kRGBALayout) return !isCutOff(static_cast<const Types::RGBALayout&>(value));
  if (type == kTimestamp) return !hasLargeFraction(static_cast<const Types::Timestamp&>(value));
  if (type == kUTF16) return !isBlank(static_cast<const Types::UTF16&>(value));
  if (type == kISO7String) return isAscii(static_cast<const Types::ISO7String&>(value));
  return type != kArray && type != kBatch;  // within a collection: the text shows no bounds
}

/// Octets of a code unit of a text; 0 for every other type.
std::size_t unitSize(Identifier type) {
  if (type == kUTF16String) return 2;
  return type == kUTF8String || type == kISO7String || type == kISO8String ? 1 : 0;
}

bool endsInNUL(const Types::SimpleDataType& value) {
  const std::size_t unit = unitSize(value.identifier());
  const std::size_t size = value.encodedSize();
  const uint8* const end = value.rawBuffer() + size;
  return unit != 0 && size >= unit && std::all_of(end - unit, end, [](uint8 octet) { return octet == 0; });
}

bool areRestored(const Types::Collection& items, Identifier type) {
  for (uint32 i = 0; i < items.size(); ++i) {
    const auto& item = items.at(i);
    const bool hasItsSize = item.encodedSize() == items.itemSize() && !endsInNUL(item);
    if (item.identifier() != type || !hasItsSize || !isRestored(item)) return false;
  }
  return true;
}

}  // namespace

bool isRestoredFromText(const Element& property) {
  const auto* definition = property.metaAttribute().metaElement();
  if (definition == nullptr) return true;
  const auto* value = property.wireValue();
  if (const auto* collection = MetaMetadata::asCollection(*definition)) {
    const auto* items = dynamic_cast<const Types::Collection*>(value);
    return items == nullptr || areRestored(*items, collection->dataSubType());
  }
  // An empty UTF16 is read as NUL.
  if (value == nullptr) return Types::emptyValue(definition->dataType()) != nullptr && definition->dataType() != kUTF16;
  if (definition->isInChosenNamespace() && endsInNUL(*value)) return false;
  return value->identifier() == definition->dataType() && isRestored(*value);
}

}  // namespace Vantor::XMLBuilder
