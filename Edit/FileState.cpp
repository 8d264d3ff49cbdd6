#include <algorithm>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/MetadataRoom.h"
#include "Core/Platform/Exceptions.h"
#include "Edit/Check.h"
#include "Edit/Repetitions.h"

namespace Vantor::Edit {

namespace {

using Exceptions::ParseError;

class StateReader {
 public:
  StateReader(DataIO::SeekableSource& source, const SharedPtr<const MetaMetadata::Dictionary>& dictionary)
      : source_(source),
        dictionary_(dictionary),
        structure_(MXF::readStructure(source)),
        repetitions_(source, structure_) {}

  FileState read() {
    FileState state{structure_.fileSize, structure_.runIn, {}};
    for (std::size_t i = 0; i < structure_.partitions.size(); ++i) {
      state.partitions.push_back({structure_.partitions[i], nullptr, {}});
      if (hasMetadata(structure_.partitions[i]) || (i == 0 && !leavesMetadataToALaterOne())) readMetadata(i, state);
    }
    return state;
  }

 private:
  static bool hasMetadata(const MXF::PartitionInfo& partition) {
    return !partition.damaged && partition.pack.headerByteCount != 0;
  }

  /// A header partition written before its metadata were known leaves them to a later one (ST 377-1).
  bool leavesMetadataToALaterOne() const {
    const auto& partitions = structure_.partitions;
    const auto& header = partitions.front();
    return !header.damaged && header.pack.headerByteCount == 0 &&
           std::any_of(partitions.begin() + 1, partitions.end(), hasMetadata) &&
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
      partition.metadata = MXF::readHeaderMetadata(source_, dictionary_, partition.info);
    } catch (const ParseError& error) {
      if (number == 0) throw;
      partition.problem = error.what();
    }
  }

  DataIO::SeekableSource& source_;
  const SharedPtr<const MetaMetadata::Dictionary>& dictionary_;
  MXF::FileStructure structure_;
  Repetitions repetitions_;
  std::size_t last_ = 0;  // the last partition whose metadata were parsed
};

}  // namespace

FileState readState(DataIO::SeekableSource& source, const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  return StateReader(source, dictionary).read();
}

SharedPtr<const PartitionMetadata> readMetadata(const Bytes& bytes,
                                                const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  DataIO::Memory::MemoryFile file(bytes.data(), bytes.size());
  MXF::PartitionInfo partition;
  partition.pack.headerByteCount = bytes.size();
  return MXF::readHeaderMetadata(file, dictionary, partition);
}

}  // namespace Vantor::Edit
