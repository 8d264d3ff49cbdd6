#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/Sanitized.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// Sets that a document has twice: they are one, and differences between the copies are reported.
namespace Vantor::XML2Partition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = LosslessXML::Diagnostic::Kind;

TEST(LosslessCopies, MakesOneSetOfTwoCopies) {
  const std::string preface = "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) +
                              "'><rp210:ByteOrder>1</rp210:ByteOrder></s377m:Preface>";
  Imported document(documentOf(preface + "<groups:FloatingDarkMetadata>" + preface + "</groups:FloatingDarkMetadata>"));
  EXPECT_EQ(document.partition().sets().size(), 1u);
  EXPECT_THAT(document.messages(), IsEmpty());
}

TEST(LosslessCopies, AreNoneOfSetsThatThePartitionHadBefore) {
  const std::string text = prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder>");
  for (const auto entry : kLosslessEntries) {
    PartitionMetadata partition(builtInDictionary());
    importLosslessly(text, partition);
    const auto failure = failureOf([&] { importLosslessly(text, partition, entry); });
    EXPECT_EQ(failure.kind, "InvalidFormat");
    EXPECT_EQ(failure.message, "line 2: the Preface has the InstanceUID of the Preface " + std::string(kPrefaceUID) +
                                   " that the partition has already; give one of them another, or import into a new "
                                   "partition");
    EXPECT_EQ(partition.sets().size(), 1u);
  }
}

TEST(LosslessCopies, LetAPartitionHaveTheSetsOfTwoDocuments) {
  PartitionMetadata partition(builtInDictionary());
  importLosslessly(prefaceWith(""), partition);
  const std::string storage = "<s377m:ContentStorage rp210:InstanceUID='" + std::string(kStorageUID) + "'/>";
  EXPECT_THAT(importLosslessly(documentOf(storage + "<s377m:Preface/>"), partition).diagnostics, IsEmpty());
  EXPECT_EQ(partition.sets().size(), 3u);
}

TEST(LosslessCopies, ReportsWhereACopyDiffersAndKeepsTheFirst) {
  const std::string start = "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>\n";
  Imported document(documentOf(start + "<rp210:ByteOrder>1</rp210:ByteOrder></s377m:Preface>\n" + start +
                               "<rp210:ByteOrder>2</rp210:ByteOrder></s377m:Preface>"));
  EXPECT_EQ(document.partition().sets().size(), 1u);
  EXPECT_EQ(valueAs<Types::Int16>(document.first(), "ByteOrder").value(), 1);
  EXPECT_THAT(document.messages(),
              ElementsAre("5|Preface " + std::string(kPrefaceUID) +
                          "|ByteOrder|differs from the first copy of the set, at line 3, which counts"));
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kDifferentCopy));
}

TEST(LosslessCopies, GivesNoLineOfACopyOnTheSameLine) {
  const std::string start = "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>";
  Imported document(documentOf(start + "<rp210:ByteOrder>1</rp210:ByteOrder></s377m:Preface>" + start +
                               "<rp210:ByteOrder>2</rp210:ByteOrder></s377m:Preface>"));
  EXPECT_THAT(document.messages(), ElementsAre("2|Preface " + std::string(kPrefaceUID) +
                                               "|ByteOrder|differs from the first copy of the set, which counts"));
}

TEST(LosslessCopies, MakesSetsThatOnlyTheSecondCopyHasWithin) {
  const std::string start = "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>";
  const std::string target = "'" + std::string(kStorageUID) + "'";
  Imported document(documentOf(start + "<rp210:ContentStorageObject><s377m:ContentStorage_REF types:TargetInstance=" +
                               target + "/></rp210:ContentStorageObject></s377m:Preface>" + start +
                               "<rp210:ContentStorageObject><s377m:ContentStorage rp210:InstanceUID=" + target +
                               "/></rp210:ContentStorageObject></s377m:Preface>"));
  EXPECT_EQ(document.partition().sets().size(), 2u);
  EXPECT_THAT(document.messages(), IsEmpty());
}

