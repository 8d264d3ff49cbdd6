#include <benchmark/benchmark.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/DictionaryBuilder.h"

namespace Vantor {
namespace {

/// What a process pays once, at its first use of the built-in dictionary.
void makeDictionary(benchmark::State& state) {
  if (makeBuiltInDictionary()->findSetBySymbol("Preface") == nullptr) state.SkipWithError("no Preface");
  std::size_t sets = 0;
  for (auto _ : state) {
    const auto dictionary = makeBuiltInDictionary();
    sets += static_cast<std::size_t>(dictionary->metaMetadataSetEnd() - dictionary->metaMetadataSetBegin());
  }
  state.SetItemsProcessed(static_cast<int64>(sets));
}
BENCHMARK(makeDictionary)->Unit(benchmark::kMicrosecond);

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
