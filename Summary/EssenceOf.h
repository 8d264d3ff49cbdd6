#pragma once

#include "Core/Metadata/PartitionMetadata.h"
#include "Summary/Summary.h"

namespace Vantor::Summary {

/// @param descriptor  a set that inherits from FileDescriptor.
Essence essenceOf(const PartitionMetadata& metadata, const MetadataSet& descriptor);

}  // namespace Vantor::Summary
