#include "Core/Metadata/UnreadValue.h"

#include <gtest/gtest.h>

#include "Core/Comparison/ValueText.h"
#include "tests/Core/Metadata/PropertySpellings.h"

namespace Vantor {
namespace {

const std::string kStatus = "850000000000000000000000000000000000000000000000";

/// A set as a file has it, with one property.
class FileSet {
 public:
  FileSet(const std::string& kind, uint16 tag, const std::string& octets)
      : partition_(builtInDictionary()),
        set_(readSet(partition_, builtInDictionary()->findSetBySymbol(kind)->key(), Items().item(tag, octets))) {}

  MetadataSet& set() { return set_; }
  PartitionMetadata& partition() { return partition_; }
  UnreadValue unread() const { return unreadValueOf(set_, *set_.invalidBegin()); }
  std::string text(const std::string& property) const { return Utils::wstringToString(set_.text(property)); }
  std::string octets() { return hexOf(written(set_, partition_)).substr(40); }

 private:
  PartitionMetadata partition_;
  MetadataSet& set_;
};

TEST(UnreadValue, IsAVersionOfNineOctets) {
  FileSet file("Identification", 0x3c07, "0001 0006 0000 0000 01");
  EXPECT_EQ(file.text("ToolkitVersion"), "1.6.0.0 release");
  EXPECT_EQ(valueText(file.set(), *std::as_const(file.set()).invalidBegin()), "1.6.0.0 release");
  EXPECT_EQ(file.unread().definition->symbol(), "ToolkitVersion");
  EXPECT_EQ(file.unread().reason, "its 9 octets are not the 10 of its type");
}

TEST(UnreadValue, OfAVersionStaysForItsOwnTextAndBecomesTenOctetsForAnother) {
  FileSet file("Identification", 0x3c07, "0001 0006 0000 0000 01");
  const auto before = file.octets();
  EXPECT_FALSE(file.set().set("ToolkitVersion", u"1.6.0.0 release"));
  EXPECT_FALSE(file.set().set("ToolkitVersion", u"1.6 release"));
  EXPECT_EQ(file.octets(), before);
  EXPECT_TRUE(file.set().set("ToolkitVersion", u"1.7 release"));
  EXPECT_EQ(file.octets(), "3C07000A00010007000000000001");
}

TEST(UnreadValue, IsChannelStatusDataOfTwentyFourOctets) {
  FileSet file("AES3PCMDescriptor", 0x3d11, "00000001 00000018 " + kStatus);
  EXPECT_EQ(file.text("FixedChannelStatusData"), "[" + kStatus + "]");
  EXPECT_EQ(file.unread().reason, "its items have 24 octets, not the 1 of their type");
}

TEST(UnreadValue, OfChannelStatusDataIsEditedInItsForm) {
  FileSet file("AES3PCMDescriptor", 0x3d11, "00000001 00000018 " + kStatus);
  const std::string other = "86" + kStatus.substr(2);
  EXPECT_FALSE(file.set().set("FixedChannelStatusData", Utils::stringToWstring("[" + kStatus + "]")));
  EXPECT_TRUE(file.set().set("FixedChannelStatusData", Utils::stringToWstring("[" + kStatus + ", " + other + "]")));
  EXPECT_EQ(file.text("FixedChannelStatusData"), "[" + kStatus + ", " + other + "]");
  EXPECT_EQ(file.octets(), "3D1100380000000200000018" + kStatus + other);
}

TEST(UnreadValue, OfChannelStatusDataKeepsTheSizeOfItsItems) {
  FileSet file("AES3PCMDescriptor", 0x3d11, "00000001 00000018 " + kStatus);
  try {
    file.set().set("FixedChannelStatusData", u"[85]");
    ADD_FAILURE();
  } catch (const Exceptions::InvalidFormat& error) {
    EXPECT_NE(
        std::string(error.what()).find("'[85]' is not a list of items of 24 octets; for example [" + kStatus + "]"),
        std::string::npos)
        << error.what();
  }
  EXPECT_EQ(file.text("FixedChannelStatusData"), "[" + kStatus + "]");
}

TEST(UnreadValue, IsMadeOfChannelStatusDataWhereThereAreNone) {
  for (const auto* none : {"00000000 00000001", "00000000 00000018"}) {
    FileSet file("AES3PCMDescriptor", 0x3d11, none);
    EXPECT_TRUE(file.set().set("FixedChannelStatusData", Utils::stringToWstring("[" + kStatus + "]"))) << none;
    EXPECT_EQ(file.octets(), "3D1100200000000100000018" + kStatus) << none;
    EXPECT_EQ(file.text("FixedChannelStatusData"), "[" + kStatus + "]") << none;
  }
  SpelledSet made("AES3PCMDescriptor");
  EXPECT_EQ(made.refusal("FixedUserData", "[" + kStatus + "]"), "none");
  EXPECT_EQ(made.text("FixedUserData"), "[" + kStatus + "]");
}

TEST(UnreadValue, OfItsTypeKeepsThatForm) {
  FileSet file("AES3PCMDescriptor", 0x3d11, "00000001 00000001 85");
  EXPECT_TRUE(file.set().set("FixedChannelStatusData", u"[1, 2]"));
  EXPECT_EQ(file.octets(), "3D11000A00000002000000010102");
  EXPECT_EQ(file.set().invalidBegin(), file.set().invalidEnd());
}

TEST(UnreadValue, IsPresentAndIsRemoved) {
  FileSet file("AES3PCMDescriptor", 0x3d11, "00000001 00000018 " + kStatus);
  EXPECT_TRUE(file.set().has("FixedChannelStatusData"));
  EXPECT_TRUE(file.set().remove("FixedChannelStatusData"));
  EXPECT_FALSE(file.set().has("FixedChannelStatusData"));
  EXPECT_FALSE(file.set().remove("FixedChannelStatusData"));
  EXPECT_EQ(file.octets(), "");
}

TEST(UnreadValue, OfNoKnownFormIsPrintedAsOctetsThatAreReadBack) {
  FileSet file("TimelineTrack", 0x4802, "D83D");
  const auto before = file.octets();
  EXPECT_EQ(file.text("TrackName"), "0x[D83D]");
  EXPECT_EQ(valueText(file.set(), *std::as_const(file.set()).invalidBegin()), "0x[D83D]");
  EXPECT_FALSE(file.set().set("TrackName", u"0x[D83D]"));
  EXPECT_TRUE(file.set().set("TrackName", u"V1"));
  EXPECT_TRUE(file.set().set("TrackName", u"0x[D83D]"));
  EXPECT_EQ(file.octets(), before);
  EXPECT_TRUE(file.set().set("TrackName", u"0x[0041]"));
  EXPECT_EQ(file.text("TrackName"), "A");
}

TEST(UnreadValue, GivesTheReason) {
  EXPECT_EQ(FileSet("TimelineTrack", 0x4b01, "0001").unread().reason, "its 2 octets are not the 8 of its type");
  EXPECT_EQ(FileSet("TimelineTrack", 0x4b01, "0001").unread().value, nullptr);
  EXPECT_EQ(FileSet("TimelineTrack", 0x4b01, "").unread().reason, "it has no octets");
  EXPECT_EQ(FileSet("TimelineTrack", 0x4802, "0041 00").unread().reason, "its octets are no UTF16String");
  EXPECT_EQ(FileSet("TimelineTrack", 0xfffe, "00").unread().reason, "the dictionary does not have it");
  EXPECT_EQ(FileSet("AES3PCMDescriptor", 0x3d11, "0000").unread().reason, "its 2 octets are no list");
  EXPECT_EQ(FileSet("AES3PCMDescriptor", 0x3d11, "00000002 00000001 00").unread().reason,
            "its size is not that of the items that it counts");
}

TEST(UnreadValue, OfAGenerationOutOfItsPlaceIsItsValue) {
  FileSet file("ClassDefinition", 0x0102, hexOf(uid(2)));
  EXPECT_EQ(file.unread().reason, "the set's definition does not list it");
}

TEST(UnreadValue, OfAPropertyThatIsThereTwiceIsItsValue) {
  PartitionMetadata partition(builtInDictionary());
  auto& set = readSet(partition, builtInDictionary()->findSetBySymbol("TimelineTrack")->key(),
                      Items().item(0x4801, "00000001").item(0x4801, "00000002"));
  const auto unread = unreadValues(partition);
  ASSERT_EQ(unread.size(), 1u);
  EXPECT_EQ(unread[0].set, &set);
  EXPECT_EQ(unread[0].reason, "the set has it twice");
  EXPECT_EQ(valueText(*unread[0].set, *unread[0].element), "2");
  EXPECT_EQ(set.text("TrackID"), u"1");
}

}  // namespace
}  // namespace Vantor
