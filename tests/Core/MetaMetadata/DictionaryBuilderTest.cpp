#include "Core/MetaMetadata/DictionaryBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Platform/Exceptions.h"

namespace Vantor::MetaMetadata {
namespace {

using namespace Types::Identifiers;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* kInstanceID = "060e2b34.01010101.01011502.00000000";
constexpr const char* kNameKey = "060e2b34.01010101.01030302.01000000";
constexpr const char* kTracksKey = "060e2b34.01010102.06010104.06050000";
constexpr const char* kObjectKey = "060e2b34.02530101.0d010101.01010100";
constexpr const char* kPackageKey = "060e2b34.02530101.0d010101.01013400";

Types::UniversalLabel label(std::string_view text) { return Types::UniversalLabel(registerKey(text)); }

/// An abstract root with an identifier, and a package with a name and tracks.
DictionaryBuilder smallBuilder() {
  DictionaryBuilder builder;
  builder.addElement(kInstanceID, "InstanceID", kUUID);
  builder.addElement(kNameKey, "PackageName", kUTF16String);
  builder.addElement(kTracksKey, "PackageTracks", arrayOf(kStrongReference));
  builder.addSet(kObjectKey, "InterchangeObject", "", false);
  builder.addAttribute(kInstanceID, 0x3c0a, DictionaryBuilder::kRequired);
  builder.addSet(kPackageKey, "Package", "InterchangeObject");
  builder.addAttribute(kNameKey, 0x4402);
  builder.addAttribute(kTracksKey, 0x4403, DictionaryBuilder::kRequired);
  return builder;
}

std::vector<std::string> symbols(const MetaMetadataSet& set) {
  std::vector<std::string> found;
  for (const auto& attribute : set.attributes()) found.push_back(attribute.metaElement()->symbol());
  return found;
}

std::vector<wstring> schemaIndexes(const MetaMetadataSet& set) {
  std::vector<wstring> found;
  for (const auto& attribute : set.attributes()) found.push_back(attribute.extensionAttribute(kSchemaIndex));
  return found;
}

template <class Exception, class Fn>
std::string messageOf(Fn&& fn) {
  try {
    fn();
  } catch (const Exception& exception) {
    return exception.what();
  }
  return "nothing was thrown";
}

TEST(RegisterKey, ReadsDigitsInEitherCaseWithOrWithoutDots) {
  const KLV::Key expected(
      {0x06, 0x0e, 0x2b, 0x34, 0x02, 0x53, 0x01, 0x01, 0x0d, 0x01, 0x01, 0x01, 0x01, 0x01, 0x34, 0x00});
  EXPECT_EQ(registerKey("060e2b34.02530101.0d010101.01013400"), expected);
  EXPECT_EQ(registerKey("060e2b34025301010d01010101013400"), expected);
  EXPECT_EQ(registerKey("06.0E.2B.34.02.53.01.01.0D.01.01.01.01.01.34.00"), expected);
}

TEST(RegisterKey, NamesATextThatIsNoKey) {
  for (const char* text :
       {"", "060e2b34", "060e2b34.02530101.0d010101.0101340", "060e2b34.02530101.0d010101.0101340000",
        "060e2b34.02530101.0d010101.0101340g", "060e2b34.02530101.0d010101.0101 400",
        "060e2b3.402530101.0d010101.01013400", "060e2b34..02530101.0d010101.01013400"}) {
    EXPECT_THAT(messageOf<Exceptions::InvalidFormat>([&] { registerKey(text); }),
                HasSubstr(std::string("not a register key: ") + text));
  }
}

TEST(DictionaryBuilder, MakesAnEmptyDictionaryOfNothing) {
  const auto dictionary = DictionaryBuilder().build();
  EXPECT_EQ(dictionary->metaMetadataSetBegin(), dictionary->metaMetadataSetEnd());
  EXPECT_EQ(dictionary->metaElementBegin(), dictionary->metaElementEnd());
  EXPECT_EQ(dictionary->findSet(KLV::Key()), nullptr);
  EXPECT_EQ(dictionary->findSetBySymbol(""), nullptr);
  EXPECT_EQ(dictionary->findElement(Types::UniversalLabel()), nullptr);
  EXPECT_EQ(dictionary->findElementByStaticTag(0x3c0a), nullptr);
}

TEST(DictionaryBuilder, KeepsTheOrderOfDefinition) {
  const auto dictionary = smallBuilder().build();
  ASSERT_EQ(dictionary->metaMetadataSetEnd() - dictionary->metaMetadataSetBegin(), 2);
  EXPECT_EQ(dictionary->metaMetadataSetBegin()[0]->symbol(), "InterchangeObject");
  EXPECT_EQ(dictionary->metaMetadataSetBegin()[1]->symbol(), "Package");
  ASSERT_EQ(dictionary->metaElementEnd() - dictionary->metaElementBegin(), 3);
  EXPECT_EQ(dictionary->metaElementBegin()[0]->symbol(), "InstanceID");
  EXPECT_EQ(dictionary->metaElementBegin()[2]->symbol(), "PackageTracks");
}

TEST(DictionaryBuilder, DescribesASetAsItWasDefined) {
  const auto dictionary = smallBuilder().build();
  const auto* object = dictionary->findSetBySymbol("InterchangeObject");
  const auto* package = dictionary->findSetBySymbol("Package");
  ASSERT_TRUE(object != nullptr && package != nullptr);
  EXPECT_EQ(object->parent(), nullptr);
  EXPECT_FALSE(object->isConcrete());
  EXPECT_EQ(package->parent(), object);
  EXPECT_TRUE(package->isConcrete());
  EXPECT_EQ(package->key(), registerKey(kPackageKey));
  EXPECT_EQ(package->extensionAttribute(kTagName), u"Package");
  EXPECT_EQ(package->extensionAttribute(kNamespaceURI), u"urn:SMPTE:S377M");
  EXPECT_EQ(package->extensionAttribute(kDefaultPrefix), u"s377m");
}

TEST(DictionaryBuilder, DescribesAPropertyAsItWasDefined) {
  const auto dictionary = smallBuilder().build();
  const auto* name = dictionary->findElement(label(kNameKey));
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(name->key(), label(kNameKey));
  EXPECT_EQ(name->symbol(), "PackageName");
  EXPECT_EQ(name->dataType(), kUTF16String);
  EXPECT_EQ(dynamic_cast<const MetaCollectionElement*>(name), nullptr);
  EXPECT_EQ(name->extensionAttribute(kTagName), u"PackageName");
  EXPECT_EQ(name->extensionAttribute(kNamespaceURI), u"urn:SMPTE:RP210");
  EXPECT_EQ(name->extensionAttribute(kDefaultPrefix), u"rp210");
}

TEST(DictionaryBuilder, MakesACollectionElementOfAnArrayOrABatch) {
  const auto dictionary = smallBuilder().build();
  const auto* tracks = dynamic_cast<const MetaCollectionElement*>(dictionary->findElement(label(kTracksKey)));
  ASSERT_NE(tracks, nullptr);
  EXPECT_EQ(tracks->dataType(), kArray);
  EXPECT_EQ(tracks->dataSubType(), kStrongReference);
}

TEST(DictionaryBuilder, PutsInheritedPropertiesFirstAndCountsFromOne) {
  const auto dictionary = smallBuilder().build();
  const auto* package = dictionary->findSetBySymbol("Package");
  EXPECT_THAT(symbols(*package), ElementsAre("InstanceID", "PackageName", "PackageTracks"));
  EXPECT_THAT(schemaIndexes(*package), ElementsAre(u"1", u"2", u"3"));
  EXPECT_EQ(package->attributes()[0].requiredStatus(), 0u);
  EXPECT_EQ(package->attributes()[0].staticLocalTag(), 0x3c0a);
  EXPECT_EQ(package->attributes()[1].requiredStatus(), 4u);
}

TEST(DictionaryBuilder, AcceptsAParentThatIsDefinedLater) {
  DictionaryBuilder builder;
  builder.addElement(kInstanceID, "InstanceID", kUUID);
  builder.addElement(kNameKey, "PackageName", kUTF16String);
  builder.addSet(kPackageKey, "Package", "InterchangeObject");
  builder.addAttribute(kNameKey);
  builder.addSet(kObjectKey, "InterchangeObject");
  builder.addAttribute(kInstanceID);
  const auto dictionary = builder.build();
  EXPECT_THAT(symbols(*dictionary->findSetBySymbol("Package")), ElementsAre("InstanceID", "PackageName"));
}

TEST(DictionaryBuilder, LeavesAPropertyThatAnAncestorListsInItsPlace) {
  auto builder = smallBuilder();
  builder.addSet("060e2b34.02530101.0d010101.01013600", "MaterialPackage", "Package");
  builder.addAttribute(kNameKey, 0x9999, 0);
  const auto dictionary = builder.build();
  const auto* package = dictionary->findSetBySymbol("MaterialPackage");
  EXPECT_THAT(symbols(*package), ElementsAre("InstanceID", "PackageName", "PackageTracks"));
  EXPECT_EQ(package->findAttribute(label(kNameKey))->staticLocalTag(), 0x4402);
  EXPECT_EQ(package->findAttributeByStaticTag(0x9999), nullptr);
}

TEST(DictionaryBuilder, FindsSetsWhateverTheirCodingAndVersion) {
  const auto dictionary = smallBuilder().build();
  const auto* package = dictionary->findSetBySymbol("Package");
  EXPECT_EQ(dictionary->findSet(registerKey(kPackageKey)), package);
  EXPECT_EQ(dictionary->findSet(registerKey("060e2b34.02130109.0d010101.01013400")), package);
  EXPECT_EQ(dictionary->findSet(registerKey("060e2b34.02530201.0d010101.01013400")), nullptr);
  EXPECT_EQ(dictionary->findSet(registerKey("060e2b34.01530101.0d010101.01013400")), nullptr);
  EXPECT_EQ(dictionary->findSet(registerKey("060e2b34.02530101.0d010101.01013500")), nullptr);
}

TEST(DictionaryBuilder, FindsPropertiesWhateverTheirVersion) {
  const auto dictionary = smallBuilder().build();
  const auto* package = dictionary->findSetBySymbol("Package");
  const auto newer = label("060e2b34.0101010e.01030302.01000000");
  const auto otherCoding = label("060e2b34.01020101.01030302.01000000");
  EXPECT_EQ(dictionary->findElement(newer)->symbol(), "PackageName");
  EXPECT_EQ(package->findAttribute(newer), &package->attributes()[1]);
  EXPECT_EQ(dictionary->findElement(otherCoding), nullptr);
  EXPECT_EQ(package->findAttribute(otherCoding), nullptr);
}

TEST(DictionaryBuilder, FindsPropertiesByTheirStaticTag) {
  const auto dictionary = smallBuilder().build();
  const auto* object = dictionary->findSetBySymbol("InterchangeObject");
  const auto* package = dictionary->findSetBySymbol("Package");
  EXPECT_EQ(package->findAttributeByStaticTag(0x4403), &package->attributes()[2]);
  EXPECT_EQ(package->findAttributeByStaticTag(0x3c0a), &package->attributes()[0]);
  EXPECT_EQ(object->findAttributeByStaticTag(0x4403), nullptr);
  EXPECT_EQ(dictionary->findElementByStaticTag(0x4402)->symbol(), "PackageName");
  EXPECT_EQ(dictionary->findElementByStaticTag(0x4404), nullptr);
}

TEST(DictionaryBuilder, KnowsNoPropertyByTagZero) {
  auto builder = smallBuilder();
  builder.addElement("060e2b34.01010101.01030302.02000000", "Untagged", kUInt8);
  builder.addAttribute("060e2b34.01010101.01030302.02000000", 0);
  const auto dictionary = builder.build();
  EXPECT_EQ(dictionary->findElementByStaticTag(0), nullptr);
  EXPECT_EQ(dictionary->findSetBySymbol("Package")->findAttributeByStaticTag(0), nullptr);
}

TEST(DictionaryBuilder, FindsTheInstanceUIDPropertyOfSetsThatHaveOne) {
  auto builder = smallBuilder();
  builder.addSet("060e2b34.02530101.0d010101.01012200", "Anonymous");
  const auto dictionary = builder.build();
  const auto* package = dictionary->findSetBySymbol("Package");
  EXPECT_EQ(package->instanceUIDAttribute(), &package->attributes()[0]);
  EXPECT_EQ(dictionary->findSetBySymbol("Anonymous")->instanceUIDAttribute(), nullptr);
}

TEST(DictionaryBuilder, GivesAWildCardKeyTheLocalSetCoding) {
  DictionaryBuilder builder;
  builder.addSet("060e2b34.027f0101.0d010101.01013400", "Package");
  builder.addSet("060e2b34.02130101.0d010101.01013500", "Wide");
  const auto dictionary = builder.build();
  EXPECT_EQ(dictionary->findSetBySymbol("Package")->key(), registerKey(kPackageKey));
  EXPECT_EQ(dictionary->findSetBySymbol("Wide")->key().octet(6), 0x13);
}

TEST(DictionaryBuilder, FindsTheFirstOfSeveralDefinitions) {
  DictionaryBuilder builder;
  builder.addElement("060e2b34.01010101.01030302.01000000", "First", kUInt8);
  builder.addElement("060e2b34.01010107.01030302.01000000", "Second", kUInt16);
  builder.addElement("060e2b34.01010101.01030302.05000000", "Third", kUInt16);
  builder.addSet("060e2b34.02530101.0d010101.01013400", "Same");
  builder.addAttribute("060e2b34.01010101.01030302.05000000", 0x1001);
  builder.addSet("060e2b34.02530102.0d010101.01013400", "Same");
  builder.addAttribute("060e2b34.01010107.01030302.01000000", 0x1001);
  builder.addAttribute("060e2b34.01010107.01030302.05000000", 0x1001);
  const auto dictionary = builder.build();
  EXPECT_EQ(dictionary->findElement(label("060e2b34.01010107.01030302.01000000"))->symbol(), "First");
  EXPECT_EQ(dictionary->findElementByStaticTag(0x1001)->symbol(), "Second");
  const auto* first = dictionary->metaMetadataSetBegin()[0];
  const auto* second = dictionary->metaMetadataSetBegin()[1];
  EXPECT_EQ(dictionary->findSetBySymbol("Same"), first);
  EXPECT_EQ(dictionary->findSet(second->key()), first);
  EXPECT_THAT(symbols(*second), ElementsAre("Second", "Third"));
  EXPECT_EQ(second->findAttributeByStaticTag(0x1001), &second->attributes()[0]);
}

TEST(DictionaryBuilder, IgnoresASecondDefinitionOfOneProperty) {
  auto builder = smallBuilder();
  builder.addElement(kNameKey, "Renamed", kUInt8);
  const auto dictionary = builder.build();
  EXPECT_EQ(dictionary->metaElementEnd() - dictionary->metaElementBegin(), 3);
  EXPECT_EQ(dictionary->findElement(label(kNameKey))->symbol(), "PackageName");
}

TEST(DictionaryBuilder, LetsADefinitionReplaceItsXMLNames) {
  DictionaryBuilder builder;
  ExtensionAttributes odd;
  odd.set(kTagName, u"Name").set(kDefaultPrefix, u"").set(u"Colour", u"red");
  builder.addElement(kNameKey, "PackageName", kUTF16String, odd);
  builder.addSet(kPackageKey, "Package", "", true, odd);
  const auto dictionary = builder.build();
  const auto* name = dictionary->findElement(label(kNameKey));
  const auto* package = dictionary->findSetBySymbol("Package");
  EXPECT_EQ(name->extensionAttribute(kTagName), u"Name");
  EXPECT_EQ(name->extensionAttribute(kDefaultPrefix), u"");
  EXPECT_EQ(name->extensionAttribute(kNamespaceURI), u"urn:SMPTE:RP210");
  EXPECT_EQ(name->extensionAttribute(u"Colour"), u"red");
  EXPECT_EQ(package->extensionAttribute(kTagName), u"Name");
  EXPECT_EQ(package->extensionAttribute(kDefaultPrefix), u"");
}

TEST(DictionaryBuilder, LetsAnAttributeReplaceItsSchemaIndexForHeirsToo) {
  auto builder = smallBuilder();
  ExtensionAttributes none;
  none.set(kSchemaIndex, u"");
  ExtensionAttributes second;
  second.set(kSchemaIndex, u"2");
  ExtensionAttributes noted;
  noted.set(u"Note", u"n");
  builder.addElement("060e2b34.01010101.01030302.02000000", "A", kUInt8);
  builder.addElement("060e2b34.01010101.01030302.03000000", "B", kUInt8);
  builder.addElement("060e2b34.01010101.01030302.04000000", "C", kUInt8);
  builder.addAttribute("060e2b34.01010101.01030302.02000000", 0, 4, none);
  builder.addAttribute("060e2b34.01010101.01030302.03000000", 0, 4, second);
  builder.addAttribute("060e2b34.01010101.01030302.04000000", 0, 4, noted);
  builder.addSet("060e2b34.02530101.0d010101.01013600", "MaterialPackage", "Package");
  const auto dictionary = builder.build();
  const auto* package = dictionary->findSetBySymbol("MaterialPackage");
  EXPECT_THAT(symbols(*package), ElementsAre("InstanceID", "PackageName", "PackageTracks", "A", "B", "C"));
  EXPECT_THAT(schemaIndexes(*package), ElementsAre(u"1", u"2", u"3", u"", u"2", u"6"));
  EXPECT_EQ(package->attributes()[5].extensionAttribute(u"Note"), u"n");
}

TEST(DictionaryBuilder, NamesASetWhoseParentIsNotDefined) {
  DictionaryBuilder builder;
  builder.addSet(kPackageKey, "Package", "InterchangeObject");
  EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { builder.build(); }),
            "set Package inherits from InterchangeObject, which is not defined");
}

