#include "Core/MetaMetadata/Vocabulary.h"

#include <gtest/gtest.h>

#include <vector>

#include "Core/Dictionary/BuiltInDictionary.h"

/// The built-in dictionary in its two vocabularies: the same definitions in other namespaces.
namespace Vantor {
namespace {

using MetaMetadata::kDefaultPrefix;
using MetaMetadata::kNamespaceURI;
using MetaMetadata::kSchemaIndex;
using MetaMetadata::kTagName;
using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;
using MetaMetadata::Namespace;
using MetaMetadata::Vocabulary;

std::vector<const MetaMetadataSet*> setsOf(Vocabulary vocabulary) {
  const auto& dictionary = *builtInDictionary(vocabulary);
  return {dictionary.metaMetadataSetBegin(), dictionary.metaMetadataSetEnd()};
}

std::vector<const MetaElement*> elementsOf(Vocabulary vocabulary) {
  const auto& dictionary = *builtInDictionary(vocabulary);
  return {dictionary.metaElementBegin(), dictionary.metaElementEnd()};
}

MetaMetadata::DataType typeOf(const MetaElement& element) {
  const auto* collection = MetaMetadata::asCollection(element);
  if (collection == nullptr) return element.dataType();
  return {element.dataType(), collection->dataSubType()};
}

template <class Definition>
void expectNamespace(const Definition& definition, const Namespace& expected) {
  EXPECT_EQ(definition.extensionAttribute(kDefaultPrefix), expected.prefix) << definition.symbol();
  EXPECT_EQ(definition.extensionAttribute(kNamespaceURI), expected.uri) << definition.symbol();
}

TEST(Vocabulary, LeavesPropertiesTheirOrderKeysTypesAndNames) {
  const auto legacy = elementsOf(Vocabulary::kLegacy);
  const auto schemas = elementsOf(Vocabulary::kST434_2014);
  ASSERT_EQ(legacy.size(), schemas.size());
  for (std::size_t i = 0; i < legacy.size(); ++i) {
    EXPECT_EQ(legacy[i]->symbol(), schemas[i]->symbol());
    EXPECT_EQ(legacy[i]->key(), schemas[i]->key()) << legacy[i]->symbol();
    EXPECT_EQ(typeOf(*legacy[i]).type, typeOf(*schemas[i]).type) << legacy[i]->symbol();
    EXPECT_EQ(typeOf(*legacy[i]).itemType, typeOf(*schemas[i]).itemType) << legacy[i]->symbol();
    EXPECT_EQ(legacy[i]->extensionAttribute(kTagName), schemas[i]->extensionAttribute(kTagName));
  }
}

TEST(Vocabulary, LeavesSetsTheirOrderKeysParentsAndNames) {
  const auto legacy = setsOf(Vocabulary::kLegacy);
  const auto schemas = setsOf(Vocabulary::kST434_2014);
  ASSERT_EQ(legacy.size(), schemas.size());
  for (std::size_t i = 0; i < legacy.size(); ++i) {
    const auto &one = *legacy[i], &other = *schemas[i];
    EXPECT_EQ(one.symbol(), other.symbol());
    EXPECT_EQ(one.key(), other.key()) << one.symbol();
    EXPECT_EQ(one.isConcrete(), other.isConcrete()) << one.symbol();
    EXPECT_EQ(one.extensionAttribute(kTagName), other.extensionAttribute(kTagName));
    ASSERT_EQ(one.parent() == nullptr, other.parent() == nullptr) << one.symbol();
    if (one.parent() == nullptr) continue;
    EXPECT_EQ(one.parent()->symbol(), other.parent()->symbol());
  }
}

TEST(Vocabulary, LeavesSetsTheirPropertiesWithStatusTagAndPlace) {
  const auto legacy = setsOf(Vocabulary::kLegacy);
  const auto schemas = setsOf(Vocabulary::kST434_2014);
  ASSERT_EQ(legacy.size(), schemas.size());
  for (std::size_t i = 0; i < legacy.size(); ++i) {
    const auto &one = legacy[i]->attributes(), &other = schemas[i]->attributes();
    ASSERT_EQ(one.size(), other.size()) << legacy[i]->symbol();
    for (std::size_t n = 0; n < one.size(); ++n) {
      EXPECT_EQ(one[n].metaElement()->key(), other[n].metaElement()->key());
      EXPECT_EQ(one[n].staticLocalTag(), other[n].staticLocalTag());
      EXPECT_EQ(one[n].requiredStatus(), other[n].requiredStatus());
      EXPECT_EQ(one[n].extensionAttribute(kSchemaIndex), other[n].extensionAttribute(kSchemaIndex));
    }
  }
}

TEST(Vocabulary, PutsSetsIntoOneNamespace) {
  for (const auto* set : setsOf(Vocabulary::kLegacy)) expectNamespace(*set, {u"s377m", u"urn:SMPTE:S377M"});
  for (const auto* set : setsOf(Vocabulary::kST434_2014)) {
    expectNamespace(*set, {u"st395", u"http://www.smpte-ra.org/schemas/434/2014/groups/395/2012"});
  }
}

TEST(Vocabulary, PutsPropertiesIntoOneNamespaceButForTheTwoIdentifiers) {
  constexpr Namespace kLegacyProperties{u"rp210", u"urn:SMPTE:RP210"};
  for (const auto* element : elementsOf(Vocabulary::kLegacy)) expectNamespace(*element, kLegacyProperties);
  std::vector<std::string> identifiers;
  for (const auto* element : elementsOf(Vocabulary::kST434_2014)) {
    const auto& name = element->extensionAttribute(kTagName);
    if (name == u"InstanceUID" || name == u"GenerationUID") {
      identifiers.push_back(element->symbol());
      expectNamespace(*element, kLegacyProperties);
    } else {
      expectNamespace(*element, {u"st335", u"http://www.smpte-ra.org/schemas/434/2014/elements/335/2012"});
    }
  }
  EXPECT_EQ(identifiers, (std::vector<std::string>{"InstanceID", "LinkedGenerationID"}));
}

TEST(Vocabulary, NamesTheTypesOfSt434) {
  EXPECT_EQ(MetaMetadata::kST434Types.prefix, u"st377Types");
  EXPECT_EQ(MetaMetadata::kST434Types.uri, u"http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012");
}

TEST(Vocabulary, HasADictionaryOfItsOwnForAllCallers) {
  EXPECT_EQ(builtInDictionary(Vocabulary::kST434_2014), builtInDictionary(Vocabulary::kST434_2014));
  EXPECT_NE(builtInDictionary(Vocabulary::kST434_2014), builtInDictionary(Vocabulary::kLegacy));
  EXPECT_EQ(builtInDictionary(), builtInDictionary(Vocabulary::kLegacy));
}

}  // namespace
}  // namespace Vantor
