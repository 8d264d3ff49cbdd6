#pragma once

#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Core/DataIO/DataSink.h"
#include "Core/KLV/Key.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "Core/Metadata/Element.h"
#include "Core/Platform/Containers.h"
#include "Core/Platform/Numbers.h"
#include "Core/Types/LocalTag.h"
#include "Core/Types/UUID.h"

namespace Vantor {

class PartitionDictionary;
class PartitionMetadata;

/// Whether a text may name a file that holds the value.
enum class TextFiles : uint8 { kRefuse, kRead };

/// One metadata set: a key and its properties.
///
/// The *valid* properties are those that the set's definition lists; they are kept in the order of their universal
/// labels. The *invalid* ones are misplaced (the dictionary knows them as properties of another set) or unknown; they
/// are kept in the order in which they were met. A set belongs to one partition and is changed by one thread at a time.
class MetadataSet : public Platform::HeapObject {
 public:
  using Elements = std::vector<auto_ptr<Element>>;

  /// Iterates over the properties of a set; the const iterator skips unset ones.
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
  /// The name for messages: the symbol, or the key of a set without definition.
  std::string name() const;
  /// The name followed by the InstanceUID, for a set that has one.
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

  /// @name Properties by name
  /// A property goes by its symbol in the register, by its tag name or by its common name, such as "EditRate". A set
  /// has the properties that its definition lists; a misplaced property that is there goes by its name too.
  ///
  ///     track.set("EditRate", Types::Rational(25, 1));
  ///     track.set("TrackID", 2);
  ///     track.set("TrackName", u"V1");
  ///     track.set("Sequence", sequence);
  ///     const auto rate = track.get<Types::Rational>("EditRate");
  ///
  /// A changed property keeps its local tag, its length octets and its place in the order of the file; setting the
  /// value that is there already changes nothing. Every function throws InvalidFormat naming the set and the property
  /// when the set can have no such property, or no such value; the set stays as it was.
  /// @{

  /// The property, unset ones included; null when the set has none. Does not throw.
  Element* find(std::string_view property);
  const Element* find(std::string_view property) const;
  /// The name as it was given and the common name, for messages: "ApplicationName (ProductName)"; the symbol in the
  /// place of a common name that was given.
  std::string namesOf(std::string_view property) const;
  /// The common name of a property, or of the set for an empty name, where that is another one than the symbol and the
  /// tag name; else empty. Does not throw.
  std::string_view otherNameOf(std::string_view property) const;
  /// Whether the property is present, even without a value, or as octets that did not decode. Does not throw.
  bool has(std::string_view property) const;

  /// The value. @throws InvalidFormat also when the property has no value, or one of another type.
  template <class Value>
  const Value& get(std::string_view property) const {
    return static_cast<const Value&>(requiredValue(property, Value::kIdentifier));
  }
  /// The value; null when the property has none. @throws InvalidFormat when it is of another type.
  template <class Value>
  const Value* tryGet(std::string_view property) const {
    return static_cast<const Value*>(valueOfType(property, Value::kIdentifier));
  }
  /// The value as people write it (Core/Metadata/PropertyText.h), which `set` reads back as the same octets. Includes
  /// values that were read as octets and have another form than their type (Core/Metadata/UnreadValue.h), and octets
  /// of no known form, as "0x[D83D]".
  /// @throws InvalidFormat also when the property has no value.
  wstring text(std::string_view property) const;

  /// Sets a copy of a value, whose type has to be that of the definition.
  /// @return whether that changed the set.
  bool set(std::string_view property, const Types::SimpleDataType& value);
  /// Sets a value from a text as people write it (Core/Metadata/PropertyText.h). Not for the InstanceUID, by which
  /// others refer to the set. A text gets as many final NULs as the one before it had; the text of the value that is
  /// there changes nothing, whatever its form.
  /// @param files  whether "@FILE" stands for the bytes of a file, where people write octets. Not for texts that others
  ///               give.
  /// @throws IOError when the file cannot be read.
  bool set(std::string_view property, std::u16string_view text, TextFiles files = TextFiles::kRefuse);
  /// Sets a property of one of the integer types, or a Boolean.
  template <class Integer, std::enable_if_t<std::is_integral_v<Integer>, int> = 0>
  bool set(std::string_view property, Integer number) {
    static_assert(!std::is_same_v<Integer, char> && !std::is_same_v<Integer, char16_t>, "give a text: u\"A\"");
    if constexpr (std::is_same_v<Integer, bool>) return setNumber(property, number ? u"1" : u"0");
    if constexpr (!std::is_same_v<Integer, bool>) return setNumber(property, Platform::toDecimal(number));
  }
  /// Refers to a set. @throws InvalidFormat also when the target has no InstanceUID.
  bool set(std::string_view property, const MetadataSet& target);

