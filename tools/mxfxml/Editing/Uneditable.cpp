#include "Editing/Uneditable.h"

#include <vector>

#include "Core/DataIO/File.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Platform/Exceptions.h"
#include "Terminal/ErrorText.h"

namespace Vantor::Tool {

namespace {

constexpr const char* kForce = "; --force changes such a file in place, without some checks";
constexpr const char* kExport =
    "; such a file cannot be edited; mxfxml export, and mxfxml import -o of the edited document, make a file of the "
    "header metadata alone";

void requireSafe(DataIO::SeekableSource& source, const MXF::FileStructure& structure, bool isForced) {
  std::vector<MXF::Unchecked> unchecked;  // which saving reports
  MXF::refuseUnsafe(source, structure, isForced ? &unchecked : nullptr);
}

bool isSafe(const Path& file, bool isForced) {
  try {
    DataIO::File::FileDataSource source(file);
    requireSafe(source, MXF::readStructure(source), isForced);
    return true;
  } catch (const Exceptions::BaseException&) {
    return false;
  }
}

}  // namespace

void refuseUneditable(const Path& file, bool isForced) {
  // There is no way around what keeps it from being opened, or from being an MXF file.
  DataIO::File::FileDataSource source(file);
  const auto structure = MXF::readStructure(source);
  try {
    requireSafe(source, structure, isForced);
  } catch (const Exceptions::ParseError& error) {
    throw CommandError(error.message() + wayAround(file));
  } catch (const Exceptions::IOError& error) {
    throw OtherFileError(error.message() + wayAround(file));
  }
}

std::string wayAround(const Path& file) {
  if (isSafe(file, false)) return "";
  return isSafe(file, true) ? kForce : kExport;
}

}  // namespace Vantor::Tool
