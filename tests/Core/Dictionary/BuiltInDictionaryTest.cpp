#include "Core/Dictionary/BuiltInDictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "Core/MetaMetadata/LabelHash.h"
#include "Core/Platform/Numbers.h"

namespace Vantor {
namespace {

using namespace Types::Identifiers;
using MetaMetadata::DictionaryBuilder;
using MetaMetadata::kDefaultPrefix;
using MetaMetadata::kNamespaceURI;
using MetaMetadata::kSchemaIndex;
using MetaMetadata::kTagName;
using MetaMetadata::MetaAttribute;
using MetaMetadata::MetaCollectionElement;
using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;
using MetaMetadata::registerKey;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<const MetaMetadataSet*> allSets() {
  static const auto dictionary = builtInDictionary();
  return {dictionary->metaMetadataSetBegin(), dictionary->metaMetadataSetEnd()};
}

std::vector<const MetaElement*> allElements() {
  static const auto dictionary = builtInDictionary();
  return {dictionary->metaElementBegin(), dictionary->metaElementEnd()};
}

const MetaMetadataSet& setOf(std::string_view symbol) {
  const auto* set = builtInDictionary()->findSetBySymbol(symbol);
  if (set == nullptr) throw std::out_of_range(std::string(symbol));
  return *set;
}

const MetaAttribute& attributeOf(std::string_view set, std::string_view property) {
  for (const auto& attribute : setOf(set).attributes()) {
    if (attribute.metaElement()->symbol() == property) return attribute;
  }
  throw std::out_of_range(std::string(property));
}

std::vector<std::string> symbols(const MetaMetadataSet& set) {
  std::vector<std::string> found;
  for (const auto& attribute : set.attributes()) found.push_back(attribute.metaElement()->symbol());
  return found;
}

constexpr std::size_t kSetsOfRegisters = 352;
constexpr std::size_t kPropertiesOfRegisters = 1800;

TEST(BuiltInDictionary, HoldsTheSetsOfHeaderMetadata) {
  EXPECT_EQ(registerDefinitions().sets().size(), kSetsOfRegisters);
  EXPECT_EQ(registerDefinitions().properties().size(), kPropertiesOfRegisters);
  EXPECT_EQ(allSets().size(), kSetsOfRegisters + 6);
  EXPECT_EQ(allElements().size(), kPropertiesOfRegisters + 18 + 2);
}

TEST(BuiltInDictionary, OrdersTheSetsOfTheRegistersByKeyAndThenThoseOfTheSupplement) {
  const auto sets = allSets();
  for (std::size_t i = 1; i < sets.size(); ++i) {
    if (i == kSetsOfRegisters) continue;
    EXPECT_LT(sets[i - 1]->key(), sets[i]->key()) << sets[i]->symbol();
  }
}

TEST(BuiltInDictionary, StaysWhatTheRegistersMakeWithTheSupplementBehind) {
  const auto registers = registerDefinitions(), all = builtInDefinitions();
  for (std::size_t i = 0; i < kSetsOfRegisters; ++i) {
    EXPECT_EQ(all.sets()[i].symbol, registers.sets()[i].symbol);
    // The common names add two properties to this one.
    const std::size_t added = all.sets()[i].symbol == "AES3PCMDescriptor" ? 2 : 0;
    EXPECT_EQ(all.sets()[i].properties.size(), registers.sets()[i].properties.size() + added) << all.sets()[i].symbol;
  }
  EXPECT_EQ(all.sources()[all.sets()[kSetsOfRegisters].origin.source], "SmpteSupplement.dictionary");
}

TEST(BuiltInDictionary, IsCheckedAsIfAUserHadWrittenTheSupplement) {
  auto definitions = builtInDefinitions();
  definitions.readText("dictionary 1\n", "anything that makes the check necessary");
  EXPECT_NO_THROW(definitions.check());
}

TEST(BuiltInDictionary, LetsADictionaryFileDefineTheSetsOfTheSupplementAnew) {
  auto definitions = builtInDefinitions();
  definitions.readText(
      "dictionary 1\n"
      "060e2b34.02530101.0d010101.01018110  Streams  SubDescriptor\n"
      "  -  060e2b34.0101010e.04020308.06000000  StreamNumbers  ArrayOf(UInt32)  required\n",
      "user.dictionary");
  const auto dictionary = definitions.makeDictionary();
  const auto key = registerKey("060e2b34.02530101.0d010101.01018110");
  EXPECT_EQ(dictionary->findSet(key)->symbol(), "Streams");
  EXPECT_NE(dictionary->findSet(key)->findAttribute("StreamNumbers"), nullptr);
  EXPECT_EQ(dictionary->findSetBySymbol("RIFFChunkReferencesSubDescriptor"), nullptr);
}

TEST(BuiltInDictionary, KnowsTheSetsThatAreNewerThanTheRegisters) {
  EXPECT_EQ(setOf("ADM_CHNASubDescriptor").key(), registerKey("060e2b34.02530101.0d010101.0101810e"));
  EXPECT_EQ(setOf("ADM_CHNASubDescriptor").parent()->symbol(), "SubDescriptor");
  EXPECT_EQ(attributeOf("RIFFChunkDefinitionSubDescriptor", "RIFFChunkID").metaElement()->dataType(), kDataStream);
  EXPECT_EQ(attributeOf("ADM_CHNASubDescriptor", "ADMChannelMappingsArray").metaElement()->target(),
            &setOf("ADMChannelMapping"));
  // Three sets have a property of this name; documents have another one for each.
  EXPECT_EQ(
      attributeOf("RIFFChunkDefinitionSubDescriptor", "RIFFChunkStreamID").metaElement()->extensionAttribute(kTagName),
      u"RIFFChunkStreamID");
  EXPECT_EQ(
      attributeOf("ADMAudioMetadataSubDescriptor", "RIFFChunkStreamID").metaElement()->extensionAttribute(kTagName),
      u"RIFFChunkStreamID_link1");
}

TEST(BuiltInDictionary, OrdersPropertiesByTheirFirstSet) {
  std::vector<const MetaElement*> expected;
  std::set<const MetaElement*> seen;
  for (const auto* set : allSets()) {
    const std::size_t inherited = set->parent() == nullptr ? 0 : set->parent()->attributes().size();
    for (std::size_t i = inherited; i < set->attributes().size(); ++i) {
      const auto* element = set->attributes()[i].metaElement();
      if (seen.insert(element).second) expected.push_back(element);
    }
  }
  // The built-in data extends a set of the registers by these.
  std::stable_partition(expected.begin(), expected.end(), [](const auto* element) {
    return element->symbol() != "LinkedTimecodeTrackID" && element->symbol() != "DataStreamNumber";
  });
  EXPECT_EQ(allElements(), expected);
}

TEST(BuiltInDictionary, IsOneForAllCallersAndThreads) {
  std::vector<SharedPtr<const MetaMetadata::Dictionary>> found(4);
  std::vector<std::thread> threads;
  threads.reserve(found.size());
  for (auto& result : found) threads.emplace_back([&result] { result = builtInDictionary(); });
  for (auto& thread : threads) thread.join();
  for (const auto& result : found) EXPECT_EQ(result, builtInDictionary());
}

TEST(BuiltInDictionary, CodesEverySetAsLocalSetWithTwoByteTagsAndLengths) {
  for (const auto* set : allSets()) {
    EXPECT_EQ(set->key().octet(5), 0x02) << set->symbol();
    EXPECT_EQ(set->key().octet(6), 0x53) << set->symbol();
  }
}

TEST(BuiltInDictionary, FindsEverySetByKeyOfAnyCodingAndVersion) {
  const auto dictionary = builtInDictionary();
  for (const auto* set : allSets()) {
    std::array<uint8, KLV::Key::kSize> octets{};
    std::copy_n(set->key().rawBuffer(), octets.size(), octets.begin());
    octets[5] = 0x13;
    octets[7] = 0x7e;
    EXPECT_EQ(dictionary->findSet(KLV::Key(octets)), set) << set->symbol();
    EXPECT_EQ(dictionary->findSetBySymbol(set->symbol()), set);
  }
}

TEST(BuiltInDictionary, FindsEveryPropertyByLabelOfAnyVersion) {
  const auto dictionary = builtInDictionary();
  for (const auto* element : allElements()) {
    std::array<uint8, KLV::Key::kSize> octets{};
    std::copy_n(element->key().rawBuffer(), octets.size(), octets.begin());
    octets[7] = 0x7e;
    EXPECT_EQ(dictionary->findElement(Types::UniversalLabel(KLV::Key(octets))), element) << element->symbol();
  }
}

// Empty lists: in this release of the registers no two keys differ in octet 8 alone.
TEST(BuiltInDictionary, HoldsNoKeysThatDifferInTheirVersionOnly) {
  std::map<std::pair<uint64, uint64>, std::vector<std::string>> elements, sets;
  for (const auto* element : allElements()) {
    const auto identity = MetaMetadata::elementIdentity(element->key().rawBuffer());
    elements[{identity.head, identity.tail}].push_back(element->symbol());
  }
  for (const auto* set : allSets()) {
    const auto identity = MetaMetadata::groupIdentity(set->key().rawBuffer());
    sets[{identity.head, identity.tail}].push_back(set->symbol());
  }
  std::vector<std::string> collisions;
  for (const auto* definitions : {&elements, &sets}) {
    for (const auto& [key, symbols] : *definitions) {
      if (symbols.size() > 1) collisions.insert(collisions.end(), symbols.begin(), symbols.end());
    }
  }
  EXPECT_THAT(collisions, IsEmpty());
}

// The import finds a set, and a property outside its set, by name alone: the first of a name is what it finds.
TEST(BuiltInDictionary, NamesEverySetAndEveryPropertyDifferently) {
  std::set<wstring> sets, elements;
  for (const auto* set : allSets()) {
    EXPECT_TRUE(sets.insert(set->extensionAttribute(kTagName)).second) << set->symbol();
  }
  for (const auto* element : allElements()) {
    EXPECT_TRUE(elements.insert(element->extensionAttribute(kTagName)).second) << element->symbol();
  }
}

TEST(BuiltInDictionary, SpeaksTheLegacyVocabulary) {
  const auto& preface = setOf("Preface");
  EXPECT_EQ(preface.extensionAttribute(kTagName), u"Preface");
  EXPECT_EQ(preface.extensionAttribute(kNamespaceURI), u"urn:SMPTE:S377M");
  EXPECT_EQ(preface.extensionAttribute(kDefaultPrefix), u"s377m");
  for (const auto* element : allElements()) {
    EXPECT_EQ(element->extensionAttribute(kNamespaceURI), u"urn:SMPTE:RP210") << element->symbol();
    EXPECT_EQ(element->extensionAttribute(kDefaultPrefix), u"rp210") << element->symbol();
  }
}

TEST(BuiltInDictionary, NumbersThePropertiesOfEverySetFromOne) {
  std::size_t attributes = 0;
  for (const auto* set : allSets()) {
    for (std::size_t i = 0; i < set->attributes().size(); ++i, ++attributes) {
      EXPECT_EQ(set->attributes()[i].extensionAttribute(kSchemaIndex), Platform::toDecimal(i + 1)) << set->symbol();
    }
  }
  EXPECT_EQ(attributes, 4441u);
}

TEST(BuiltInDictionary, PutsInheritedPropertiesFirst) {
  for (const auto* set : allSets()) {
    if (set->parent() == nullptr) continue;
    const auto inherited = symbols(*set->parent());
    const auto all = symbols(*set);
    ASSERT_GE(all.size(), inherited.size());
    EXPECT_TRUE(std::equal(inherited.begin(), inherited.end(), all.begin())) << set->symbol();
  }
}

TEST(BuiltInDictionary, FindsEveryPropertyOfEverySetByLabelAndTag) {
  for (const auto* set : allSets()) {
    for (const auto& attribute : set->attributes()) {
      EXPECT_EQ(set->findAttribute(attribute.metaElement()->key()), &attribute);
      if (attribute.staticLocalTag() == 0) continue;
      EXPECT_EQ(set->findAttributeByStaticTag(attribute.staticLocalTag()), &attribute);
      EXPECT_EQ(builtInDictionary()->findElementByStaticTag(attribute.staticLocalTag()), attribute.metaElement());
    }
  }
}

TEST(BuiltInDictionary, StatesOnlyRequiredAndOptional) {
  for (const auto* set : allSets()) {
    for (const auto& attribute : set->attributes()) {
      EXPECT_THAT(attribute.requiredStatus(),
                  testing::AnyOf(DictionaryBuilder::kRequired, DictionaryBuilder::kOptional))
          << set->symbol();
    }
  }
}

TEST(BuiltInDictionary, UsesOnlyTypesThatCanBeReadBack) {
  const std::set<Identifier> allowed = {kBoolean,
                                        kDataStream,
                                        kInt8,
                                        kInt16,
                                        kInt32,
                                        kInt64,
                                        kUInt8,
                                        kUInt16,
                                        kUInt32,
                                        kUInt64,
                                        kISO7String,
                                        kISO8String,
                                        kLength,
                                        kPosition,
                                        kProductVersion,
                                        kRational,
                                        kTimestamp,
                                        kUMID32,
                                        kUMID64,
                                        kUniversalLabel,
                                        kUTF16,
                                        kUTF16String,
                                        kUTF8String,
                                        kUUID,
                                        kVersionType,
                                        kOrientation,
                                        kRGBALayout,
                                        kSignalStandard,
                                        kJ2KPictureComponent,
                                        kJ2KCodingStyleDefault,
                                        kJ2KQuantisationDefault,
                                        kAUID,
                                        kStrongReference,
                                        kWeakReference};
  for (const auto* element : allElements()) {
    const auto* collection = dynamic_cast<const MetaCollectionElement*>(element);
    EXPECT_EQ(collection != nullptr, element->dataType() == kArray || element->dataType() == kBatch);
    EXPECT_EQ(allowed.count(collection ? collection->dataSubType() : element->dataType()), 1u) << element->symbol();
  }
}

TEST(BuiltInDictionary, DescribesThePreface) {
  const auto& preface = setOf("Preface");
  EXPECT_EQ(preface.key(), registerKey("060e2b34.02530101.0d010101.01012f00"));
  EXPECT_EQ(preface.parent()->symbol(), "InterchangeObject");
  EXPECT_TRUE(preface.isConcrete());
  EXPECT_EQ(attributeOf("Preface", "FileLastModified").metaElement()->dataType(), kTimestamp);
  EXPECT_EQ(attributeOf("Preface", "FileLastModified").staticLocalTag(), 0x3b02);
  EXPECT_EQ(attributeOf("Preface", "FileLastModified").requiredStatus(), 0u);
  EXPECT_EQ(attributeOf("Preface", "ContentStorageObject").metaElement()->dataType(), kStrongReference);
  EXPECT_EQ(attributeOf("Preface", "PrimaryPackage").metaElement()->dataType(), kWeakReference);
  EXPECT_EQ(attributeOf("Preface", "PrimaryPackage").requiredStatus(), 4u);
  const auto* containers =
      dynamic_cast<const MetaCollectionElement*>(attributeOf("Preface", "EssenceContainers").metaElement());
  ASSERT_NE(containers, nullptr);
  EXPECT_EQ(containers->dataType(), kBatch);
  EXPECT_EQ(containers->dataSubType(), kAUID);
}

TEST(BuiltInDictionary, DescribesTheTimecodeComponent) {
  EXPECT_THAT(symbols(setOf("Timecode")),
              ElementsAre("InstanceID", "ObjectClass", "LinkedGenerationID", "ApplicationPlugInObjects",
                          "ComponentDataDefinition", "ComponentLength", "ComponentKLVData", "ComponentUserComments",
                          "ComponentAttributes", "StartTimecode", "FramesPerSecond", "DropFrame"));
  const auto& start = attributeOf("Timecode", "StartTimecode");
  EXPECT_EQ(start.metaElement()->key(), Types::UniversalLabel(registerKey("060e2b34.01010102.07020103.01050000")));
  EXPECT_EQ(start.metaElement()->dataType(), kPosition);
  EXPECT_EQ(start.staticLocalTag(), 0x1501);
  EXPECT_EQ(start.requiredStatus(), 0u);
  EXPECT_EQ(start.extensionAttribute(kSchemaIndex), u"10");
  EXPECT_EQ(attributeOf("Timecode", "FramesPerSecond").metaElement()->dataType(), kUInt16);
  EXPECT_EQ(attributeOf("Timecode", "DropFrame").metaElement()->dataType(), kBoolean);
}

TEST(BuiltInDictionary, DescribesTheCDCIDescriptorFromItsRootDown) {
  std::vector<std::string> chain;
  for (const auto* set = &setOf("CDCIDescriptor"); set != nullptr; set = set->parent()) chain.push_back(set->symbol());
  EXPECT_THAT(chain, ElementsAre("CDCIDescriptor", "PictureDescriptor", "FileDescriptor", "EssenceDescriptor",
                                 "InterchangeObject"));
  const auto indexOf = [](std::string_view property) {
    return std::stoi(std::string(
        Platform::wstringToString(attributeOf("CDCIDescriptor", property).extensionAttribute(kSchemaIndex))));
  };
  const auto first = [](std::string_view set) { return static_cast<int>(setOf(set).attributes().size()) + 1; };
  EXPECT_EQ(indexOf("InstanceID"), 1);
  EXPECT_EQ(indexOf("Locators"), first("InterchangeObject"));
  EXPECT_EQ(indexOf("SampleRate"), first("EssenceDescriptor"));
  EXPECT_GE(indexOf("StoredWidth"), first("FileDescriptor"));
  EXPECT_EQ(indexOf("ComponentDepth"), first("PictureDescriptor"));
  EXPECT_EQ(indexOf("HorizontalSubsampling"), first("PictureDescriptor") + 1);
  EXPECT_EQ(indexOf("ReversedByteOrder"), static_cast<int>(setOf("CDCIDescriptor").attributes().size()));
}

TEST(BuiltInDictionary, NamesTheInstanceAndTheGenerationAsMXFDoes) {
  const auto& instance = attributeOf("Preface", "InstanceID");
  EXPECT_EQ(instance.metaElement()->extensionAttribute(kTagName), u"InstanceUID");
  EXPECT_EQ(instance.metaElement()->dataType(), kUUID);
  EXPECT_EQ(instance.staticLocalTag(), 0x3c0a);
  EXPECT_EQ(setOf("Preface").instanceUIDAttribute(), &instance);
  const auto& generation = attributeOf("Preface", "LinkedGenerationID");
  EXPECT_EQ(generation.metaElement()->extensionAttribute(kTagName), u"GenerationUID");
  EXPECT_EQ(generation.metaElement()->dataType(), kUUID);
  EXPECT_EQ(generation.staticLocalTag(), 0x0102);
}

TEST(BuiltInDictionary, GivesEverySetAnInstanceUIDTheMetaDictionaryIncluded) {
  for (const auto* set : allSets()) EXPECT_NE(set->instanceUIDAttribute(), nullptr) << set->symbol();
}

Identifier itemTypeOf(std::string_view set, std::string_view property) {
  return dynamic_cast<const MetaCollectionElement&>(*attributeOf(set, property).metaElement()).dataSubType();
}

TEST(BuiltInDictionary, CarriesReferencesToDefinitionsAsAUIDAndThoseToSetsAsReferences) {
  EXPECT_EQ(attributeOf("Sequence", "ComponentDataDefinition").metaElement()->dataType(), kAUID);
  EXPECT_EQ(attributeOf("FileDescriptor", "ContainerFormat").metaElement()->dataType(), kAUID);
  EXPECT_EQ(attributeOf("InterchangeObject", "ObjectClass").metaElement()->dataType(), kAUID);
  EXPECT_EQ(itemTypeOf("OperationDefinition", "OperationParametersDefined"), kAUID);
  EXPECT_EQ(itemTypeOf("Participant", "Persons"), kWeakReference);
}

TEST(BuiltInDictionary, CarriesWhatHasNoValueTypeAsBytes) {
  EXPECT_EQ(attributeOf("RGBADescriptor", "Palette").metaElement()->dataType(), kDataStream);
  EXPECT_EQ(attributeOf("PictureDescriptor", "MasteringDisplayPrimaries").metaElement()->dataType(), kDataStream);
}

TEST(BuiltInDictionary, FollowsTheRulesOfSinglePropertiesBeforeThoseOfTheirTypes) {
  EXPECT_EQ(attributeOf("JPEG2000SubDescriptor", "CodingStyleDefault").metaElement()->dataType(),
            kJ2KCodingStyleDefault);
  EXPECT_EQ(attributeOf("JPEG2000SubDescriptor", "QuantizationDefault").metaElement()->dataType(),
            kJ2KQuantisationDefault);
  EXPECT_EQ(itemTypeOf("JPEG2000SubDescriptor", "PictureComponentSizing"), kJ2KPictureComponent);
}

TEST(BuiltInDictionary, NamesTheEditionOfTheRegisters) {
  for (const char* name : {"Elements", "Groups", "Labels", "Types"}) {
    const auto file = Path(VANTOR_SHARED_REGISTERS_DIR) / "xml" / (std::string(name) + ".xml");
    if (!std::filesystem::exists(file)) GTEST_SKIP() << "the registers are not beside the repository";
    std::string start(300, '\0');
    std::ifstream(file).read(start.data(), static_cast<std::streamsize>(start.size()));
    EXPECT_THAT(start, testing::HasSubstr(std::string("master_commit_tag=") + kRegistersEdition)) << name;
    EXPECT_THAT(start, testing::HasSubstr("(c) " + std::to_string(kRegistersYear))) << name;
  }
}

}  // namespace
}  // namespace Vantor
