#include "Edit/Signature.h"

#include <gmock/gmock.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Types/Types.h"

namespace Vantor::Edit {
namespace {

using Types::Timestamp;

constexpr const char* kSigned = VANTOR_TEST_DATA_DIR "/op1a.mxf";

std::unique_ptr<PartitionMetadata> readSample() { return MXF::readHeaderMetadata(kSigned, builtInDictionary()); }

Signature signature() {
  return {u"A company",
          u"A product",
          u"1.2",
          Types::ProductVersion(1, 2, 0, 0, Types::ReleaseVersion::kReleased),
          Types::UUID(std::array<uint8, 16>{1, 2, 3}),
          Timestamp(2026, 11, 22, 8, 9, 10, 500)};
}

TEST(Signature, IsTheLastIdentificationOfThePreface) {
  const auto before = readSample(), after = readSample();
  after->find("MaterialPackage").set("PackageName", u"A title");
  const auto uid = sign(*before, *after, signature());
  const auto& identification = *after->findByInstanceUID(uid).front();
  EXPECT_EQ(identification.text("ApplicationSupplierName"), u"A company");
  EXPECT_EQ(identification.text("ApplicationName"), u"A product");
  EXPECT_EQ(identification.text("ApplicationVersionString"), u"1.2");
  EXPECT_EQ(identification.text("ApplicationVersion"), u"1.2.0.0 release");
  EXPECT_EQ(identification.text("FileModificationDate"), u"2026-11-22T08:09:10.500");
  EXPECT_EQ(identification.get<Types::AUID>("ApplicationProductID").rawBuffer()[1], 2);
  const auto& list = dynamic_cast<const CollectionElement&>(*after->preface()->find("IdentificationList"));
  ASSERT_EQ(list.size(), before->findAll("Identification").size() + 1);
  EXPECT_TRUE(std::equal(uid.rawBuffer(), uid.rawBuffer() + 16, list.value()->at(list.size() - 1).rawBuffer()));
}

TEST(Signature, GivesChangedAndNewSetsItsGeneration) {
  const auto before = readSample(), after = readSample();
  after->find("MaterialPackage").set("PackageName", u"A title");
  auto& added = after->createMetadataSet("TaggedValue");
  const auto uid = sign(*before, *after, signature());
  const auto generation = after->findByInstanceUID(uid).front()->text("GenerationID");
  EXPECT_EQ(after->find("MaterialPackage").text("LinkedGenerationID"), generation);
  EXPECT_EQ(added.text("LinkedGenerationID"), generation);
  EXPECT_EQ(after->preface()->text("LinkedGenerationID"), generation);
  EXPECT_EQ(after->preface()->text("FileLastModified"), u"2026-11-22T08:09:10.500");
  const auto& unchanged = after->find("ContentStorage");
  EXPECT_EQ(unchanged.tryGet<Types::UUID>("LinkedGenerationID") != nullptr,
            before->find("ContentStorage").tryGet<Types::UUID>("LinkedGenerationID") != nullptr);
}

TEST(Signature, IsUsedAgainForTheSameEdit) {
  const auto before = readSample(), after = readSample();
  after->find("MaterialPackage").set("PackageName", u"A title");
  const auto first = sign(*before, *after, signature());
  const auto generation = after->findByInstanceUID(first).front()->text("GenerationID");
  after->find("ContentStorage").set("LinkedGenerationID", Types::UUID());
  EXPECT_EQ(sign(*before, *after, signature(), first), first);
  EXPECT_EQ(after->findAll("Identification").size(), before->findAll("Identification").size() + 1);
  EXPECT_EQ(after->find("ContentStorage").text("LinkedGenerationID"), generation);
}

TEST(Signature, HasTheTimeOfSigningWhereNoneIsGiven) {
  const auto before = readSample(), after = readSample();
  after->find("MaterialPackage").set("PackageName", u"A title");
  auto unknown = signature();
  unknown.time.reset();
  sign(*before, *after, unknown);
  EXPECT_GE(after->preface()->get<Timestamp>("FileLastModified").year(), 2026);
}

TEST(Signature, NeedsAPreface) {
  const auto before = readSample();
  PartitionMetadata after(builtInDictionary());
  EXPECT_THROW(sign(*before, after, signature()), Exceptions::InvalidFormat);
  EXPECT_TRUE(after.sets().empty());
}

}  // namespace
}  // namespace Vantor::Edit
