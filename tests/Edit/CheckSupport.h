#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "Edit/Check.h"

/// Shared by the tests of rules: files that were changed in one way.
namespace Vantor::Edit {

/// A change of a file of tests/data, and the rule that it is about.
struct Mutation {
  const char* rule;
  /// Changes the metadata of the header partition and of the partitions that repeat them.
  std::function<void(PartitionMetadata&)> edit = {};
  /// Changes anything else, afterwards.
  std::function<void(FileState&)> change = {};
  const char* sample = "op1a.mxf";
};
inline void PrintTo(const Mutation& mutation, std::ostream* to) { *to << mutation.rule; }
std::string nameOf(const testing::TestParamInfo<Mutation>& info);

FileState stateOf(const Path& file);
FileState stateOf(const char* sample);
FileState mutated(const Mutation& mutation);
/// The findings that the mutation brings, each as "code: set: property: sentence".
std::vector<std::string> newFindingsOf(const Mutation& mutation);
/// Their codes, each once.
std::vector<std::string> newCodesOf(const Mutation& mutation);

/// The metadata of a sample's header partition, edited, written and read again.
SharedPtr<const PartitionMetadata> edited(const char* sample, const std::function<void(PartitionMetadata&)>& edit);
/// The same, unedited, with another tag in the first row of the primer pack that has this one.
SharedPtr<const PartitionMetadata> withPrimerTag(const char* sample, uint16 tag, uint16 other);

/// Adds a set to a collection of references.
MetadataSet& addTo(PartitionMetadata& metadata, const char* owner, const char* collection, const char* kind);
/// Adds an event track to the material package, whose segment is a sequence of one descriptive marker.
MetadataSet& addMarker(PartitionMetadata& metadata);
/// Adds an identification with every property that it needs, and a date.
MetadataSet& addIdentification(PartitionMetadata& metadata, uint16 year);
/// Removes a set and everything that belongs to it.
void removeTree(PartitionMetadata& metadata, MetadataSet& set);

}  // namespace Vantor::Edit
