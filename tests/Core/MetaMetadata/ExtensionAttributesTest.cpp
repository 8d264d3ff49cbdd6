#include "Core/MetaMetadata/ExtensionAttributes.h"

#include <gtest/gtest.h>

namespace Vantor::MetaMetadata {
namespace {

SharedPtr<const ExtensionAttributes> sharedPrefix() {
  auto shared = std::make_shared<ExtensionAttributes>();
  shared->set(kDefaultPrefix, u"s377m");
  return shared;
}

TEST(ExtensionAttributes, GivesAnEmptyTextForANameThatIsNotSet) {
  const ExtensionAttributes none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_FALSE(none.has(kTagName));
  EXPECT_EQ(none.get(kTagName), u"");
}

TEST(ExtensionAttributes, TellsAnEmptyTextFromAnAbsentOne) {
  ExtensionAttributes attributes;
  attributes.set(kSchemaIndex, u"");
  EXPECT_FALSE(attributes.isEmpty());
  EXPECT_TRUE(attributes.has(kSchemaIndex));
  EXPECT_EQ(attributes.get(kSchemaIndex), u"");
}

TEST(ExtensionAttributes, ComparesNamesUnitByUnit) {
  ExtensionAttributes attributes;
  attributes.set(u"XMLTagName", u"Preface");
  EXPECT_EQ(attributes.get(u"XMLTagName"), u"Preface");
  EXPECT_EQ(attributes.get(u"xmlTagName"), u"");
  EXPECT_EQ(attributes.get(u"XMLTagNam"), u"");
}

TEST(ExtensionAttributes, ReplacesAValue) {
  ExtensionAttributes attributes;
  attributes.set(kTagName, u"Track").set(kTagName, u"TimelineTrack");
  EXPECT_EQ(attributes.get(kTagName), u"TimelineTrack");
}

TEST(ExtensionAttributes, HidesTheSharedValueEvenByAnEmptyOne) {
  const auto shared = sharedPrefix();
  ExtensionAttributes attributes(shared);
  EXPECT_EQ(attributes.get(kDefaultPrefix), u"s377m");
  attributes.set(kDefaultPrefix, u"");
  EXPECT_EQ(attributes.get(kDefaultPrefix), u"");
  EXPECT_EQ(shared->get(kDefaultPrefix), u"s377m");
}

TEST(ExtensionAttributes, TakesOverOwnNamesOnly) {
  ExtensionAttributes others(sharedPrefix());
  others.set(kTagName, u"Track");
  ExtensionAttributes attributes;
  attributes.set(kTagName, u"Sequence").set(kSchemaIndex, u"4");
  attributes.setAll(others);
  EXPECT_EQ(attributes.get(kTagName), u"Track");
  EXPECT_EQ(attributes.get(kSchemaIndex), u"4");
  EXPECT_FALSE(attributes.has(kDefaultPrefix));
}

}  // namespace
}  // namespace Vantor::MetaMetadata
