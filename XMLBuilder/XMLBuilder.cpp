#include "XMLBuilder.h"

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Limits.h"
#include "XMLBuilder/PartitionWriter.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/UnicodeString.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {

namespace {

const MetadataSet* prefaceOf(const PartitionMetadata* partition) {
  return partition == nullptr ? nullptr : partition->preface();
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
  return partition2XML(partition, prefaceOf(partition), nestStrongReferences, excludeNonStructural);
}

std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                                              bool nestStrongReferences, bool excludeNonStructural) {
  return partition2XML(partition, start, nestStrongReferences, excludeNonStructural, Limits());
}

std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                                              bool nestStrongReferences, bool excludeNonStructural,
                                              const Limits& limits) {
  auto document = writePartition(partition, start, {nestStrongReferences, excludeNonStructural}, limits);
  return std::auto_ptr<xercesc::DOMNode>(document.release());
}

void partition2XML(PartitionMetadata* partition, bool nestStrongReferences, bool excludeNonStructural,
                   XMLUtils::EncodingType encoding, wstring& out) {
  partition2XML(partition, prefaceOf(partition), nestStrongReferences, excludeNonStructural, encoding, out);
}

void partition2XML(PartitionMetadata* partition, const MetadataSet* start, bool nestStrongReferences,
                   bool excludeNonStructural, XMLUtils::EncodingType encoding, wstring& out) {
  partition2XML(partition, start, nestStrongReferences, excludeNonStructural, encoding, out, Limits());
}

void partition2XML(PartitionMetadata* partition, const MetadataSet* start, bool nestStrongReferences,
                   bool excludeNonStructural, XMLUtils::EncodingType encoding, wstring& out, const Limits& limits) {
  const auto document = partition2XML(partition, start, nestStrongReferences, excludeNonStructural, limits);
  if (document.get() != nullptr) XMLUtils::domToBuffer(document.get(), out, encoding, limits);
}

}  // namespace Vantor::XMLBuilder

VANTOR_AUTO_PTR_END
