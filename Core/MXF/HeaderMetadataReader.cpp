#include "Core/MXF/HeaderMetadataReader.h"

#include <optional>
#include <string>
#include <utility>

#include "Core/DataIO/File.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/PrimerPack.h"
#include "Core/KLV/Value.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataKeys.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"

namespace Vantor::MXF {

namespace {

using DataIO::File::FileDataSource;

[[noreturn]] void throwParseError(uint64 offset, const std::string& message, int line) {
  throw Exceptions::ParseError(DataIO::atOffset(offset) + message, "Core/MXF/HeaderMetadataReader", line);
}

std::string textOf(const KLV::Key& key) { return Utils::wstringToString(key.toString()); }

class Reader {
 public:
  Reader(FileDataSource& source, SharedPtr<const MetaMetadata::Dictionary> dictionary)
      : source_(source), metadata_(std::make_unique<PartitionMetadata>(std::move(dictionary))) {}

  std::unique_ptr<PartitionMetadata> read(const PartitionInfo& partition) {
    findPrimer(partition);
    believeCount(partition.pack.headerByteCount);
    while (goesOn()) readKLV();
    return std::move(metadata_);
  }

 private:
  void findPrimer(const PartitionInfo& partition) {
    source_.seek(partition.packEnd);
    skipFill(source_);
    const KLV::Key key = peekKey(source_);
    if (KLV::isPrimerPack(key)) return;
    if (partition.pack.headerByteCount == 0 || endsHeaderMetadata(key)) {
      throwParseError(partition.offset, "the partition has no header metadata", __LINE__);
    }
    throwParseError(source_.position(), "expected a primer pack, found key " + textOf(key), __LINE__);
  }

  /// ST 377-1 counts from the primer pack on.
  void believeCount(uint64 headerByteCount) {
    if (headerByteCount != 0 && headerByteCount <= source_.remaining()) end_ = source_.position() + headerByteCount;
  }

  bool goesOn() {
    atEnd_ = atEnd_ || source_.position() == end_;
    const KLV::Key key = peekKey(source_);
    if (atEnd_ && KLV::isLocalSet(key)) disbelieveCount();
    return !endsHeaderMetadata(key) && (!atEnd_ || KLV::isFill(key));
  }

  /// It is too small by a set at least, so it says nothing of what else may follow.
  void disbelieveCount() {
    end_.reset();
    atEnd_ = false;
  }

  void readKLV() {
    const KLVHeader klv = readKLVHeader(source_);
    if (KLV::isFill(klv.key)) {
      skipValue(klv, source_);
    } else {
      requireValue(klv);
      addValue(klv, KLV::Value(source_, klv.length.value));
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
      metadata_->addKLV(klv.key, klv.length.octets, value.rawBuffer(), value.serializedSize(), klv.valueOffset);
    }
  }

  /// Before the value's memory is allocated.
  void requireValue(const KLVHeader& klv) const {
    if (!valueFits(klv, source_)) {
      throwParseError(klv.valueOffset,
                      "expected " + std::to_string(klv.length.value) + " bytes of " + nameOf(klv.key) + ", found " +
                          std::to_string(source_.size() - klv.valueOffset) + " to the end of the file",
                      __LINE__);
    }
    if (klv.length.value > kMaxSetSize) {
      throwParseError(klv.valueOffset,
                      "expected at most " + std::to_string(kMaxSetSize) + " bytes of " + nameOf(klv.key) + ", found " +
                          std::to_string(klv.length.value),
                      __LINE__);
    }
  }

  std::string nameOf(const KLV::Key& key) const {
    if (KLV::isPrimerPack(key)) return "the primer pack";
    const auto* definition = metadata_->partitionDictionary().dictionary()->findSet(key);
    return definition == nullptr ? "the set with key " + textOf(key) : "set " + definition->symbol();
  }

  FileDataSource& source_;
  std::unique_ptr<PartitionMetadata> metadata_;
  std::optional<uint64> end_;  // by the partition pack's count, as long as that is believed
  bool atEnd_ = false;         // a KLV ended exactly there
};

}  // namespace

std::unique_ptr<PartitionMetadata> readHeaderMetadata(const Path& path,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionChoice& choice) {
  FileDataSource source(path);
  const PartitionInfo partition = findPartition(source, choice);
  return Reader(source, std::move(dictionary)).read(partition);
}

std::unique_ptr<PartitionMetadata> readHeaderMetadata(const Path& path,
                                                      SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                      const PartitionInfo& partition) {
  FileDataSource source(path);
  return Reader(source, std::move(dictionary)).read(partition);
}

}  // namespace Vantor::MXF
