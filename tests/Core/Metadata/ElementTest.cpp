#include "Core/Metadata/Element.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Metadata/ElementFactory.h"
#include "Core/Platform/Exceptions.h"
#include "tests/Core/Metadata/TestPartition.h"

namespace Vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down which operation each visit arrived at, and the last octet of a reference.
class Recorder : public Metadata::Visitors::ElementVisitor {
 public:
  explicit Recorder(const Element& element, bool nest = true, bool exclude = false) {
    element.accept(*this, nest, exclude);
  }
  void visit(const ReferenceBatchElement&) override { visits.emplace_back("reference batch"); }
  void visit(const ReferenceArrayElement&) override { visits.emplace_back("reference array"); }
  void visit(const ReferenceElement& element) override {
    visits.push_back("reference " +
                     (element.value() == nullptr ? "none" : hexOf(element.value()->target()).substr(30)));
    if (element.isPresent()) attributesOfPresent.push_back(&element.metaAttribute());
  }
  void visit(const BatchElement&) override { visits.emplace_back("batch"); }
  void visit(const ArrayElement&) override { visits.emplace_back("array"); }
  void visit(const SimpleElement&) override { visits.emplace_back("simple"); }

  std::vector<std::string> visits;
  std::vector<const MetaMetadata::AbstractMetaAttribute*> attributesOfPresent;  // of references
};

class NonConstRecorder : public Metadata::Visitors::NonConstElementVisitor {
 public:
  explicit NonConstRecorder(Element& element) { element.accept(*this); }
  void visit(ReferenceBatchElement&) override { visits.emplace_back("reference batch"); }
  void visit(ReferenceArrayElement&) override { visits.emplace_back("reference array"); }
  void visit(ReferenceElement&) override { visits.emplace_back("reference"); }
  void visit(BatchElement&) override { visits.emplace_back("batch"); }
  void visit(ArrayElement&) override { visits.emplace_back("array"); }
  void visit(SimpleElement&) override { visits.emplace_back("simple"); }

  std::vector<std::string> visits;
};

class ElementTest : public testing::Test {
 protected:
  PartitionMetadata partition_{testDictionary()};
  MetadataSet& set_ = addSet(partition_, "Thing", 1);
};

std::vector<std::string> targetsOf(const Element& element, bool weak) {
  std::vector<Types::UUID> targets;
  element.appendTargets(ReferenceKinds{weak}, targets);
  std::vector<std::string> texts;
  for (const auto& target : targets) texts.push_back(hexOf(target).substr(30));
  return texts;
}

using ElementDispatch = ElementTest;

TEST_F(ElementDispatch, VisitsEachKindAsItself) {
  refer(set_, "Child", 7);
  EXPECT_THAT(Recorder(property(set_, "Number")).visits, ElementsAre("simple"));
  EXPECT_THAT(Recorder(property(set_, "Child")).visits, ElementsAre("reference 07"));
  EXPECT_THAT(Recorder(property(set_, "Peer")).visits, ElementsAre("reference none"));
  EXPECT_THAT(Recorder(property(set_, "Numbers")).visits, ElementsAre("array"));
  EXPECT_THAT(Recorder(property(set_, "Needed")).visits, ElementsAre("batch"));
}

TEST_F(ElementDispatch, VisitsACollectionOfReferencesAndThenItsMembersInOrder) {
  for (const uint32 number : {3u, 1u, 2u}) {
    refer(set_, "Children", number);
    refer(set_, "Peers", number);
  }
  EXPECT_THAT(Recorder(property(set_, "Children")).visits,
              ElementsAre("reference batch", "reference 03", "reference 01", "reference 02"));
  EXPECT_THAT(Recorder(property(set_, "Peers")).visits,
              ElementsAre("reference array", "reference 03", "reference 01", "reference 02"));
}

TEST_F(ElementDispatch, VisitsACollectionOfReferencesWithoutMembersAsAPlainCollection) {
  EXPECT_THAT(Recorder(property(set_, "Children")).visits, ElementsAre("reference batch", "batch"));
  refer(set_, "Ordered", 1);
  property<ReferenceArrayElement>(set_, "Ordered").removeAt(0);
  EXPECT_THAT(Recorder(property(set_, "Ordered")).visits, ElementsAre("reference array", "array"));
}

TEST_F(ElementDispatch, IsTheSameForEveryWayOfWriting) {
  refer(set_, "Children", 1);
  const Element& children = property(set_, "Children");
  const auto expected = Recorder(children).visits;
  EXPECT_EQ(Recorder(children, true, true).visits, expected);
  EXPECT_EQ(Recorder(children, false, false).visits, expected);
  EXPECT_EQ(Recorder(children, false, true).visits, expected);
}

TEST_F(ElementDispatch, ShowsMembersAsPresentPropertiesWithTheAttributeOfTheirCollection) {
  refer(set_, "Children", 1);
  const Element& children = property(set_, "Children");
  EXPECT_THAT(Recorder(children).attributesOfPresent, ElementsAre(&children.metaAttribute()));
}

