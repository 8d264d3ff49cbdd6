#pragma once

#include <optional>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/ProductVersion.h"
#include "Core/Types/Timestamp.h"
#include "Core/Types/UUID.h"

namespace Vantor::Edit {

/// Who changes a file, as its Identification set has it (ST 377-1).
struct Signature {
  wstring company;
  wstring product;
  wstring versionText;
  Types::ProductVersion version;
  Types::UUID productUID;                     ///< the same in all files that this product changes
  std::optional<Types::Timestamp> time = {};  ///< UTC; none for the time of signing
};

/// Signs an edit as ST 377-1 asks of whoever changes a file: adds an Identification with a new generation behind those
/// in the Preface's list, gives changed and new sets its GenerationUID, and the Preface its time as FileLastModified.
/// @param earlier  the Identification that this gave for an earlier state of the same edit, which is used again; none
/// for the first time.
/// @return the InstanceUID of the Identification.
/// @throws Exceptions::InvalidFormat when there is no Preface; after is unchanged then.
Types::UUID sign(const PartitionMetadata& before, PartitionMetadata& after, const Signature& signature,
                 const std::optional<Types::UUID>& earlier = {});

}  // namespace Vantor::Edit
