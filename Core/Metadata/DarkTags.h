#pragma once

#include <cstddef>

#include "Core/KLV/Key.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Types.h"

namespace Vantor {

/// Keeps the dynamic local tags within a set of which nothing but octets is known from being given to properties: what
/// they mean, the primer tells or nobody. Does nothing for octets that are no local set, whatever their key.
void reserveDarkTags(const KLV::Key& key, const uint8* octets, std::size_t size, PartitionDictionary& tags);

}  // namespace Vantor