TEST_F(ElementDispatch, VisitsEachKindOnceToFillIt) {
  refer(set_, "Children", 1);
  refer(set_, "Ordered", 1);
  EXPECT_THAT(NonConstRecorder(property(set_, "Number")).visits, ElementsAre("simple"));
  EXPECT_THAT(NonConstRecorder(property(set_, "Child")).visits, ElementsAre("reference"));
  EXPECT_THAT(NonConstRecorder(property(set_, "Numbers")).visits, ElementsAre("array"));
  EXPECT_THAT(NonConstRecorder(property(set_, "Needed")).visits, ElementsAre("batch"));
  EXPECT_THAT(NonConstRecorder(property(set_, "Ordered")).visits, ElementsAre("reference array"));
  EXPECT_THAT(NonConstRecorder(property(set_, "Children")).visits, ElementsAre("reference batch"));
}

using SimpleElementTest = ElementTest;

TEST_F(SimpleElementTest, RefusesAValueOfAnotherTypeAndKeepsItsOwn) {
  auto& number = property<SimpleElement>(set_, "Number");
  number.set(std::make_unique<Types::UInt32>(5), true);
  try {
    number.set(std::make_unique<Types::UInt16>(uint16{6}), true);
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_EQ(error.message(), "property Number takes UInt32, not UInt16");
  }
  EXPECT_TRUE(number.value()->equals(Types::UInt32(5)));
}

TEST_F(SimpleElementTest, TakesAnyTypeWhereNobodyAsksForACheck) {
  auto& number = property<SimpleElement>(set_, "Number");
  number.set(std::make_unique<Types::UInt16>(uint16{6}), false);
  EXPECT_TRUE(number.value()->equals(Types::UInt16(6)));
}

TEST_F(SimpleElementTest, MayLoseItsValueAndStayPresent) {
  auto& number = property<SimpleElement>(set_, "Number");
  number.set(std::make_unique<Types::UInt32>(5), true);
  number.set(nullptr, true);
  EXPECT_EQ(number.value(), nullptr);
  EXPECT_EQ(number.wireValue(), nullptr);
  EXPECT_TRUE(number.isPresent());
  EXPECT_THAT(targetsOf(number, true), IsEmpty());
}

using ReferenceElementTest = ElementTest;

TEST_F(ReferenceElementTest, IsSkippedExactlyWhileItHasNoReference) {
  auto& child = property<ReferenceElement>(set_, "Child");
  EXPECT_TRUE(child.isSkipped());
  child.setUnverifiedReference(std::make_unique<Types::StrongReference>());
  EXPECT_FALSE(child.isSkipped()) << "a reference to nothing is one";
  child.setUnverifiedReference(nullptr);
  EXPECT_TRUE(child.isSkipped());
}

TEST_F(ReferenceElementTest, RefersInTheKindThatItsDefinitionAsksFor) {
  const MetadataSet& target = addSet(partition_, "Thing", 9);
  auto& child = property<ReferenceElement>(set_, "Child");
  auto& peer = property<ReferenceElement>(set_, "Peer");
  child.set(&target);
  peer.set(&target);
  EXPECT_TRUE(child.value()->equals(Types::StrongReference(uid(9))));
  EXPECT_TRUE(peer.value()->equals(Types::WeakReference(uid(9))));
  EXPECT_THAT(targetsOf(child, false), ElementsAre("09"));
  EXPECT_THAT(targetsOf(peer, false), IsEmpty());
  EXPECT_THAT(targetsOf(peer, true), ElementsAre("09"));
}

TEST_F(ReferenceElementTest, KeepsTheIdentifierThatTheTargetHadWhenItWasSet) {
  MetadataSet& target = addSet(partition_, "Thing", 9);
  auto& child = property<ReferenceElement>(set_, "Child");
  child.set(&target);
  setValue(target, "InstanceUID", uid(10));
  EXPECT_EQ(child.value()->target(), uid(9));
}

TEST_F(ReferenceElementTest, CannotReferToASetWithoutInstanceUID) {
  const MetadataSet& target = readSet(partition_, "Other", Items());
  try {
    property<ReferenceElement>(set_, "Child").set(&target);
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_EQ(error.message(), "set Other has no InstanceUID to refer to");
  }
  EXPECT_THROW(property<ReferenceBatchElement>(set_, "Children").append(&target), Exceptions::InvalidFormat);
}

TEST_F(ReferenceElementTest, CannotReferToNoSet) {
  const MetadataSet* none = nullptr;
  EXPECT_THROW(property<ReferenceElement>(set_, "Child").set(none), Exceptions::InvalidFormat);
  EXPECT_THROW(property<ReferenceBatchElement>(set_, "Children").append(none), Exceptions::InvalidFormat);
  EXPECT_THROW(property<ReferenceArrayElement>(set_, "Ordered").append(none), Exceptions::InvalidFormat);
}

