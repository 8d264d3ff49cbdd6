#pragma once

#include <array>
#include <string>
#include <vector>

#include "Core/Comparison/SetPairing.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {

/// One difference between two partitions.
struct PartitionDifference {
  enum class Kind {
    kMissingSet,       ///< the left partition has a set or dark set without a partner
    kAddedSet,         ///< the right partition has one
    kMissingProperty,  ///< only the left set has the property
    kAddedProperty,    ///< only the right set has it
    kValue,            ///< a property's values differ, or the octets of dark KLVs
    kReference,        ///< a property refers to sets that are not partners, or on one side to no set
    kMapping           ///< an InstanceUID corresponds to different ones of the other partition
  };

  Kind kind;
  std::string set;          ///< the symbol, or the key of one without definition
  std::string instanceUID;  ///< of the left set, of the right one for `kAddedSet`; empty for none
  std::string property;     ///< with the index of a collection's first item that differs; empty for whole sets
  std::string left;         ///< the value as text, shortened; empty for none
  std::string right;
  std::string otherName = {};  ///< the common name of the property, or of the whole set; empty for none
  /// The set itself: of the left partition, of the right one for `kAddedSet`; null for a dark set. Belongs to its
  /// partition.
  const MetadataSet* place = nullptr;

  /// A property of a set; both belong to their partition.
  struct Property {
    const MetadataSet* set = nullptr;
    const Element* element = nullptr;  ///< null where there is none: of whole sets and dark sets, and on one side alone
  };
  Property leftProperty = {};
  Property rightProperty = {};
};

/// The name of a kind of difference, such as "missing set".
const char* name(PartitionDifference::Kind kind);

/// Differences that do not change the meaning of a partition, with their names. Each is counted.
///
/// - texts that are equal but for final NULs, in the namespaces of the vocabularies; one text each
/// - octets of BER length fields, of a set or of an item in a set coded 0x13
/// - the fewest sets that would have to move to bring both partitions into one order
/// - sets whose common properties stand in another order
/// - the same property under another local tag, or under none as long as it is not written
/// - a collection without items that the definition does not demand, in one of the sets only
/// - collections without items, with another item size
/// - dark KLVs that are a dark group on one side and a dark set on the other
/// - items of equal dark KLVs whose local tags have different labels in the primers, or, for static tags that the
///   primers lack, in the dictionaries
/// - sets whose keys differ in octet 6, the coding, or octet 8, the version
/// - object directories and their roots, which hold offsets of the sets in a file
#define VANTOR_FOR_EACH_INSIGNIFICANT_DIFFERENCE(X)              \
  X(kTrailingNULs, "trailing NULs of strings")                   \
  X(kBEROctets, "BER octet counts")                              \
  X(kSetOrder, "sets in another order")                          \
  X(kPropertyOrder, "sets with properties in another order")     \
  X(kLocalTags, "local tag numbers")                             \
  X(kPrimerLabels, "primer labels of unknown static tags")       \
  X(kEmptyCollections, "empty optional collections in one only") \
  X(kEmptyItemSizes, "item sizes of empty collections")          \
  X(kDarkKinds, "dark groups that came back as dark sets")       \
  X(kDarkLabels, "labels of local tags in dark sets")            \
  X(kKeyOctets, "keys that differ in octets 6 or 8")             \
  X(kObjectDirectories, "object directories with other offsets")

enum class InsignificantDifference {
#define VANTOR_ENUMERATE(symbol, text) symbol,
  VANTOR_FOR_EACH_INSIGNIFICANT_DIFFERENCE(VANTOR_ENUMERATE)
#undef VANTOR_ENUMERATE
      kEnd
};

const char* name(InsignificantDifference kind);

/// What a comparison of two partitions found.
struct PartitionComparison {
  static constexpr std::size_t kInsignificantKinds = static_cast<std::size_t>(InsignificantDifference::kEnd);

  bool isEqual() const { return differences.empty(); }
  uint64 count(InsignificantDifference kind) const { return insignificant[static_cast<std::size_t>(kind)]; }

  uint64 sets = 0;        ///< pairs, and sets without partner; dark ones included
  uint64 properties = 0;  ///< of pairs: properties, common or not
  uint64 differingSets = 0;
  uint64 differingProperties = 0;
  std::vector<PartitionDifference> differences;  ///< by the left partition's order; added sets last
  std::array<uint64, kInsignificantKinds> insignificant{};
};

/// Compares two partitions set by set (see `SetPairing`) and property by property.
///
/// Valid and misplaced properties are the same property when they have one label, unknown ones when they have one
/// static tag or when their dynamic tags mean one label in their primers. Values are compared by type and octets,
/// references by whether their targets are partners, InstanceUIDs by whether each always stands for the same one on the
/// other side; with `Pairing::kByIdentifier`, references to sets that neither partition has are equal when their
/// InstanceUIDs are. Only the differences of `InsignificantDifference` are ignored, and counted. Of the primers, only
/// the labels of properties and of items in dark KLVs are compared.
///
/// Takes time in proportion to the partitions' sizes (the order of n sets: n log n). Any number of threads may compare.
PartitionComparison comparePartitions(const PartitionMetadata& left, const PartitionMetadata& right,
                                      Pairing pairing = Pairing::kByPlace);

}  // namespace Vantor
