#include "Core/Metadata/MetadataSet.h"

#include <algorithm>
#include <unordered_set>

#include "Core/DataIO/Memory.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/LocalSet.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

constexpr std::size_t kLargestTwoByteLength = 0xFFFF;

const Types::UniversalLabel& labelOf(const Element& element) { return element.metaAttribute().metaElement()->key(); }

std::size_t sizeOnWire(const Element& element) {
  const auto* value = element.wireValue();
  return value == nullptr ? 0 : value->encodedSize();
}

/// A value too long for a 2-byte length forces the coding with BER lengths, as ST 377-1 permits for any set.
KLV::LocalSetCoding codingFor(const KLV::Key& key, const std::vector<const Element*>& elements) {
  const bool tooLarge = std::any_of(elements.begin(), elements.end(), [](const Element* element) {
    return sizeOnWire(*element) > kLargestTwoByteLength;
  });
  return tooLarge || KLV::hasBERLengths(key) ? KLV::LocalSetCoding::kBERLengths : KLV::LocalSetCoding::kTwoByteLengths;
}

KLV::Key codedKey(const KLV::Key& key, KLV::LocalSetCoding coding) {
  if (!KLV::isSwappedUUID(key)) return key.withOctet(KLV::Key::kCodingOctet, static_cast<uint8>(coding));
  if (coding == KLV::LocalSetCoding::kTwoByteLengths) return key;
  Exceptions::raise<Exceptions::InvalidLength>("a set with the key {} has no values over 65,535 octets",
                                               key.toString());
}

/// The tag of an unknown property may be one that the primer does not list.
void reserveTag(const Element& element, PartitionDictionary& tags) {
  if (const auto* unknown = element.metaAttribute().asUnknown()) tags.reserve(unknown->localTag());
}

/// Readers look tags up in the primer, so what the dictionary knows by this tag belongs there.
uint16 listedTag(uint16 tag, PartitionDictionary& tags) {
  const auto* definition = tags.dictionary()->findElementByStaticTag(tag);
  if (definition != nullptr && tags.tryFind(tag) == nullptr) tags.addPrimerEntry({tag, definition->key().key()});
  return tag;
}

uint16 tagOf(const Element& element, PartitionDictionary& tags) {
  if (element.localTag() != 0) return element.localTag();
  const auto& attribute = element.metaAttribute();
  if (const auto* unknown = attribute.asUnknown()) return listedTag(unknown->localTag().value(), tags);
  return tags.findOrGenerate(attribute.metaElement()->key(), attribute.staticLocalTag()).value();
}

}  // namespace

MetadataSet::MetadataSet(const KLV::Key& key, const MetaMetadata::MetaMetadataSet* definition)
    : key_(key), definition_(definition) {}

MetadataSet::~MetadataSet() = default;

std::string MetadataSet::name() const {
  return definition_ != nullptr ? definition_->symbol() : Utils::wstringToString(key_.toString());
}

std::string MetadataSet::fullName() const { return instanceUID_ ? name() + " " + instanceUID_->dottedText() : name(); }

MetadataSet::Elements::iterator MetadataSet::position(const Types::UniversalLabel& label) {
  return std::lower_bound(
      elements_.begin(), elements_.end(), label,
      [](const auto_ptr<Element>& element, const Types::UniversalLabel& wanted) { return labelOf(*element) < wanted; });
}

const Element* MetadataSet::find(const Types::UniversalLabel& label) const {
  return const_cast<MetadataSet*>(this)->find(label);
}

Element* MetadataSet::find(const Types::UniversalLabel& label) {
  const auto* attribute = definition_ == nullptr ? nullptr : definition_->findAttribute(label);
  if (attribute == nullptr) return nullptr;
  const auto at = position(attribute->metaElement()->key());
  return at != elements_.end() && labelOf(**at) == attribute->metaElement()->key() ? at->get() : nullptr;
}

Element& MetadataSet::createElement(const MetaMetadata::MetaAttribute& attribute) {
  const auto& label = attribute.metaElement()->key();
  auto at = position(label);
  if (at == elements_.end() || !(labelOf(**at) == label)) {
    at = elements_.insert(at, makeElement(AttributeHandle(attribute), this));
  }
  (*at)->markPresent();
  return **at;
}

