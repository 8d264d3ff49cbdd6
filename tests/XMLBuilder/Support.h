#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/Types.h"
#include "XMLUtils/EncodingType.h"
#include "XMLUtils/Holder.h"

/// Shared by the tests of XMLBuilder: small dictionaries, small partitions, and their XML as text to compare.
namespace Vantor::XMLBuilder {

/// The UUID of fifteen zero octets and a number.
Types::UUID uid(uint32 number);

/// How a definition is called in XML; a definition without tag is called by its symbol.
struct XMLName {
  std::u16string_view prefix = u"p";
  std::u16string_view uri = u"urn:p";
  std::u16string_view tag = {};

  MetaMetadata::ExtensionAttributes extensions() const;
};

/// The namespace that a property is in whose values are written as SMPTE ST 434:2014 has them.
inline constexpr std::u16string_view kSt434Elements = u"http://www.smpte-ra.org/schemas/434/2014/elements/335/2012";

/// One property of a set, and how the set lists it.
struct Listed {
  Listed(const char* property) : property(property) {}  // NOLINT(google-explicit-constructor): lists are read by eye
  Listed(const char* property, uint32 requiredStatus) : property(property), requiredStatus(requiredStatus) {}
  Listed(const char* property, std::u16string_view schemaIndex) : property(property) {
    extensions.set(MetaMetadata::kSchemaIndex, wstring(schemaIndex));
  }

  std::string property;
  uint32 requiredStatus = MetaMetadata::DictionaryBuilder::kOptional;
  MetaMetadata::ExtensionAttributes extensions;
};

/// Makes a dictionary. Every set has the property "InstanceUID".
class TestDictionary {
 public:
  enum class Kind { kStructural, kDescriptive };

  /// @param instanceUID  what that property is called.
  explicit TestDictionary(const XMLName& instanceUID = {u"rp210", u"urn:SMPTE:RP210"});
  /// Properties get labels in ascending order.
  TestDictionary& property(const std::string& symbol, MetaMetadata::DataType type, const XMLName& name = {});
  /// The set called "Preface" has the key of that set; every other one gets a key of its own.
  TestDictionary& set(const std::string& symbol, const std::vector<Listed>& properties = {}, const XMLName& name = {},
                      Kind kind = Kind::kStructural);
  TestDictionary& descriptive(const std::string& symbol, const std::vector<Listed>& properties = {});

  SharedPtr<const MetaMetadata::Dictionary> build() { return builder_.build(); }

 private:
  std::string setKey(const std::string& symbol, Kind kind);

  MetaMetadata::DictionaryBuilder builder_;
  std::map<std::string, std::string> propertyKeys_;
  unsigned sets_ = 0;
};

/// One set of a partition while it is filled. Properties are named by their symbols; numbers stand for `uid(number)`.
class TestSet {
 public:
  explicit TestSet(MetadataSet& set, const MetaMetadata::Dictionary& dictionary) : set_(set), dictionary_(dictionary) {}

  /// Gives a simple property a value, whatever its type in the dictionary.
  TestSet& value(const char* property, const Types::SimpleDataType& value);
  /// Appends an item to an array or batch.
  TestSet& item(const char* property, const Types::SimpleDataType& item);
  /// Refers to a set, strongly or weakly as the definition demands, or appends such a reference to a collection.
  TestSet& refer(const char* property, uint32 number);
  /// Makes a property present without giving it a value.
  TestSet& present(const char* property);
  /// Gives an array or batch the value of a collection without items.
  TestSet& emptied(const char* property);
  /// Adds an unknown property; without a value when that is null.
  TestSet& unknown(uint16 tag, const Types::SimpleDataType* value = nullptr);
  TestSet& unknown(uint16 tag, const Types::SimpleDataType& value) { return unknown(tag, &value); }
  /// Adds a property that belongs to other sets and returns it.
  Element& misplaced(const char* property);