TEST(DictionaryBuilder, NamesASetThatInheritsFromItself) {
  DictionaryBuilder builder;
  builder.addSet(kPackageKey, "Package", "InterchangeObject");
  builder.addSet(kObjectKey, "InterchangeObject", "Package");
  EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { builder.build(); }), "set Package inherits from itself");
}

TEST(DictionaryBuilder, NamesAPropertyThatIsNotDefined) {
  DictionaryBuilder builder;
  EXPECT_THAT(messageOf<Exceptions::InvalidFormat>([&] { builder.addAttribute(kNameKey); }),
              HasSubstr("a property before the first set"));
  builder.addSet(kPackageKey, "Package");
  EXPECT_EQ(messageOf<Exceptions::InvalidFormat>([&] { builder.addAttribute(kNameKey); }),
            "set Package lists a property that is not defined: urn:smpte:ul:060e2b34.01010101.01030302.01000000");
}

TEST(DictionaryBuilder, GivesReferencesTheirTarget) {
  auto builder = smallBuilder();
  builder.setTarget(label(kTracksKey), "Package");
  const auto dictionary = builder.build();
  EXPECT_EQ(dictionary->findElement(label(kTracksKey))->target(), dictionary->findSetBySymbol("Package"));
  EXPECT_EQ(dictionary->findElement(label(kNameKey))->target(), nullptr);
}

