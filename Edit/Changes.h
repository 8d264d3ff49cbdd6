#pragma once

#include <cstddef>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Platform/Types.h"

namespace Vantor::Edit {

/// How header metadata changed, KLV by KLV.
struct Changes {
  std::size_t changedSets = 0;
  std::size_t changedProperties = 0;  ///< of changed sets; at least one for each
  std::size_t addedSets = 0;
  std::size_t removedSets = 0;

  bool isNone() const { return changedSets + addedSets + removedSets == 0; }
};

/// Compares two states of header metadata, each as the octets of its primer packs, sets and fill. Sets with the same
/// octets are unchanged, whatever their order; the others are paired by InstanceUID, or by key where they have none.
/// Object directories do not count: they follow from the sets.
/// @throws Exceptions::ParseError when the octets are not KLVs.
Changes changesBetween(const Bytes& before, const Bytes& after,
                       const SharedPtr<const MetaMetadata::Dictionary>& dictionary);

}  // namespace Vantor::Edit
