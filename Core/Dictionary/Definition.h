#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "Core/KLV/Key.h"
#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"
#include "Core/Types/UniversalLabel.h"

/// What a dictionary is made from, definition by definition. All texts are UTF-8 and belong to the `Definitions` that
/// hold the definition.
namespace Vantor {

/// Where a definition was read: a place in the list of sources of its `Definitions`, and a line from 1.
struct Origin {
  uint32 source = 0;
  uint32 line = 0;
};

/// What the values of a property are.
struct PropertyType {
  /// `kArray`, `kBatch`, or `kNone` for a single value.
  Types::Identifiers::Identifier collection = Types::Identifiers::kNone;
  /// The core type of the value or of every item. `kNone` for an enumeration that is not found yet.
  Types::Identifiers::Identifier value = Types::Identifiers::kNone;
  std::string_view enumeration;  ///< the name of the enumeration; empty for every other type
  std::string_view target;       ///< the symbol of the set that a reference leads to; empty when that is not known

  MetaMetadata::DataType dataType() const {
    if (collection == Types::Identifiers::kNone) return value;
    return {collection, value};
  }
  friend bool operator==(const PropertyType& left, const PropertyType& right) {
    return left.collection == right.collection && left.value == right.value && left.enumeration == right.enumeration &&
           left.target == right.target;
  }
};

/// A number that has a name, in an enumeration.
struct EnumerationValue {
  int64 number = 0;
  std::string_view name;
  Origin origin;
};

/// An integer type whose numbers have names. Files hold the numbers; the names are for people.
struct EnumerationDefinition {
  std::string_view name;
  Types::Identifiers::Identifier base = Types::Identifiers::kNone;
  Templates::vector<EnumerationValue> values;
  Origin origin;
};

/// The namespace that a file chose for its definitions; without one they are in that of the vocabulary.
struct ChosenNamespace {
  std::string_view prefix;
  std::string_view uri;
};

/// What a register has about an entry for people; empty where it has nothing, and for what is built in.
struct Explanation {
  std::string_view definition;  ///< in a sentence
  std::string_view document;    ///< the standard that defines it
};

struct PropertyDefinition {
  Types::UniversalLabel key;
  std::string_view symbol;
  std::string_view tagName;  ///< the export name; the symbol by default
  PropertyType type;
  uint32 chosenNamespace = 0;  ///< a place in `Definitions::namespaces()`; 0 is that of the vocabulary
  Origin origin;
  Explanation explanation = {};
};

/// How binding a property is for its set, in the words of dictionary files; ordered as `PropertyUse::requiredStatus`.
inline constexpr std::array<std::string_view, 5> kRequiredStatuses = {"required", "encoder-required",
                                                                      "decoder-required", "best-effort", "optional"};

/// A property among those of a set.
struct PropertyUse {
  uint32 property = 0;  ///< a place in `Definitions::properties()`
  uint16 staticLocalTag = 0;
  uint32 requiredStatus = 0;
  Origin origin;
};

struct SetDefinition {
  KLV::Key key;
  std::string_view symbol;
  std::string_view tagName;  ///< the export name; the symbol by default
  std::string_view parent;   ///< the symbol of the set to inherit from; empty for a root
  bool isConcrete = true;
  uint32 chosenNamespace = 0;                 ///< a place in `Definitions::namespaces()`; 0 is that of the vocabulary
  Templates::vector<PropertyUse> properties;  ///< without inherited ones
  Origin origin;
  Explanation explanation = {};
};

/// A name that people use for a set, or for a property of a set and of all that inherit from it.
struct CommonNameDefinition {
  uint32 set = 0;                  ///< a place in `Definitions::sets()`
  std::optional<uint32> property;  ///< a place in `Definitions::properties()`; none for the set itself
  std::string_view name;
  Origin origin;
};

/// A universal label that means something by itself (SMPTE ST 400): an operational pattern, a coding, a kind of track.
struct LabelDefinition {
  Types::UniversalLabel key;
  std::string_view symbol;
  std::string_view name;
  Origin origin;
  Explanation explanation = {};
};

}  // namespace Vantor
