#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/MetaMetadata/DictionaryBuilder.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// Elements that are no value of their property's type, or no part of one: each is reported, and none is read in part.
namespace Vantor::XML2Partition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = LosslessXML::Diagnostic::Kind;

const std::string kDate =
    "<types:Year>2026</types:Year><types:Month>1</types:Month><types:Day>2</types:Day><types:Hour>3</types:Hour>"
    "<types:Minute>4</types:Minute><types:Second>5</types:Second>";
const std::string kComponent =
    "<s422mTypes:Ssizi>9</s422mTypes:Ssizi><s422mTypes:XRSizi>1</s422mTypes:XRSizi><s422mTypes:YRSizi>2"
    "</s422mTypes:YRSizi>";
const std::string kRational = "<types:Numerator>25</types:Numerator><types:Denominator>1</types:Denominator>";

struct Unreadable {
  const char* name;
  std::string set;
  std::string property;
  std::string content;
  std::string message;
};

void PrintTo(const Unreadable& value, std::ostream* out) { *out << value.name; }

class UnreadableValue : public testing::TestWithParam<Unreadable> {};

TEST_P(UnreadableValue, IsReportedAndLeavesThePropertyUnset) {
  const auto& value = GetParam();
  Imported document(documentOf("<s377m:" + value.set + "><rp210:" + value.property + ">" + value.content +
                               "</rp210:" + value.property + "></s377m:" + value.set + ">"));
  ASSERT_EQ(document.result().diagnostics.size(), 1u);
  EXPECT_EQ(messageOf(document.result().diagnostics[0]), value.message);
  EXPECT_EQ(document.result().diagnostics[0].kind, Kind::kInvalidValue);
  EXPECT_EQ(document.result().diagnostics[0].place.property, value.property);
  EXPECT_FALSE(property(document.first(), value.property).isPresent());
  ASSERT_EQ(document.result().unread.size(), 1u);
  EXPECT_EQ(document.result().unread[0].property, value.property);
}

INSTANTIATE_TEST_SUITE_P(
    LosslessImport, UnreadableValue,
    testing::Values(
        Unreadable{"AnEmptyNumber", "TimelineTrack", "TrackID", "",
                   "the element is empty, and the type UInt32 has no empty value"},
        Unreadable{"AnEmptyRational", "TimelineTrack", "EditRate", "",
                   "the element is empty, and the type Rational has no empty value"},
        Unreadable{"AnEmptyIdentifier", "Preface", "OperationalPattern", "",
                   "the element is empty, and the type AUID has no empty value"},
        Unreadable{"ABlankNumber", "TimelineTrack", "TrackID", " ", "' ' is no whole number from 0 to 4294967295"},
        Unreadable{"AnEmptyItem", "SourceClip", "ChannelIDs", "<rp210:Element>1</rp210:Element><rp210:Element/>",
                   "the element is empty, and the type UInt32 has no empty value"},
        Unreadable{"AnItemThatIsNoNumber", "CDCIDescriptor", "VideoLineMap",
                   "<rp210:Element>1</rp210:Element><rp210:Element>x</rp210:Element>",
                   "'x' is no whole number from -2147483648 to 2147483647"},
        Unreadable{"TextInsteadOfItems", "CDCIDescriptor", "VideoLineMap", "12",
                   "'12' is text where only elements are expected"},
        Unreadable{"TextInsteadOfReferences", "Preface", "IdentificationList", "x",
                   "'x' is text where only elements are expected"},
        Unreadable{"AnElementInANumber", "TimelineTrack", "TrackID", "1<b/>2",
                   "'b' is an element within a value that has none"},
        Unreadable{"AnElementInAText", "TimelineTrack", "TrackName", "a<b>c</b>",
                   "'b' is an element within a value that has none"},
        Unreadable{"AnElementInAField", "TimelineTrack", "EditRate",
                   "<types:Numerator>2<b/>5</types:Numerator><types:Denominator>1</types:Denominator>",
                   "'b' is an element within a value that has none"},
        Unreadable{"ASecondField", "TimelineTrack", "EditRate", kRational + "<types:Numerator>24</types:Numerator>",
                   "'types:Numerator' is there a second time"},
        Unreadable{"AnUnknownField", "TimelineTrack", "EditRate", kRational + "<types:Foo>1</types:Foo>",
                   "'types:Foo' is no part of the value"},
        Unreadable{"AFieldInAnotherNamespace", "TimelineTrack", "EditRate", kRational + "<Numerator>1</Numerator>",
                   "'Numerator' is no part of the value"},
        Unreadable{"TextBesideFields", "TimelineTrack", "EditRate", "25/1" + kRational,
                   "'25/1' is text where only elements are expected"},
        Unreadable{"AnUnknownFieldOfATimestamp", "Preface", "FileLastModified",
                   kDate + "<types:mSec4>1</types:mSec4><types:Zone/>", "'types:Zone' is no part of the value"},
        Unreadable{"MoreFractionsThanASecondHas", "Preface", "FileLastModified",
                   kDate + "<types:mSec4>256</types:mSec4>", "'256' is no number from 0 to 255 for mSec4"},
        Unreadable{"ASecondFieldOfAComponent", "RGBADescriptor", "PixelLayout",
                   "<types:RGBAComponent><types:Code>82</types:Code><types:Depth>8</types:Depth><types:Depth>8"
                   "</types:Depth></types:RGBAComponent>",
                   "'types:Depth' is there a second time"},
        Unreadable{"SomethingElseBesideComponents", "RGBADescriptor", "PixelLayout", "<types:Component/>",
                   "'types:Component' is no part of the value"},
        Unreadable{"AnElementBesideAJPEG2000Value", "JPEG2000SubDescriptor", "PictureComponentSizing",
                   "<rp210:Element><s422mTypes:J2KPictureComponent>" + kComponent +
                       "</s422mTypes:J2KPictureComponent><s422mTypes:J2KPictureComponent/></rp210:Element>",
                   "'s422mTypes:J2KPictureComponent' is there a second time"}),
    [](const testing::TestParamInfo<Unreadable>& value) { return std::string(value.param.name); });

