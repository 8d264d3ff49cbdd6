#pragma once

#include <map>
#include <unordered_map>
#include <xercesc/dom/DOMElement.hpp>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Containers.h"
#include "XMLBuilder/NodeText.h"
#include "XMLUtils/ChildLookup.h"

namespace Vantor::XML2Partition {

class ImportReport;

/// The sets that one import has made from the document, in its order.
using ImportedSets = Templates::list<MetadataSet*, Platform::malloc_alloc>;

/// Text as the key of a table.
struct TextHash {
  std::size_t operator()(const wstring& text) const { return std::hash<std::u16string_view>()(text); }
};

/// What the readers of one document share: the partition that they fill, the names of its dictionary's definitions, and
/// which identifiers of the document stand for which of the partition. Lives for one call.
class ImportDocument {
 public:
  /// @param root    the document element.
  /// @param report  of a lossless import; null for an exact one.
  ImportDocument(const xercesc::DOMElement& root, BlankText blankText, PartitionMetadata& partition,
                 ImportReport* report = nullptr);
  ImportDocument(const ImportDocument&) = delete;
  ImportDocument& operator=(const ImportDocument&) = delete;

  PartitionMetadata& partition() { return partition_; }
  const xercesc::DOMElement& root() const { return root_; }
  BlankText blankText() const { return blankText_; }
  /// Whether forms are read that the exact reader does not take; see `LosslessForms`.
  bool isLossless() const { return report_ != nullptr; }
  /// Of a lossless import only.
  ImportReport& report() { return *report_; }
  /// Look-ups with the prefixes that the document element declares.
  XMLUtils::ChildLookup& rootScope() { return rootScope_; }

  /// The set with an "XMLTagName", the first in the dictionary's order; null when there is none.
  const MetaMetadata::MetaMetadataSet* findSet(const wstring& tagName) const;
  /// The property with an "XMLNamespaceURI" and an "XMLTagName", the first in the dictionary's order; null when there
  /// is none. @param name  the two, joined by ":".
  const MetaMetadata::MetaElement* findProperty(const wstring& name);

  /// The identifier of the partition that an identifier text of the document stands for: the one entered first.
  /// @param fallback  is entered and returned when the text is met for the first time.
  template <class Fallback>
  const wstring& identifierFor(const wstring& text, Fallback&& fallback) {
    const auto known = identifiers_.find(text);
    return known != identifiers_.end() ? known->second : identifiers_.emplace(text, fallback()).first->second;
  }

 private:
  void indexProperties();

  const xercesc::DOMElement& root_;
  BlankText blankText_;
  PartitionMetadata& partition_;
  ImportReport* report_;
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  XMLUtils::ChildLookup rootScope_;
  std::unordered_map<wstring, const MetaMetadata::MetaMetadataSet*, TextHash> sets_;
  std::unordered_map<wstring, const MetaMetadata::MetaElement*, TextHash> properties_;  // filled when first asked
  // Ordered, because the texts are the document's choice, and hashes can be made to meet.
  std::map<wstring, wstring> identifiers_;
};

}  // namespace Vantor::XML2Partition
