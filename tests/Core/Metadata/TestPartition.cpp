#include "tests/Core/Metadata/TestPartition.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <vector>

#include "Core/DataIO/BigEndian.h"
#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "Core/Metadata/ElementFactory.h"

namespace Vantor {

namespace {

using namespace Types::Identifiers;
using MetaMetadata::arrayOf;
using MetaMetadata::batchOf;
using MetaMetadata::DictionaryBuilder;
using MetaMetadata::registerKey;

constexpr const char* kInstanceUID = "060e2b34.01010101.01011502.00000000";

const std::map<std::string, std::string>& setKeys() {
  static const std::map<std::string, std::string> keys = {{"Preface", "060e2b34.02530101.0d010101.01012f00"},
                                                          {"Thing", "060e2b34.02530101.0d010101.0101a000"},
                                                          {"Other", "060e2b34.02530101.0d010101.0101a100"}};
  return keys;
}

struct Property {
  const char* symbol;
  MetaMetadata::DataType type;
  uint16 staticTag;
};

std::string labelText(std::size_t place) {
  return "060e2b34.01010101.7f0000" + hexOf(Bytes{static_cast<uint8>(0xf0 - place)}) + ".00000000";
}

/// Defines properties and lists them in the set defined last; those of `first` begin at a place of their own.
void addProperties(DictionaryBuilder& builder, const std::vector<Property>& properties, std::size_t first) {
  for (std::size_t i = 0; i < properties.size(); ++i) {
    const auto& [symbol, type, staticTag] = properties[i];
    const bool isRequired = symbol == std::string("Needed");
    builder.addElement(labelText(first + i), symbol, type);
    builder.addAttribute(labelText(first + i), staticTag,
                         isRequired ? DictionaryBuilder::kRequired : DictionaryBuilder::kOptional);
  }
}

void defineSet(DictionaryBuilder& builder, const std::string& symbol) {
  builder.addSet(setKeys().at(symbol), symbol);
  builder.addAttribute(kInstanceUID, 0x3c0a, DictionaryBuilder::kRequired);
}

const std::vector<Property>& thingProperties() {
  static const std::vector<Property> properties = {{"Number", kUInt32, 0x4001},
                                                   {"Text", kUTF16String, 0x4002},
                                                   {"Flag", kBoolean, 0x4003},
                                                   {"Version", kProductVersion, 0x4004},
                                                   {"Generation", kUUID, 0x4005},
                                                   {"Child", kStrongReference, 0x4006},
                                                   {"Children", batchOf(kStrongReference), 0x4007},
                                                   {"Ordered", arrayOf(kStrongReference), 0x4008},
                                                   {"Peer", kWeakReference, 0x4009},
                                                   {"Peers", arrayOf(kWeakReference), 0x400a},
                                                   {"Numbers", arrayOf(kUInt16), 0x400b},
                                                   {"Needed", batchOf(kUInt16), 0x400c},
                                                   {"Texts", arrayOf(kUTF16String), 0x400d},
                                                   {"Data", kDataStream, 0x400e},
                                                   {"Ascii", kISO7String, 0x400f},
                                                   {"Utf8", kUTF8String, 0x4010},
                                                   {"Dynamic", kUInt8, 0}};
  return properties;
}

SharedPtr<const MetaMetadata::Dictionary> makeDictionary() {
  DictionaryBuilder builder;
  builder.addElement(kInstanceUID, "InstanceUID", kUUID);
  defineSet(builder, "Thing");
  addProperties(builder, thingProperties(), 0);
  defineSet(builder, "Other");
  addProperties(builder,
                {{"Foreign", kUInt16, 0x5001},
                 {"ForeignChild", kStrongReference, 0x5002},
                 {"ForeignNumbers", arrayOf(kUInt16), 0x5003},
                 {"ForeignDynamic", kUInt8, 0}},
                thingProperties().size());
  defineSet(builder, "Preface");
  builder.addAttribute(labelText(5), 0x4006);
  builder.addAttribute(labelText(6), 0x4007);
  return builder.build();
}

uint8 digit(char character) {
  const std::string digits = "0123456789abcdef";
  const auto at = digits.find(static_cast<char>(character | 0x20));
  if (at == std::string::npos) throw std::logic_error(std::string("not a hexadecimal digit: ") + character);
  return static_cast<uint8>(at);
}

}  // namespace

SharedPtr<const MetaMetadata::Dictionary> testDictionary() {
  static const auto dictionary = makeDictionary();
  return dictionary;
}

KLV::Key keyOf(const std::string& set) { return registerKey(setKeys().at(set)); }

const MetaMetadata::MetaElement& definitionOf(const std::string& property) {
  const auto dictionary = testDictionary();
  for (auto at = dictionary->metaElementBegin(); at != dictionary->metaElementEnd(); ++at) {
    if ((*at)->symbol() == property) return **at;
  }
  throw std::logic_error("the test dictionary has no property " + property);
}

const Types::UniversalLabel& labelOf(const std::string& property) { return definitionOf(property).key(); }

Types::UUID uid(uint32 number) {
  std::array<uint8, Types::UUID::kSize> octets{};
  DataIO::writeBigEndian<uint32>(octets.data() + 12, number);
  return Types::UUID(octets);
}

Bytes hex(const std::string& digits) {
  Bytes octets;
  bool isLow = false;
  for (const char character : digits) {
    if (character == ' ') continue;
    if (isLow) {
      octets.back() = static_cast<uint8>(octets.back() << 4 | digit(character));
    } else {
      octets.push_back(digit(character));
    }
    isLow = !isLow;
  }
  return octets;
}

std::string hexOf(const uint8* octets, std::size_t size) {
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    text += "0123456789ABCDEF"[octets[i] >> 4];
    text += "0123456789ABCDEF"[octets[i] & 0xf];
  }
  return text;
}

