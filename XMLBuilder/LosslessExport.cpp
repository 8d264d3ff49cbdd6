#include "Core/Metadata/PartitionDigest.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "LosslessXML.h"
#include "XMLBuilder/DocumentDescription.h"
#include "XMLBuilder/PartitionWriter.h"
#include "XMLUtils/DomToBuffer.h"

namespace Vantor::LosslessXML {

namespace {

/// The dictionary's vocabulary, as the name of its Preface shows it.
MetaMetadata::Vocabulary vocabularyOf(const PartitionMetadata& partition) {
  const auto& dictionary = *partition.partitionDictionary().dictionary();
  const auto* preface = dictionary.findSet(Structural::StructuralMetadataKeys::preface());
  const bool isST434 =
      preface != nullptr && preface->extensionAttribute(MetaMetadata::kNamespaceURI) == MetaMetadata::kST434Sets.uri;
  return isST434 ? MetaMetadata::Vocabulary::kST434_2014 : MetaMetadata::Vocabulary::kLegacy;
}

/// Empty for a document that starts from a set which nothing identifies.
wstring descriptionOf(const PartitionMetadata& partition, const MetadataSet& start, const ExportOptions& options) {
  Description description;
  if (&start != partition.preface()) {
    if (start.instanceUID() == nullptr || partition.findByInstanceUID(*start.instanceUID()).size() != 1) return {};
    description.start = *start.instanceUID();
  }
  description.isNested = options.nestStrongReferences;
  description.isStructuralOnly = options.excludeNonStructural;
  description.partition = options.partition;
  description.vocabulary = vocabularyOf(partition);
  description.digest = digestOf(partition);
  return XMLBuilder::renderDescription(description);
}

}  // namespace

std::unique_ptr<xercesc::DOMNode> exportDocument(PartitionMetadata& partition, const ExportOptions& options) {
  const MetadataSet* start = options.start != nullptr ? options.start : partition.preface();
  if (start == nullptr) return nullptr;
  const XMLBuilder::WritingRules rules{options.nestStrongReferences, options.excludeNonStructural, true};
  auto document =
      XMLBuilder::writePartition(&partition, start, rules, options.limits, descriptionOf(partition, *start, options));
  return std::unique_ptr<xercesc::DOMNode>(document.release());
}

std::string exportBytes(PartitionMetadata& partition, const ExportOptions& options, XMLUtils::EncodingType encoding) {
  std::string bytes;
  XMLUtils::domToBytes(exportDocument(partition, options).get(), bytes, encoding, options.limits);
  return bytes;
}

}  // namespace Vantor::LosslessXML
