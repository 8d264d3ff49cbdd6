#pragma once

#include <string>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/ReferenceElement.h"
#include "Core/Metadata/SimpleElement.h"
#include "Core/Types/Types.h"

/// Shared by the tests of the model: a small dictionary, octets of sets, and partitions made of either.
namespace Vantor {

/// Sets "Preface" (the key of that set), "Thing" (06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.A0.00) and "Other" (the
/// same with A1).
///
/// Every set has InstanceUID (3C0A). A Thing has, in order of definition and with static tags from 4001: Number UInt32,
/// Text UTF16String, Flag Boolean, Version ProductVersion, Generation UUID, Child StrongReference, Children batch of
/// these, Ordered array of these, Peer WeakReference, Peers array of these, Numbers array of UInt16, Needed batch of
/// UInt16, which alone is required, Texts array of UTF16String, Data DataStream, Ascii ISO7String, Utf8 UTF8String; and
/// Dynamic UInt8, which has no static tag. A Preface has Child (4006) and Children (4007). An Other has, with static
/// tags from 5001: Foreign UInt16, ForeignChild StrongReference, ForeignNumbers array of UInt16, and the dynamic
/// ForeignDynamic UInt8. Labels ascend in the reverse of this order.
SharedPtr<const MetaMetadata::Dictionary> testDictionary();

KLV::Key keyOf(const std::string& set);
const MetaMetadata::MetaElement& definitionOf(const std::string& property);
const Types::UniversalLabel& labelOf(const std::string& property);

/// The UUID of twelve zero octets and a number.
Types::UUID uid(uint32 number);

/// Octets from hexadecimal digits in either case; blanks between them mean nothing.
Bytes hex(const std::string& digits);
/// The same, in upper case and without blanks.
std::string hexOf(const uint8* octets, std::size_t size);
std::string hexOf(const Bytes& octets);
/// 16 octets in hexadecimal digits.
std::string hexOf(const Types::UUID& uuid);

/// The items of a set as they stand in a file.
class Items {
 public:
  /// @param lengthOctets  2 for a set coded 0x53, else the octets of a BER length.
  explicit Items(uint8 lengthOctets = 2) : lengthOctets_(lengthOctets) {}
  Items& item(uint16 tag, const Bytes& value);
  Items& item(uint16 tag, const std::string& digits) { return item(tag, hex(digits)); }
  Items& instanceUID(uint32 number) { return item(0x3c0a, hexOf(uid(number))); }
  /// For the items that follow.
  Items& lengthOctets(uint8 octets);
  const Bytes& bytes() const { return bytes_; }

 private:
  uint8 lengthOctets_;
  Bytes bytes_;
};

/// Reads a set from its items into a partition, whether the dictionary knows it or not.
MetadataSet& readSet(PartitionMetadata& partition, const KLV::Key& key, const Items& items, uint8 berOctets = 4);
MetadataSet& readSet(PartitionMetadata& partition, const std::string& set, const Items& items, uint8 berOctets = 4);

/// Adds a set with an InstanceUID, whose properties are unset.
MetadataSet& addSet(PartitionMetadata& partition, const std::string& set, uint32 number);
/// A valid property of a set; it becomes present.
Element& property(MetadataSet& set, const std::string& name);
template <class Kind>
Kind& property(MetadataSet& set, const std::string& name) {
  return dynamic_cast<Kind&>(property(set, name));
}
/// Gives a simple property a value.
void setValue(MetadataSet& set, const std::string& name, const Types::SimpleDataType& value);
/// Gives a property a reference, or a collection of references one more.
void refer(MetadataSet& set, const std::string& name, uint32 number);
/// Adds an unknown property.
Element& addUnknown(MetadataSet& set, uint16 tag, const Bytes& value);

/// A key that the dictionary does not know, of a local set.
KLV::Key darkGroupKey();
/// One of a KLV that is no local set.
KLV::Key darkSetKey();

/// What a set writes.
Bytes written(const MetadataSet& set, PartitionMetadata& partition);

}  // namespace Vantor
