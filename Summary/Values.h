#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/SetValues.h"
#include "Summary/Summary.h"

/// Values of sets as fields of summaries: none where a property has no value that means anything.
namespace Vantor::Summary {

/// A text with NULs inside, too, which its type does not decode: with these NULs, without those at its end.
std::optional<std::string> textIn(const MetadataSet& set, std::string_view property);
/// As people write it, whatever its type.
std::optional<std::string> printedIn(const MetadataSet& set, std::string_view property);
std::optional<uint32> numberIn(const MetadataSet& set, std::string_view property);
/// Unless one of the numbers is 0 or less.
std::optional<Ratio> ratioIn(const MetadataSet& set, std::string_view property);
/// Whatever its numbers are.
std::optional<Ratio> givenRatioIn(const MetadataSet& set, std::string_view property);
std::optional<Types::Timestamp> dateIn(const MetadataSet& set, std::string_view property);
/// The name of the number in its enumeration.
std::optional<std::string> nameIn(const MetadataSet& set, std::string_view property);
std::optional<Label> labelIn(const MetadataSet& set, std::string_view property);
std::vector<Label> labelsIn(const MetadataSet& set, std::string_view property);

/// Whether a set is of a kind or of one that inherits from it.
bool isKind(const MetadataSet& set, std::string_view symbol);

/// The first set that a property refers to; null when there is none.
const MetadataSet* targetIn(const PartitionMetadata& metadata, const MetadataSet& set, std::string_view property);
/// The sets that a property refers to.
std::vector<const MetadataSet*> targetsIn(const PartitionMetadata& metadata, const MetadataSet& set,
                                          std::string_view property);

}  // namespace Vantor::Summary
