#include "XMLBuilder/ImportDocument.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"

namespace Vantor::XML2Partition {

using MetaMetadata::kXMLNamespaceURI;
using MetaMetadata::kXMLTagName;

ImportDocument::ImportDocument(const xercesc::DOMElement& root, BlankText blankText, PartitionMetadata& partition,
                               ImportReport* report)
    : root_(root),
      blankText_(blankText),
      partition_(partition),
      report_(report),
      dictionary_(partition.partitionDictionary().dictionary()),
      rootScope_(root) {
  for (auto at = dictionary_->metaMetadataSetBegin(); at != dictionary_->metaMetadataSetEnd(); ++at) {
    sets_.emplace((*at)->extensionAttribute(kXMLTagName), *at);
  }
}

const MetaMetadata::MetaMetadataSet* ImportDocument::findSet(const wstring& tagName) const {
  const auto found = sets_.find(tagName);
  return found == sets_.end() ? nullptr : found->second;
}

const MetaMetadata::MetaElement* ImportDocument::findProperty(const wstring& name) {
  if (properties_.empty()) indexProperties();
  const auto found = properties_.find(name);
  return found == properties_.end() ? nullptr : found->second;
}

void ImportDocument::indexProperties() {
  for (auto at = dictionary_->metaElementBegin(); at != dictionary_->metaElementEnd(); ++at) {
    properties_.emplace((*at)->extensionAttribute(kXMLNamespaceURI) + u":" + (*at)->extensionAttribute(kXMLTagName),
                        *at);
  }
}

}  // namespace Vantor::XML2Partition
