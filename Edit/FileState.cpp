#include <algorithm>
#include <exception>
#include <utility>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataSalvage.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/MXF/ObjectDirectory.h"
#include "Core/MXF/RandomIndexPack.h"
#include "Core/Platform/Exceptions.h"
#include "Edit/Check.h"
#include "Edit/Repetitions.h"

namespace Vantor::Edit {

namespace {

using Exceptions::ParseError;

class StateReader {
 public:
  StateReader(DataIO::SeekableSource& source, const SharedPtr<const MetaMetadata::Dictionary>& dictionary,
              const Limits& limits, OnDamage onDamage)
      : source_(source),
        dictionary_(dictionary),
        limits_(limits),
        onDamage_(onDamage),
        structure_(MXF::readStructure(source)),
        repetitions_(source, structure_) {}

  FileState read() {
    FileState state{structure_.fileSize, structure_.runIn};
    for (std::size_t i = 0; i < structure_.partitions.size(); ++i) {
      auto& partition = state.partitions.emplace_back();
      partition.info = structure_.partitions[i];
      partition.index = MXF::readIndexTable(source_, structure_, i);
      if (!MXF::hasMetadata(partition.info) && (i != 0 || leavesMetadataToALaterOne())) continue;
      readMetadata(i, state);
      if (partition.problem.empty()) checkRoom(i, partition);
    }
    // Without a footer partition, long essence may stand where the pack would.
    if (MXF::isFooter(structure_.partitions.back()) && !structure_.partitions.back().damaged) readRandomIndex(state);
    return state;
  }

 private:
  /// A header partition written before its metadata were known leaves them to a later one (ST 377-1).
  bool leavesMetadataToALaterOne() const {
    const auto& partitions = structure_.partitions;
    const auto& header = partitions.front();
    return !header.damaged && header.pack.headerByteCount == 0 &&
           std::any_of(partitions.begin() + 1, partitions.end(), MXF::hasMetadata) &&
           !MXF::findMetadataRoom(source_, structure_, 0);
  }

  void readMetadata(std::size_t number, FileState& state) {
    auto& partition = state.partitions[number];
    const auto like = number == 0 ? Repetitions::Like::kNone : repetitions_.like(number);
    if (like == Repetitions::Like::kHeader) {
      partition.metadata = state.partitions.front().metadata;
    } else if (like == Repetitions::Like::kEarlier) {
      partition.metadata = state.partitions[last_].metadata;
    } else {
      parse(number, partition);
      last_ = number;
    }
  }

  void parse(std::size_t number, FileState::Partition& partition) {
    try {
      parseOrSalvage(partition);
    } catch (const ParseError& error) {
      if (number == 0) throw;
      partition.problem = error.what();
    }
  }

  void parseOrSalvage(FileState::Partition& partition) {
    std::exception_ptr damaged;
    try {
      partition.metadata = MXF::readHeaderMetadata(source_, dictionary_, partition.info, limits_);
      return;
    } catch (const MXF::DamagedMetadata& damage) {
      damaged = std::current_exception();
      partition.problem = damage.what();
    }
    if (onDamage_ == OnDamage::kSalvage) salvage(partition);
    if (partition.metadata == nullptr) std::rethrow_exception(damaged);
  }

  void salvage(FileState::Partition& partition) {
    auto salvaged = MXF::salvageHeaderMetadata(source_, dictionary_, partition.info, limits_);
    if (salvaged.metadata->entries().empty()) return;
    partition.metadata = std::move(salvaged.metadata);
    partition.missing = std::move(salvaged.missing);
  }

  void checkRoom(std::size_t number, FileState::Partition& partition) {
    std::string* problem = &partition.countProblem;
    try {
      const auto room = MXF::findMetadataRoom(source_, structure_, number);
      problem = &partition.directoryProblem;
      if (room && room->hasObjectDirectory) MXF::requireSoundDirectory(MXF::readRoom(source_, *room), room->offset);
    } catch (const Exceptions::BaseException& error) {
      *problem = error.what();
    }
  }

  void readRandomIndex(FileState& state) {
    try {
      const auto pack = MXF::findRandomIndexPack(source_, structure_.partitions.back().packEnd);
      if (!pack) return;
      auto& entries = state.randomIndex.emplace();
      MXF::readRandomIndexEntries(source_, *pack, [&](uint32 bodySID, uint64 offset) {
        entries.push_back({bodySID, offset});
      });
    } catch (const ParseError& error) {
      state.randomIndex.reset();
      state.randomIndexProblem = error.what();
    }
  }

  DataIO::SeekableSource& source_;
  const SharedPtr<const MetaMetadata::Dictionary>& dictionary_;
  const Limits& limits_;
  OnDamage onDamage_;
  MXF::FileStructure structure_;
  Repetitions repetitions_;
  std::size_t last_ = 0;  // the last partition whose metadata were parsed
};

}  // namespace

FileState readState(DataIO::SeekableSource& source, const SharedPtr<const MetaMetadata::Dictionary>& dictionary,
                    const Limits& limits, OnDamage onDamage) {
  return withinMemory(limits, [&] { return StateReader(source, dictionary, limits, onDamage).read(); });
}

SharedPtr<const PartitionMetadata> readMetadata(const Bytes& bytes,
                                                const SharedPtr<const MetaMetadata::Dictionary>& dictionary,
                                                const Limits& limits) {
  DataIO::Memory::MemoryFile file(bytes.data(), bytes.size());
  MXF::PartitionInfo partition;
  partition.pack.headerByteCount = bytes.size();
  return MXF::readHeaderMetadata(file, dictionary, partition, limits);
}

}  // namespace Vantor::Edit
