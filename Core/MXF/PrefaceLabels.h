#pragma once

#include <optional>
#include <vector>

#include "Core/Metadata/MetadataSet.h"
#include "Core/Types/UniversalLabel.h"

/// The labels of a Preface that every partition pack of its file repeats (ST 377-1).
namespace Vantor::MXF {

/// None when the Preface has no operational pattern.
/// @throws Exceptions::InvalidFormat when it is no label of 16 octets.
std::optional<Types::UniversalLabel> operationalPatternOf(const MetadataSet& preface);

/// None when the Preface has no list, or an empty one.
/// @throws Exceptions::InvalidFormat for an item that is no label of 16 octets.
std::vector<Types::UniversalLabel> essenceContainersOf(const MetadataSet& preface);

}  // namespace Vantor::MXF
