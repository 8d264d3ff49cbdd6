#include "Core/MXF/PartitionPack.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/MXFBytes.h"

namespace Vantor::MXF {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

const KLV::Key kHeaderPack = KLV::partitionPackKey(KLV::PartitionKind::kHeader, KLV::PartitionStatus::kClosedComplete);

const Bytes kValue = {0x00, 0x01,                                      // major version
                      0x00, 0x03,                                      // minor version
                      0x00, 0x00, 0x02, 0x00,                          // KAG of 512
                      0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x11,  // this partition
                      0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x12,  // previous partition
                      0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x13,  // footer partition
                      0x00, 0x00, 0x00, 0x04, 0x00, 0x00, 0x00, 0x14,  // header byte count
                      0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x15,  // index byte count
                      0x00, 0x00, 0x00, 0x16,                          // index SID
                      0x00, 0x00, 0x00, 0x07, 0x00, 0x00, 0x00, 0x17,  // body offset
                      0x00, 0x00, 0x00, 0x18,                          // body SID
                      0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,  // OP1a
                      0x0d, 0x01, 0x02, 0x01, 0x01, 0x01, 0x09, 0x00,  //
                      0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x10,  // two labels of 16
                      0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x02,  // MPEG video
                      0x0d, 0x01, 0x03, 0x01, 0x02, 0x04, 0x60, 0x01,  //
                      0x06, 0x0e, 0x2b, 0x34, 0x04, 0x01, 0x01, 0x01,  // wave
                      0x0d, 0x01, 0x03, 0x01, 0x02, 0x06, 0x01, 0x00};

PartitionPack read(const Bytes& value, const KLV::Key& key = kHeaderPack, uint64 origin = 0) {
  return PartitionPack::parse(key, value.data(), value.size(), origin);
}

/// The value with another count and item size of essence containers.
Bytes withBatch(uint32 count, uint32 itemSize, std::size_t items) {
  return Bytes(kValue.begin(), kValue.begin() + 80) + bigEndian(count) + bigEndian(itemSize) + Bytes(items, 0x06);
}

TEST(PartitionPack, ReadsEveryFieldInWireOrder) {
  const PartitionPack pack = read(kValue);
  EXPECT_EQ(pack.majorVersion, 1u);
  EXPECT_EQ(pack.minorVersion, 3u);
  EXPECT_EQ(pack.kagSize, 512u);
  EXPECT_EQ(pack.thisPartition, 0x100000011u);
  EXPECT_EQ(pack.previousPartition, 0x200000012u);
  EXPECT_EQ(pack.footerPartition, 0x300000013u);
  EXPECT_EQ(pack.headerByteCount, 0x400000014u);
  EXPECT_EQ(pack.indexByteCount, 0x500000015u);
  EXPECT_EQ(pack.indexSID, 0x16u);
  EXPECT_EQ(pack.bodyOffset, 0x700000017u);
  EXPECT_EQ(pack.bodySID, 0x18u);
  EXPECT_EQ(pack.operationalPattern.key(), keyOf("06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"));
  ASSERT_EQ(pack.essenceContainers.size(), 2u);
  EXPECT_EQ(pack.essenceContainers[0].key(), keyOf("06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.60.01"));
  EXPECT_EQ(pack.essenceContainers[1].key(), keyOf("06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.01.00"));
  EXPECT_EQ(partitionPackValue(pack), kValue);
}

Bytes written(const PartitionPack& pack) {
  DataIO::Memory::MemoryDataSink sink;
  pack.render(sink);
  return sink.take();
}

TEST(PartitionPack, WritesTheBytesThatWereRead) {
  EXPECT_EQ(written(read(kValue)), kValue);
  for (const uint32 itemSize : {0u, 16u, 77u})
    EXPECT_EQ(written(read(withBatch(0, itemSize, 0))), withBatch(0, itemSize, 0));
}

TEST(PartitionPack, TakesKindAndStatusFromTheKey) {
  const PartitionPack pack =
      read(kValue, KLV::partitionPackKey(KLV::PartitionKind::kBody, KLV::PartitionStatus::kGenericStream));
  EXPECT_EQ(pack.kind, KLV::PartitionKind::kBody);
  EXPECT_EQ(pack.status, KLV::PartitionStatus::kGenericStream);
}

TEST(PartitionPack, RefusesAnotherKey) { EXPECT_THROW(read(kValue, KLV::primerPackKey()), Exceptions::InvalidFormat); }

TEST(PartitionPack, RefusesAValueThatIsCutAnywhere) {
  for (std::size_t size = 0; size < kValue.size(); ++size) {
    EXPECT_THROW(read(Bytes(kValue.begin(), kValue.begin() + size)), Exceptions::ParseError) << size;
  }
}

TEST(PartitionPack, NamesTheOffsetInTheFile) {
  EXPECT_THAT([] { read(Bytes(kValue.begin(), kValue.begin() + 9), kHeaderPack, 1000); },
              ThrowsMessage<Exceptions::ParseError>(HasSubstr("offset 1008")));
  EXPECT_THAT([] { read(withBatch(3, 16, 32), kHeaderPack, 1000); },
              ThrowsMessage<Exceptions::ParseError>(HasSubstr("offset 1088")));
}

TEST(PartitionPack, RefusesEssenceContainersThatDoNotFillTheValue) {
  EXPECT_THROW(read(withBatch(1, 16, 32)), Exceptions::ParseError);
  EXPECT_THROW(read(withBatch(3, 16, 32)), Exceptions::ParseError);
  EXPECT_THROW(read(withBatch(2, 16, 33)), Exceptions::ParseError);
  EXPECT_THROW(read(withBatch(2, 15, 32)), Exceptions::ParseError);
  EXPECT_THROW(read(withBatch(0, 16, 1)), Exceptions::ParseError);
}

TEST(PartitionPack, ComparesTheCountOfEssenceContainersIn64Bits) {
  EXPECT_THROW(read(withBatch(0x10000000, 16, 0)), Exceptions::ParseError);
  EXPECT_THROW(read(withBatch(0xffffffff, 0xffffffff, 16)), Exceptions::ParseError);
}

TEST(PartitionPack, AcceptsAnEmptyBatchOfAnyItemSize) {
  EXPECT_TRUE(read(withBatch(0, 16, 0)).essenceContainers.empty());
  EXPECT_TRUE(read(withBatch(0, 0, 0)).essenceContainers.empty());
}

}  // namespace
}  // namespace Vantor::MXF