void MetadataSet::createUnsetElements() {
  for (const auto& attribute : definition_->attributes()) {
    elements_.push_back(makeElement(AttributeHandle(attribute), this));
  }
  std::sort(elements_.begin(), elements_.end(),
            [](const auto& left, const auto& right) { return labelOf(*left) < labelOf(*right); });
}

Element& MetadataSet::createInvalidElement(auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute) {
  invalid_.push_back(makeElement(AttributeHandle(std::move(attribute)), nullptr));
  invalid_.back()->markPresent();
  if (partition_ != nullptr) reserveTag(*invalid_.back(), partition_->partitionDictionary());
  return *invalid_.back();
}

void MetadataSet::remove(const Element& element) {
  const auto isIt = [&element](const auto& owned) { return owned.get() == &element; };
  readOrder_.erase(std::remove(readOrder_.begin(), readOrder_.end(), &element), readOrder_.end());
  if (isInstanceUID(element)) setInstanceUID(nullptr);
  elements_.erase(std::remove_if(elements_.begin(), elements_.end(), isIt), elements_.end());
  invalid_.erase(std::remove_if(invalid_.begin(), invalid_.end(), isIt), invalid_.end());
}

void MetadataSet::setPartition(PartitionMetadata* partition) {
  partition_ = partition;
  if (partition == nullptr) return;
  for (const auto& element : invalid_) reserveTag(*element, partition->partitionDictionary());
}

bool MetadataSet::isInstanceUID(const Element& element) const {
  return definition_ != nullptr && &element.metaAttribute() == definition_->instanceUIDAttribute();
}

const Types::UUID* MetadataSet::instanceUID() const { return instanceUID_ ? &*instanceUID_ : nullptr; }

void MetadataSet::valueChanged(const SimpleElement& element) {
  if (isInstanceUID(element)) setInstanceUID(dynamic_cast<const Types::UUID*>(element.value()));
}

void MetadataSet::setInstanceUID(const Types::UUID* instanceUID) {
  const auto before = instanceUID_;
  instanceUID_ = instanceUID == nullptr ? std::nullopt : std::optional<Types::UUID>(*instanceUID);
  if (partition_ != nullptr) partition_->instanceUIDChanged(*this, before ? &*before : nullptr, this->instanceUID());
}

std::vector<const Element*> MetadataSet::inDefinitionOrder() const {
  std::vector<const Element*> elements;
  for (const Element& element : *this) elements.push_back(&element);
  // The attributes of a definition stand in one array in the order of the definition.
  std::sort(elements.begin(), elements.end(), [](const Element* left, const Element* right) {
    return std::less<>()(&left->metaAttribute(), &right->metaAttribute());
  });
  for (auto at = invalidBegin(); at != invalidEnd(); ++at) elements.push_back(&*at);
  return elements;
}

std::vector<const Element*> MetadataSet::inWritingOrder() const {
  auto order = readOrder_;
  const std::unordered_set<const Element*> read(readOrder_.begin(), readOrder_.end());
  for (const Element* element : inDefinitionOrder()) {
    if (read.count(element) == 0) order.push_back(element);
  }
  return order;
}

void MetadataSet::serialize(DataIO::DataSink& sink, PartitionDictionary& tags) const {
  const auto elements = inWritingOrder();
  const auto coding = codingFor(key_, elements);
  DataIO::Memory::MemoryDataSink body;
  for (const Element* element : elements) {
    const auto* value = element->wireValue();
    const uint8 octets = coding == KLV::LocalSetCoding::kBERLengths ? element->lengthOctets() : 0;
    KLV::writeLocalSetItem(body, coding, tagOf(*element, tags), value == nullptr ? nullptr : value->rawBuffer(),
                           sizeOnWire(*element), octets);
  }
  sink.write(codedKey(key_, coding).rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(sink, body.serializedSize(), berLength_);
  sink.write(body.rawBuffer(), body.serializedSize());
}

DarkParsedGroup::DarkParsedGroup(const KLV::Key& key, uint8 berLength, Bytes value,
                                 const std::optional<Types::UUID>& instanceUID)
    : MetadataSet(key, nullptr), value_(std::move(value)) {
  setBerLength(berLength);
  if (instanceUID) setInstanceUID(&*instanceUID);
}

void DarkParsedGroup::serialize(DataIO::DataSink& sink, PartitionDictionary&) const {
  sink.write(key().rawBuffer(), KLV::Key::kSize);
  KLV::writeBERLength(sink, value_.size(), berLength());
  sink.write(value_.data(), value_.size());
}

}  // namespace Vantor
