#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"
#include "XMLBuilder/DefinitionIndex.h"
#include "XMLBuilder/NodeText.h"

namespace Vantor::XML2Partition {

/// The element of one set, in which the rules find its properties. Lives while the set is filled.
class SetSource {
 public:
  virtual ~SetSource() = default;

  /// The child that holds a property; null when there is none.
  virtual const xercesc::DOMElement* child(const MetaMetadata::MetaElement& definition) = 0;
  /// The attribute that holds an identifier. @param tagName  "InstanceUID" or "GenerationUID".
  virtual const xercesc::DOMNode* identifier(const wstring& tagName) = 0;
  /// The InstanceUID that the set gets; none when the set keeps what it was made with.
  virtual std::optional<Types::UUID> instanceUID(const xercesc::DOMNode& attribute) = 0;
  /// The container of the properties that the set's definition lacks; null when there is none.
  virtual const xercesc::DOMElement* extensions() = 0;
  virtual void readExtension(const xercesc::DOMElement& child) = 0;
  /// To be called when everything was read.
  virtual void finish() {}
};

/// Makes the collection that a property holds. @param itemSize  octets.
using MakeCollection = auto_ptr<Types::Collection> (*)(int itemSize);

/// The children that a compound value may have.
using FieldNames = std::initializer_list<const char16_t*>;

/// A child of a compound value.
struct Field {
  const char16_t* name;
  /// How the exact rules refuse a value without the child; null when it need not be there.
  const char* variable = nullptr;
  int line = 0;
};

/// How a document is read: every difference between the exact and the lossless way is an operation here, so that the
/// readers of sets, properties and values know neither. Lives for one import.
class ReadingRules {
 public:
  /// @param root    the document element.
  /// @param limits  outlive the rules.
  ReadingRules(const xercesc::DOMElement& root, BlankText blankText, PartitionMetadata& partition, const Limits& limits)
      : root_(root),
        blankText_(blankText),
        partition_(partition),
        limits_(limits),
        definitions_(partition.partitionDictionary().dictionary()) {}
  virtual ~ReadingRules() = default;
  ReadingRules(const ReadingRules&) = delete;
  ReadingRules& operator=(const ReadingRules&) = delete;

  const xercesc::DOMElement& root() const { return root_; }
  BlankText blankText() const { return blankText_; }
  PartitionMetadata& partition() { return partition_; }
  DefinitionIndex& definitions() { return definitions_; }

  // Sets.

  /// To be called for each set and dark set before it is made. @throws Exceptions::LimitExceeded.
  void countSet() {
    if (++sets_ > limits_.sets) refuseBeyond(&Limits::sets, limits_.sets);
  }

  /// The definition of the set that an element stands for; null for none.
  /// @param other  from the vocabulary, the name of the one element that may stand there beside sets; empty for none.
  virtual const MetaMetadata::MetaMetadataSet* findSet(const xercesc::DOMElement& element,
                                                       std::u16string_view other = {}) = 0;
  /// Whether an element is the container of floating sets.
  virtual bool isFloatingContainer(const xercesc::DOMElement& element) const = 0;
  virtual void readDarkSet(const xercesc::DOMElement& element) = 0;
  /// The set that was made from another element for the same set; null when this is the first.
  virtual MetadataSet* findCopy(const xercesc::DOMElement&, const MetaMetadata::MetaMetadataSet&) { return nullptr; }
  virtual auto_ptr<SetSource> open(const xercesc::DOMElement& element, MetadataSet& set) = 0;
  /// Checks an element that holds elements only: the container of floating sets, or that of extensions.
  virtual void checkContainer(const xercesc::DOMElement&) {}

  // Properties.

  /// Gives a property the value that a node holds. @param definition  null for an unknown property.
  virtual void readValue(Element& property, const xercesc::DOMNode& node,
                         const MetaMetadata::MetaElement* definition) = 0;
  /// Fills a collection of values from the items below a node.
  virtual void readCollection(CollectionElement& property, MakeCollection make, Types::Identifiers::Identifier itemType,
                              const xercesc::DOMNode& node) = 0;
  /// Checks the node of a property that refers to one set, or to any number of sets.
  virtual void checkReferences(const xercesc::DOMNode&, bool /*toOne*/) {}
  /// Whether an element inside a reference is a pointer. @param name  qualified or local.
  virtual bool isPointer(const xercesc::DOMElement& element, const XMLCh* name) const = 0;
  /// The set that a pointer leads to; none for a pointer without target.
  virtual std::optional<Types::UUID> targetOf(const xercesc::DOMElement& pointer) = 0;

  // Values.

  /// The value of an element that holds nothing; null for none.
  virtual auto_ptr<Types::SimpleDataType> emptyValue(Types::Identifiers::Identifier) const { return nullptr; }
  /// The value of a node that holds a text; null for a type without a text form.
  virtual auto_ptr<Types::SimpleDataType> textValue(Types::Identifiers::Identifier type,
                                                    const xercesc::DOMNode& node) const = 0;

  // Values that are made of child elements.

  /// The children with a name. @param prefix  as documents of our own declare it.
  virtual std::vector<xercesc::DOMElement*> fields(const xercesc::DOMNode& node, std::u16string_view prefix,
                                                   const char16_t* name) = 0;
  /// Checks what a compound value is made of. @param mayRepeat  whether a child may come more than once.
  virtual void checkFields(const xercesc::DOMNode&, std::u16string_view /*prefix*/, FieldNames, bool /*mayRepeat*/) {}
  virtual wstring fieldText(const xercesc::DOMElement& field) const = 0;
  /// Refuses a value that lacks a child.
  [[noreturn]] virtual void refuseMissing(const Field& field) const = 0;
  /// The number in a child.
  virtual int64 fieldNumber(const wstring& text, int64 least, int64 most, const char16_t* name) const = 0;
  /// The octets in a child that is there.
  virtual Bytes fieldOctets(const wstring& text, const Field& field) const = 0;
  /// Milliseconds from the child of a timestamp that holds fractions of a second.
  virtual uint16 milliseconds(const wstring& text, const char16_t* name) const = 0;
  /// The element within a property that holds the children of a JPEG 2000 value.
  /// @param property  the symbol. @param line  as in `Field`.
  virtual const xercesc::DOMNode& component(const xercesc::DOMNode& node, const char16_t* name, const char* property,
                                            int line) = 0;

 private:
  const xercesc::DOMElement& root_;
  BlankText blankText_;
  PartitionMetadata& partition_;
  const Limits& limits_;
  uint64 sets_ = 0;
  DefinitionIndex definitions_;
};

}  // namespace Vantor::XML2Partition