TEST(DictionaryBuilder, NamesATargetThatIsNotDefined) {
  auto builder = smallBuilder();
  EXPECT_THAT([&] { builder.setTarget(label(kTracksKey), "Track"); },
              ::testing::ThrowsMessage<Exceptions::InvalidFormat>(
                  HasSubstr("PackageTracks refers to Track, which is not defined")));
}

TEST(DictionaryBuilder, GivesNumbersTheirNamesInAnyOrder) {
  auto builder = smallBuilder();
  const auto& enumeration = builder.addEnumeration("Grade", {{200, "Fine"}, {-1, "Rough"}, {200, "Finest"}});
  builder.setEnumeration(label(kNameKey), enumeration);
  const auto dictionary = builder.build();
  const auto& found = *dictionary->findElement(label(kNameKey))->enumeration();
  EXPECT_EQ(found.name(), "Grade");
  EXPECT_EQ(found.nameOf(-1), "Rough");
  EXPECT_EQ(found.nameOf(200), "Fine");
  EXPECT_EQ(found.nameOf(0), "");
  EXPECT_TRUE(found.has(-1));
  EXPECT_FALSE(found.has(201));
  EXPECT_EQ(dictionary->findElement(label(kTracksKey))->enumeration(), nullptr);
}

TEST(DictionaryBuilder, FindsLabelsWhateverTheirVersion) {
  DictionaryBuilder builder;
  builder.addLabel(label("060e2b34.04010101.0f0e0d0c.01000000"), "AcmeScheme", "Acme's notes");
  const auto dictionary = builder.build();
  const auto* found = dictionary->findLabel(label("060e2b34.0401010d.0f0e0d0c.01000000"));
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->symbol, "AcmeScheme");
  EXPECT_EQ(found->name, "Acme's notes");
  EXPECT_EQ(dictionary->findLabel(label("060e2b34.04010101.0f0e0d0c.02000000")), nullptr);
}

TEST(DictionaryBuilder, KnowsTheAncestorsOfASet) {
  const auto dictionary = smallBuilder().build();
  const auto& package = *dictionary->findSetBySymbol("Package");
  const auto& object = *dictionary->findSetBySymbol("InterchangeObject");
  EXPECT_TRUE(package.isOrInherits(object));
  EXPECT_TRUE(package.isOrInherits(package));
  EXPECT_FALSE(object.isOrInherits(package));
}

TEST(DictionaryBuilder, IsEmptyAfterBuilding) {
  auto builder = smallBuilder();
  const auto first = builder.build();
  const auto second = builder.build();
  EXPECT_EQ(first->metaMetadataSetEnd() - first->metaMetadataSetBegin(), 2);
  EXPECT_EQ(second->metaMetadataSetBegin(), second->metaMetadataSetEnd());
}

}  // namespace
}  // namespace Vantor::MetaMetadata
