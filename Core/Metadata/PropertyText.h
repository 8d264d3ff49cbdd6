#pragma once

#include <string>
#include <string_view>

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Types/SimpleDataType.h"

/// The values of properties as people write them. A type has its texts (Core/Types/Text/TypeText.h); what a property is
/// for adds others: names of numbers and labels, timecodes, aspect ratios, language tags. `docs/values.md` lists them.
namespace Vantor {

/// The property that a value stands in, and its set. Either may be null where it is not known.
struct PropertyPlace {
  const MetadataSet* set = nullptr;
  const MetaMetadata::MetaElement* definition = nullptr;
};

/// The text of a value, which `parseProperty` reads back as the same octets there; texts without their final NULs.
wstring printProperty(const PropertyPlace& place, const Types::SimpleDataType& value);
/// The same for a value that is no collection, or for an item of one.
wstring printItem(const PropertyPlace& place, const Types::SimpleDataType& item);

/// Whether values of a type have texts of their own in that place.
bool hasForm(const PropertyPlace& place, Types::Identifiers::Identifier type);

/// Octets that did not decode: "0x[D83D]".
wstring printRawOctets(const Types::SimpleDataType& value);

/// The value of the property that a text is.
/// @param place  its definition is known.
/// @throws InvalidFormat with what the property takes and examples: "'x' is not a timecode or a number of frames; for
///         example 10:00:00:00"; for a part of a name that several labels have, with some of these.
auto_ptr<Types::SimpleDataType> parseProperty(const PropertyPlace& place, std::u16string_view text);

}  // namespace Vantor
