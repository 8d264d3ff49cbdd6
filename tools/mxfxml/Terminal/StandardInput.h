#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Core/DataIO/KeptSource.h"
#include "Core/DataIO/SeekableSource.h"
#include "Core/DataIO/System.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/MetadataDamage.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Path.h"

/// Standard streams in the place of files. As an argument, "-" becomes a path that names the stream in messages; a file
/// of that name is reached with its folder.
namespace Vantor::Tool {

Path inputPath(const std::string& argument);
Path outputPath(const std::string& argument);
bool isStandardInput(const Path& file);
bool isStandardOutput(const Path& file);

/// @throws UsageError when standard input is among the inputs more than once.
void requireOneStandardInput(const std::vector<Path>& inputs);

/// What the program reads from standard input. Every reader begins at the start, since what was read is kept.
class StandardInput {
 public:
  /// The only one.
  static StandardInput& instance();
  StandardInput(const StandardInput&) = delete;
  StandardInput& operator=(const StandardInput&) = delete;

  /// The file that was redirected; null for a pipe and the like, and for a file of which something was read.
  DataIO::SeekableSource* file() { return file_.get(); }
  /// Whether it is this file, redirected. False where the system does not identify files.
  bool isFile(const Path& file) const;
  /// Bytes from the start; valid until the next call. @throws Exceptions::IOError while reading.
  DataIO::DataSource& fromStart();
  /// The first bytes, enough to see what it is.
  std::string start();
  /// Everything, for a document. @throws Exceptions::LimitExceeded; IOError.
  std::string all();

 private:
  StandardInput();

  DataIO::File::FileIdentity identity_;
  std::unique_ptr<DataIO::SeekableSource> file_;
  std::unique_ptr<DataIO::DataSource> pipe_;
  std::unique_ptr<DataIO::KeptSource> kept_;  // of the pipe
};

/// What cannot be read of header metadata.
using Missing = std::vector<MXF::MetadataDamage>;

/// Reads the header metadata of a partition of an MXF file or of standard input. Of a pipe, that can only be the header
/// partition; not more than `DataIO::File::kReadAhead` bytes behind it are taken from the pipe.
/// @param missing  gets what cannot be read of damaged metadata, which are read as far as they are whole then; null:
///                 damage is an error.
/// @throws CommandError for another partition of a pipe; what `MXF::readHeaderMetadata` throws.
std::unique_ptr<PartitionMetadata> readPartition(const Path& file, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                 const MXF::PartitionChoice& choice, Missing* missing = nullptr);

/// Finds the partitions of an MXF file or of standard input. Of a pipe, that is the header partition, and `fileSize`
/// and `end` are `DataIO::kUnknownSize`.
MXF::FileStructure readStructure(const Path& file);
/// Whether the structure is that of a pipe.
bool isOfPipe(const MXF::FileStructure& structure);

}  // namespace Vantor::Tool
