#pragma once

#include <string>
#include <vector>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Edit {

/// A property that an edit has changed in some sets, whose old value others still hold: a start timecode in two
/// packages, one name in two places.
struct EqualValue {
  std::string property;           ///< the symbol
  std::string value;              ///< the old one, for people
  std::vector<std::string> sets;  ///< the others by full name, in file order
  std::string otherName = {};     ///< the common name of the property in the edited set; empty for none
};

/// The texts, positions, lengths, rates and times that an edit has changed while other sets hold them in the same
/// property. Takes time in proportion to the sets.
std::vector<EqualValue> equalValuesOf(const PartitionMetadata& before, PartitionMetadata& after);

}  // namespace Vantor::Edit
