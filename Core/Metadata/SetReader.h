#pragma once

#include "Core/KLV/LocalSet.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Metadata/PartitionDictionary.h"

namespace Vantor {

/// Reads the items of one local set into a set of the model.
///
/// An item's tag means what the primer lists for it; a static tag that the primer lacks means what the set's definition
/// lists for it, or else the dictionary. A value becomes a property, misplaced where the definition does not list it,
/// only if it decodes and is written back as the same bytes. Everything else becomes an unknown property under its tag:
/// what no definition lists, what does not decode, a second item of a property, and a misplaced InstanceUID or
/// GenerationUID.
class SetReader {
 public:
  SetReader(MetadataSet& set, const PartitionDictionary& tags) : set_(set), tags_(tags) {}

  void read(const KLV::LocalSetItem& item);
  /// The same for octets that were not read from a file: the property gets no tag of its own and no place in the
  /// reading order.
  Element& place(const KLV::LocalSetItem& item);

 private:
  Element* placeValid(const MetaMetadata::MetaAttribute& attribute, const KLV::LocalSetItem& item);
  Element* placeMisplaced(const MetaMetadata::MetaElement& definition, const KLV::LocalSetItem& item);
  Element& placeUnknown(const KLV::LocalSetItem& item);

  MetadataSet& set_;
  const PartitionDictionary& tags_;
};

}  // namespace Vantor
