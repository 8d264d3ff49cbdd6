#include "XMLBuilder.h"

#include "XMLBuilder/PartitionWriter.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/UnicodeString.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {

namespace {

void writeText(const std::auto_ptr<xercesc::DOMNode>& document, XMLUtils::EncodingType encoding, wstring& out) {
  if (document.get() != nullptr) XMLUtils::domToBuffer(document.get(), out, encoding);
}

}  // namespace

const XMLUtils::UnicodeString& getNamespaceURI() {
  static const XMLUtils::UnicodeString uri(Vocabulary::kRootURI.data());
  return uri;
}

const XMLUtils::UnicodeString& getPrefix() {
  static const XMLUtils::UnicodeString prefix(Vocabulary::kRootPrefix.data());
  return prefix;
}

std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition, bool nestStrongReferences,
                                              bool excludeNonStructural) {
  const MetadataSet* preface = partition == nullptr ? nullptr : partition->preface();
  return partition2XML(partition, preface, nestStrongReferences, excludeNonStructural);
}

std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                                              bool nestStrongReferences, bool excludeNonStructural) {
  auto document = writePartition(partition, start, {nestStrongReferences, excludeNonStructural});
  return std::auto_ptr<xercesc::DOMNode>(document.release());
}

void partition2XML(PartitionMetadata* partition, bool nestStrongReferences, bool excludeNonStructural,
                   XMLUtils::EncodingType encoding, wstring& out) {
  writeText(partition2XML(partition, nestStrongReferences, excludeNonStructural), encoding, out);
}

void partition2XML(PartitionMetadata* partition, const MetadataSet* start, bool nestStrongReferences,
                   bool excludeNonStructural, XMLUtils::EncodingType encoding, wstring& out) {
  writeText(partition2XML(partition, start, nestStrongReferences, excludeNonStructural), encoding, out);
}

}  // namespace Vantor::XMLBuilder

VANTOR_AUTO_PTR_END
