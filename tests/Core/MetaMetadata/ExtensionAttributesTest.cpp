#include "Core/MetaMetadata/ExtensionAttributes.h"

#include <gtest/gtest.h>

namespace Vantor::MetaMetadata {
namespace {

SharedPtr<const ExtensionAttributes> sharedPrefix() {
  auto shared = std::make_shared<ExtensionAttributes>();
  shared->set(kXMLDefaultPrefix, u"s377m");
  return shared;
}

TEST(ExtensionAttributes, GivesAnEmptyTextForANameThatIsNotSet) {
  const ExtensionAttributes none;
  EXPECT_TRUE(none.isEmpty());
  EXPECT_FALSE(none.has(kXMLTagName));
  EXPECT_EQ(none.get(kXMLTagName), u"");
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
  attributes.set(kXMLTagName, u"Track").set(kXMLTagName, u"TimelineTrack");
  EXPECT_EQ(attributes.get(kXMLTagName), u"TimelineTrack");
}

TEST(ExtensionAttributes, HidesTheSharedValueEvenByAnEmptyOne) {
  const auto shared = sharedPrefix();
  ExtensionAttributes attributes(shared);
  EXPECT_EQ(attributes.get(kXMLDefaultPrefix), u"s377m");
  attributes.set(kXMLDefaultPrefix, u"");
  EXPECT_EQ(attributes.get(kXMLDefaultPrefix), u"");
  EXPECT_EQ(shared->get(kXMLDefaultPrefix), u"s377m");
}

TEST(ExtensionAttributes, TakesOverOwnNamesOnly) {
  ExtensionAttributes others(sharedPrefix());
  others.set(kXMLTagName, u"Track");
  ExtensionAttributes attributes;
  attributes.set(kXMLTagName, u"Sequence").set(kSchemaIndex, u"4");
  attributes.setAll(others);
  EXPECT_EQ(attributes.get(kXMLTagName), u"Track");
  EXPECT_EQ(attributes.get(kSchemaIndex), u"4");
  EXPECT_FALSE(attributes.has(kXMLDefaultPrefix));
}

}  // namespace
}  // namespace Vantor::MetaMetadata
