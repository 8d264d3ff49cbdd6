#pragma once

#include <optional>
#include <string>

#include "Core/Metadata/PropertyText.h"
#include "Core/Types/Text/TypeText.h"

/// What properties add to the texts of their types.
namespace Vantor {

/// What the texts of a property are, for refusals; as in a `TypeText`.
struct TextNoun {
  std::string noun;
  std::string examples;
};

/// One way in which the texts of properties differ from those of their types.
struct PropertyForm {
  /// @param type  of the value, or of an item of a collection.
  bool (*applies)(const PropertyPlace& place, Types::Identifiers::Identifier type);
  TextNoun (*noun)(const PropertyPlace& place);
  /// None for values that are printed as their type.
  std::optional<wstring> (*print)(const PropertyPlace& place, const Types::SimpleDataType& item);
  /// None for texts that are read as their type.
  std::optional<Types::ParsedValue> (*parse)(const PropertyPlace& place, Types::Identifiers::Identifier type,
                                             std::u16string_view text);
};

extern const PropertyForm kEnumerationForm;   ///< names of numbers
extern const PropertyForm kLabelForm;         ///< symbols and names of labels
extern const PropertyForm kTimecodeForm;      ///< timecodes of sets that have a timecode base
extern const PropertyForm kActiveFormatForm;  ///< active format descriptors
extern const PropertyForm kIndirectForm;      ///< texts and integers whose type stands in the value
extern const PropertyForm kAspectRatioForm;   ///< "16:9"
extern const PropertyForm kLanguageForm;      ///< language tags
extern const PropertyForm kChunkForm;         ///< IDs of RIFF chunks

}  // namespace Vantor
