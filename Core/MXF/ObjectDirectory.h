#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"

/// The object directory of OP-Atom files with a metadictionary: a KLV of the header metadata that has the place of
/// every set in the file. Another KLV, the root, has the place of the directory. Both are dark sets to everything else
/// here. Numbers are big-endian, offsets are those of a KLV's key from the start of the file, in bytes.
///
/// The root's value is a local set with 2-byte lengths whose tags no primer explains: 3C0A is its own identifier, 0001
/// and 0002 are the InstanceUIDs of the MetaDictionary and of the Preface, 0003 is 16 zero octets and the directory's
/// offset in 8. The directory's value is the number of entries in 8 octets, their size (25) in one, and for each entry
/// an identifier in 16 octets, an offset in 8, and flags in one, whose meaning is unknown. These facts were read off
/// files and their writers' data; there is no standard.
///
/// Each local set with an InstanceUID has an entry, dark groups included, and so has the root, in the order of the
/// sets. A set without InstanceUID has none; sets that share one have an entry each.
namespace Vantor::MXF {

/// What of the layout of header metadata with an object directory outlives an edit.
struct DirectoryLayout {
  /// Where the root stands, in bytes from the primer pack's key; only where fill separates the two.
  std::optional<uint64> rootOffset = {};
  /// The root moves by multiples of this many bytes when the primer pack needs its place; not 0.
  uint64 grid = 1;
  bool isDirectoryLast = false;  ///< no set stands behind the directory
};

/// Checks the directory of header metadata in a file: each entry has the place of the set with its identifier, and the
/// root that of the directory. Sets without entry are none of its business.
/// @param metadata  from the primer pack on, with any fill.
/// @param offset    of the primer pack, from the start of the file.
/// @return the layout, with a grid of 1.
/// @throws Exceptions::ParseError with the offset in the file of what is wrong.
DirectoryLayout requireSoundDirectory(const Bytes& metadata, uint64 offset);

/// Header metadata whose object directory is made anew for any place in a file.
///
/// Entries keep their flags; those of new sets are 0. Where the root names a MetaDictionary or Preface that is not
/// among the sets, it gets the InstanceUID of the only one that is.
class ListedMetadata {
 public:
  /// @param metadata  from the primer pack on, with a directory and its root among the sets: with any entries, of which
  /// the flags count. Copied; fill in front of the root becomes what the layout asks for.
  /// @throws Exceptions::ParseError, with offsets within the metadata, when they have no directory or no root, several,
  /// or one that cannot be read. Exceptions::InvalidLength when the directory becomes too long for KLV.
  ListedMetadata(const Bytes& metadata, const DirectoryLayout& layout);

  /// In bytes; the same wherever they stand.
  uint64 size() const { return bytes_.size(); }
  /// The metadata for a place.
  /// @param offset  of their first byte, from the start of the file.
  Bytes at(uint64 offset) const;

 private:
  Bytes bytes_;                                   ///< with zeros for the offsets
  std::vector<std::pair<uint64, uint64>> links_;  ///< where an offset stands, and of what; from the first byte
};

}  // namespace Vantor::MXF
