#include "Core/Metadata/UnreadValue.h"

#include "Core/DataIO/BigEndian.h"
#include "Core/KLV/CollectionHeader.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/Factories.h"
#include "Core/Types/ProductVersion.h"

namespace Vantor {

namespace {

using MetaMetadata::MetaElement;

constexpr std::size_t kShortVersionSize = 9;

auto_ptr<Types::SimpleDataType> decodeShortVersion(const uint8* octets) {
  const auto part = [octets](std::size_t place) { return DataIO::readBigEndian<uint16>(octets + 2 * place); };
  const auto release = static_cast<Types::ReleaseVersion>(octets[kShortVersionSize - 1]);
  return std::make_unique<Types::ProductVersion>(part(0), part(1), part(2), part(3), release);
}

std::string sizeFault(const MetaElement& definition, const uint8* octets, std::size_t size) {
  const auto* list = MetaMetadata::asCollection(definition);
  const auto typed = Types::Identifiers::typeSize(list == nullptr ? definition.dataType() : list->dataSubType());
  if (list == nullptr) {
    const bool hasSize = typed != 0 && typed != size;
    return hasSize ? "its " + std::to_string(size) + " octets are not the " + std::to_string(typed) + " of its type"
                   : "";
  }
  if (size < KLV::CollectionHeader::kSize) return "its " + std::to_string(size) + " octets are no list";
  const auto header = KLV::CollectionHeader::parse(octets);
  if (header.size() != size - KLV::CollectionHeader::kSize) return "its size is not that of the items that it counts";
  if (typed == 0 || header.itemSize == typed) return "";
  return "its items have " + std::to_string(header.itemSize) + " octets, not the " + std::to_string(typed) +
         " of their type";
}

bool hasDecoded(const MetadataSet& set, const MetaElement& definition) {
  const auto* element = set.find(definition.key());
  return element != nullptr && element->isPresent();
}

/// @param decodes  whether the octets are a value of the property.
std::string reasonFor(const MetadataSet& set, const MetaElement* definition, bool decodes, const uint8* octets,
                      std::size_t size) {
  if (definition == nullptr) return "the dictionary does not have it";
  if (decodes) return hasDecoded(set, *definition) ? "the set has it twice" : "the set's definition does not list it";
  if (size == 0) return "it has no octets";
  const auto fault = sizeFault(*definition, octets, size);
  return fault.empty() ? "its octets are no " + std::string(typeName(*definition)) : fault;
}

}  // namespace

auto_ptr<Types::SimpleDataType> decodeOtherForm(const MetaElement& definition, const uint8* octets, std::size_t size) {
  if (definition.dataType() == Types::Identifiers::kProductVersion && size == kShortVersionSize) {
    return decodeShortVersion(octets);
  }
  const auto* list = MetaMetadata::asCollection(definition);
  if (list == nullptr || isReference(definition)) return nullptr;
  return Types::Factories::collectionFromBytes(list->dataType(), Types::Identifiers::kUnknown, octets, size);
}

uint32 otherItemSize(const MetaElement& definition) {
  constexpr uint32 kChannelStatusSize = 24;
  const auto& symbol = definition.symbol();
  return symbol == "FixedChannelStatusData" || symbol == "FixedUserData" ? kChannelStatusSize : 0;
}

UnreadValue unreadValueOf(const MetadataSet& set, const Element& element) {
  const auto* definition = set.definitionOf(element);
  const auto* value = element.wireValue();
  const uint8* octets = value == nullptr ? nullptr : value->rawBuffer();
  const std::size_t size = value == nullptr ? 0 : value->encodedSize();
  auto decoded = definition == nullptr || size == 0 ? nullptr : decodeValue(*definition, octets, size);
  const bool decodes = decoded != nullptr;
  if (decoded == nullptr && definition != nullptr && size != 0) decoded = decodeOtherForm(*definition, octets, size);
  return {&set, &element, definition, std::move(decoded), reasonFor(set, definition, decodes, octets, size)};
}

std::vector<UnreadValue> unreadValues(const PartitionMetadata& metadata) {
  std::vector<UnreadValue> unread;
  for (const MetadataSet* set : metadata.sets()) {
    for (auto at = set->invalidBegin(); at != set->invalidEnd(); ++at) {
      if ((*at).metaAttribute().asUnknown() != nullptr) unread.push_back(unreadValueOf(*set, *at));
    }
  }
  return unread;
}

}  // namespace Vantor