std::string hexOf(const Bytes& octets) { return hexOf(octets.data(), octets.size()); }
std::string hexOf(const Types::UUID& uuid) { return hexOf(uuid.rawBuffer(), Types::UUID::kSize); }

Items& Items::item(uint16 tag, const Bytes& value) {
  DataIO::Memory::MemoryDataSink sink;
  DataIO::writeBigEndian<uint16>(sink, tag);
  if (lengthOctets_ == 2) {
    DataIO::writeBigEndian<uint16>(sink, static_cast<uint16>(value.size()));
  } else {
    KLV::writeBERLength(sink, value.size(), lengthOctets_);
  }
  sink.write(value.data(), value.size());
  bytes_.insert(bytes_.end(), sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize());
  return *this;
}

Items& Items::lengthOctets(uint8 octets) {
  lengthOctets_ = octets;
  return *this;
}

MetadataSet& readSet(PartitionMetadata& partition, const KLV::Key& key, const Items& items, uint8 berOctets) {
  const std::size_t before = partition.sets().size();
  partition.addKLV(key, berOctets, items.bytes().data(), items.bytes().size(), 0);
  if (partition.sets().size() == before) throw std::logic_error("these octets are no set");
  return *partition.sets().back();
}

MetadataSet& readSet(PartitionMetadata& partition, const std::string& set, const Items& items, uint8 berOctets) {
  return readSet(partition, keyOf(set), items, berOctets);
}

MetadataSet& addSet(PartitionMetadata& partition, const std::string& set, uint32 number) {
  MetadataSet& added = *partition.createMetadataSet(keyOf(set));
  setValue(added, "InstanceUID", uid(number));
  return added;
}

Element& property(MetadataSet& set, const std::string& name) {
  const auto* attribute = set.definition()->findAttribute(labelOf(name));
  if (attribute == nullptr) throw std::logic_error("a " + set.name() + " has no property " + name);
  return set.createElement(*attribute);
}

void setValue(MetadataSet& set, const std::string& name, const Types::SimpleDataType& value) {
  property<SimpleElement>(set, name).set(value.clone(), true);
}

void refer(MetadataSet& set, const std::string& name, uint32 number) {
  Element& element = property(set, name);
  const auto* definition = element.metaAttribute().metaElement();
  const auto* collection = MetaMetadata::asCollection(*definition);
  const bool isWeak = (collection == nullptr ? definition->dataType() : collection->dataSubType()) == kWeakReference;
  auto_ptr<Types::Reference> reference;
  if (isWeak) {
    reference = std::make_unique<Types::WeakReference>(uid(number));
  } else {
    reference = std::make_unique<Types::StrongReference>(uid(number));
  }
  if (collection == nullptr) {
    dynamic_cast<ReferenceElement&>(element).setUnverifiedReference(std::move(reference));
  } else {
    dynamic_cast<CollectionElement&>(element).append(std::move(reference));
  }
}

Element& addUnknown(MetadataSet& set, uint16 tag, const Bytes& value) {
  Element& element = set.createInvalidElement(std::make_unique<MetaMetadata::UnknownAttribute>(Types::LocalTag(tag)));
  setDecodedValue(element, std::make_unique<Types::Unknown>(value));
  return element;
}

KLV::Key darkGroupKey() { return registerKey("060e2b34.02530101.0e7f7f7f.00000100"); }
KLV::Key darkSetKey() { return registerKey("060e2b34.02050101.0e7f7f7f.00000200"); }

Bytes written(const MetadataSet& set, PartitionMetadata& partition) {
  DataIO::Memory::MemoryDataSink sink;
  set.serialize(sink, partition.partitionDictionary());
  return sink.take();
}

}  // namespace Vantor
