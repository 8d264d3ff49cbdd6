#include "Terminal/StandardInput.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "Core/DataIO/File.h"
#include "Core/DataIO/StreamSource.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataSalvage.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Raise.h"
#include "Terminal/ErrorText.h"
#include "Terminal/RunLimits.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kDash = "-";
constexpr const char* kInput = "standard input";
constexpr const char* kOutput = "standard output";
constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr std::size_t kShown = 256;  // enough for the white space before a document

Path pathOf(const std::string& argument, const char* stream) {
  if (argument == kDash) return stream;
  const auto file = Platform::pathFromUTF8(argument);
  return argument == stream ? "." / file : file;
}

DataIO::File::Stream openInput() {
  DataIO::File::Stream stream(DataIO::File::openStandardInput());
  if (stream) return stream;
  Exceptions::raise<Exceptions::IOError>("cannot read standard input: {}", DataIO::File::systemReason(errno));
}

/// @return how many bytes were added.
std::size_t append(DataIO::DataSource& source, std::size_t most, std::string& text) {
  const auto size = text.size();
  text.resize(size + most);
  const auto found = source.readUpTo(reinterpret_cast<uint8*>(text.data()) + size, most);
  text.resize(size + found);
  return found;
}

bool isHeader(const MXF::PartitionChoice& choice) {
  return choice.kind() != MXF::PartitionChoice::Kind::kFooter && choice.number() == 0;
}

template <class... Arguments>
std::unique_ptr<PartitionMetadata> readFrom(Missing* missing, Arguments&&... arguments) {
  if (missing == nullptr) return MXF::readHeaderMetadata(std::forward<Arguments>(arguments)...);
  auto salvaged = MXF::salvageHeaderMetadata(std::forward<Arguments>(arguments)...);
  *missing = std::move(salvaged.missing);
  return std::move(salvaged.metadata);
}

}  // namespace

Path inputPath(const std::string& argument) { return pathOf(argument, kInput); }
Path outputPath(const std::string& argument) { return pathOf(argument, kOutput); }
bool isStandardInput(const Path& file) { return file == kInput; }
bool isStandardOutput(const Path& file) { return file == kOutput; }

void requireOneStandardInput(const std::vector<Path>& inputs) {
  if (std::count_if(inputs.begin(), inputs.end(), isStandardInput) > 1) {
    throw UsageError("only one input can be -, standard input");
  }
}

StandardInput& StandardInput::instance() {
  static StandardInput input;
  return input;
}

StandardInput::StandardInput() {
  auto stream = openInput();
  identity_ = DataIO::File::identityOf(stream.get());
  if (const auto size = DataIO::File::sizeOfUnreadFile(stream.get())) {
    file_ = std::make_unique<DataIO::File::FileDataSource>(std::move(stream), kInput, *size);
    return;
  }
  pipe_ = std::make_unique<DataIO::File::StreamSource>(std::move(stream), kInput);
  kept_ = std::make_unique<DataIO::KeptSource>(*pipe_);
}

bool StandardInput::isFile(const Path& file) const {
  return file_ != nullptr && identity_.number != 0 && identity_ == DataIO::File::identityOf(file);
}

DataIO::DataSource& StandardInput::fromStart() {
  if (file_) {
    file_->seek(0);
    return *file_;
  }
  kept_->rewind();
  return *kept_;
}

std::string StandardInput::start() {
  std::string text;
  append(fromStart(), kShown, text);
  return text;
}

std::string StandardInput::all() {
  auto& source = fromStart();
  std::string text;
  while (append(source, kPiece, text) != 0) {
    if (text.size() > limits().documentSize) refuseBeyond(&Limits::documentSize, limits().documentSize);
  }
  return text;
}

std::unique_ptr<PartitionMetadata> readPartition(const Path& file, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                                                 const MXF::PartitionChoice& choice, Missing* missing) {
  if (!isStandardInput(file)) return readFrom(missing, file, std::move(dictionary), choice, limits());
  auto& input = StandardInput::instance();
  if (input.file() != nullptr) return readFrom(missing, *input.file(), std::move(dictionary), choice, limits());
  if (!isHeader(choice)) {
    throw CommandError("of a pipe, only the header partition is read; write it to a file to read the " + choice.name());
  }
  return readFrom(missing, input.fromStart(), std::move(dictionary), limits());
}

MXF::FileStructure readStructure(const Path& file) {
  if (!isStandardInput(file)) return MXF::readStructure(file);
  auto& input = StandardInput::instance();
  if (input.file() != nullptr) return MXF::readStructure(*input.file());
  const auto header = MXF::readHeaderPartition(input.fromStart());
  return {DataIO::kUnknownSize, header.offset, MXF::StructureSource::kWalk, DataIO::kUnknownSize, {header}};
}

bool isOfPipe(const MXF::FileStructure& structure) { return structure.fileSize == DataIO::kUnknownSize; }

}  // namespace Vantor::Tool
