#include "Core/Metadata/MetadataSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string nameOf(const Element& element) {
  const auto* definition = element.metaAttribute().metaElement();
  return definition == nullptr ? "unknown" : definition->symbol();
}

std::vector<std::string> namesOf(const std::vector<const Element*>& elements) {
  std::vector<std::string> names;
  for (const Element* element : elements) names.push_back(nameOf(*element));
  return names;
}

std::vector<std::string> presentIn(const MetadataSet& set) {
  std::vector<std::string> names;
  for (const Element& element : set) names.push_back(nameOf(element));
  return names;
}

class MetadataSetTest : public testing::Test {
 protected:
  PartitionMetadata partition_{testDictionary()};
};

TEST_F(MetadataSetTest, KeepsValidPropertiesByLabel) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  setValue(set, "Number", Types::UInt32(1));
  setValue(set, "Dynamic", Types::UInt8(2));
  setValue(set, "Flag", Types::Boolean(true));
  EXPECT_THAT(presentIn(set), ElementsAre("InstanceUID", "Dynamic", "Flag", "Number"));
}

TEST_F(MetadataSetTest, PassesOverUnsetPropertiesOnlyWhereItIsReadOnly) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  EXPECT_THAT(presentIn(set), ElementsAre("InstanceUID"));
  std::size_t all = 0;
  for (Element& element : set) {
    ++all;
    EXPECT_EQ(element.isPresent(), nameOf(element) == "InstanceUID");
  }
  EXPECT_EQ(all, 18u);
}

TEST_F(MetadataSetTest, FindsAPropertyByAnyVersionOfItsLabel) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  auto octets = hex(hexOf(labelOf("Number").rawBuffer(), 16));
  octets[7] = 0x7e;
  const Element* found = set.find(Types::UniversalLabel(octets.data()));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(nameOf(*found), "Number");
  EXPECT_FALSE(found->isPresent());
  EXPECT_EQ(set.find(labelOf("Foreign")), nullptr);
}

TEST_F(MetadataSetTest, FindsInASetThatWasReadOnlyWhatWasRead) {
  const MetadataSet& set = readSet(partition_, "Thing", Items().item(0x4001, "00000007"));
  EXPECT_NE(set.find(labelOf("Number")), nullptr);
  EXPECT_EQ(set.find(labelOf("Flag")), nullptr);
}

TEST_F(MetadataSetTest, ReturnsThePropertyThatIsThereInsteadOfASecondOne) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  setValue(set, "Number", Types::UInt32(5));
  const auto& attribute = *set.definition()->findAttribute(labelOf("Number"));
  auto& number = dynamic_cast<SimpleElement&>(set.createElement(attribute));
  EXPECT_TRUE(number.value()->equals(Types::UInt32(5)));
}

TEST_F(MetadataSetTest, MakesAPropertyThatIsAskedForPresent) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  EXPECT_TRUE(property(set, "Flag").isPresent());
  EXPECT_THAT(presentIn(set), ElementsAre("InstanceUID", "Flag"));
}

TEST_F(MetadataSetTest, KeepsInvalidPropertiesAsTheyWereMet) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  const auto misplaced = [](const char* name) {
    return std::make_unique<MetaMetadata::MisplacedAttribute>(&definitionOf(name));
  };
  EXPECT_NE(dynamic_cast<ArrayElement*>(&set.createInvalidElement(misplaced("ForeignNumbers"))), nullptr);
  EXPECT_NE(dynamic_cast<ReferenceElement*>(&set.createInvalidElement(misplaced("ForeignChild"))), nullptr);
  addUnknown(set, 0x8001, {1});
  EXPECT_NE(dynamic_cast<SimpleElement*>(&set.createInvalidElement(misplaced("Foreign"))), nullptr);
  std::vector<std::string> names;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    names.push_back(nameOf(*at));
    EXPECT_TRUE(at->isPresent());
  }
  EXPECT_THAT(names, ElementsAre("ForeignNumbers", "ForeignChild", "unknown", "Foreign"));
}

TEST_F(MetadataSetTest, ListsPropertiesInTheOrderOfTheDefinitionOrOfTheFile) {
  MetadataSet& set = readSet(
      partition_, "Thing",
      Items().item(0x4003, "01").item(0x7001, "AA").item(0x4001, "00000007").item(0x5001, "0001").instanceUID(1));
  setValue(set, "Text", Types::UTF16String(wstring(u"x")));
  setValue(set, "Dynamic", Types::UInt8(1));
  EXPECT_THAT(namesOf(set.inDefinitionOrder()),
              ElementsAre("InstanceUID", "Number", "Text", "Flag", "Dynamic", "unknown", "Foreign"));
  EXPECT_THAT(namesOf(set.inWritingOrder()),
              ElementsAre("Flag", "unknown", "Number", "Foreign", "InstanceUID", "Text", "Dynamic"));
}

TEST_F(MetadataSetTest, IsCalledByItsSymbolOrItsKey) {
  EXPECT_EQ(addSet(partition_, "Thing", 1).name(), "Thing");
  EXPECT_EQ(partition_.createMetadataSet(darkGroupKey())->name(), "06.0E.2B.34.02.53.01.01.0E.7F.7F.7F.00.00.01.00");
}

TEST_F(MetadataSetTest, KnowsItsInstanceUIDAsItsPropertyHasIt) {
  MetadataSet& set = readSet(partition_, "Thing", Items());
  EXPECT_EQ(set.instanceUID(), nullptr);
  setValue(set, "InstanceUID", uid(5));
  ASSERT_NE(set.instanceUID(), nullptr);
  EXPECT_EQ(*set.instanceUID(), uid(5));
  property<SimpleElement>(set, "InstanceUID").set(nullptr, true);
  EXPECT_EQ(set.instanceUID(), nullptr);
}

TEST_F(MetadataSetTest, IsNotIdentifiedByAnyOtherProperty) {
  MetadataSet& set = addSet(partition_, "Thing", 1);
  setValue(set, "Generation", uid(5));
  EXPECT_EQ(*set.instanceUID(), uid(1));
}

TEST_F(MetadataSetTest, KeepsTheOctetsOfItsLengthField) {
  EXPECT_EQ(addSet(partition_, "Thing", 1).berLength(), 4);
  EXPECT_EQ(readSet(partition_, "Thing", Items(), 9).berLength(), 9);
}

TEST_F(MetadataSetTest, IsVisitedAsWhatTheVisitorMayDoWithIt) {
  class Visitor : public Metadata::Visitors::MetadataSetVisitor, public Metadata::Visitors::NonConstMetadataSetVisitor {
   public:
    void visit(const MetadataSet& set) override { read.push_back(&set); }
    void visit(MetadataSet& set) override { changed.push_back(&set); }
    std::vector<const MetadataSet*> read;
    std::vector<const MetadataSet*> changed;
  };
  MetadataSet& set = addSet(partition_, "Thing", 1);
  Visitor visitor;
  set.accept(static_cast<Metadata::Visitors::MetadataSetVisitor&>(visitor));
  EXPECT_THAT(visitor.read, ElementsAre(&set));
  EXPECT_THAT(visitor.changed, IsEmpty());
  set.accept(static_cast<Metadata::Visitors::NonConstMetadataSetVisitor&>(visitor));
  EXPECT_THAT(visitor.read, SizeIs(1));
  EXPECT_THAT(visitor.changed, ElementsAre(&set));
}

}  // namespace
}  // namespace Vantor
