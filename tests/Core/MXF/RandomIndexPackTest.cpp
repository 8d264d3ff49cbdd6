#include "Core/MXF/RandomIndexPack.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"
#include "tests/Core/MXF/MXFBytes.h"

namespace Vantor::MXF {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<uint64> offsetsIn(const Bytes& bytes, uint64 runIn = 0) {
  const TemporaryFile file(bytes);
  DataIO::File::FileDataSource source(file.path());
  return readRandomIndexPack(source, runIn);
}

TEST(RandomIndexPack, ReadsTheOffsetsAtTheEndOfTheFile) {
  const Bytes pack = {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x05, 0x01, 0x01, 0x0d, 0x01, 0x02, 0x01, 0x01, 0x11, 0x01, 0x00,
                      0x1c,                                                                    // 28 bytes
                      0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,  // no BodySID, 0
                      0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x63,  // BodySID 1, 99
                      0x00, 0x00, 0x00, 0x2d};                                                 // 45 bytes in all
  EXPECT_THAT(offsetsIn(zeros(100) + pack), ElementsAre(0, 99));
}

TEST(RandomIndexPack, AddsTheRunIn) {
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({0, 50}), 7), ElementsAre(7, 57));
}

TEST(RandomIndexPack, IsNotThereWhenTheFileEndsOtherwise) {
  EXPECT_THAT(offsetsIn({}), IsEmpty());
  EXPECT_THAT(offsetsIn({0, 0, 0}), IsEmpty());
  EXPECT_THAT(offsetsIn({0, 0, 0, 4}), IsEmpty());
  EXPECT_THAT(offsetsIn({0xff, 0xff, 0xff, 0xff}), IsEmpty());
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({0, 50}) + zeros(1)), IsEmpty());
  EXPECT_THAT(offsetsIn(zeros(100) + klv(KLV::primerPackKey(), bigEndian(uint32{24}))), IsEmpty());
}

TEST(RandomIndexPack, IsNotBelievedWhenItContradictsItself) {
  const auto packOf = [](const Bytes& value) { return klv(KLV::randomIndexPackKey(), value); };
  EXPECT_THAT(offsetsIn(packOf(zeros(13) + bigEndian(uint32{37}))), IsEmpty()) << "an entry and a byte";
  EXPECT_THAT(offsetsIn(klvHeader(KLV::randomIndexPackKey(), 28) + zeros(12) + bigEndian(uint32{36})), IsEmpty())
      << "its length is not what is there";
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({})), IsEmpty());
}

TEST(RandomIndexPack, IsNotBelievedWhenItsOffsetsDoNotRiseWithinTheFile) {
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({0, 50, 50})), IsEmpty());
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({50, 0})), IsEmpty());
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({0, 100})), IsEmpty());
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({0, 0xffffffffffffffff})), IsEmpty());
  EXPECT_THAT(offsetsIn(zeros(100) + randomIndexPack({0, 50}), 60), IsEmpty());
}

/// Where the pack stands among KLVs that follow a partition pack; none when there is none.
std::optional<uint64> placeIn(const Bytes& bytes) {
  const TemporaryFile file(zeros(100) + bytes);
  DataIO::File::FileDataSource source(file.path());
  const auto pack = findRandomIndexPack(source, 100);
  return pack ? std::optional<uint64>(pack->offset - 100) : std::nullopt;
}

TEST(FindRandomIndexPack, FindsItAtTheEndWhateverIsBefore) {
  EXPECT_EQ(placeIn(Bytes(33, 0xff) + randomIndexPack({0, 50})), 33u);
  EXPECT_EQ(placeIn(randomIndexPack({50, 0, 9999})), 0u);
}

TEST(FindRandomIndexPack, FindsItAmongKLVsWithZerosBehind) {
  EXPECT_EQ(placeIn(fill(10) + randomIndexPack({0, 50}) + zeros(99)), 30u);
  EXPECT_EQ(placeIn(fill(10) + randomIndexPack({0, 50}) + fill(5)), 30u);
  EXPECT_EQ(placeIn(fill(10) + zeros(16) + randomIndexPack({0, 50}) + zeros(1)), std::nullopt);
}

TEST(FindRandomIndexPack, FindsNoneWhereNoneIs) {
  EXPECT_EQ(placeIn({}), std::nullopt);
  EXPECT_EQ(placeIn(fill(10) + setWithUID(kPreface, 1)), std::nullopt);
}

TEST(FindRandomIndexPack, RefusesWhatCannotBeFollowed) {
  const Bytes pack = randomIndexPack({0, 50});
  EXPECT_THROW(placeIn(pack + Bytes(40, 0xff)), Exceptions::ParseError);
  EXPECT_THROW(placeIn(pack + klvHeader(KLV::fillKey(), 1)), Exceptions::ParseError);
  EXPECT_THROW(placeIn(pack + partition({})), Exceptions::ParseError);
  EXPECT_THROW(placeIn(pack + pack + fill(1)), Exceptions::ParseError);
  EXPECT_THROW(placeIn(klv(KLV::randomIndexPackKey(), zeros(15))), Exceptions::ParseError);
}

TEST(FindRandomIndexPack, LeadsToItsEntriesWhateverTheySay) {
  const TemporaryFile file(randomIndexPack({70, 0, ~uint64{0}}));
  DataIO::File::FileDataSource source(file.path());
  std::vector<uint64> offsets;
  readRandomIndexEntries(source, *findRandomIndexPack(source, 0), [&](uint32 bodySID, uint64 offset) {
    EXPECT_EQ(bodySID, 1u);
    offsets.push_back(offset);
  });
  EXPECT_THAT(offsets, ElementsAre(70, 0, ~uint64{0}));
}

}  // namespace
}  // namespace Vantor::MXF
