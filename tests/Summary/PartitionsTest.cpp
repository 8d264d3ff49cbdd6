#include <gtest/gtest.h>

#include "Summary/Summary.h"

namespace Vantor::Summary {
namespace {

using KLV::PartitionKind;
using KLV::PartitionStatus;

std::size_t bestNumberOf(const std::vector<Partition>& partitions) {
  const auto* best = bestOf(partitions);
  return best == nullptr ? 99 : best->number;
}

TEST(Partitions, RankClosedBeforeOpenAndCompleteBeforeIncomplete) {
  EXPECT_GT(rankOf(PartitionStatus::kClosedComplete), rankOf(PartitionStatus::kClosedIncomplete));
  EXPECT_GT(rankOf(PartitionStatus::kClosedIncomplete), rankOf(PartitionStatus::kOpenComplete));
  EXPECT_GT(rankOf(PartitionStatus::kOpenComplete), rankOf(PartitionStatus::kOpenIncomplete));
  EXPECT_GT(rankOf(PartitionStatus::kOpenIncomplete), rankOf(PartitionStatus::kGenericStream));
}

TEST(Partitions, TheLastOfEqualOnesIsTheBest) {
  const Partition header = {0, PartitionKind::kHeader, PartitionStatus::kClosedComplete, true};
  Partition body = {1, PartitionKind::kBody, PartitionStatus::kOpenIncomplete, true};
  Partition footer = {2, PartitionKind::kFooter, PartitionStatus::kClosedComplete, true};
  EXPECT_EQ(bestNumberOf({header, body, footer}), 2u);
  footer.hasMetadata = false;
  EXPECT_EQ(bestNumberOf({header, body, footer}), 0u);
  EXPECT_EQ(bestNumberOf({body, footer}), 1u);
  EXPECT_EQ(bestNumberOf({footer}), 99u);
  EXPECT_EQ(bestNumberOf({}), 99u);
}

TEST(Partitions, OfADamagedPackHaveNoMetadata) {
  MXF::FileStructure structure;
  structure.partitions.resize(2);
  structure.partitions[0].pack.headerByteCount = 100;
  structure.partitions[1].pack.headerByteCount = 100;
  structure.partitions[1].damaged = true;
  const auto partitions = partitionsOf(structure);
  ASSERT_EQ(partitions.size(), 2u);
  EXPECT_TRUE(partitions[0].hasMetadata);
  EXPECT_FALSE(partitions[1].hasMetadata);
  EXPECT_EQ(partitions[1].number, 1u);
}

}  // namespace
}  // namespace Vantor::Summary
