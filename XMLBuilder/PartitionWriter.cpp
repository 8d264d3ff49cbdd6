#include "XMLBuilder/PartitionWriter.h"

#include <mutex>
#include <unordered_set>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "XMLBuilder.h"
#include "XMLBuilder/DarkMetadataSetWriter.h"
#include "XMLBuilder/DocumentDescription.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/UnicodeString.h"

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

/// A document without sets: the root with the declaration of its own namespace.
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

/// Whether a set is written at all: one without definition only if its octets were kept.
bool hasElement(const MetadataSet& set) {
  return set.definition() != nullptr || dynamic_cast<const DarkParsedGroup*>(&set) != nullptr;
}

/// The state of one call.
class PartitionWriter {
 public:
  PartitionWriter(PartitionMetadata& partition, WritingRules rules, xercesc::DOMDocument& document)
      : partition_(partition), rules_(rules), document_(document) {}

  void write(const MetadataSet& start) {
    writeFrom(start, document_.root(), written_);
    writeDarkSets();
    writeFloatingSets();
    declareNamespaces();
  }

 private:
  void writeFrom(const MetadataSet& set, xercesc::DOMElement& parent, WrittenSets& written) {
    ToXMLMetadataSetVisitor writer(parent, {partition_, rules_, document_, written});
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
      if (done.count(order[i]) != 0 || !hasElement(*order[i])) continue;
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
  WritingRules rules_;
  ExportDocument document_;
  WrittenSets written_;
};

}  // namespace

DocumentHolder writePartition(PartitionMetadata* partition, const MetadataSet* start, WritingRules rules,
                              const wstring& description) {
  const std::lock_guard<std::mutex> guard(exportLock());
  XMLUtils::Initializer::instance();
  if (partition == nullptr || start == nullptr) return {};
  auto document = createFrame();
  if (!description.empty()) {
    document->insertBefore(document->createProcessingInstruction(kDescriptionTarget.data(), description.c_str()),
                           document->getDocumentElement());
  }
  PartitionWriter(*partition, rules, *document).write(*start);
  return document;
}

}  // namespace Vantor::XMLBuilder
