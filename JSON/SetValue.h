#pragma once

#include <vector>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/UnknownTags.h"
#include "JSON/Refusal.h"
#include "JSON/Value.h"

/// The sets of a partition as JSON: docs/json.md.
namespace Vantor::JSON {

/// A set or dark set as an object.
/// @param tags  of its partition.
Value valueOf(const PartitionMetadata::Entry& entry, const PartitionDictionary& tags);

/// Whether the object of a set is that of a dark set.
bool isDark(const Value& json);
/// Keeps the local tags used in a dark set from properties, for which only the primer of its file has a meaning.
/// @throws Refusal.
void reserveTags(const Value& darkSet, PartitionDictionary& tags);

/// Appends the marks of the unknown properties of a set. Those that are none are left out: `addSet` refuses them.
void appendUnknownMarks(const Value& set, const MetaMetadata::Dictionary& dictionary, std::vector<UnknownMark>& marks);

/// The identifier in a member. @throws Refusal.
Types::UUID instanceUIDIn(const Value& json, std::string_view name);

/// Adds the set that an object is at the end of a partition.
/// @param unknown      receives what the dictionary lacks, which is left out then; null to refuse it.
/// @param diagnostics  receives what else is odd, with the place within the object.
/// @throws Refusal, with the place within the object.
void addSet(const Value& json, PartitionMetadata& partition, std::vector<UnknownName>* unknown,
            Diagnostics& diagnostics);

}  // namespace Vantor::JSON
