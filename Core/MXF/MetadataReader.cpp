#include "Core/MXF/MetadataReader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/MetadataDamage.h"
#include "Core/Platform/Raise.h"

namespace Vantor::MXF {

using Exceptions::ParseError;
using Exceptions::raise;

MetadataReader::MetadataReader(DataIO::DataSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                               const Limits& limits)
    : source_(source), limits_(limits), metadata_(std::make_unique<PartitionMetadata>(std::move(dictionary))) {}

std::unique_ptr<PartitionMetadata> MetadataReader::read(const PartitionInfo& partition) {
  skipLeadingFill();
  believeCount(partition.pack.headerByteCount);
  if (!KLV::isPrimerPack(key_)) goWithoutPrimer(partition);
  while (goesOn()) readKLV();
  return std::move(metadata_);
}

void MetadataReader::readKey() {
  std::array<uint8, KLV::Key::kSize> octets{};
  offset_ = source_.position();
  keySize_ = source_.readUpTo(octets.data(), octets.size());
  key_ = KLV::Key(octets);
}

void MetadataReader::skipLeadingFill() {
  for (readKey(); KLV::isFill(key_); readKey()) skipFill(readHeader());
}

void MetadataReader::goWithoutPrimer(const PartitionInfo& partition) {
  if (partition.pack.headerByteCount == 0 || KLV::endsHeaderMetadata(key_)) {
    raise<ParseError>("at byte offset {}: the partition has no header metadata", partition.offset);
  }
  raise<ParseError>("at byte offset {}: expected a primer pack, found key {}", offset_, key_.toString());
}

/// ST 377-1 counts from the primer pack on.
void MetadataReader::believeCount(uint64 headerByteCount) {
  if (headerByteCount <= keySize_ || headerByteCount - keySize_ > source_.remaining()) return;
  end_ = offset_ + headerByteCount;
}

bool MetadataReader::goesOn() {
  atEnd_ = atEnd_ || offset_ == end_;
  if (atEnd_ && KLV::isLocalSet(key_)) {
    // The count is too small by at least one set, so any number of others may follow.
    end_.reset();
    atEnd_ = false;
  }
  return !KLV::endsHeaderMetadata(key_) && (!atEnd_ || KLV::isFill(key_));
}

void MetadataReader::readKLV() {
  try {
    const KLVHeader klv = readHeader();
    if (KLV::isFill(klv.key)) {
      skipFill(klv);
    } else {
      requireValue(klv);
      addValue(klv, KLV::Value(source_, klv.length.value));
    }
  } catch (const ParseError& error) {
    return goPast(error);
  }
  readKey();
}

void MetadataReader::goPast(const ParseError& error) {
  if (dynamic_cast<const Exceptions::LimitExceeded*>(&error) != nullptr) throw;
  throw DamagedMetadata(error, offset_, metadata_->entries().size());
}

KLVHeader MetadataReader::readHeader() {
  if (keySize_ < KLV::Key::kSize) {
    raise<ParseError>("at byte offset {}: expected {} more bytes, found {}", offset_, KLV::Key::kSize, keySize_);
  }
  return readKLVHeader(source_, key_);
}

void MetadataReader::skipFill(const KLVHeader& klv) {
  try {
    source_.skip(std::min(klv.length.value, source_.remaining()));
  } catch (const ParseError&) {
    // A source of unknown size has come to its end.
  }
}

void MetadataReader::addValue(const KLVHeader& klv, const KLV::Value& value) {
  if (KLV::isPrimerPack(klv.key)) {
    auto& tags = metadata_->partitionDictionary();
    const auto rows = KLV::readPrimerPack(value.rawBuffer(), value.serializedSize(), klv.valueOffset);
    if (tags.primerEntries().empty()) tags.setPrimerCoding(klv.key, klv.length.octets);
    for (const auto& row : rows) tags.addPrimerEntry(row);
  } else {
    if (++sets_ > limits_.sets) refuse(&Limits::sets, klv);
    properties_ +=
        metadata_->addKLV(klv.key, klv.length.octets, value.rawBuffer(), value.serializedSize(), klv.valueOffset);
    if (properties_ > limits_.properties) refuse(&Limits::properties, klv);
  }
}

/// Before the value's memory is allocated.
void MetadataReader::requireValue(const KLVHeader& klv) const {
  if (klv.length.value > source_.remaining()) {
    raise<ParseError>("at byte offset {}: expected {} bytes of {}, found {} to the end of the file", klv.valueOffset,
                      klv.length.value, nameOf(klv.key), source_.remaining());
  }
  if (klv.length.value > limits_.valueSize) refuse(&Limits::valueSize, klv);
}

void MetadataReader::refuse(uint64 Limits::*limit, const KLVHeader& klv) const {
  refuseBeyond(limit, limits_.*limit, "at byte offset " + std::to_string(klv.valueOffset) + ", " + nameOf(klv.key));
}

std::string MetadataReader::symbolOf(const KLV::Key& key) const {
  const auto* definition = metadata_->partitionDictionary().dictionary()->findSet(key);
  return definition == nullptr ? "" : definition->symbol();
}

std::string MetadataReader::nameOf(const KLV::Key& key) const { return klvName(key, symbolOf(key)); }

}  // namespace Vantor::MXF
