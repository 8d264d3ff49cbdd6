#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "Core/KLV/Key.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Types.h"
#include "Core/Types/UUID.h"
#include "Registers/Entries.h"

/// The definitions that the sets of a MetaDictionary hold (ST 377-1), as they stand in a file: nothing is resolved or
/// refused. Two that clash are in one order, whatever that of their sets. Names are UTF-8, of any characters;
/// identifications may have their halves swapped.
namespace Vantor::Registers {

struct FileDefinition {
  std::optional<KLV::Key> identification;
  std::string name;
  std::optional<Types::UUID> instanceUID;
  uint32 number = 0;  ///< of the set in the partition, from 1
};

struct FileClass : FileDefinition {
  std::optional<KLV::Key> parent;
  bool isConcrete = true;
  std::vector<Types::UUID> properties;  ///< the InstanceUIDs of their definitions
};

struct FileProperty : FileDefinition {
  std::optional<KLV::Key> type;
  std::optional<KLV::Key> memberOf;  ///< a class that does not list it
  bool isOptional = true;
  uint16 localTag = 0;
};

struct FileType : FileDefinition {
  TypeKind kind = TypeKind::kOther;
  bool isExtendible = false;  ///< an enumeration whose values are labels
  std::optional<KLV::Key> base;
  uint32 size = 0;
  bool isSigned = false;
  Templates::vector<std::string> elementNames;
  Templates::vector<int64> elementNumbers;
  Templates::vector<KLV::Key> elementLabels;
};

/// All definitions of a partition, whether or not a MetaDictionary set refers to them. In the order of their
/// identifications, names and InstanceUIDs, so that the order of the sets, which documents change, does not matter.
struct MetaDictionary {
  /// @param metadata  read with a dictionary that has the sets of MetaDictionaries, as the built-in one does.
  explicit MetaDictionary(const PartitionMetadata& metadata);

  bool isEmpty() const { return classes.empty() && properties.empty() && types.empty(); }
  /// Writers refer to a definition by its identification or by the InstanceUID of its set: the identification.
  KLV::Key identificationOf(const KLV::Key& reference) const;

  Templates::vector<FileClass> classes;
  Templates::vector<FileProperty> properties;
  Templates::vector<FileType> types;
  std::unordered_map<Types::UUID, uint32> propertiesByInstance;  ///< places in `properties`
  std::unordered_map<KLV::Key, KLV::Key, KLV::KeyHash> identificationsByInstance;

 private:
  void enter(const FileDefinition& one);
};

}  // namespace Vantor::Registers
