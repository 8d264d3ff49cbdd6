#pragma once

#include <string>

#include "Core/Dictionary/Definitions.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Registers/RegisterTypes.h"

namespace Vantor::Registers {

/// A definition of a file that is not what the file makes it; `describe` renders it in English.
struct DefinitionProblem {
  enum class Kind : uint8 {
    // The definition is left out.
    kNoIdentification,  ///< it is neither a label nor a UUID
    kNoSetKey,          ///< the identification of a class is a label of something else
    kNoPropertyKey,     ///< the identification of a property is a label of something else
    kObjectDirectory,   ///< a class whose sets the library reads itself
    kSecondDefinition,  ///< detail: the name of the first one with this identification
    kNoClass,           ///< no class of the file or the dictionary has the property
    kOtherTags,         ///< the dictionary has the property with several local tags, so that the class cannot have it
    kTooMany,           ///< the definitions of the file are more than a dictionary holds: none is read
    // It is read in part.
    kMissingProperty,  ///< detail: the InstanceUID of a property that a class lists and the file lacks
    kMissingParent,    ///< the class inherits from InterchangeObject instead
    kCircle,           ///< a class or a type leads to itself: its parent is InterchangeObject, its values are bytes
    kTooDeep,          ///< a class with too many ancestors inherits from InterchangeObject
    kTooManyBases,     ///< a type is made of too many types in a row: bytes
    kMissingType,      ///< a type is made of one that neither the file nor the registers have: bytes
    kTagTaken,         ///< detail: the local tag, which is that of another property
    kUnnamedValues,    ///< an enumeration has numbers without names, or names without numbers
    kRenamed,          ///< detail: its name here, as its own is not free or not a name
    kBytes,            ///< a property whose values are read as bytes: `reason`
  };
  Kind kind;
  std::string definition;  ///< "class Name", "property Name" or "type Name", as the file names it
  std::string detail = {};
  BytesReason reason = BytesReason::kNone;
};

/// One line in English.
std::string describe(const DefinitionProblem& problem);
/// Whether the definition is left out; otherwise it is read in part.
inline bool isLeftOut(const DefinitionProblem& problem) { return problem.kind <= DefinitionProblem::Kind::kTooMany; }

/// What was read from a file's own dictionary.
struct FileDefinitions {
  uint32 source = 0;     ///< the place in `Definitions::sources()` that the definitions have as their origin
  bool isThere = false;  ///< whether the file has any definitions, be they those of the dictionary
  std::size_t sets = 0;
  std::size_t properties = 0;
  std::size_t types = 0;                          ///< that the registers lack
  std::size_t extensions = 0;                     ///< properties of the dictionary that sets of the dictionary get
  Templates::vector<DefinitionProblem> problems;  ///< by kind of definition

  /// Whether the definitions have anything that was not there before.
  bool isNew() const { return sets + properties + extensions != 0; }
};

/// The namespaces of the definitions of files in XML, those of all files alike. Prefixes are "own" and "ownP", with a
/// number behind them where another namespace has these.
inline constexpr std::string_view kOwnSets = "urn:vantor:own:sets";
inline constexpr std::string_view kOwnProperties = "urn:vantor:own:properties";

/// Adds the classes, properties, enumerations and labels that the MetaDictionary of a file defines (ST 377-1) and the
/// definitions lack. What these have stays as it is; classes that they have get the properties that only the file gives
/// them.
///
/// Types become core types by the rules of the registers. Names that are taken, or that several definitions have, get
/// digits of the key behind them. Nothing depends on the order of the sets. A definition that is damaged is left out,
/// or read in part; no file makes this function throw or the definitions invalid. Takes time in proportion to the sets.
/// @param metadata  read with a dictionary that has the sets of MetaDictionaries, as the built-in one does.
/// @param name      of the file, for messages.
/// @param into      valid definitions, such as the built-in ones.
FileDefinitions addFileDefinitions(const PartitionMetadata& metadata, std::string name, Definitions& into);

}  // namespace Vantor::Registers
