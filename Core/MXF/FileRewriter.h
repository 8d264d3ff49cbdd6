#pragma once

#include <cstddef>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/ReplacementPlan.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// Writes one copy of a file with other header metadata and labels in its partition packs: what rewrite() of
/// HeaderMetadataReplacement.h does once all is checked.
class FileRewriter {
 public:
  /// Computes where everything will be. Both arguments outlive this.
  /// @throws Exceptions::InvalidLength when the KAG size of a partition that has to change its size is over
  /// kMaxKAGSize.
  FileRewriter(DataIO::SeekableSource& source, const ReplacementPlan& plan);

  /// Of the copy, in bytes.
  uint64 size() const { return total_; }

  void write(DataIO::DataSink& output);

 private:
  /// What becomes of one partition.
  struct Target {
    uint64 offset = 0;        ///< of its pack in the copy, run-in included
    uint64 packSize = 0;      ///< with the fill behind it; 0 for a pack without other labels
    uint64 metadata = 0;      ///< their offset in the copy, run-in included
    uint64 metadataSize = 0;  ///< with the fill behind them; 0 where they are copied
  };

  void place(std::size_t number, uint64& shift);
  void writePack(std::size_t number, DataIO::DataSink& output);
  PartitionPack packOf(std::size_t number) const;
  void writeMetadata(std::size_t number, DataIO::DataSink& output);
  void writeRandomIndexEntries(const KLVHeader& pack, DataIO::DataSink& output);
  void copyTo(uint64 end, DataIO::DataSink& output);

  DataIO::SeekableSource& source_;
  const ReplacementPlan& plan_;
  const FileStructure& structure_;
  std::vector<Target> targets_;
  uint64 total_;
};

}  // namespace Vantor::MXF
