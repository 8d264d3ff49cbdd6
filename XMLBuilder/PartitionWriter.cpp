#include "XMLBuilder/PartitionWriter.h"

#include <mutex>
#include <new>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "XMLBuilder/DarkMetadataSetWriter.h"
#include "XMLBuilder/DocumentDescription.h"
#include "XMLBuilder/Names.h"
#include "XMLBuilder/ToXMLMetadataSetVisitor.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/Initializer.h"

namespace Vantor::XMLBuilder {

namespace {

using DocumentHolder = XMLUtils::Holder<xercesc::DOMDocument>;

/// The state of one call.
class PartitionWriter {
 public:
  PartitionWriter(PartitionMetadata& partition, WritingRules rules, xercesc::DOMDocument& document)
      : partition_(partition), rules_(rules), document_(document) {}

  void write(const MetadataSet& start) {
    // Another namespace with the root's prefix replaces this declaration, whichever of the two comes first in the map.
    declare(Vocabulary::kRootPrefix, Vocabulary::kRootURI);
    writeFrom(start, document_.root(), written_);
    writeDarkSets();
    writeFloatingSets();
    for (const auto& [uri, prefix] : document_.namespaces()) {
      if (uri != Vocabulary::kRootURI) declare(prefix, uri);
    }
  }

 private:
  void declare(std::u16string_view prefix, std::u16string_view uri) {
    setAttribute(document_.root(), Vocabulary::kXmlnsURI, qualify(u"xmlns", prefix), wstring(uri));
  }

  void writeFrom(const MetadataSet& set, xercesc::DOMElement& parent, WrittenSets& written) {
    ToXMLMetadataSetVisitor writer(parent, {partition_, rules_, document_, written});
    set.accept(writer);
  }

  void writeDarkSets() {
    for (auto at = partition_.darkBegin(); at != partition_.darkEnd(); ++at) {
      const auto& value = (*at)->value();
      writeDarkMetadataSet(document_, document_.floatingContainer(), (*at)->key(), (*at)->berLength(),
                           value.rawBuffer(), value.serializedSize());
    }
  }

  /// A floating set is written with what it refers to, even where that stands under the start set already, or under an
  /// earlier floating set; what was written with that one is not written again as a floating set. Lossless documents
  /// have each set once: many floating sets may share a long chain.
  void writeFloatingSets() {
    std::vector<const MetadataSet*> order;
    const uint32 floating = partition_.calculateSerializationOrder(order, true, false);
    WrittenSets done;
    const WrittenSets& earlier = rules_.isLossless ? written_ : done;
    for (std::size_t i = order.size() - floating; i < order.size(); ++i) {
      // One without definition is written only if its octets were kept.
      const bool isDark = order[i]->definition() == nullptr;
      const bool isLost = isDark && dynamic_cast<const DarkParsedGroup*>(order[i]) == nullptr;
      if (isLost || earlier.count(order[i]) != 0) continue;
      WrittenSets own;
      writeFrom(*order[i], document_.floatingContainer(), rules_.isLossless ? written_ : own);
      done.insert(own.begin(), own.end());
    }
  }

  PartitionMetadata& partition_;
  WritingRules rules_;
  ExportDocument document_;
  WrittenSets written_;
};

}  // namespace

namespace {

/// XQilla has a DOMException for a lack of memory, the only reason here.
DocumentHolder newDocument() {
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
  try {
    return DocumentHolder(implementation->createDocument(Vocabulary::kRootURI.data(), Vocabulary::kRoot.data(), nullptr,
                                                         xercesc::XMLPlatformUtils::fgMemoryManager));
  } catch (const xercesc::DOMException&) {
    throw std::bad_alloc();
  }
}

DocumentHolder build(PartitionMetadata& partition, const MetadataSet& start, WritingRules rules,
                     const wstring& description) {
  auto document = newDocument();
  if (!description.empty()) {
    document->insertBefore(document->createProcessingInstruction(kDescriptionTarget.data(), description.c_str()),
                           document->getDocumentElement());
  }
  PartitionWriter(partition, rules, *document).write(start);
  return document;
}

}  // namespace

DocumentHolder writePartition(PartitionMetadata* partition, const MetadataSet* start, WritingRules rules,
                              const Limits& limits, const wstring& description) {
  static std::mutex lock;
  const std::lock_guard<std::mutex> guard(lock);
  XMLUtils::Initializer::instance();
  if (partition == nullptr || start == nullptr) return {};
  return withinMemory(limits, [&] { return build(*partition, *start, rules, description); });
}

}  // namespace Vantor::XMLBuilder
