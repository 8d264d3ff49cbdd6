#pragma once

#include <unordered_map>

#include "Core/Metadata/UnknownTags.h"
#include "XMLBuilder/LosslessRules.h"

namespace Vantor::XML2Partition {

/// The InstanceUID of a set's element; none when it is missing or malformed.
std::optional<Types::UUID> instanceUIDOf(const xercesc::DOMElement& element);
/// The name "new:..." that a set's element has in place of an InstanceUID; none for every other element.
std::optional<wstring> newNameOf(const xercesc::DOMElement& element);

/// The mark of an unknown property's element. @throws Exceptions::InvalidFormat for a mark that is none.
UnknownMark unknownMarkOf(const xercesc::DOMElement& element);

/// Reports what was not read of a set's element: text, attributes and children. Where two children stand for one
/// property, either may be the one that was meant, so the property counts as unread.
void reportUnread(const xercesc::DOMElement& element, const SetChildren& children,
                  const MetaMetadata::MetaMetadataSet& definition, LosslessRules& rules);

/// The element of one set under the lossless rules.
class LosslessSet : public SetSource {
 public:
  LosslessSet(const xercesc::DOMElement& element, MetadataSet& set, LosslessRules& rules);

  const xercesc::DOMElement* child(const MetaMetadata::MetaElement& definition) override;
  const xercesc::DOMNode* identifier(const wstring& tagName) override;
  std::optional<Types::UUID> instanceUID(const xercesc::DOMNode& attribute) override;
  const xercesc::DOMElement* extensions() override;
  void readExtension(const xercesc::DOMElement& child) override;
  void finish() override;

 private:
  bool isWithinReference() const;
  void enterUnnamed();
  void checkPreface();
  void reportMisplacedInstanceUID(const xercesc::DOMElement& child);
  void readNamed(const xercesc::DOMElement& child, const MetaMetadata::MetaElement& definition);
  void readUnknown(const xercesc::DOMElement& child);
  const MetaMetadata::MetaElement* knownProperty(uint16 tag) const;
  bool isConfirmed(const BaseFacts::PropertyName& name, std::size_t ordinal);

  const xercesc::DOMElement& element_;
  MetadataSet& set_;
  LosslessRules& rules_;
  LosslessReport::Reading reading_;
  SetChildren children_;
  UnknownTags tags_;
  std::unordered_map<uint16, std::size_t> unknown_;  // by tag, so far
  std::unordered_map<const MetaMetadata::MetaElement*, std::size_t> misplaced_;
  std::optional<BaseFacts::PropertyCounts> baseCounts_;
};

}  // namespace Vantor::XML2Partition
