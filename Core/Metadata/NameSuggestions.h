#pragma once

#include <string>
#include <string_view>

#include "Core/MetaMetadata/Dictionary.h"

/// " (did you mean 'Preface'?)", for messages about names that the dictionary lacks; empty where nothing is near.
/// Candidates are symbols, tag names and common names. Costs a comparison with each of them.
namespace Vantor {

std::string suggestSet(const MetaMetadata::Dictionary& dictionary, std::string_view name);
/// @param set  whose properties are meant.
std::string suggestProperty(const MetaMetadata::MetaMetadataSet& set, std::string_view name);

}  // namespace Vantor