TEST(LosslessImport, JoinsTheTextOfFieldsThatCommentsCutUp) {
  Imported document(
      documentOf("<s377m:TimelineTrack><rp210:EditRate><types:Numerator>2<!-- a -->5</types:Numerator>"
                 "<types:Denominator><!-- b -->1</types:Denominator></rp210:EditRate></s377m:TimelineTrack>"));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_TRUE(holds(valueOf(document.first(), "EditRate"), Types::Rational(25, 1)));
}

TEST(LosslessImport, ReadsTheMostFractionsThatOneOctetHas) {
  Imported document(
      prefaceWith("<rp210:FileLastModified>" + kDate + "<types:mSec4>255</types:mSec4>" + "</rp210:FileLastModified>"));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_EQ(valueAs<Types::Timestamp>(document.first(), "FileLastModified").milliSecond(), 1020);
}

TEST(LosslessImport, ReadsACodeUnitThatIsWhiteSpace) {
  MetaMetadata::DictionaryBuilder builder;
  builder.addElement("060e2b34.01010101.7f000001.00000000", "Unit", Types::Identifiers::kUTF16);
  builder.addSet("060e2b34.02530101.0d010101.01012f00", "Preface");
  builder.addAttribute("060e2b34.01010101.7f000001.00000000");
  PartitionMetadata partition(builder.build());
  const auto result =
      importLosslessly(documentOf("<s377m:Preface><rp210:Unit> </rp210:Unit></s377m:Preface>"), partition);
  EXPECT_THAT(result.unread, IsEmpty());
  EXPECT_EQ(valueAs<Types::UTF16>(*partition.sets().front(), "Unit").value(), u' ');
}

TEST(LosslessImport, KeepsEmptyStreamsOfBytes) {
  Imported document(
      documentOf("<s377m:JPEG2000SubDescriptor><rp210:QuantizationDefault><s422mTypes:Sqcd>1"
                 "</s422mTypes:Sqcd><s422mTypes:SPgcd/></rp210:QuantizationDefault>"
                 "</s377m:JPEG2000SubDescriptor>"));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_TRUE(holds(valueOf(document.first(), "QuantizationDefault"), Types::J2KQuantisationDefault(1, nullptr, 0)));
}

