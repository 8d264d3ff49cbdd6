#include "Core/Metadata/PartitionDictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/DataIO/BigEndian.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using Types::LocalTag;

/// A label that no dictionary has.
Types::UniversalLabel labelNumber(uint32 number, uint8 version = 1) {
  auto octets = hex("060e2b34 010101 01 7f7f7f7f 00000000");
  octets[7] = version;
  DataIO::writeBigEndian<uint32>(octets.data() + 12, number);
  return Types::UniversalLabel(octets.data());
}

class PartitionDictionaryTest : public testing::Test {
 protected:
  PartitionDictionary tags_{testDictionary()};
};

TEST_F(PartitionDictionaryTest, FindsTheLabelOfATag) {
  tags_.addPrimerEntry({0x8001, labelNumber(1).key()});
  EXPECT_EQ(tags_.find(LocalTag(0x8001)), labelNumber(1));
  ASSERT_NE(tags_.tryFind(0x8001), nullptr);
  EXPECT_EQ(*tags_.tryFind(0x8001), labelNumber(1));
}

TEST_F(PartitionDictionaryTest, TakesBothOrdersOfTheHalvesOfAnAUIDForOneIdentification) {
  const Types::UniversalLabel swappedUUID(hex("a2000000 00000001 0f0e0d0c 00004001").data());
  const Types::UniversalLabel uuid(hex("0f0e0d0c 00004001 a2000000 00000001").data());
  const Types::UniversalLabel swappedLabel(hex("7f7f7f7f 00000007 060e2b34 01010105").data());
  tags_.addPrimerEntry({0x8001, uuid.key()});
  tags_.addPrimerEntry({0x8002, swappedLabel.key()});
  EXPECT_EQ(tags_.findOrGenerate(swappedUUID).value(), 0x8001);
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(7)).value(), 0x8002);
  EXPECT_THAT(tags_.primerEntries(), SizeIs(2));
}

TEST_F(PartitionDictionaryTest, NamesATagThatThePrimerDoesNotList) {
  EXPECT_EQ(tags_.tryFind(0x8001), nullptr);
  try {
    tags_.find(LocalTag(0x8001));
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::NotFoundInPrimer& error) {
    EXPECT_EQ(error.message(), "local tag 80.01 is not in the primer pack");
  }
}

TEST_F(PartitionDictionaryTest, DoesNotKnowTheTagsOfTheDictionary) {
  EXPECT_THROW(tags_.find(LocalTag(0x4001)), Exceptions::NotFoundInPrimer);
}

TEST_F(PartitionDictionaryTest, GivesALabelTheTagThatItHas) {
  tags_.addPrimerEntry({0x8001, labelNumber(1).key()});
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0x8001));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1), 0x4001), LocalTag(0x8001));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1, 0x0e)), LocalTag(0x8001)) << "another version of the label";
  EXPECT_THAT(tags_.primerEntries(), SizeIs(1));
}

TEST_F(PartitionDictionaryTest, GivesALabelThePreferredTagWhileItIsFree) {
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1), 0x4001), LocalTag(0x4001));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(2), 0x4001), LocalTag(0xffff));
  EXPECT_EQ(tags_.find(LocalTag(0x4001)), labelNumber(1));
}

TEST_F(PartitionDictionaryTest, GivesOtherLabelsTheHighestFreeDynamicTags) {
  tags_.addPrimerEntry({0xfffe, labelNumber(9).key()});
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0xffff));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(2)), LocalTag(0xfffd));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0xffff));
  EXPECT_THAT(tags_.primerEntries(), ElementsAre(KLV::PrimerEntry{0xfffe, labelNumber(9).key()},
                                                 KLV::PrimerEntry{0xffff, labelNumber(1).key()},
                                                 KLV::PrimerEntry{0xfffd, labelNumber(2).key()}));
}

TEST_F(PartitionDictionaryTest, RunsOutOfDynamicTagsAfterAllOfThem) {
  for (uint32 i = 0; i < 0x8000; ++i) EXPECT_EQ(tags_.findOrGenerate(labelNumber(i)).value(), 0xffff - i);
  EXPECT_THROW(tags_.findOrGenerate(labelNumber(0x8000)), Exceptions::InvalidLength);
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(0x8000), 0x4001), LocalTag(0x4001));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(0x7fff)), LocalTag(0x8000));
}