TEST_F(ReferenceElementTest, IsNotMadeInAKindThatIsNone) {
  EXPECT_THROW(makeReference(Types::Identifiers::kUUID, &set_), Exceptions::InvalidFormat);
}

using CollectionElementTest = ElementTest;

TEST_F(CollectionElementTest, ComesToBeWithItsFirstItem) {
  auto& numbers = property<ArrayElement>(set_, "Numbers");
  EXPECT_EQ(numbers.value(), nullptr);
  EXPECT_EQ(numbers.size(), 0u);
  numbers.append(std::make_unique<Types::UInt16>(uint16{7}));
  ASSERT_EQ(numbers.size(), 1u);
  EXPECT_EQ(numbers.value()->itemSize(), 2u);
  EXPECT_TRUE(numbers.value()->at(0).equals(Types::UInt16(7)));
}

TEST_F(CollectionElementTest, IsEmptyAfterAnItemThatIsNone) {
  auto& numbers = property<ArrayElement>(set_, "Numbers");
  numbers.append(nullptr);
  ASSERT_NE(numbers.value(), nullptr);
  EXPECT_EQ(numbers.size(), 0u);
  EXPECT_EQ(numbers.value()->itemSize(), 2u);
  EXPECT_TRUE(numbers.isPresent());
}

TEST_F(CollectionElementTest, RefusesAnItemOfAnotherSize) {
  auto& needed = property<BatchElement>(set_, "Needed");
  needed.append(std::make_unique<Types::UInt16>(uint16{7}));
  EXPECT_THROW(needed.append(std::make_unique<Types::UInt32>(7)), Exceptions::InvalidLength);
  EXPECT_EQ(needed.size(), 1u);
}

TEST_F(CollectionElementTest, LosesItemsOneByOneAndStays) {
  auto& numbers = property<ArrayElement>(set_, "Numbers");
  for (const uint16 number : {uint16{1}, uint16{2}}) numbers.append(std::make_unique<Types::UInt16>(number));
  numbers.removeAt(0);
  EXPECT_TRUE(numbers.value()->at(0).equals(Types::UInt16(2)));
  numbers.removeAt(0);
  ASSERT_NE(numbers.value(), nullptr);
  EXPECT_EQ(numbers.size(), 0u);
  try {
    numbers.removeAt(0);
    FAIL() << "nothing was thrown";
  } catch (const Exceptions::InvalidLength& error) {
    EXPECT_EQ(error.message(), "there is no item 0 to remove; the collection has 0");
  }
}

TEST_F(CollectionElementTest, CannotLoseAnItemBeforeItHasAny) {
  EXPECT_THROW(property<BatchElement>(set_, "Needed").removeAt(0), Exceptions::InvalidLength);
}

TEST_F(CollectionElementTest, RefersToSetsInTheKindThatItsDefinitionAsksFor) {
  const MetadataSet& target = addSet(partition_, "Thing", 9);
  auto& children = property<ReferenceBatchElement>(set_, "Children");
  auto& peers = property<ReferenceArrayElement>(set_, "Peers");
  children.append(&target);
  children.appendUnverifiedReference(std::make_unique<Types::StrongReference>(uid(4)));
  peers.append(&target);
  EXPECT_TRUE(children.value()->at(0).equals(Types::StrongReference(uid(9))));
  EXPECT_TRUE(peers.value()->at(0).equals(Types::WeakReference(uid(9))));
  EXPECT_THAT(targetsOf(children, false), ElementsAre("09", "04"));
  EXPECT_THAT(targetsOf(peers, false), IsEmpty());
  EXPECT_THAT(targetsOf(peers, true), ElementsAre("09"));
}

using ElementFactory = ElementTest;

TEST_F(ElementFactory, DecodesNothingThatWouldBeWrittenAsOtherOctets) {
  EXPECT_EQ(decodeValue(definitionOf("Number"), hex("00 00 05").data(), 3), nullptr);
  EXPECT_EQ(decodeValue(definitionOf("Numbers"), hex("00000001 00000002").data(), 8), nullptr);
  const auto number = decodeValue(definitionOf("Number"), hex("00 00 01 02").data(), 4);
  ASSERT_NE(number, nullptr);
  EXPECT_TRUE(number->equals(Types::UInt32(258)));
}

TEST_F(ElementFactory, TellsReferencesFromSimpleProperties) {
  EXPECT_TRUE(isReference(definitionOf("Child")));
  EXPECT_TRUE(isReference(definitionOf("Peers")));
  EXPECT_FALSE(isReference(definitionOf("Numbers")));
  EXPECT_FALSE(isSimple(definitionOf("Numbers")));
  EXPECT_FALSE(isSimple(definitionOf("Child")));
  EXPECT_TRUE(isSimple(definitionOf("Number")));
}

}  // namespace
}  // namespace Vantor
