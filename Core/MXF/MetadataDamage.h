#pragma once

#include <string>
#include <vector>

#include "Core/KLV/Key.h"
#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// A place in header metadata that cannot be read.
struct MetadataDamage {
  enum class Kind {
    kCutOff,        ///< the file ends within a KLV. Arguments: how many bytes of its value are there, its length; none
                    ///< when the file ends within its key or length
    kLength,        ///< a KLV whose length cannot be right. Argument: that length; none when it is no BER length
    kTooLong,       ///< a KLV that is longer than `Limits::valueSize`. Argument: its length
    kItems,         ///< a set that its items do not fill. Argument: its length
    kPrimerPack,    ///< a primer pack that its rows do not fill. Argument: its length
    kNoPrimerPack,  ///< the metadata do not begin with a primer pack; nothing else may be missing
    kNoKLV,         ///< bytes that are no KLV of header metadata
    kSearchEnded    ///< too much that is damaged, or looks like sets and is none: what follows is not looked at
  };
  Kind kind = Kind::kNoKLV;
  uint64 offset = 0;  ///< of the first byte of the damaged KLV
  uint64 size = 0;    ///< how many bytes are left out from there on
  KLV::Key key;       ///< of the damaged KLV; zeros where the file has none
  std::string set;    ///< the symbol of the set with that key; empty for none
  std::vector<std::string> arguments;
};

/// The kind as programs name it: "cut-off", "length", "too-long", "items", "primer-pack", "no-primer-pack", "no-klv" or
/// "search-ended".
const char* nameOf(MetadataDamage::Kind kind);

/// What is wrong, in English, with the offset in front: "at byte offset 5870: the file ends within set Sequence: 108 of
/// its 134 bytes are there".
std::string describe(const MetadataDamage& damage);

/// How messages name a KLV of header metadata: "the primer pack", "set Preface", "the set with key 06.0E...".
/// @param symbol  of the set with that key; empty for none.
std::string klvName(const KLV::Key& key, const std::string& symbol);

}  // namespace Vantor::MXF
