#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "Registers/DictionaryFiles.h"

namespace Vantor {
namespace {

/// Bytes that the process has from the heap; 0 where that is not known.
std::size_t heapInUse() {
#if defined(__GLIBC__)
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
#else
  return 0;
#endif
}

/// The first use of the built-in dictionary in this process, before anything else has run.
struct FirstUse {
  FirstUse() {
    const auto heapBefore = heapInUse();
    const auto start = std::chrono::steady_clock::now();
    dictionary = builtInDictionary();
    milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    heap = heapInUse() - heapBefore;
  }
  SharedPtr<const MetaMetadata::Dictionary> dictionary;
  double milliseconds = 0;
  std::size_t heap = 0;
};
const FirstUse kFirstUse;  // NOLINT(cert-err58-cpp): what it throws ends the program

/// Only reports what was measured when the program started.
void firstUseOfDictionary(benchmark::State& state) {
  if (kFirstUse.dictionary->findSetBySymbol("Preface") == nullptr) state.SkipWithError("no Preface");
  for (auto _ : state) benchmark::DoNotOptimize(builtInDictionary());
  state.counters["first_ms"] = kFirstUse.milliseconds;
  state.counters["heap_KiB"] = static_cast<double>(kFirstUse.heap) / 1024;
}
BENCHMARK(firstUseOfDictionary)->Iterations(1);

/// The same in a process that has done it before.
void makeDictionary(benchmark::State& state) {
  if (builtInDefinitions().makeDictionary()->findSetBySymbol("Preface") == nullptr) state.SkipWithError("no Preface");
  std::size_t sets = 0;
  for (auto _ : state) {
    const auto dictionary = builtInDefinitions().makeDictionary();
    sets += static_cast<std::size_t>(dictionary->metaMetadataSetEnd() - dictionary->metaMetadataSetBegin());
  }
  state.SetItemsProcessed(static_cast<int64>(sets));
}
BENCHMARK(makeDictionary)->Unit(benchmark::kMicrosecond);

/// The registers that SMPTE publishes, read from XML and put over the built-in definitions.
void loadRegisters(benchmark::State& state) {
  const Path registers = VANTOR_SHARED_REGISTERS_DIR;
  if (!std::filesystem::exists(registers / "Groups.xml")) return state.SkipWithError("there are no registers");
  for (auto _ : state) {
    auto definitions = builtInDefinitions();
    Registers::readDictionaryFiles({registers / "Groups.xml", registers / "Elements.xml", registers / "Types.xml"},
                                   definitions);
    if (definitions.makeDictionary()->findSetBySymbol("Preface") == nullptr) state.SkipWithError("no Preface");
  }
}
BENCHMARK(loadRegisters)->Unit(benchmark::kMillisecond);

void findSetAndProperty(benchmark::State& state) {
  const auto dictionary = builtInDictionary();
  const auto key = MetaMetadata::registerKey("060e2b34.02130101.0d010101.01012800");
  const Types::UniversalLabel label(MetaMetadata::registerKey("060e2b34.0101010e.0401050a.03000000"));
  const Types::UniversalLabel depth(MetaMetadata::registerKey("060e2b34.01010102.04010503.0a000000"));
  const auto* set = dictionary->findSet(key);
  if (set == nullptr || set->findAttribute(depth) == nullptr || set->findAttribute(label) != nullptr) {
    state.SkipWithError("the CDCI descriptor is not as expected");
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(dictionary->findSet(key)->findAttribute(depth));
    benchmark::DoNotOptimize(set->findAttribute(label));
  }
  state.SetItemsProcessed(3 * static_cast<int64>(state.iterations()));
}
BENCHMARK(findSetAndProperty);

}  // namespace
}  // namespace Vantor