TEST(LosslessImport, ReportsAReferenceMoreThanThereCanBe) {
  const std::string storage = "<s377m:ContentStorage_REF types:TargetInstance='" + std::string(kStorageUID) + "'/>";
  Imported document(documentOf("<s377m:ContentStorage rp210:InstanceUID='" + std::string(kStorageUID) +
                               "'/><s377m:Preface>\n<rp210:ContentStorageObject>" + storage + "\n" + storage +
                               "</rp210:ContentStorageObject></s377m:Preface>"));
  EXPECT_THAT(document.messages(),
              ElementsAre("4|Preface|ContentStorageObject|the property refers to one set, and has that already; this "
                          "one is not read"));
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kSecondReference));
}

TEST(LosslessImport, ReadsTheReferencesBesideOneThatIsNone) {
  Imported document(
      prefaceWith("<rp210:IdentificationList><s377m:Identification_REF types:TargetInstance='x'/>"
                  "<s377m:Identification/></rp210:IdentificationList>"));
  EXPECT_THAT(document.messages(), ElementsAre("3|Preface " + std::string(kPrefaceUID) +
                                               "|IdentificationList|'x' is not the text of a UUID"));
  const auto* references = valueOf(document.first(), "IdentificationList");
  ASSERT_NE(references, nullptr);
  EXPECT_EQ(dynamic_cast<const Types::Collection&>(*references).size(), 1u);
  EXPECT_EQ(document.result().unread.size(), 1u);
}

TEST(LosslessImport, ReportsEverythingInTheOrderOfTheDocument) {
  Imported document(
      documentOf("<s377m:TimelineTrack><rp210:Foo/>\n<rp210:TrackName>a<b/></rp210:TrackName>\n"
                 "<rp210:TrackID>x</rp210:TrackID>\n<rp210:EditRate/></s377m:TimelineTrack>"));
  std::vector<uint64> lines;
  for (const auto& one : document.result().diagnostics) lines.push_back(one.place.line);
  EXPECT_THAT(lines, ElementsAre(2u, 3u, 4u, 5u));
}

// Properties that are in no definition of their set.

std::vector<std::string> invalidOf(MetadataSet& set) {
  std::vector<std::string> names;
  for (auto at = set.invalidBegin(); at != set.invalidEnd(); ++at) {
    const auto* definition = at->metaAttribute().metaElement();
    names.push_back(definition == nullptr ? "" : definition->symbol());
  }
  return names;
}

std::string extensionsWith(const std::string& content) {
  return prefaceWith("<groups:ExtensionElements>" + content + "</groups:ExtensionElements>");
}

TEST(LosslessImport, LeavesExtensionElementsThatItCannotReadOutOfTheSet) {
  Imported document(
      extensionsWith("<rp210:TrackID>x</rp210:TrackID><rp210:Origin/>\n"
                     "<groups:DarkElement groups:StaticLocalTag='12.34'>0G</groups:DarkElement>"
                     "<groups:DarkElement groups:StaticLocalTag='12.3G'>00</groups:DarkElement>\n"
                     "<rp210:EssenceTrackNumber>1</rp210:EssenceTrackNumber>"));
  const std::string set = "|Preface " + std::string(kPrefaceUID) + "|";
  EXPECT_THAT(document.messages(),
              ElementsAre("3" + set + "TrackID|'x' is no whole number from 0 to 4294967295",
                          "3" + set + "Origin|the element is empty, and the type Position has no empty value",
                          "4" + set + "|'0G' is no run of octets: these are hexadecimal digits, two to an octet",
                          "4" + set + "|'12.3G' is not the text of a LocalTag"));
  EXPECT_THAT(invalidOf(document.first()), ElementsAre("EssenceTrackNumber"));
}

TEST(LosslessImport, ReportsExtensionElementsThatNoDictionaryHas) {
  Imported document(extensionsWith("<rp210:TrackNumbr>01</rp210:TrackNumbr>"));
  EXPECT_THAT(document.messages(), ElementsAre("3|Preface " + std::string(kPrefaceUID) +
                                               "||there is no property TrackNumbr in the namespace urn:SMPTE:RP210"));
  EXPECT_THAT(invalidOf(document.first()), IsEmpty());
}

}  // namespace
}  // namespace Vantor::XML2Partition
