#include "Core/Metadata/PropertyText.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <random>

#include "Core/Comparison/ValueText.h"
#include "Core/Metadata/ElementFactory.h"
#include "tests/Core/Metadata/PropertySpellings.h"

namespace Vantor {
namespace {

/// Octets of a property's type: of a collection with one item size, few items.
Bytes octetsFor(const MetaMetadata::MetaElement& definition, std::mt19937& random) {
  const auto* list = MetaMetadata::asCollection(definition);
  const auto type = list == nullptr ? definition.dataType() : list->dataSubType();
  const auto size =
      static_cast<uint8>(Types::Identifiers::typeSize(type) != 0 ? Types::Identifiers::typeSize(type) : 6);
  const auto count = static_cast<uint8>(list == nullptr ? 1 : 1 + random() % 3);
  Bytes octets = list == nullptr ? Bytes() : Bytes{0, 0, 0, count, 0, 0, 0, size};
  const unsigned highest = random() % 2 == 0 ? 0xff : 0x08;
  for (int i = 0; i < count * size; ++i) octets.push_back(static_cast<uint8>(random() % (highest + 1)));
  return octets;
}

/// Whether texts have to have a form that values in files may lack.
bool hasForm(const MetaMetadata::MetaElement& definition) {
  const auto& symbol = definition.symbol();
  return symbol.find("anguage") != std::string::npos || symbol == "RIFFChunkID" || symbol == "ActiveFormatDescriptor";
}

TEST(PropertyText, OfRandomValuesOfEveryPropertyGivesTheSameOctets) {
  std::mt19937 random(1313);
  const auto dictionary = builtInDictionary();
  PartitionMetadata partition(dictionary);
  const auto& set = partition.createMetadataSet("Preface");
  std::size_t read = 0;
  for (auto at = dictionary->metaElementBegin(); at != dictionary->metaElementEnd(); ++at) {
    for (int i = 0; i < 20; ++i) {
      const auto octets = octetsFor(**at, random);
      const auto value = decodeValue(**at, octets.data(), octets.size());
      if (value == nullptr || hasForm(**at)) continue;
      const PropertyPlace place = {&set, *at};
      const auto text = printProperty(place, *value);
      const auto again = parseProperty(place, text);
      ASSERT_TRUE(again->equals(*value)) << (*at)->symbol() << ": " << Utils::wstringToString(text);
      ++read;
    }
  }
  EXPECT_GT(read, 10000u);
}

TEST(PropertyText, OfEveryLabelGivesTheSameOctetsInEveryPropertyThatHasLabels) {
  const auto dictionary = builtInDictionary();
  PartitionMetadata partition(dictionary);
  const auto& set = partition.createMetadataSet("Preface");
  MetaMetadata::LabelIndex::Labels labels;
  appendBuiltInLabels(labels);
  for (const char* property : {"OperationalPattern", "TransferCharacteristic", "ContainerFormat", "PackageUsage"}) {
    const MetaMetadata::MetaElement* definition = nullptr;
    for (auto at = dictionary->metaElementBegin(); at != dictionary->metaElementEnd(); ++at) {
      if ((*at)->symbol() == property) definition = *at;
    }
    ASSERT_NE(definition, nullptr);
    for (const auto& label : labels) {
      const auto value = decodeValue(*definition, label.key.rawBuffer(), 16);
      const PropertyPlace place = {&set, definition};
      ASSERT_TRUE(parseProperty(place, printProperty(place, *value))->equals(*value)) << label.symbol;
    }
  }
}

TEST(PropertyText, LeavesTheQualifiersOfAnOperationalPatternForItsShortName) {
  SpelledSet preface("Preface");
  preface.set().set("OperationalPattern", u"MXFOP2aPlaylistItemsSinglePackageUniTrackStreamExternalNoProcessing");
  EXPECT_EQ(preface.refusal("OperationalPattern", "OP1a"), "none");
  EXPECT_EQ(preface.text("OperationalPattern"), "MXFOP1aSingleItemSinglePackageUniTrackStreamExternal");
  EXPECT_EQ(preface.refusal("OperationalPattern", "OP1b"), "none");
  EXPECT_EQ(preface.text("OperationalPattern"), "MXFOP1bSingleItemGangedPackagesUniTrackStreamExternal");
  preface.set().set("OperationalPattern", u"MXFOPAtom1Track1SourceClip");
  EXPECT_NE(preface.refusal("OperationalPattern", "OP1a"), "none") << "it has no such qualifiers";
}

TEST(PropertyText, KeepsAValueThatIsSetToTheTextOfItself) {
  SpelledSet label("AudioChannelLabelSubDescriptor");
  label.set().set("RFC5646SpokenLanguage", Types::ISO7String("en_US"));
  EXPECT_FALSE(label.set().set("RFC5646SpokenLanguage", u"en_US")) << "it is no language tag, but is there already";
  EXPECT_FALSE(label.set().set("RFC5646SpokenLanguage", u"\"en_US\""));
}

TEST(PropertyText, OfATimecodeFollowsTheBaseInItsSet) {
  SpelledSet timecode("Timecode");
  timecode.set().set("StartTimecode", 90000);
  EXPECT_EQ(timecode.text("StartTimecode"), "01:00:00:00");
  timecode.set().set("FramesPerSecond", 30);
  EXPECT_EQ(timecode.text("StartTimecode"), "00:50:00:00");
  timecode.set().remove("FramesPerSecond");
  EXPECT_EQ(timecode.text("StartTimecode"), "90000");
  EXPECT_EQ(timecode.refusal("StartTimecode", "01:00:00:00"),
            "'01:00:00:00' is not a timecode or a number of frames (FramesPerSecond of the set is missing or 0); for "
            "example 900000");
}

TEST(PropertyText, TakesLabelsOfOwnDictionaries) {
  auto definitions = builtInDefinitions();
  definitions.readText("dictionary 1\nlabel 060e2b34.04010101.04010101.017e0000  HouseCurve  Curve of the house\n",
                       "own");
  PartitionMetadata partition(definitions.makeDictionary());
  auto& descriptor = partition.createMetadataSet("CDCIDescriptor");
  EXPECT_TRUE(descriptor.set("TransferCharacteristic", u"curve of the house"));
  EXPECT_EQ(descriptor.text("TransferCharacteristic"), u"HouseCurve");
}

TEST(PropertyText, OfTheIDOfARIFFChunkIsItsFourCharacters) {
  PartitionMetadata partition(builtInDictionary());
  auto& set = partition.createMetadataSet("RIFFChunkDefinitionSubDescriptor");
  const PropertyPlace place = {&set, set.definition()->findAttribute("RIFFChunkID")->metaElement()};
  for (const auto& [text, octets] : std::vector<std::pair<wstring, Bytes>>{{u"axml", {'a', 'x', 'm', 'l'}},
                                                                           {u"fmt ", {'f', 'm', 't', ' '}},
                                                                           {u"dada", {'d', 'a', 'd', 'a'}},
                                                                           {u"0x61780000", {'a', 'x', 0, 0}},
                                                                           {u"00000000", {0, 0, 0, 0}}}) {
    const auto value = parseProperty(place, text);
    EXPECT_EQ(Bytes(value->rawBuffer(), value->rawBuffer() + value->encodedSize()), octets);
    EXPECT_TRUE(parseProperty(place, printProperty(place, *value))->equals(*value));
  }
  EXPECT_EQ(printProperty(place, *parseProperty(place, u"61786D6C")), u"axml");
  for (const auto* text : {u"a", u"ab", u"axmlaxml", u"0x6178"}) {
    EXPECT_THROW(parseProperty(place, text), Exceptions::InvalidFormat);
  }
}

TEST(PropertyText, TakesRunsOfOctetsFromFilesWhereThatIsPermitted) {
  const auto path = testing::TempDir() + "vantor-property-text";
  std::ofstream(path, std::ios::binary) << "\x0a\x1b";
  SpelledSet descriptor("RGBADescriptor");
  EXPECT_TRUE(descriptor.set().set("Palette", Utils::stringToWstring("@" + path), TextFiles::kRead));
  EXPECT_EQ(descriptor.octets("Palette"), "0A1B");
  std::remove(path.c_str());
  EXPECT_THROW(descriptor.set().set("Palette", Utils::stringToWstring("@" + path), TextFiles::kRead),
               Exceptions::IOError);
}

TEST(PropertyText, TakesFilesWhereverOctetsAreWritten) {
  const auto path = testing::TempDir() + "vantor-property-octets";
  std::ofstream(path, std::ios::binary) << std::string(16, 'R');
  const auto name = Utils::stringToWstring("@" + path);
  SpelledSet descriptor("RGBADescriptor");
  EXPECT_TRUE(descriptor.set().set("PixelLayout", name, TextFiles::kRead));
  EXPECT_EQ(descriptor.octets("PixelLayout").substr(0, 4), "5252");
  std::ofstream(path, std::ios::binary) << std::string(17, 'R');
  EXPECT_THROW(descriptor.set().set("PixelLayout", name, TextFiles::kRead), Exceptions::InvalidFormat);
  std::remove(path.c_str());
  try {
    descriptor.set().set("PixelLayout", name, TextFiles::kRead);
    ADD_FAILURE();
  } catch (const Exceptions::IOError& error) {
    EXPECT_EQ(std::string(error.what()).find("PixelLayout of RGBADescriptor"), 0u) << error.what();
  }
}

TEST(PropertyText, OfAnIndirectValueKeepsItsTypeAndTheOrderOfItsOctets) {
  const std::string littleEndian = "4C0002100100000000060E2B3401040101";
  SpelledSet tagged("TaggedValue");
  ASSERT_EQ(tagged.refusal("IndirectValue", littleEndian + "5A006F00"), "none");
  EXPECT_EQ(tagged.text("IndirectValue"), "\"Zo\"");
  ASSERT_EQ(tagged.refusal("IndirectValue", "Weekly"), "none");
  EXPECT_EQ(tagged.octets("IndirectValue"), littleEndian + "5700650065006B006C007900");
  const std::string number = "420101070000000000060E2B3401040101";
  ASSERT_EQ(tagged.refusal("IndirectValue", number + "FFFFFFFE"), "none");
  EXPECT_EQ(tagged.text("IndirectValue"), "-2");
  ASSERT_EQ(tagged.refusal("IndirectValue", "25"), "none");
  EXPECT_EQ(tagged.octets("IndirectValue"), number + "00000019");
  EXPECT_NE(tagged.refusal("IndirectValue", "Weekly"), "none");
  EXPECT_NE(tagged.refusal("IndirectValue", "3000000000"), "none");
}

TEST(PropertyText, StandsInMessagesAsPeopleWriteIt) {
  SpelledSet timecode("Timecode");
  timecode.set().set("StartTimecode", 90000);
  EXPECT_EQ(valueText(timecode.set(), *timecode.set().find("StartTimecode")), "01:00:00:00");
  SpelledSet track("TimelineTrack");
  track.set().set("TrackName", u"V1");
  EXPECT_EQ(valueText(track.set(), *track.set().find("TrackName")), "\"V1\"");
  EXPECT_EQ(valueText(track.set(), *track.set().find("EditRate")), "no value");
}

}  // namespace
}  // namespace Vantor
