#include "XMLBuilder.h"

#include <mutex>
#include <unordered_set>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "Core/Metadata/PartitionMetadata.h"
#include "XMLBuilder/DarkMetadataSetWriter.h"
#include "XMLBuilder/ExportDocument.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/DomToBuffer.h"
#include "XMLUtils/Holder.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/UnicodeString.h"

VANTOR_AUTO_PTR_BEGIN

namespace Vantor::XMLBuilder {

namespace {

using DocumentHolder = XMLUtils::Holder<xercesc::DOMDocument>;

std::mutex& exportLock() {
  static std::mutex lock;
  return lock;
}

void declareNamespace(xercesc::DOMElement& root, const wstring& prefix, const wstring& uri) {
  setAttribute(root, Vocabulary::kXmlnsURI, qualify(u"xmlns", prefix), uri);
}

/// An empty document: the root with the declaration of its own namespace.
DocumentHolder createFrame() {
  const auto& prefix = getPrefix();
  const auto& uri = getNamespaceURI();
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
  DocumentHolder document(implementation->createDocument(uri.wchar(),
                                                         qualify(prefix.toWstring(), u"MetadataSets").c_str(), nullptr,
                                                         xercesc::XMLPlatformUtils::fgMemoryManager));
  document->getDocumentElement()->setPrefix(prefix.wchar());
  declareNamespace(*document->getDocumentElement(), prefix.toWstring(), uri.toWstring());
  return document;
}

/// One call's way through a partition.
class PartitionWriter {
 public:
  PartitionWriter(PartitionMetadata& partition, ReferenceOptions options, xercesc::DOMDocument& document)
      : partition_(partition), options_(options), document_(document) {}

  void write(const MetadataSet& start) {
    writeFrom(start, document_.root(), written_);
    writeDarkSets();
    writeFloatingSets();
    declareNamespaces();
  }

 private:
  void writeFrom(const MetadataSet& set, xercesc::DOMElement& parent, WrittenSets& written) {
    ToXMLMetadataSetVisitor writer(parent, partition_, options_, document_, written);
    set.accept(writer);
  }

  void writeDarkSets() {
    for (auto at = partition_.darkBegin(); at != partition_.darkEnd(); ++at) {
      writeDarkMetadataSet(document_, document_.floatingContainer(), **at);
    }
  }

  /// A floating set is written with what it refers to, even where that stands under the start set already; what was
  /// written with an earlier floating set is not written again as one of its own.
  void writeFloatingSets() {
    std::vector<const MetadataSet*> order;
    const uint32 floating = partition_.calculateSerializationOrder(order, true, false);
    std::unordered_set<const MetadataSet*> done;
    for (std::size_t i = order.size() - floating; i < order.size(); ++i) {
      if (done.count(order[i]) != 0) continue;
      WrittenSets written;
      writeFrom(*order[i], document_.floatingContainer(), written);
      done.insert(written.begin(), written.end());
    }
  }

  void declareNamespaces() {
    for (const auto& [uri, prefix] : document_.namespaces()) {
      if (uri != getNamespaceURI().toWstring()) declareNamespace(document_.root(), prefix, uri);
    }
  }

  PartitionMetadata& partition_;
  ReferenceOptions options_;
  ExportDocument document_;
  WrittenSets written_;
};

std::auto_ptr<xercesc::DOMNode> writeDocument(PartitionMetadata& partition, const MetadataSet* start,
                                              ReferenceOptions options, DocumentHolder document) {
  if (start == nullptr) return std::auto_ptr<xercesc::DOMNode>();
  PartitionWriter(partition, options, *document).write(*start);
  return std::auto_ptr<xercesc::DOMNode>(document.release());
}

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
  const std::lock_guard<std::mutex> guard(exportLock());
  XMLUtils::Initializer::instance();
  if (partition == nullptr) return std::auto_ptr<xercesc::DOMNode>();
  auto frame = createFrame();
  return writeDocument(*partition, partition->preface(), {nestStrongReferences, excludeNonStructural},
                       std::move(frame));
}

std::auto_ptr<xercesc::DOMNode> partition2XML(PartitionMetadata* partition, const MetadataSet* start,
                                              bool nestStrongReferences, bool excludeNonStructural) {
  const std::lock_guard<std::mutex> guard(exportLock());
  XMLUtils::Initializer::instance();
  if (partition == nullptr) return std::auto_ptr<xercesc::DOMNode>();
  return writeDocument(*partition, start, {nestStrongReferences, excludeNonStructural}, createFrame());
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
