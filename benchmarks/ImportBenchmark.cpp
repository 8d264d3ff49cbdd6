// What an import costs per set, how that grows with the document, and what Xerces alone needs to parse the same text.

#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/Wrapper4InputSource.hpp>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Platform/Strings.h"
#include "GeneratedPartition.h"
#include "XML2Partition.h"
#include "XMLBuilder.h"
#include "XMLUtils/Holder.h"

namespace Vantor::Benchmarks {

namespace {

std::string documentOf(std::size_t packages) {
  const auto partition = makePartition(packages);
  wstring text;
  XMLBuilder::partition2XML(partition.get(), true, false, XMLUtils::EncodingType::kUTF8Indented, text);
  return Utils::wstringToString(text);
}

std::size_t import(const std::string& document) {
  PartitionMetadata partition(builtInDictionary());
  XML2Partition::getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(document.data()),
                                                static_cast<uint32>(document.size()), &partition);
  return partition.sets().size();
}

/// Parses with a bare parser, which is as fast as Xerces gets.
std::size_t parse(const std::string& document) {
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  const XMLUtils::Holder<xercesc::DOMLSParser> parser(
      static_cast<xercesc::DOMImplementationLS*>(implementation)
          ->createLSParser(xercesc::DOMImplementationLS::MODE_SYNCHRONOUS, nullptr));
  const xercesc::MemBufInputSource bytes(reinterpret_cast<const XMLByte*>(document.data()), document.size(),
                                         "document");
  const xercesc::Wrapper4InputSource input(const_cast<xercesc::MemBufInputSource*>(&bytes), false);
  return parser->parse(&input)->getDocumentElement()->getChildElementCount();
}

void report(benchmark::State& state, const std::string& document) {
  const auto sets = static_cast<double>(setsIn(static_cast<std::size_t>(state.range(0))));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * document.size()));
  state.counters["per_set"] =
      benchmark::Counter(sets, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void importDocument(benchmark::State& state) {
  const auto packages = static_cast<std::size_t>(state.range(0));
  const auto document = documentOf(packages);
  if (import(document) != setsIn(packages)) throw std::logic_error("the import does not make every set");
  for (auto _ : state) benchmark::DoNotOptimize(import(document));
  report(state, document);
}

void parseSameDocument(benchmark::State& state) {
  const auto document = documentOf(static_cast<std::size_t>(state.range(0)));
  if (parse(document) != 1) throw std::logic_error("the document has more than its Preface");
  for (auto _ : state) benchmark::DoNotOptimize(parse(document));
  report(state, document);
}

// 1,002 and 50,002 sets.
BENCHMARK(importDocument)->Arg(200)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(parseSameDocument)->Arg(200)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace Vantor::Benchmarks
