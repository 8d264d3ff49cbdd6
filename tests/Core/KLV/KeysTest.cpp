#include "Core/KLV/Keys.h"

#include <gmock/gmock.h>

#include "Core/Platform/Exceptions.h"

namespace Vantor::KLV {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;

Key key(const char16_t* dotted) { return Key(wstring(dotted), kDottedForm); }

const Key kPreface = key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.00");
const Key kPrimer = key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00");
const Key kIndexTable = key(u"06.0E.2B.34.02.53.01.01.0D.01.02.01.01.10.01.00");
const Key kRandomIndex = key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.11.01.00");
const Key kHeaderPartition = key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.04.00");
const Key kDescriptiveSet = key(u"06.0E.2B.34.02.53.01.01.0D.01.04.01.01.01.01.00");
const Key kEssence = key(u"06.0E.2B.34.01.02.01.01.0D.01.03.01.15.01.05.00");

TEST(StructuralMetadataSet, IsRecognisedByItsKey) {
  EXPECT_TRUE(isStructuralMetadataSet(kPreface));
  EXPECT_TRUE(isStructuralMetadataSet(key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.5A.00")));
}

TEST(StructuralMetadataSet, IsRecognisedWhateverCodingAndVersion) {
  EXPECT_TRUE(isStructuralMetadataSet(key(u"06.0E.2B.34.02.13.01.01.0D.01.01.01.01.01.2F.00")));
  EXPECT_TRUE(isStructuralMetadataSet(key(u"06.0E.2B.34.02.53.01.05.0D.01.01.01.01.01.2F.00")));
}

TEST(StructuralMetadataSet, IsNotWhatOnlyResemblesOne) {
  EXPECT_FALSE(isStructuralMetadataSet(kDescriptiveSet));
  EXPECT_FALSE(isStructuralMetadataSet(kPrimer));
  EXPECT_FALSE(isStructuralMetadataSet(kIndexTable));
  EXPECT_FALSE(isStructuralMetadataSet(Key()));
  // A register entry of another category, another register, and a last octet that is not zero.
  EXPECT_FALSE(isStructuralMetadataSet(key(u"06.0E.2B.34.01.53.01.01.0D.01.01.01.01.01.2F.00")));
  EXPECT_FALSE(isStructuralMetadataSet(key(u"06.0E.2B.34.02.53.02.01.0D.01.01.01.01.01.2F.00")));
  EXPECT_FALSE(isStructuralMetadataSet(key(u"06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.2F.01")));
}

TEST(LocalSet, IsAGroupWithTwoByteTags) {
  EXPECT_TRUE(isLocalSet(kPreface));
  EXPECT_TRUE(isLocalSet(kDescriptiveSet));
  EXPECT_TRUE(isLocalSet(key(u"06.0E.2B.34.02.13.01.01.0F.01.01.01.01.01.01.00")));
}

TEST(LocalSet, IsNotAPackAnElementOrAGroupWithOtherTags) {
  EXPECT_FALSE(isLocalSet(kPrimer));
  EXPECT_FALSE(isLocalSet(kEssence));
  EXPECT_FALSE(isLocalSet(key(u"06.0E.2B.34.01.53.01.01.0D.01.01.01.01.01.2F.00")));
  EXPECT_FALSE(isLocalSet(key(u"06.0E.2B.34.02.03.01.01.0D.01.01.01.01.01.2F.00")));
  EXPECT_FALSE(isLocalSet(key(u"06.0E.2B.35.02.53.01.01.0D.01.01.01.01.01.2F.00")));
}

TEST(Fill, IsRecognisedInItsFirstAndItsSecondVersion) {
  EXPECT_TRUE(isFill(key(u"06.0E.2B.34.01.01.01.01.03.01.02.10.01.00.00.00")));
  EXPECT_TRUE(isFill(key(u"06.0E.2B.34.01.01.01.02.03.01.02.10.01.00.00.00")));
  EXPECT_FALSE(isFill(key(u"06.0E.2B.34.01.02.01.02.03.01.02.10.01.00.00.00")));
  EXPECT_FALSE(isFill(key(u"06.0E.2B.34.01.01.01.02.03.01.02.10.02.00.00.00")));
}

TEST(ObjectDirectoryKeys, AreThoseOfTheDirectoryAndOfItsRoot) {
  const Key directory = key(u"96.13.B3.8A.87.34.87.46.F1.02.96.F0.56.E0.4D.2A");
  const Key root = key(u"80.53.08.00.36.21.08.04.B3.B3.98.A5.1C.90.11.D4");
  EXPECT_TRUE(isObjectDirectory(directory) && isOfObjectDirectory(directory) && !isObjectDirectoryRoot(directory));
  EXPECT_TRUE(isObjectDirectoryRoot(root) && isOfObjectDirectory(root) && !isObjectDirectory(root));
  EXPECT_FALSE(isOfObjectDirectory(root.withOctet(8, 0x05)));
  EXPECT_TRUE(canBeSet(directory) && canBeSet(root));
}

TEST(Fill, IsWrittenInItsSecondVersion) {
  EXPECT_EQ(fillKey().toString(), u"06.0E.2B.34.01.01.01.02.03.01.02.10.01.00.00.00");
}

TEST(FileStructureKeys, AreWrittenAsTheStandardListsThem) {
  EXPECT_EQ(primerPackKey(), kPrimer);
  EXPECT_EQ(randomIndexPackKey(), kRandomIndex);
  EXPECT_EQ(partitionPackKey(PartitionKind::kHeader, PartitionStatus::kClosedComplete), kHeaderPartition);
  EXPECT_EQ(partitionPackKey(PartitionKind::kBody, PartitionStatus::kGenericStream).toString(),
            u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.03.11.00");
}

TEST(FileStructureKeys, AreRecognisedInEveryVersionAndNotTakenForEachOther) {
  EXPECT_TRUE(isPrimerPack(key(u"06.0E.2B.34.02.05.01.02.0D.01.02.01.01.05.01.00")));
  EXPECT_TRUE(isRandomIndexPack(key(u"06.0E.2B.34.02.05.01.02.0D.01.02.01.01.11.01.00")));
  EXPECT_TRUE(isIndexTableSegment(key(u"06.0E.2B.34.02.53.01.02.0D.01.02.01.01.10.01.00")));
  for (const Key& other : {kPreface, kHeaderPartition, kEssence, fillKey(), Key()}) {
    EXPECT_FALSE(isPrimerPack(other));
    EXPECT_FALSE(isRandomIndexPack(other));
    EXPECT_FALSE(isIndexTableSegment(other));
  }
  EXPECT_FALSE(isPrimerPack(kRandomIndex));
  EXPECT_FALSE(isRandomIndexPack(kPrimer));
}

TEST(FileStructureKeys, AreNotRecognisedWithTheCodingOfAnotherGroup) {
  EXPECT_FALSE(isPrimerPack(key(u"06.0E.2B.34.02.53.01.01.0D.01.02.01.01.05.01.00")));
  EXPECT_FALSE(isIndexTableSegment(key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.10.01.00")));
  EXPECT_FALSE(isPartitionPack(key(u"06.0E.2B.34.02.53.01.01.0D.01.02.01.01.02.04.00")));
}

TEST(PartitionPack, TellsItsKindAndStatus) {
  for (const auto kind : {PartitionKind::kHeader, PartitionKind::kBody, PartitionKind::kFooter}) {
    for (const auto status : {PartitionStatus::kOpenIncomplete, PartitionStatus::kClosedIncomplete,
                              PartitionStatus::kOpenComplete, PartitionStatus::kClosedComplete}) {
      const Key pack = partitionPackKey(kind, status);
      EXPECT_TRUE(isPartitionPack(pack));
      EXPECT_EQ(partitionKind(pack), kind);
      EXPECT_EQ(partitionStatus(pack), status);
      EXPECT_EQ(isHeaderPartitionPack(pack), kind == PartitionKind::kHeader);
    }
  }
}

TEST(PartitionPack, HasAGenericStreamOnlyInTheBody) {
  EXPECT_TRUE(isPartitionPack(partitionPackKey(PartitionKind::kBody, PartitionStatus::kGenericStream)));
  EXPECT_FALSE(isPartitionPack(partitionPackKey(PartitionKind::kHeader, PartitionStatus::kGenericStream)));
  EXPECT_FALSE(isPartitionPack(partitionPackKey(PartitionKind::kFooter, PartitionStatus::kGenericStream)));
}

TEST(PartitionPack, IsNotAnyOtherKindOrStatus) {
  EXPECT_FALSE(isPartitionPack(key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.01.04.00")));
  EXPECT_FALSE(isPartitionPack(key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.00.00")));
  EXPECT_FALSE(isPartitionPack(key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.05.00")));
  EXPECT_FALSE(isPartitionPack(key(u"06.0E.2B.34.02.05.01.01.0D.01.02.01.01.02.04.01")));
  EXPECT_FALSE(isPartitionPack(kPrimer));
  EXPECT_FALSE(isPartitionPack(kRandomIndex));
}

TEST(PartitionPack, NamesTheKeyThatIsNotOne) {
  EXPECT_THAT([] { partitionKind(kPrimer); },
              ThrowsMessage<Exceptions::InvalidFormat>(StrEq("expected the key of a partition pack, found "
                                                             "06.0E.2B.34.02.05.01.01.0D.01.02.01.01.05.01.00")));
  EXPECT_THROW(partitionStatus(kPreface), Exceptions::InvalidFormat);
}

TEST(PartitionStatus, TellsWhetherThePartitionIsClosed) {
  EXPECT_FALSE(isClosed(PartitionStatus::kOpenIncomplete));
  EXPECT_FALSE(isClosed(PartitionStatus::kOpenComplete));
  EXPECT_TRUE(isClosed(PartitionStatus::kClosedIncomplete));
  EXPECT_TRUE(isClosed(PartitionStatus::kClosedComplete));
  EXPECT_TRUE(isClosed(PartitionStatus::kGenericStream));
}

}  // namespace
}  // namespace Vantor::KLV
