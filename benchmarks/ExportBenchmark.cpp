// What an export costs per set, how that grows with the partition, and what the same document costs when it is made by
// plain Xerces calls: the floor below any export.

#include <benchmark/benchmark.h>

#include <memory>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>

#include "GeneratedPartition.h"
#include "XMLBuilder.h"
#include "XMLUtils/Holder.h"
#include "XMLUtils/Strings.h"

namespace Vantor::Benchmarks {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

VANTOR_AUTO_PTR_BEGIN
std::auto_ptr<DOMNode> exportOf(PartitionMetadata& partition, bool nested) {
  return XMLBuilder::partition2XML(&partition, nested, false);
}
VANTOR_AUTO_PTR_END

std::size_t countSets(const DOMNode& node) {
  std::size_t sets = 0;
  for (auto* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (child->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    sets += static_cast<DOMElement*>(child)->hasAttribute(u"rp210:InstanceUID") ? 1u : 0u;
    sets += countSets(*child);
  }
  return sets;
}

void requireSets(std::size_t found, std::size_t expected) {
  if (found != expected) throw std::logic_error("the document does not hold every set once");
}

/// One node of a document, in the order of creation.
struct Step {
  enum class Kind { kElement, kAttribute, kText, kEnd } kind;
  wstring uri;
  wstring name;
  wstring value;
};

void record(const DOMNode& node, std::vector<Step>& steps) {
  if (node.getNodeType() == DOMNode::TEXT_NODE) {
    steps.push_back({Step::Kind::kText, {}, {}, XMLUtils::utf16ToWstring(node.getNodeValue())});
    return;
  }
  steps.push_back({Step::Kind::kElement,
                   XMLUtils::utf16ToWstring(node.getNamespaceURI()),
                   XMLUtils::utf16ToWstring(node.getNodeName()),
                   {}});
  const auto* attributes = node.getAttributes();
  for (XMLSize_t i = 0; i < attributes->getLength(); ++i) {
    const auto* attribute = attributes->item(i);
    steps.push_back({Step::Kind::kAttribute, XMLUtils::utf16ToWstring(attribute->getNamespaceURI()),
                     XMLUtils::utf16ToWstring(attribute->getNodeName()),
                     XMLUtils::utf16ToWstring(attribute->getNodeValue())});
  }
  for (auto* child = node.getFirstChild(); child != nullptr; child = child->getNextSibling()) record(*child, steps);
  steps.push_back({Step::Kind::kEnd, {}, {}, {}});
}

XMLUtils::Holder<DOMDocument> build(const std::vector<Step>& steps) {
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core");
  XMLUtils::Holder<DOMDocument> document(implementation->createDocument());
  DOMNode* parent = document.get();
  for (const auto& step : steps) {
    switch (step.kind) {
      case Step::Kind::kElement:
        parent = parent->appendChild(document->createElementNS(step.uri.c_str(), step.name.c_str()));
        break;
      case Step::Kind::kAttribute:
        static_cast<DOMElement*>(parent)->setAttributeNS(step.uri.c_str(), step.name.c_str(), step.value.c_str());
        break;
      case Step::Kind::kText:
        parent->appendChild(document->createTextNode(step.value.c_str()));
        break;
      case Step::Kind::kEnd:
        parent = parent->getParentNode();
        break;
    }
  }
  return document;
}

void reportPerSet(benchmark::State& state) {
  const auto sets = static_cast<double>(setsIn(static_cast<std::size_t>(state.range(0))));
  state.counters["per_set"] =
      benchmark::Counter(sets, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void exportPartition(benchmark::State& state, bool nested) {
  const auto packages = static_cast<std::size_t>(state.range(0));
  const auto partition = makePartition(packages);
  requireSets(countSets(*exportOf(*partition, nested)), setsIn(packages));
  for (auto _ : state) benchmark::DoNotOptimize(exportOf(*partition, nested).get());
  reportPerSet(state);
}

void buildSameDocument(benchmark::State& state, bool nested) {
  const auto packages = static_cast<std::size_t>(state.range(0));
  const auto partition = makePartition(packages);
  const auto document = exportOf(*partition, nested);
  std::vector<Step> steps;
  record(*static_cast<DOMDocument*>(document.get())->getDocumentElement(), steps);
  requireSets(countSets(*build(steps)), setsIn(packages));
  for (auto _ : state) benchmark::DoNotOptimize(build(steps).get());
  reportPerSet(state);
}

void exportText(benchmark::State& state) {
  const auto partition = makePartition(static_cast<std::size_t>(state.range(0)));
  std::size_t bytes = 0;
  for (auto _ : state) {
    wstring text;
    XMLBuilder::partition2XML(partition.get(), true, false, XMLUtils::EncodingType::kUTF8Indented, text);
    bytes += text.size() * sizeof(char16_t);
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
  reportPerSet(state);
}

// 1,002 and 50,002 sets.
#define VANTOR_PARTITIONS Arg(200)->Arg(10000)->Unit(benchmark::kMillisecond)
BENCHMARK_CAPTURE(exportPartition, nested, true)->VANTOR_PARTITIONS;
BENCHMARK_CAPTURE(buildSameDocument, nested, true)->VANTOR_PARTITIONS;
BENCHMARK_CAPTURE(exportPartition, flat, false)->VANTOR_PARTITIONS;
BENCHMARK_CAPTURE(buildSameDocument, flat, false)->VANTOR_PARTITIONS;
BENCHMARK(exportText)->VANTOR_PARTITIONS;

}  // namespace

}  // namespace Vantor::Benchmarks
