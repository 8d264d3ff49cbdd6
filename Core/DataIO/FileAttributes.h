#pragma once

#include <cstdio>

#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// Attributes of files other than name, bytes, size and time; for the sources of this folder.
namespace Vantor::DataIO::File {

/// The same under every name of a file, and different for every other file. Zeros where the system has no such numbers
/// (Windows).
struct FileIdentity {
  uint64 device = 0;
  uint64 number = 0;  ///< on this device

  friend bool operator==(const FileIdentity& left, const FileIdentity& right) {
    return left.device == right.device && left.number == right.number;
  }
};

/// Of the file behind symbolic links; zeros also when there is none.
FileIdentity identityOf(const Path& path);
/// Of the file behind a stream, even if another file has its name by now.
FileIdentity identityOf(std::FILE* stream);

/// Copies owner and group (POSIX), extended attributes including access control lists (Linux), and permissions. Leaves
/// out what the system cannot set or the user may not: the group may be copied without the owner.
void copyAttributes(const Path& from, const Path& to);

/// @throws Exceptions::IOError naming the path when the file has further names (hard links), or their number cannot be
/// read.
void requireOneName(const Path& path);

}  // namespace Vantor::DataIO::File
