#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Exceptions.h"
#include "tests/CommonNameRows.h"

namespace Vantor {
namespace {

using MetaMetadata::namesOf;

const MetaMetadata::MetaMetadataSet& commonSet(const std::string& name) {
  const auto found = builtInDictionary()->findSetsByName(name);
  if (found.size() != 1) throw std::logic_error("not one set " + name);
  return *found[0];
}

TEST(CommonNames, FindSetsAndProperties) {
  EXPECT_EQ(commonSet("TimecodeComponent").symbol(), "Timecode");
  const auto& identification = commonSet("Identification");
  EXPECT_EQ(identification.findAttribute("CompanyName")->metaElement()->symbol(), "ApplicationSupplierName");
  EXPECT_EQ(identification.findAttribute("CompanyNam"), nullptr);
  EXPECT_EQ(commonSet("Preface").findAttribute("CompanyName"), nullptr) << "no property of this set";
}

TEST(CommonNames, CountInInheritingSetsToo) {
  EXPECT_EQ(commonSet("MaterialPackage").findAttribute("Tracks")->metaElement()->symbol(), "PackageTracks");
  EXPECT_EQ(commonSet("EventTrack").findAttribute("TrackNumber")->metaElement()->symbol(), "EssenceTrackNumber");
}

TEST(CommonNames, CountBehindSymbols) {
  EXPECT_EQ(commonSet("Track").symbol(), "Track") << "not the TimelineTrack that ST 377-1 calls so";
  const auto& dictionary = *builtInDictionary();
  for (const auto& entry : dictionary.commonNames().entries()) {
    for (auto set = dictionary.metaMetadataSetBegin(); set != dictionary.metaMetadataSetEnd(); ++set) {
      if (entry.element == nullptr || !(*set)->isOrInherits(*entry.set)) continue;
      const auto* found = (*set)->findAttribute(entry.name);
      EXPECT_EQ(found->metaElement(), entry.element) << (*set)->symbol() << "." << entry.name;
    }
  }
}

TEST(CommonNames, AreShownBesideSymbols) {
  const auto& identification = commonSet("Identification");
  const auto named = [&](std::string_view name) {
    return namesOf(identification, *identification.findAttribute(name)->metaElement(), name);
  };
  EXPECT_EQ(named("CompanyName"), "ApplicationSupplierName (CompanyName)");
  EXPECT_EQ(named("ApplicationSupplierName"), "ApplicationSupplierName (CompanyName)");
  EXPECT_EQ(named("InstanceUID"), "InstanceUID") << "the name in XML";
  EXPECT_EQ(named("ToolkitVersion"), "ToolkitVersion");
  EXPECT_EQ(namesOf(commonSet("Timecode")), "Timecode (TimecodeComponent)");
  EXPECT_EQ(namesOf(commonSet("Preface")), "Preface");
}

TEST(CommonNames, AreInBothVocabularies) {
  const auto schemas = builtInDictionary(MetaMetadata::Vocabulary::kST434_2014);
  EXPECT_EQ(schemas->findSetsByName("TimecodeComponent").size(), 1u);
}

TEST(CommonNames, SetAndReadProperties) {
  PartitionMetadata partition(builtInDictionary());
  auto& set = partition.createMetadataSet("TimecodeComponent");
  EXPECT_TRUE(set.set("RoundedTimecodeBase", 25));
  EXPECT_EQ(set.text("FramesPerSecond"), u"25");
  EXPECT_EQ(&partition.find("TimecodeComponent[RoundedTimecodeBase=25]"), &set);
  try {
    set.set("RoundedTimecodeBase", u"x");
    FAIL();
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_THAT(error.message(), testing::StartsWith("FramesPerSecond (RoundedTimecodeBase) of Timecode "));
  }
}

Definitions withNames(const std::string& text) {
  auto definitions = builtInDefinitions();
  definitions.readText("dictionary 1\n" + text, "acme.dictionary");
  return definitions;
}

std::string refusalOfNames(const std::string& text) {
  try {
    withNames(text);
  } catch (const Exceptions::InvalidFormat& error) {
    return error.message();
  }
  return "none";
}

constexpr const char* kPrefaceOfRegister = "060e2b34.027f0101.0d010101.01012f00";

TEST(CommonNames, CanBeAddedByFiles) {
  const auto dictionary = withNames(std::string("names ") + kPrefaceOfRegister +
                                    " TopOfAll\n  060e2b34.01010102.03010201.05000000 Edition\n")
                              .makeDictionary();
  const auto found = dictionary->findSetsByName("TopOfAll");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0]->symbol(), "Preface");
  EXPECT_EQ(found[0]->findAttribute("Edition"), found[0]->findAttribute("FormatVersion"));
  EXPECT_EQ(found[0]->findAttribute("Version"), found[0]->findAttribute("FormatVersion")) << "the built-in name stays";
}

TEST(CommonNames, AreRefusedForWhatIsNotDefined) {
  const std::string where = "acme.dictionary:2: ", preface = kPrefaceOfRegister;
  EXPECT_EQ(refusalOfNames("names\n"),
            where + "a word is missing; common names are: names, key of the set, and its common name if it has one");
  EXPECT_EQ(
      refusalOfNames("names " + preface + " a b\n"),
      where + "there are too many words; common names are: names, key of the set, and its common name if it has one");
  EXPECT_EQ(refusalOfNames("names Preface Root\n"),
            where + "'Preface' is no key; write 32 hexadecimal digits, dots between octets allowed");
  const std::string none = "060e2b34.027f0101.0f0e0d0c.01012f00";
  EXPECT_EQ(refusalOfNames("names " + none + "\n"),
            where + "there is no set '" + none + "'; define it before, or give the file that does so first");
  EXPECT_EQ(refusalOfNames("names " + preface + "\n  060e2b34.01010102.0f0e0d0c.05000000 Edition\n"),
            "acme.dictionary:3: there is no property '060e2b34.01010102.0f0e0d0c.05000000'; define it before, or give "
            "the file that does so first");
  EXPECT_EQ(
      refusalOfNames("names " + preface + " 1st\n"),
      where + "'1st' cannot be a common name; begin with a letter or '_' and go on with these, digits, '-' and '.'");
}

TEST(CommonNames, FindWhatTheTableOfCommonNamesLists) {
  const auto rows = commonNameRows();
  if (rows.empty()) GTEST_SKIP() << "the table is not beside the repository";
  ASSERT_EQ(rows.size(), 277u);
  const auto& dictionary = *builtInDictionary();
  std::size_t found = 0;
  for (const auto& row : rows) {
    const auto* set = dictionary.findSet(MetaMetadata::registerKey(row.setKey));
    if (set == nullptr && row.setSymbol.empty()) continue;
    ASSERT_NE(set, nullptr) << row.set;
    EXPECT_EQ(dictionary.findSetsByName(row.set).size(), 1u) << row.set;
    const auto* attribute = set->findAttribute(row.property);
    ASSERT_NE(attribute, nullptr) << row.set << "." << row.property;
    EXPECT_TRUE(attribute->metaElement()->key().key().matches(MetaMetadata::registerKey(row.propertyKey)))
        << row.set << "." << row.property;
    ++found;
  }
  EXPECT_GE(found, 259u);
}

}  // namespace
}  // namespace Vantor
