#include "LosslessXML.h"

#include <algorithm>
#include <new>
#include <unordered_set>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMLSParser.hpp>
#include <xercesc/dom/DOMProcessingInstruction.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Limits.h"
#include "Core/Platform/Raise.h"
#include "XMLBuilder/DocumentDescription.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/LosslessRules.h"
#include "XMLBuilder/LosslessSet.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/ElementLines.h"
#include "XMLUtils/Initializer.h"
#include "XMLUtils/InputFile.h"
#include "XMLUtils/LoadDocument.h"
#include "XMLUtils/Strings.h"

namespace Vantor::LosslessXML {

using xercesc::DOMElement;
using xercesc::DOMNode;

struct Document::Content {
  explicit Content(const Limits& given) : limits(given) {}

  const Limits limits;
  XMLUtils::ElementLines lines;
  XMLUtils::Holder<xercesc::DOMLSParser> parser = XMLUtils::createParser(&lines);
  const xercesc::DOMDocument* dom = nullptr;  ///< the parser's
  std::optional<Description> description;
  bool isDescriptionDamaged = false;

  const DOMElement& root() const { return *dom->getDocumentElement(); }
};

namespace {

/// Lets only exceptions of the core library and std::bad_alloc out, with the kind of the failure in words.
/// @param refusal  the words for what Xerces refuses with a SAXException.
template <class Operation>
auto inWords(const char* refusal, Operation&& operation) {
  using Exceptions::ParseError;
  try {
    return operation();
  } catch (const xercesc::SAXParseException& error) {
    Exceptions::raiseAt<ParseError>(error.getLineNumber(), "{} XML: {}", refusal,
                                    XMLUtils::utf16ToWstring(error.getMessage()));
  } catch (const xercesc::SAXException& error) {
    Exceptions::raise<ParseError>("{} XML: {}", refusal, XMLUtils::utf16ToWstring(error.getMessage()));
  } catch (const xercesc::XMLException& error) {
    Exceptions::raise<ParseError>("unreadable XML: {}", XMLUtils::utf16ToWstring(error.getMessage()));
  } catch (const xercesc::DOMException& error) {
    Exceptions::raise<ParseError>("unusable XML: {}", XMLUtils::utf16ToWstring(error.getMessage()));
  } catch (const xercesc::OutOfMemoryException&) {
    throw std::bad_alloc();
  }
}

/// The data of the instruction in which a document describes itself; none without one.
std::optional<wstring> instructionOf(const xercesc::DOMDocument& document) {
  for (const DOMNode* node = document.getFirstChild(); node != nullptr; node = node->getNextSibling()) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE) break;
    if (node->getNodeType() != DOMNode::PROCESSING_INSTRUCTION_NODE) continue;
    const auto& instruction = static_cast<const xercesc::DOMProcessingInstruction&>(*node);
    if (instruction.getTarget() != XMLBuilder::kDescriptionTarget) continue;
    return XMLUtils::utf16ToWstring(instruction.getData());
  }
  return std::nullopt;
}

template <class Visit>
void forEachElementBelow(const DOMElement& root, Visit&& visit) {
  for (const auto* node = XMLUtils::nextInTree(root, root); node != nullptr; node = XMLUtils::nextInTree(*node, root)) {
    if (node->getNodeType() == DOMNode::ELEMENT_NODE && !visit(static_cast<const DOMElement&>(*node))) return;
  }
}

std::optional<MetaMetadata::Vocabulary> vocabularyOfNamespace(const XMLCh* uri) {
  using namespace MetaMetadata;
  const auto name = XMLUtils::viewOf(uri);
  if (name == kLegacySets.uri || name == kLegacyElements.uri) return Vocabulary::kLegacy;
  if (name == kST434Sets.uri || name == kST434Elements.uri) return Vocabulary::kST434_2014;
  return std::nullopt;
}

}  // namespace

Document::Document(std::unique_ptr<Content> content) : content_(std::move(content)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Document Document::fromBytes(const void* bytes, std::size_t size, const Limits& limits) {
  XMLUtils::Initializer::instance();  // first, as exceptions take their memory from Xerces
  return withinMemory(limits, [&] { return documentFrom(static_cast<const uint8*>(bytes), size, limits); });
}

Document Document::documentFrom(const uint8* bytes, std::size_t size, const Limits& limits) {
  const auto input = inWords("unreadable", [&] { return XMLUtils::checkedInput(bytes, size, u"", limits); });
  return inWords("not well-formed", [&] {
    auto content = std::make_unique<Content>(limits);
    content->dom = XMLUtils::loadDocument(input, *content->parser);
    if (const auto instruction = instructionOf(*content->dom)) {
      content->description = XMLBuilder::parseDescription(*instruction);
      content->isDescriptionDamaged = !content->description;
    }
    return Document(std::move(content));
  });
}

Document Document::fromFile(const Path& file, const Limits& limits) {
  XMLUtils::Initializer::instance();
  Bytes bytes;
  try {
    bytes = XMLUtils::readInputFile(Platform::pathToWstring(file), limits);
  } catch (const xercesc::SAXException& error) {
    Exceptions::raise<Exceptions::IOError>("{}", XMLUtils::utf16ToWstring(error.getMessage()));
  }
  return fromBytes(bytes.data(), bytes.size(), limits);
}

const std::optional<Description>& Document::description() const { return content_->description; }

bool Document::isDescriptionDamaged() const { return content_->isDescriptionDamaged; }

/// The root is in the legacy namespace whatever the vocabulary is.
std::optional<MetaMetadata::Vocabulary> Document::vocabulary() const {
  std::optional<MetaMetadata::Vocabulary> found;
  forEachElementBelow(content_->root(), [&found](const DOMElement& element) {
    found = vocabularyOfNamespace(element.getNamespaceURI());
    return !found;
  });
  return found;
}

bool Document::isNested() const {
  using namespace XML2Partition;
  std::unordered_set<Types::UUID> top;
  std::unordered_set<Types::UUID> targets;
  std::ptrdiff_t nested = 0;
  const auto& root = content_->root();
  forEachElementBelow(root, [&](const DOMElement& element) {
    const DOMNode* parent = element.getParentNode();
    const bool isTop = parent == &root || parent->getParentNode() == &root;
    if (const auto instanceUID = instanceUIDOf(element)) {
      if (isTop) {
        top.insert(*instanceUID);
      } else {
        ++nested;
      }
    } else if (const auto target = LosslessForms::identifierIn(LosslessForms::targetAttribute(element))) {
      targets.insert(*target);
    }
    return true;
  });
  const auto pointedAt =
      std::count_if(targets.begin(), targets.end(), [&top](const auto& target) { return top.count(target) != 0; });
  return pointedAt == 0 || nested > pointedAt;
}

Import Document::import(PartitionMetadata& partition, const PartitionMetadata* base, Extent extent) const {
  const auto read = [&] {
    Import result;
    const auto& description = content_->description;
    const bool isPart =
        extent == Extent::kPart || (description && (description->isStructuralOnly || description->start));
    XML2Partition::BaseFacts facts(base, isPart);
    XML2Partition::LosslessReport report(result, content_->lines, facts, content_->limits.diagnostics);
    XML2Partition::LosslessRules rules(content_->root(), partition, content_->limits, report);
    rules.begin();
    result.sets = XML2Partition::importDocument(rules);
    report.finish(partition);
    return result;
  };
  return withinMemory(content_->limits, [&] { return inWords("unreadable", read); });
}

}  // namespace Vantor::LosslessXML
