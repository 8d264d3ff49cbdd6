#pragma once

#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/KLVHeader.h"
#include "Core/MXF/ReplacementPlan.h"

namespace Vantor::MXF {

/// Writes one copy of a file with other header metadata; see rewrite(). All arguments outlive it.
class FileRewriter {
 public:
  /// Computes where everything will be.
  /// @throws Exceptions::InvalidLength as sizeInCopy().
  FileRewriter(DataIO::SeekableSource& source, const FileStructure& structure,
               const std::vector<PlannedReplacement>& replacements);

  /// Of the copy, in bytes.
  uint64 size() const { return total_; }
  /// @throws what source and output throw.
  void write(DataIO::DataSink& output);

 private:
  /// What becomes of one partition.
  struct Target {
    uint64 offset = 0;  ///< of its pack in the copy, run-in included
    const PlannedReplacement* replacement = nullptr;
    uint64 metadataSize = 0;  ///< with the fill behind them, as sizeInCopy(); 0 without a replacement
  };

  void writePartition(std::size_t number);
  void writePack(std::size_t number);
  void writeReplacement(const Target& target);
  void writeRandomIndexPack(const KLVHeader& pack);
  void copyTo(uint64 end);

  DataIO::SeekableSource& source_;
  const FileStructure& structure_;
  std::vector<Target> targets_;
  uint64 total_ = 0;
  DataIO::DataSink* output_ = nullptr;  ///< while write() runs
};

}  // namespace Vantor::MXF
