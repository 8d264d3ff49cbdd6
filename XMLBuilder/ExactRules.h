#pragma once

#include <map>

#include "XMLBuilder/ReadingRules.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

/// The rules of `XML2Partition`: to the letter of the exact form, losses included. Sets keep the InstanceUIDs that they
/// were made with; each identifier in the document stands for one of these throughout.
class ExactRules : public ReadingRules {
 public:
  ExactRules(const xercesc::DOMElement& root, BlankText blankText, PartitionMetadata& partition, const Limits& limits)
      : ReadingRules(root, blankText, partition, limits), rootScope_(root) {}

  const MetaMetadata::MetaMetadataSet* findSet(const xercesc::DOMElement& element, std::u16string_view other) override;
  bool isFloatingContainer(const xercesc::DOMElement& element) const override;
  void readDarkSet(const xercesc::DOMElement& element) override;
  auto_ptr<SetSource> open(const xercesc::DOMElement& element, MetadataSet& set) override;

  void readValue(Element& property, const xercesc::DOMNode& node, const MetaMetadata::MetaElement* definition) override;
  void readCollection(CollectionElement& property, MakeCollection make, Types::Identifiers::Identifier itemType,
                      const xercesc::DOMNode& node) override;
  bool isPointer(const xercesc::DOMElement& element, const XMLCh* name) const override;
  std::optional<Types::UUID> targetOf(const xercesc::DOMElement& pointer) override;

  auto_ptr<Types::SimpleDataType> textValue(Types::Identifiers::Identifier type,
                                            const xercesc::DOMNode& node) const override;

  std::vector<xercesc::DOMElement*> fields(const xercesc::DOMNode& node, std::u16string_view prefix,
                                           const char16_t* name) override {
    return rootScope_.all(node, wstring(prefix), name);
  }
  wstring fieldText(const xercesc::DOMElement& field) const override { return nodeText(field, blankText()); }
  [[noreturn]] void refuseMissing(const Field& field) const override;
  int64 fieldNumber(const wstring& text, int64 least, int64 most, const char16_t* name) const override;
  Bytes fieldOctets(const wstring& text, const Field& field) const override;
  uint16 milliseconds(const wstring& text, const char16_t* name) const override;
  const xercesc::DOMNode& component(const xercesc::DOMNode& node, const char16_t* name, const char* property,
                                    int line) override;

  /// The identifier of the partition that an identifier text of the document stands for: the one entered first.
  /// @param own  what is entered when the text is met for the first time; null for a new one.
  const Types::UUID& identifierFor(const wstring& text, const Types::UUID* own);

 private:
  XMLUtils::ChildLookup rootScope_;  // with the prefixes that the document element declares
  // Ordered, because a hostile document could choose texts whose hashes collide.
  std::map<wstring, Types::UUID> identifiers_;
};

}  // namespace Vantor::XML2Partition
