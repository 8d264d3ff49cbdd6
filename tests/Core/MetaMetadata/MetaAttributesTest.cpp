#include "Core/MetaMetadata/MetaAttributes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/MetaMetadata/MetaElement.h"

namespace Vantor::MetaMetadata {
namespace {

using Types::Identifiers::kBatch;
using Types::Identifiers::kPosition;
using Types::Identifiers::kStrongReference;

class RecordingVisitor : public AbstractMetaAttributeVisitor {
 public:
  void visit(const UnknownAttribute& attribute) override { unknown = &attribute; }
  void visit(const MisplacedAttribute& attribute) override { misplaced = &attribute; }
  void visit(const MetaAttribute& attribute) override { known = &attribute; }

  const UnknownAttribute* unknown = nullptr;
  const MisplacedAttribute* misplaced = nullptr;
  const MetaAttribute* known = nullptr;
};

MetaElement position() { return {Types::UniversalLabel(), "StartPosition", kPosition, {}}; }

TEST(MetaAttributes, ShowThemselvesToAVisitorByKind) {
  const auto element = position();
  const ExtensionAttributes extensions;
  const MetaAttribute known(&element, 2, 0x1201, &extensions);
  const MisplacedAttribute misplaced(&element);
  const UnknownAttribute unknown(Types::LocalTag(0x8001));
  RecordingVisitor visitor;
  for (const AbstractMetaAttribute* attribute :
       {static_cast<const AbstractMetaAttribute*>(&known), static_cast<const AbstractMetaAttribute*>(&misplaced),
        static_cast<const AbstractMetaAttribute*>(&unknown)}) {
    attribute->accept(visitor);
  }
  EXPECT_EQ(visitor.known, &known);
  EXPECT_EQ(visitor.misplaced, &misplaced);
  EXPECT_EQ(visitor.unknown, &unknown);
}

TEST(MetaAttributes, TellWhatIsKnownOfAProperty) {
  const auto element = position();
  ExtensionAttributes extensions;
  extensions.set(kSchemaIndex, u"9");
  const MetaAttribute known(&element, 2, 0x1201, &extensions);
  EXPECT_EQ(known.metaElement(), &element);
  EXPECT_EQ(known.requiredStatus(), 2u);
  EXPECT_EQ(known.staticLocalTag(), 0x1201);
  EXPECT_EQ(known.extensionAttribute(kSchemaIndex), u"9");
  EXPECT_EQ(MisplacedAttribute(&element).metaElement(), &element);
}

TEST(MetaAttributes, KnowTheLocalTagAloneOfAnUnknownProperty) {
  const UnknownAttribute unknown(Types::LocalTag(0x8001));
  EXPECT_EQ(unknown.metaElement(), nullptr);
  EXPECT_EQ(unknown.localTag().value(), 0x8001);
}

TEST(MetaElement, TellsTheTypeOfACollectionsItems) {
  const MetaCollectionElement tracks(Types::UniversalLabel(), "PackageTracks", kBatch, kStrongReference, {});
  EXPECT_EQ(tracks.dataType(), kBatch);
  EXPECT_EQ(tracks.dataSubType(), kStrongReference);
}

}  // namespace
}  // namespace Vantor::MetaMetadata
