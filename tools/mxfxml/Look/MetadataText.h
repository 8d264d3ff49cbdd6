#pragma once

#include <map>
#include <string>

#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"

/// Header metadata as counts for people.
namespace Vantor::Tool {

/// How many sets and properties of which kind a partition has.
struct Counts {
  explicit Counts(const PartitionMetadata& metadata);

  std::map<std::string, std::size_t> known;  ///< by names
  std::map<std::string, std::size_t> dark;   ///< by key
  std::size_t unknownProperties = 0;         ///< that the dictionary does not have
  std::size_t unreadableValues = 0;          ///< properties that it has, kept as octets
  std::size_t misplacedProperties = 0;

 private:
  void count(const MetadataSet& set);
  std::size_t& countFor(const MetadataSet& set, const Element& element);
};

/// The sum of all counts.
std::size_t total(const std::map<std::string, std::size_t>& counts);
/// A row for each.
std::string list(const std::map<std::string, std::size_t>& counts);

/// How many sets there are, then what cannot be decoded.
/// @param setList  what stands for the sets that the dictionary knows.
std::string describeMetadata(const PartitionMetadata& metadata, const Counts& counts,
                             const MXF::PartitionChoice& choice, const std::string& setList);

}  // namespace Vantor::Tool
