#pragma once

#include "Core/Metadata/PartitionMetadata.h"
#include "JSON/Value.h"
#include "Summary/Summary.h"

/// Summaries as JSON: docs/json.md.
namespace Vantor::Tool {

/// Adds the members of a summary to an object; what the file does not have is left out.
void addSummary(const Summary::MetadataSummary& summary, JSON::Value& object);

JSON::Value jsonOf(const std::vector<Summary::Partition>& partitions);

/// How many sets of each kind there are, by symbol, and how much of the metadata is not decoded.
JSON::Value countsOf(const PartitionMetadata& metadata);

}  // namespace Vantor::Tool