  /// Adds an item to a collection, which is made if need be.
  void append(std::string_view property, const Types::SimpleDataType& item);
  /// Adds a reference. @throws InvalidFormat also when the target has no InstanceUID.
  void append(std::string_view property, const MetadataSet& target);

  /// Takes a property out with its value. Not for the InstanceUID, by which others refer to the set.
  /// @return false when the property is not present.
  bool remove(std::string_view property);
  /// @}

  /// Adds a valid property without a value, or returns the one that is there.
  /// @param attribute  one of the definition's attributes.
  Element& createElement(const MetaMetadata::MetaAttribute& attribute);
  /// Adds a misplaced or unknown property, present and without a value. Its definition decides its kind; an unknown one
  /// is a `SimpleElement`. The set owns it.
  Element& createInvalidElement(auto_ptr<MetaMetadata::AbstractMetaAttribute> attribute);

  /// Takes a property out, valid or not, with its value.
  /// @param element  of this set; it is gone afterwards.
  void remove(const Element& element);

  /// The present properties in the order of the definition, then the invalid ones as met.
  std::vector<const Element*> inDefinitionOrder() const;
  /// The present properties in the order of writing: those from the file in its order, then the others in the order of
  /// the definition.
  std::vector<const Element*> inWritingOrder() const;

  /// The definition of a property of this set; also that of an unknown one which is the value of a known property in
  /// octets that did not decode. Null when the dictionary has none.
  const MetaMetadata::MetaElement* definitionOf(const Element& element) const;
  /// Whether a property of this set is the one that holds its InstanceUID.
  bool isInstanceUID(const Element& element) const;
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

  const MetaMetadata::MetaElement& definitionOf(std::string_view property) const;
  const Types::SimpleDataType* valueOfType(std::string_view property, Types::Identifiers::Identifier type) const;
  const Types::SimpleDataType& requiredValue(std::string_view property, Types::Identifiers::Identifier type) const;
  Element& createElement(std::string_view property);
  void refuseInstanceUID(std::string_view property, const char* verb) const;
  /// The unknown property that holds the octets of a known one; null when there is none.
  Element* findUnread(const MetaMetadata::MetaElement& definition);
  const Element* findUnread(const MetaMetadata::MetaElement& definition) const;
  /// The property that is present, or the unknown one that holds its octets; null when there is neither.
  const Element* findPresent(std::string_view property) const;
  /// Keeps octets that are no value of the property's type.
  void setOctets(std::string_view property, auto_ptr<Types::SimpleDataType> octets);
  bool setNumber(std::string_view property, const wstring& digits);

  void setPartition(PartitionMetadata* partition);
  void valueChanged(const SimpleElement& element);
  Elements::iterator position(const Types::UniversalLabel& label);
  void createUnsetElements();

  KLV::Key key_;
  const MetaMetadata::MetaMetadataSet* definition_;
  Elements elements_;                       // by label
  Elements invalid_;                        // as met
  std::vector<const Element*> readOrder_;   // as they stood in the file
  PartitionMetadata* partition_ = nullptr;  // whose index follows the InstanceUID; null for a removed set
  std::size_t ordinal_ = 0;                 // ascends along the partition's sets
  std::optional<Types::UUID> instanceUID_;
  uint8 berLength_ = 4;
};

/// A local set whose key the dictionary does not know. Its octets are kept as they were read; only the InstanceUID is
/// decoded, so that references find the set.
class DarkParsedGroup : public MetadataSet {
 public:
  /// @param value        everything after the set's key and length.
  /// @param instanceUID  from one of the items in it, if any.
  DarkParsedGroup(const KLV::Key& key, uint8 berLength, Bytes value,
                  const std::optional<Types::UUID>& instanceUID = std::nullopt);

  const Bytes& value() const { return value_; }
  void serialize(DataIO::DataSink& sink, PartitionDictionary& tags) const override;

 private:
  Bytes value_;
};

}  // namespace Vantor
