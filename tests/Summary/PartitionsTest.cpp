#include <gtest/gtest.h>

#include "Summary/Summary.h"

namespace Vantor::Summary {
namespace {

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
