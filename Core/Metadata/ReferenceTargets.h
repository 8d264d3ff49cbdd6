#pragma once

#include <vector>

#include "Core/Metadata/Element.h"

namespace Vantor {

class MetadataSet;
class PartitionMetadata;

/// The sets that a set refers to, in the order of its definition; of those that share an InstanceUID the first.
std::vector<MetadataSet*> targetsOf(const MetadataSet& set, const PartitionMetadata& partition, ReferenceKinds kinds);

/// The sets that strong references lead to from some sets, directly or through others, the nearest first, each once.
/// One of those sets is among them only where a reference leads to it. Takes time in proportion to the sets reached.
std::vector<MetadataSet*> reachedFrom(const std::vector<MetadataSet*>& sets, const PartitionMetadata& partition);

}  // namespace Vantor
