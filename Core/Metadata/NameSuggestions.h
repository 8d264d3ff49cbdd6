#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Core/MetaMetadata/Dictionary.h"

/// " (did you mean 'Preface'?)", for messages about names that the dictionary lacks; empty where nothing is near.
/// Candidates are symbols, tag names and common names, and what other words stand for (`MetaMetadata::symbolsMeantBy`);
/// shown are the symbol and the common name. Costs a comparison with each of them.
namespace Vantor {

class PartitionMetadata;

/// Sets that the partition has come first.
std::string suggestSet(const PartitionMetadata& partition, std::string_view name);
/// @param sets  whose properties are meant.
std::string suggestProperty(const std::vector<const MetaMetadata::MetaMetadataSet*>& sets, std::string_view name);

}  // namespace Vantor
