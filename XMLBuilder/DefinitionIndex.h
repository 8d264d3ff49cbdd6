#pragma once

#include <unordered_map>

#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Platform/Containers.h"

namespace Vantor::XML2Partition {

/// The definitions of a dictionary by their names in documents. Of two with one name, the first in the dictionary's
/// order counts.
class DefinitionIndex {
 public:
  explicit DefinitionIndex(SharedPtr<const MetaMetadata::Dictionary> dictionary);

  /// The set with an "XMLTagName"; null when there is none.
  const MetaMetadata::MetaMetadataSet* findSet(const wstring& tagName) const;
  /// The property with an "XMLNamespaceURI" and an "XMLTagName"; null when there is none.
  /// @param name  the two, joined by ":".
  const MetaMetadata::MetaElement* findProperty(const wstring& name);

 private:
  struct TextHash {
    std::size_t operator()(const wstring& text) const { return std::hash<std::u16string_view>()(text); }
  };

  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  std::unordered_map<wstring, const MetaMetadata::MetaMetadataSet*, TextHash> sets_;
  std::unordered_map<wstring, const MetaMetadata::MetaElement*, TextHash> properties_;  // filled by the first search
};

}  // namespace Vantor::XML2Partition
