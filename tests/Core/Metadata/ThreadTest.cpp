#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor {
namespace {

TEST(PartitionMetadataThreads, ReadAPartitionFromWhichSetsWereRemoved) {
  constexpr std::size_t kSets = 1000;
  PartitionMetadata partition(builtInDictionary());
  for (std::size_t i = 0; i < kSets; ++i) partition.createMetadataSet("Sequence");
  const auto all = partition.findAll("Sequence");
  for (std::size_t i = 0; i < kSets; i += 2) partition.remove(all[i]);

  std::vector<std::size_t> counts(6);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    threads.emplace_back([&partition, &count = counts[i], i] {
      if (i % 3 == 0) count = partition.sets().size();
      if (i % 3 == 1) count = partition.entries().size();
      if (i % 3 == 2) count = partition.findAll("Sequence").size();
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(counts, std::vector<std::size_t>(counts.size(), kSets / 2));
}

}  // namespace
}  // namespace Vantor
