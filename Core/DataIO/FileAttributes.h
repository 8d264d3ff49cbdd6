#pragma once

#include <cstdio>

#include "Core/Platform/Path.h"
#include "Core/Platform/Types.h"

/// What a system knows of a file besides its name, bytes, size and time; for the files of this folder.
namespace Vantor::DataIO::File {

/// The same under every name of a file, another one for every other file. Zeros where the system has no such numbers
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
/// Of the file behind a stream, also when another file has its name by now.
FileIdentity identityOf(std::FILE* stream);

/// Gives a file what another one has: owner and group (POSIX), extended attributes with access control lists among them
/// (Linux), permissions. What the system cannot do, or the user may not, is left out: the group may come without the
/// owner, and neither on other systems.
void copyAttributes(const Path& from, const Path& to);

/// @throws Exceptions::IOError naming the path when the file has further names (hard links), or their number cannot be
/// read.
void requireOneName(const Path& path);

}  // namespace Vantor::DataIO::File