  MetadataSet& operator*() const { return set_; }
  MetadataSet* operator->() const { return &set_; }

 private:
  Element& element(const char* property);

  MetadataSet& set_;
  const MetaMetadata::Dictionary& dictionary_;
};

/// A partition while it is filled; `const` is the handle, not what it holds.
class TestPartition {
 public:
  explicit TestPartition(TestDictionary& dictionary) : TestPartition(dictionary.build()) {}
  explicit TestPartition(const SharedPtr<const MetaMetadata::Dictionary>& dictionary)
      : partition_(new PartitionMetadata(dictionary)) {}

  /// Adds a set whose InstanceUID is `uid(number)`.
  TestSet add(const char* symbol, uint32 number) const;
  /// Adds a set that the dictionary does not know, with 16 octets of InstanceUID under tag 3C.0A.
  MetadataSet& addDarkGroup(uint32 number, uint8 berOctets = 4) const;
  void addDarkSet(const Bytes& value, uint8 berOctets = 4) const;
  /// Adds a row to the primer pack.
  void addPrimerEntry(uint16 tag, std::string_view label) const;

  PartitionMetadata& operator*() const { return *partition_; }
  PartitionMetadata* operator->() const { return partition_.get(); }

 private:
  auto_ptr<PartitionMetadata> partition_;
};

/// Keys that no test dictionary knows: of a local set, and of something else.
inline constexpr std::string_view kDarkGroupKey = "060e2b34.02530101.0e7f7f7f.00000100";
inline constexpr std::string_view kDarkSetKey = "060e2b34.02050101.0e7f7f7f.00000200";

/// The two flags of `partition2XML`.
struct Flags {
  bool nestStrongReferences;
  bool excludeNonStructural;
};
inline constexpr Flags kNested{true, false};
inline constexpr Flags kFlat{false, false};
inline constexpr Flags kNestedStructural{true, true};
inline constexpr Flags kFlatStructural{false, true};
inline constexpr Flags kAllFlags[] = {kNested, kFlat, kNestedStructural, kFlatStructural};

/// What `partition2XML` writes as plain UTF-8 text, without the XML declaration; empty when it writes nothing.
std::string exported(PartitionMetadata& partition, Flags flags = kNested);
std::string exported(PartitionMetadata& partition, const MetadataSet* start, Flags flags = kNested);
std::string exported(const TestPartition& partition, Flags flags = kNested);
std::string exported(const TestPartition& partition, const TestSet& start, Flags flags = kNested);

/// A node as plain UTF-8 text.
std::string textOf(const xercesc::DOMNode& node);

/// An XML text as tests write it, as `exported` gives it: a line break with the blanks after it is nothing beside a tag
/// and one blank inside one; `{7}` is the dotted form of `uid(7)`; and `{types}` is the declaration of that prefix,
/// for the prefixes p, rp210, s377m, types, s422mTypes, st377Types, st434 and st335 (both `kSt434Elements`), st395 and
/// groups.
std::string xml(const std::string& text);

/// With a line break between adjacent tags, so that a difference shows as one of lines.
std::string inLines(const std::string& text);

/// Compares the whole texts. A macro, so that a failure shows the test's line.
#define EXPECT_XML(actual, expected) \
  EXPECT_EQ(::Vantor::XMLBuilder::inLines(actual), ::Vantor::XMLBuilder::inLines(::Vantor::XMLBuilder::xml(expected)))

/// A document with an element to write into, for classes that write into the DOM.
class TestDocument {
 public:
  explicit TestDocument(std::u16string_view uri = u"urn:p", std::u16string_view qualifiedName = u"p:Prop");
  xercesc::DOMDocument& operator*() const { return *document_; }
  xercesc::DOMDocument* operator->() const { return document_.get(); }
  xercesc::DOMElement& element() const { return *document_->getDocumentElement(); }

 private:
  XMLUtils::Holder<xercesc::DOMDocument> document_;
};

}  // namespace Vantor::XMLBuilder
