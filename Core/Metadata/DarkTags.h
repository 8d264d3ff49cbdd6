#pragma once

#include <cstddef>

#include "Core/KLV/Key.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Types.h"

namespace Vantor {

/// Reserves the dynamic local tags used in a dark set, so that no property gets one of them: only the primer gives them
/// a meaning. Ignores octets that are not a local set, whatever their key.
void reserveDarkTags(const KLV::Key& key, const uint8* octets, std::size_t size, PartitionDictionary& tags);

}  // namespace Vantor
