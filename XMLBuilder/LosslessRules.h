#pragma once

#include "Core/Metadata/UnknownTags.h"
#include "Core/Platform/Exceptions.h"
#include "XMLBuilder/LosslessReport.h"
#include "XMLBuilder/ReadingRules.h"

namespace Vantor::XML2Partition {

/// Two different sets with one InstanceUID or one name, neither of which can be left out.
class Clash : public Exceptions::InvalidFormat {
 public:
  using InvalidFormat::InvalidFormat;
};

/// The rules of `LosslessXML`: what was written comes back, and what cannot be read is reported and left out.
class LosslessRules : public ReadingRules {
 public:
  LosslessRules(const xercesc::DOMElement& root, PartitionMetadata& partition, const Limits& limits,
                LosslessReport& report)
      : ReadingRules(root, BlankText::kKeep, partition, limits), report_(report) {}

  LosslessReport& report() { return report_; }

  /// Counts the Prefaces of the document, this one included.
  std::size_t countPreface() { return ++prefaces_; }

  /// Checks the root, reserves the local tags used in dark sets, and gives tags to the labels of unknown properties.
  void begin();

  const MetaMetadata::MetaMetadataSet* findSet(const xercesc::DOMElement& element,
                                               std::u16string_view other = {}) override;
  bool isFloatingContainer(const xercesc::DOMElement& element) const override;
  void readDarkSet(const xercesc::DOMElement& element) override;
  MetadataSet* findCopy(const xercesc::DOMElement& element, const MetaMetadata::MetaMetadataSet& definition) override;
  auto_ptr<SetSource> open(const xercesc::DOMElement& element, MetadataSet& set) override;
  void checkContainer(const xercesc::DOMElement& container) override;

  void readValue(Element& property, const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition) override;
  void readCollection(CollectionElement& property, MakeCollection make, Types::Identifiers::Identifier itemType,
                      const xercesc::DOMNode& node) override;
  void checkReferences(const xercesc::DOMNode& node, bool toOne) override;
  bool isPointer(const xercesc::DOMElement& element, const XMLCh* name) const override;
  std::optional<Types::UUID> targetOf(const xercesc::DOMElement& pointer) override;

  auto_ptr<Types::SimpleDataType> emptyValue(Types::Identifiers::Identifier type) const override;
  auto_ptr<Types::SimpleDataType> textValue(Types::Identifiers::Identifier type,
                                            const xercesc::DOMNode& node) const override;

  std::vector<xercesc::DOMElement*> fields(const xercesc::DOMNode& node, std::u16string_view prefix,
                                           const char16_t* name) override;
  void checkFields(const xercesc::DOMNode& node, std::u16string_view prefix, FieldNames names, bool mayRepeat) override;
  wstring fieldText(const xercesc::DOMElement& field) const override;
  [[noreturn]] void refuseMissing(const Field& field) const override;
  int64 fieldNumber(const wstring& text, int64 least, int64 most, const char16_t* name) const override;
  Bytes fieldOctets(const wstring& text, const Field& field) const override;
  uint16 milliseconds(const wstring& text, const char16_t* name) const override;
  const xercesc::DOMNode& component(const xercesc::DOMNode& node, const char16_t* name, const char* property,
                                    int line) override;

  // Reports. Attributes that belong to XML itself are not reported.

  void reportText(const xercesc::DOMElement& element);
  /// @param uri, names  of the attributes that the element may have.
  /// @param kind        kStrayAttribute, or kUnknownAttribute for the element of a set.
  void reportAttributes(const xercesc::DOMElement& element, std::u16string_view uri = {},
                        const std::vector<std::u16string_view>& names = {},
                        Diagnostic::Kind kind = Diagnostic::Kind::kStrayAttribute);
  /// Reports attributes of a property's element and of the elements in it that are no sets.
  void reportValueAttributes(const xercesc::DOMElement& property, const MetaMetadata::MetaElement* definition);
  /// Name and namespace of a node, as diagnostics have them.
  static std::vector<std::string> nameOf(const xercesc::DOMNode& node);

 private:
  void checkPointer(const xercesc::DOMElement& pointer);
  /// The set that an element is named after, in the namespace of its definition; null for none.
  const MetaMetadata::MetaMetadataSet* definitionOf(const xercesc::DOMElement& element);
  /// The marks of the unknown properties that have one, in sets that are known. (One in a set that stands in an unknown
  /// set has its mark here, too, though neither is read.)
  std::vector<UnknownMark> unknownMarks();

  LosslessReport& report_;
  std::size_t prefaces_ = 0;
};

}  // namespace Vantor::XML2Partition