TEST_F(PartitionDictionaryTest, TellsATagWithoutMakingOneUp) {
  tags_.addPrimerEntry({0x8001, labelNumber(1).key()});
  EXPECT_EQ(tags_.tryFindTag(labelNumber(1, 0x0e), 0x4001), 0x8001);
  EXPECT_EQ(tags_.tryFindTag(labelNumber(2)), 0);
  EXPECT_EQ(tags_.tryFindTag(labelNumber(2), 0x4001), 0x4001);
  EXPECT_EQ(tags_.tryFindTag(labelNumber(2), 0x8001), 0);
  EXPECT_THAT(tags_.primerEntries(), SizeIs(1));
}

TEST_F(PartitionDictionaryTest, GivesNoLabelATagThatIsReserved) {
  tags_.reserve(LocalTag(0xffff));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0xfffe));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(2), 0xffff), LocalTag(0xfffd));
  EXPECT_EQ(tags_.tryFindTag(labelNumber(3), 0xffff), 0);
  EXPECT_EQ(tags_.tryFind(0xffff), nullptr);
}

TEST_F(PartitionDictionaryTest, ReservesNoStaticTag) {
  tags_.reserve(LocalTag(0x4001));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1), 0x4001), LocalTag(0x4001));
}

TEST_F(PartitionDictionaryTest, KeepsItsWordForAReservedTagThatThePrimerListsAfterAll) {
  tags_.reserve(LocalTag(0x8001));
  tags_.addPrimerEntry({0x8001, labelNumber(1).key()});
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0x8001));
}

TEST_F(PartitionDictionaryTest, GeneratesTagsThatThePrimerDoesNotList) {
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0xffff));
  EXPECT_EQ(tags_.unlistedTag(1), LocalTag(0xfffd));
  EXPECT_EQ(tags_.unlistedTag(0), LocalTag(0xfffe));
  EXPECT_EQ(tags_.unlistedTag(1), LocalTag(0xfffd));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(2)), LocalTag(0xfffc));
  EXPECT_THAT(tags_.primerEntries(), SizeIs(2));
}

TEST_F(PartitionDictionaryTest, RepeatsItsLastUnlistedTagAfter256) {
  EXPECT_EQ(tags_.unlistedTag(254), LocalTag(0xff01));
  EXPECT_EQ(tags_.unlistedTag(255), LocalTag(0xff00));
  EXPECT_EQ(tags_.unlistedTag(256), LocalTag(0xff00));
  EXPECT_EQ(tags_.unlistedTag(~std::size_t{0}), LocalTag(0xff00));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0xfeff));
}

TEST_F(PartitionDictionaryTest, RepeatsItsLastUnlistedTagWhenAllOthersAreTaken) {
  for (uint32 i = 0; i < 0x7ffe; ++i) tags_.findOrGenerate(labelNumber(i));
  EXPECT_EQ(tags_.unlistedTag(5), LocalTag(0x8000));
  EXPECT_EQ(tags_.unlistedTag(0), LocalTag(0x8001));
  EXPECT_EQ(tags_.unlistedTag(1), LocalTag(0x8000));
}

TEST_F(PartitionDictionaryTest, HasNoUnlistedTagWhenLabelsHaveAllOfThem) {
  for (uint32 i = 0; i < 0x8000; ++i) tags_.findOrGenerate(labelNumber(i));
  EXPECT_THROW(tags_.unlistedTag(0), Exceptions::InvalidLength);
}

TEST_F(PartitionDictionaryTest, KeepsTheFirstMappingAndEveryEntry) {
  tags_.addPrimerEntry({0x8001, labelNumber(1).key()});
  tags_.addPrimerEntry({0x8001, labelNumber(2).key()});
  tags_.addPrimerEntry({0x8002, labelNumber(1).key()});
  EXPECT_EQ(tags_.find(LocalTag(0x8001)), labelNumber(1));
  EXPECT_EQ(tags_.find(LocalTag(0x8002)), labelNumber(1));
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(1)), LocalTag(0x8001));
  EXPECT_THAT(tags_.primerEntries(), SizeIs(3));
}

TEST_F(PartitionDictionaryTest, GivesALabelNoTagThatMeansAnother) {
  tags_.addPrimerEntry({0x8001, labelNumber(1).key()});
  tags_.addPrimerEntry({0x8001, labelNumber(2).key()});
  EXPECT_EQ(tags_.tryFindTag(labelNumber(2)), 0);
  EXPECT_EQ(tags_.findOrGenerate(labelNumber(2)), LocalTag(0xffff));
  EXPECT_EQ(tags_.find(LocalTag(0xffff)), labelNumber(2));
}

}  // namespace
}  // namespace Vantor
