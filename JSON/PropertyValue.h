#pragma once

#include "Core/Metadata/PropertyText.h"
#include "Core/Platform/Containers.h"
#include "JSON/Diagnostic.h"
#include "JSON/Value.h"

/// The values of properties as JSON: docs/json.md.
namespace Vantor::JSON {

/// The value of a property. Reading it back gives the same octets, but for the final NULs of a text and the item size
/// of a collection without items, which are left out.
///
///     integers           numbers; text beyond 2^53, which not every program holds
///     numbers that people write otherwise, such as timecodes and enumerations
///                        {"value": 900000, "text": "10:00:00:00"}
///     Booleans, texts    as such
///     Rational           {"numerator": 30000, "denominator": 1001, "value": 29.97002997002997, "text": "30000/1001"};
///                        without a value where the denominator is 0
///     ProductVersion     {"major": 1, "minor": 2, "patch": 3, "build": 4, "release": 1, "text": "1.2.3.4 release"}
///     Timestamp, identifiers, references
///                        text, as `printProperty` writes it
///     labels             {"value": "06.0E.2B.34....", "label": "BT709"}; the label only where it is known
///     runs of octets     {"octets": "0A1B"}, with the text of `printProperty` where it has another
///     arrays, batches    arrays of these
///     no value           null
///
/// Every value may stand as {"octets": "..."}: one does that would not be read back as the same octets.
/// @param place  with its definition. @param value  null for a property without value.
Value valueOf(const PropertyPlace& place, const Types::SimpleDataType* value);

/// The same for a property of a set; the octets of one that was not read.
Value valueOf(const MetadataSet& set, const Element& property);

/// The value that a JSON value is. Takes what `valueOf` makes, and texts as people write them (`parseProperty`).
/// Members for people, such as "text" and "label", are ignored here; see `requireAgreement`.
/// @param place  with its definition.
/// @return null for JSON's null: the property has no value.
/// @throws Refusal.
auto_ptr<Types::SimpleDataType> valueFrom(const PropertyPlace& place, const Value& json);

/// Whether `valueFrom` may need other properties of the set: timecodes as text have the rate of their set.
bool dependsOnSet(const PropertyPlace& place, const Value& json);

/// Compares what JSON has for people with the value.
/// @param place        with set and definition; all other properties of the set have their values.
/// @param diagnostics  receives labels that the dictionary does not know, with their place in the value.
/// @throws Refusal for a contradiction.
void requireAgreement(const PropertyPlace& place, const Value& json, const Types::SimpleDataType& value,
                      Diagnostics& diagnostics);

/// The octets of a value, {"octets": "..."}, as digits.
Value octetsOf(const uint8* octets, std::size_t size);
/// The octets of such a value, which may have a "text" for people. @throws Refusal.
Bytes octetsIn(const Value& json);

}  // namespace Vantor::JSON
