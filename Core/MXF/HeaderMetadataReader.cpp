#include "Core/MXF/HeaderMetadataReader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "Core/DataIO/File.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/KLV/Value.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"

namespace Vantor::MXF {

namespace {

using DataIO::SeekableSource;
using Exceptions::ParseError;
using Exceptions::raise;

/// Reads from front to back. The source stands behind the key of the next KLV, which decides what becomes of it.
class Reader {
 public:
  Reader(DataIO::DataSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary, const Limits& limits)
      : source_(source), limits_(limits), metadata_(std::make_unique<PartitionMetadata>(std::move(dictionary))) {}

  /// @param partition  the source stands behind its pack.
  std::unique_ptr<PartitionMetadata> read(const PartitionInfo& partition) {
    findPrimer(partition);
    believeCount(partition.pack.headerByteCount);
    while (goesOn()) readKLV();
    return std::move(metadata_);
  }
  /// Where the metadata end.
  uint64 end() const { return offset_; }

 private:
  /// At the end of the file zeros take the place of what is missing.
  void readKey() {
    std::array<uint8, KLV::Key::kSize> octets{};
    offset_ = source_.position();
    keySize_ = source_.readUpTo(octets.data(), octets.size());
    key_ = KLV::Key(octets);
  }

  void findPrimer(const PartitionInfo& partition) {
    for (readKey(); KLV::isFill(key_); readKey()) skipFill(readHeader());
    if (KLV::isPrimerPack(key_)) return;
    if (partition.pack.headerByteCount == 0 || KLV::endsHeaderMetadata(key_)) {
      raise<ParseError>("at byte offset {}: the partition has no header metadata", partition.offset);
    }
    raise<ParseError>("at byte offset {}: expected a primer pack, found key {}", offset_, key_.toString());
  }

  /// ST 377-1 counts from the primer pack on.
  void believeCount(uint64 headerByteCount) {
    if (headerByteCount <= keySize_ || headerByteCount - keySize_ > source_.remaining()) return;
    end_ = offset_ + headerByteCount;
  }

  bool goesOn() {
    atEnd_ = atEnd_ || offset_ == end_;
    if (atEnd_ && KLV::isLocalSet(key_)) {
      // The count is too small by at least one set, so any number of others may follow.
      end_.reset();
      atEnd_ = false;
    }
    return !KLV::endsHeaderMetadata(key_) && (!atEnd_ || KLV::isFill(key_));
  }

  void readKLV() {
    const KLVHeader klv = readHeader();
    if (KLV::isFill(klv.key)) {
      skipFill(klv);
    } else {
      requireValue(klv);
      addValue(klv, KLV::Value(source_, klv.length.value));
    }
    readKey();
  }

  KLVHeader readHeader() {
    if (keySize_ < KLV::Key::kSize) {
      raise<ParseError>("at byte offset {}: expected {} more bytes, found {}", offset_, KLV::Key::kSize, keySize_);
    }
    return readKLVHeader(source_, key_);
  }

  void skipFill(const KLVHeader& klv) {
    try {
      source_.skip(std::min(klv.length.value, source_.remaining()));
    } catch (const ParseError&) {
      // A source of unknown size has come to its end.
    }
  }

  void addValue(const KLVHeader& klv, const KLV::Value& value) {
    if (KLV::isPrimerPack(klv.key)) {
      auto& tags = metadata_->partitionDictionary();
      if (tags.primerEntries().empty()) tags.setPrimerCoding(klv.key, klv.length.octets);
      for (const auto& entry : KLV::readPrimerPack(value.rawBuffer(), value.serializedSize(), klv.valueOffset)) {
        tags.addPrimerEntry(entry);
      }
    } else {
      if (++sets_ > limits_.sets) refuse(&Limits::sets, klv);
      properties_ +=
          metadata_->addKLV(klv.key, klv.length.octets, value.rawBuffer(), value.serializedSize(), klv.valueOffset);
      if (properties_ > limits_.properties) refuse(&Limits::properties, klv);
    }
  }

  /// Before the value's memory is allocated.
  void requireValue(const KLVHeader& klv) const {
    if (klv.length.value > source_.remaining()) {
      raise<ParseError>("at byte offset {}: expected {} bytes of {}, found {} to the end of the file", klv.valueOffset,
                        klv.length.value, nameOf(klv.key), source_.remaining());
    }
    if (klv.length.value > limits_.valueSize) refuse(&Limits::valueSize, klv);
  }

  [[noreturn]] void refuse(uint64 Limits::*limit, const KLVHeader& klv) const {
    refuseBeyond(limit, limits_.*limit, "at byte offset " + std::to_string(klv.valueOffset) + ", " + nameOf(klv.key));
  }

  std::string nameOf(const KLV::Key& key) const {
    if (KLV::isPrimerPack(key)) return "the primer pack";
    const auto* definition = metadata_->partitionDictionary().dictionary()->findSet(key);
    if (definition != nullptr) return "set " + definition->symbol();
    return "the set with key " + Utils::wstringToString(key.toString());
  }

  DataIO::DataSource& source_;
  const Limits& limits_;
  std::unique_ptr<PartitionMetadata> metadata_;
  KLV::Key key_;  // of the next KLV
  uint64 offset_ = 0;
  uint64 sets_ = 0;
  uint64 properties_ = 0;
  std::size_t keySize_ = 0;    // octets of the key that the file has
  std::optional<uint64> end_;  // by the partition pack's count, as long as that is believed
  bool atEnd_ = false;         // a KLV ended exactly there
};

}  // namespace

std::unique_ptr<PartitionMetadata> readHeaderMetadata(SeekableSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionInfo& partition, const Limits& limits) {
  return withinMemory(limits, [&] {
    source.seek(partition.packEnd);
    Reader reader(source, std::move(dictionary), limits);
    auto metadata = reader.read(partition);
    source.seek(reader.end());
    return metadata;
  });
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(SeekableSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice, const Limits& limits) {
  return readHeaderMetadata(source, std::move(dictionary), findPartition(source, choice), limits);
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(DataIO::DataSource& source,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const Limits& limits) {
  return withinMemory(limits, [&] {
    const PartitionInfo header = readHeaderPartition(source);
    return Reader(source, std::move(dictionary), limits).read(header);
  });
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(const Path& path,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice, const Limits& limits) {
  DataIO::File::FileDataSource source(path);
  return readHeaderMetadata(source, std::move(dictionary), choice, limits);
}

}  // namespace Vantor::MXF
