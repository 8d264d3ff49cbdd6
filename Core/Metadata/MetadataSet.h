#pragma once

#include <optional>
#include <type_traits>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/KLV/Key.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Metadata/Element.h"
#include "Core/Platform/Containers.h"
#include "Core/Types/LocalTag.h"
#include "Core/Types/UUID.h"

namespace Vantor {

class PartitionDictionary;
class PartitionMetadata;

/// One metadata set: a key and its properties.
///
/// The *valid* properties are those that the set's definition lists; they are kept in the order of their universal
/// labels. The *invalid* ones are misplaced (the dictionary knows them as properties of another set) or unknown; they
/// are kept in the order in which they were met. A set belongs to one partition and is changed by one thread at a time.
class MetadataSet {
 public:
  using Elements = std::vector<auto_ptr<Element>>;

  /// Steps over the properties of a set; a read-only step passes over unset ones.
  template <bool Const>
  class ElementIterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Element;
    using difference_type = std::ptrdiff_t;
    using reference = std::conditional_t<Const, const Element&, Element&>;
    using pointer = std::conditional_t<Const, const Element*, Element*>;
    using Base = Elements::const_iterator;

    ElementIterator(Base at, Base end) : at_(at), end_(end) { skipUnset(); }
    reference operator*() const { return **at_; }
    pointer operator->() const { return at_->get(); }
    ElementIterator& operator++() {
      ++at_;
      skipUnset();
      return *this;
    }
    bool operator==(const ElementIterator& other) const { return at_ == other.at_; }
    bool operator!=(const ElementIterator& other) const { return at_ != other.at_; }

   private:
    void skipUnset() {
      while (Const && at_ != end_ && !(*at_)->isPresent()) ++at_;
    }
    Base at_;
    Base end_;
  };
  using iterator = ElementIterator<false>;
  using const_iterator = ElementIterator<true>;

  /// A set without properties. @param definition  null for a set that the dictionary does not know.
  MetadataSet(const KLV::Key& key, const MetaMetadata::MetaMetadataSet* definition);
  virtual ~MetadataSet();
  MetadataSet(const MetadataSet&) = delete;
  MetadataSet& operator=(const MetadataSet&) = delete;

  /// The key as it was read or given, all 16 octets of it.
  const KLV::Key& key() const { return key_; }
  /// The definition; null when the dictionary has none.
  const MetaMetadata::MetaMetadataSet* definition() const { return definition_; }
  /// What messages call the set: its symbol, or its key when it has no definition.
  std::string name() const;
  /// The same with the InstanceUID behind it, for a set that has one.
  std::string fullName() const;

  void accept(Metadata::Visitors::MetadataSetVisitor& visitor) const { visitor.visit(*this); }
  void accept(Metadata::Visitors::NonConstMetadataSetVisitor& visitor) { visitor.visit(*this); }

  iterator begin() { return {elements_.begin(), elements_.end()}; }
  iterator end() { return {elements_.end(), elements_.end()}; }
  const_iterator begin() const { return {elements_.begin(), elements_.end()}; }
  const_iterator end() const { return {elements_.end(), elements_.end()}; }
  iterator invalidBegin() { return {invalid_.begin(), invalid_.end()}; }
  iterator invalidEnd() { return {invalid_.end(), invalid_.end()}; }
  const_iterator invalidBegin() const { return {invalid_.begin(), invalid_.end()}; }
  const_iterator invalidEnd() const { return {invalid_.end(), invalid_.end()}; }

  /// The valid property with a label (octet 8 ignored), unset ones included; null when the set has none.
  Element* find(const Types::UniversalLabel& label);
  const Element* find(const Types::UniversalLabel& label) const;

  /// Adds a valid property without a value, or returns the one that is there.
  /// @param attribute  one of the definition's attributes.
  Element& createElement(const MetaMetadata::MetaAttribute& attribute);
  /// Adds a misplaced or unknown property, present and without a value. A misplaced one is of the kind that its
  /// definition tells; an unknown one is a `SimpleElement`. The set owns it.
  Element& createInvalidElement(auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute);

  /// Takes a property out, valid or not, with its value.
  /// @param element  of this set; it is gone afterwards.
  void remove(const Element& element);

  /// The present properties in the order of the definition, then the invalid ones as met.
  std::vector<const Element*> inDefinitionOrder() const;
  /// The present properties as they are written: those that were read in the order of the file, then the others in the
  /// order of the definition.
  std::vector<const Element*> inWritingOrder() const;

  /// The set's InstanceUID; null when the property is missing or has no value.
  const Types::UUID* instanceUID() const;

  /// Octets of the set's BER length field: as read, else 4.
  uint8 berLength() const { return berLength_; }
  void setBerLength(uint8 octets) { berLength_ = octets; }

  /// Writes key, length and the present properties (`inWritingOrder`). A property that was not read gets its local tag
  /// from the partition, which may enter it into the primer. A set with a value over 65,535 octets is written with
  /// coding octet 0x13 in its key.
  virtual void serialize(DataIO::DataSink& sink, PartitionDictionary& tags) const;

 protected:
  void setInstanceUID(const Types::UUID* instanceUID);

 private:
  friend class PartitionMetadata;
  friend class SimpleElement;
  friend class SetReader;

  void setPartition(PartitionMetadata& partition);
  void valueChanged(const SimpleElement& element);
  Elements::iterator position(const Types::UniversalLabel& label);
  void createUnsetElements();

  KLV::Key key_;
  const MetaMetadata::MetaMetadataSet* definition_;
  Elements elements_;                       // by label
  Elements invalid_;                        // as met
  std::vector<const Element*> readOrder_;   // as they stood in the file
  PartitionMetadata* partition_ = nullptr;  // told of InstanceUIDs
  std::size_t ordinal_ = 0;                 // the set's place among the partition's sets
  std::optional<Types::UUID> instanceUID_;
  uint8 berLength_ = 4;
};

/// A local set whose key the dictionary does not know. Its bytes are kept as they were read; of its properties only the
/// InstanceUID is understood, so that references find it.
class DarkParsedGroup : public MetadataSet {
 public:
  /// @param value        everything after the set's key and length.
  /// @param instanceUID  what one of the items in it says; none when no item does.
  DarkParsedGroup(const KLV::Key& key, uint8 berLength, Bytes value,
                  const std::optional<Types::UUID>& instanceUID = std::nullopt);

  const Bytes& value() const { return value_; }
  void serialize(DataIO::DataSink& sink, PartitionDictionary& tags) const override;

 private:
  Bytes value_;
};

}  // namespace Vantor