TEST(LosslessCopies, RefusesTwoKindsOfSetsWithOneInstanceUID) {
  const std::string text = documentOf("<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) +
                                      "'/>\n<s377m:ContentStorage rp210:InstanceUID='" + kPrefaceUID + "'/>");
  PartitionMetadata partition(builtInDictionary());
  const auto failure = failureOf([&] { importLosslessly(text, partition); });
  EXPECT_EQ(failure.kind, "InvalidFormat");
  EXPECT_EQ(failure.message, "line 3: the ContentStorage has the InstanceUID of the Preface " +
                                 std::string(kPrefaceUID) + " at line 2; give one of them another");
}

/// A kind of set that holds something, written twice, once in line 2 and once in line 3.
std::vector<std::string> messagesOf(const std::string& set, const std::string& first, const std::string& second,
                                    const std::string& secondAttributes = "") {
  const std::string start = "<s377m:" + set + " rp210:InstanceUID='" + std::string(kPrefaceUID) + "'";
  const std::string end = "</s377m:" + set + ">";
  Imported document(documentOf(start + ">" + first + end + "\n" + start + secondAttributes + ">" + second + end));
  EXPECT_EQ(document.partition().sets().size(), 1u);
  return document.messages();
}

std::string difference(const std::string& set, const std::string& property) {
  return "3|" + set + " " + kPrefaceUID + "|" + property +
         "|differs from the first copy of the set, at line 2, which counts";
}

std::string rate(const std::string& numerator, const std::string& denominator) {
  return "<rp210:EditRate><types:Numerator>" + numerator + "</types:Numerator><types:Denominator>" + denominator +
         "</types:Denominator></rp210:EditRate>";
}
std::string channels(const std::string& first, const std::string& second) {
  return "<rp210:ChannelIDs><rp210:Element>" + first + "</rp210:Element>\n<rp210:Element>" + second +
         "</rp210:Element></rp210:ChannelIDs>";
}
std::string extension(const std::string& tag, const std::string& octets) {
  return "<groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag='" + tag + "'>" + octets +
         "</groups:DarkElement></groups:ExtensionElements>";
}

TEST(LosslessCopies, AreComparedFieldByField) {
  EXPECT_THAT(messagesOf("TimelineTrack", rate("2", "51"), rate("25", "1")),
              ElementsAre(difference("TimelineTrack", "EditRate")));
  EXPECT_THAT(messagesOf("TimelineTrack", rate("25", "1"), rate("25<!-- PAL -->", "1")), IsEmpty());
}

TEST(LosslessCopies, AreComparedItemByItem) {
  const std::string clip = "SourceClip";
  EXPECT_THAT(messagesOf(clip, "<rp210:ChannelIDs><rp210:Element>1</rp210:Element></rp210:ChannelIDs>",
                         "<rp210:ChannelIDs><rp210:Element>1</rp210:Element><rp210:Element>1</rp210:Element>"
                         "</rp210:ChannelIDs>"),
              ElementsAre(difference(clip, "ChannelIDs")));
  const std::string start = "<s377m:SourceClip rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>";
  Imported document(documentOf(start + channels("1", "23") + "</s377m:SourceClip>\n" + start + channels("12", "3") +
                               "</s377m:SourceClip>"));
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kDifferentCopy));
}

TEST(LosslessCopies, AreComparedTextByTextHoweverItIsCutUp) {
  EXPECT_THAT(messagesOf("TimelineTrack", "<rp210:TrackName>a<!-- x -->bc</rp210:TrackName>",
                         "<rp210:TrackName><![CDATA[ab]]>c</rp210:TrackName>"),
              IsEmpty());
  for (const char* text : {"ab", "abcd", "ab ", ""}) {
    EXPECT_THAT(messagesOf("TimelineTrack", "<rp210:TrackName>a<!-- x -->bc</rp210:TrackName>",
                           "<rp210:TrackName>" + std::string(text) + "</rp210:TrackName>"),
                ElementsAre(difference("TimelineTrack", "TrackName")))
        << text;
  }
}

