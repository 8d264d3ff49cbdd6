#include "XMLBuilder/DefinitionIndex.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"

namespace Vantor::XML2Partition {

using MetaMetadata::kNamespaceURI;
using MetaMetadata::kTagName;

DefinitionIndex::DefinitionIndex(SharedPtr<const MetaMetadata::Dictionary> dictionary)
    : dictionary_(std::move(dictionary)) {
  for (auto at = dictionary_->metaMetadataSetBegin(); at != dictionary_->metaMetadataSetEnd(); ++at) {
    sets_.emplace((*at)->extensionAttribute(kTagName), *at);
  }
}

const MetaMetadata::MetaMetadataSet* DefinitionIndex::findSet(const wstring& tagName) const {
  const auto found = sets_.find(tagName);
  return found == sets_.end() ? nullptr : found->second;
}

const MetaMetadata::MetaElement* DefinitionIndex::findProperty(const wstring& name) {
  if (properties_.empty()) {
    for (auto at = dictionary_->metaElementBegin(); at != dictionary_->metaElementEnd(); ++at) {
      properties_.emplace((*at)->extensionAttribute(kNamespaceURI) + u":" + (*at)->extensionAttribute(kTagName), *at);
    }
  }
  const auto found = properties_.find(name);
  return found == properties_.end() ? nullptr : found->second;
}

}  // namespace Vantor::XML2Partition
