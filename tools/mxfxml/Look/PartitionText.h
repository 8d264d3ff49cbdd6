#pragma once

#include <string>

#include "Core/Dictionary/Definitions.h"
#include "Core/MXF/FileStructure.h"

/// The structure of a file as text for people.
namespace Vantor::Tool {

/// "header", "body" or "footer".
std::string nameOf(KLV::PartitionKind kind);
/// Such as "closed complete".
std::string nameOf(KLV::PartitionStatus status);

/// Size, version, operational pattern and essence containers.
/// @param definitions  name labels.
std::string describeFile(const MXF::FileStructure& structure, const Definitions& definitions);

/// How many partitions there are, and a row for each.
std::string describePartitions(const MXF::FileStructure& structure);

}  // namespace Vantor::Tool