TEST(LosslessCopies, GiveTheLineOfTheFirstWhereItLacksAProperty) {
  EXPECT_THAT(messagesOf("TimelineTrack", "", "<rp210:TrackID>1</rp210:TrackID>"),
              ElementsAre(difference("TimelineTrack", "TrackID")));
  EXPECT_THAT(messagesOf("TimelineTrack", "<rp210:TrackID>1</rp210:TrackID>", ""),
              ElementsAre(difference("TimelineTrack", "TrackID")));
}

TEST(LosslessCopies, ReportTheirOwnUnreadChildrenAndAttributes) {
  const std::string set = "3|TimelineTrack " + std::string(kPrefaceUID) + "||";
  EXPECT_THAT(
      messagesOf("TimelineTrack", "<rp210:TrackID>1</rp210:TrackID>",
                 "<rp210:TrackID>1</rp210:TrackID><rp210:TrackID>2</rp210:TrackID><rp210:Trck/>", " note='x'"),
      ElementsAre(set + "the set has no attribute note in no namespace; it is not read",
                  set.substr(0, set.size() - 1) + "TrackID|TrackID stands here a second time; only the first is read",
                  set + "the set has no property Trck in the namespace urn:SMPTE:RP210; the element is not read"));
}

TEST(LosslessCopies, AreComparedByTheirGenerationUIDs) {
  EXPECT_THAT(messagesOf("TimelineTrack", "", "", " rp210:GenerationUID='" + std::string(kStorageUID) + "'"),
              ElementsAre(difference("TimelineTrack", "LinkedGenerationID")));
}

TEST(LosslessCopies, AreComparedByTheirExtensionElements) {
  EXPECT_THAT(messagesOf("TimelineTrack", extension("12.34", "00"), extension("12.34", "00")), IsEmpty());
  for (const auto& other : {extension("12.34", "01"), extension("12.35", "00"), std::string()}) {
    EXPECT_THAT(messagesOf("TimelineTrack", extension("12.34", "00"), other),
                ElementsAre(difference("TimelineTrack", "")));
  }
}

TEST(LosslessCopies, ReportSetsWithinThatNothingWouldReferTo) {
  const std::string nested =
      "<rp210:ContentStorageObject><s377m:ContentStorage/></rp210:ContentStorageObject></s377m:Preface>";
  const std::string start = "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>";
  Imported document(documentOf(start + nested + "\n" + start + nested));
  EXPECT_THAT(document.messages(), ElementsAre(difference("Preface", "ContentStorageObject")));
  EXPECT_EQ(document.partition().sets().size(), 2u);
}

/// Thousands of copies of a set that has thousands of children, and a text and an array as long.
TEST(LosslessCopies, TakeTimeInProportionToThemselves) {
  constexpr int kCount = 8000;
  const std::string start = "<s377m:SourceClip rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>";
  std::string text = start + "<rp210:ChannelIDs>";
  for (int i = 0; i < kCount; ++i) text += "<rp210:Element>1</rp210:Element>";
  text += "</rp210:ChannelIDs><groups:ExtensionElements>";
  for (int i = 0; i < kCount; ++i) text += "<groups:DarkElement groups:StaticLocalTag='12.34'>00</groups:DarkElement>";
  text += "</groups:ExtensionElements>";
  for (int i = 0; i < kCount; ++i) text += "<rp210:Foo" + std::to_string(i) + "/>";
  text += "</s377m:SourceClip>";
  const std::string copy = start + "<rp210:ChannelIDs><rp210:Element>1</rp210:Element></rp210:ChannelIDs>" +
                           extension("12.34", "00") + "</s377m:SourceClip>\n";
  for (int i = 0; i < kCount; ++i) text += copy;
  const auto begin = std::chrono::steady_clock::now();
  const Imported document(documentOf(text));
  std::size_t diagnostics = document.result().diagnostics.size();
  for (const auto& [kind, count] : document.result().furtherDiagnostics) diagnostics += count;
  EXPECT_EQ(diagnostics, 3u * kCount);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(isSanitized() ? 60 : 5));
}

}  // namespace
}  // namespace Vantor::XML2Partition
