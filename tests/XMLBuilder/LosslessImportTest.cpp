#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
#include "XMLBuilder.h"
#include "tests/SampleFiles.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// What a lossless import brings back that the exact one does not, and what it reports of documents that went wrong.
namespace Vantor::XML2Partition {
namespace {

using MetaMetadata::Vocabulary;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = LosslessXML::Diagnostic::Kind;

std::string timestampWith(const std::string& fraction) {
  return "<rp210:FileModificationDate><types:Year>2026</types:Year><types:Month>1</types:Month><types:Day>2</types:Day>"
         "<types:Hour>3</types:Hour><types:Minute>4</types:Minute><types:Second>5</types:Second><types:mSec4>" +
         fraction + "</types:mSec4></rp210:FileModificationDate>";
}

TEST(LosslessImport, ScalesFractionsOfASecondBack) {
  Imported document(identificationWith(timestampWith("249")));
  EXPECT_EQ(valueAs<Types::Timestamp>(document.first(), "FileModificationDate").milliSecond(), 996);
  EXPECT_THAT(document.messages(), IsEmpty());
}

TEST(LosslessImport, ReadsJPEG2000ValuesWithAndWithoutAnElementAroundThem) {
  const std::string bare =
      "<s422mTypes:Ssizi>9</s422mTypes:Ssizi><s422mTypes:XRSizi>1</s422mTypes:XRSizi><s422mTypes:YRSizi>2"
      "</s422mTypes:YRSizi>";
  const std::string wrapped = "<s422mTypes:J2KPictureComponent>" + bare + "</s422mTypes:J2KPictureComponent>";
  for (const auto& component : {bare, wrapped}) {
    Imported document(documentOf("<s377m:JPEG2000SubDescriptor><rp210:PictureComponentSizing><rp210:Element>" +
                                 component +
                                 "</rp210:Element></rp210:PictureComponentSizing></s377m:JPEG2000SubDescriptor>"));
    EXPECT_THAT(document.messages(), IsEmpty());
    const auto& sizing = valueAs<Types::Array>(document.first(), "PictureComponentSizing");
    ASSERT_EQ(sizing.size(), 1u);
    EXPECT_TRUE(holds(&sizing.at(0), Types::J2KPictureComponent(9, 1, 2)));
  }
}

wstring textOf(MetadataSet& set, const std::string& property) {
  return Platform::utf16ToWstring(valueAs<Types::UTF16String>(set, property).value());
}

TEST(LosslessImport, KeepsEmptyAndBlankTextsOfBuffersAndFiles) {
  const std::string text = identificationWith(
      "<rp210:ApplicationName/><rp210:ApplicationSupplierName></rp210:ApplicationSupplierName>\n"
      "<rp210:ApplicationVersionString> \n </rp210:ApplicationVersionString>");
  for (const auto entry : kLosslessEntries) {
    Imported document(text, entry);
    EXPECT_THAT(document.messages(), IsEmpty());
    EXPECT_EQ(textOf(document.first(), "ApplicationName"), wstring());
    EXPECT_EQ(textOf(document.first(), "ApplicationSupplierName"), wstring());
    EXPECT_EQ(textOf(document.first(), "ApplicationVersionString"), wstring(u" \n "));
  }
}

TEST(LosslessImport, ReportsBuffersAndFilesWithTheSameLines) {
  const std::string text = prefaceWith(
      "<rp210:ByteOrder>x</rp210:ByteOrder>\n\n<rp210:ObjectModelVersion>1</rp210:ObjectModelVersion>\n"
      "<rp210:ObjectModelVersion>2</rp210:ObjectModelVersion>");
  const std::string set = "|Preface " + std::string(kPrefaceUID) + "|";
  for (const auto entry : kLosslessEntries) {
    EXPECT_THAT(
        Imported(text, entry).messages(),
        ElementsAre(
            "3" + set + "ByteOrder|'x' is no whole number from -32768 to 32767",
            "6" + set + "ObjectModelVersion|ObjectModelVersion stands here a second time; only the first is read"));
  }
}

TEST(LosslessImport, JoinsTextThatCommentsAndSectionsCutUp) {
  Imported document(identificationWith("<rp210:ApplicationName>a<!-- b -->c<![CDATA[<d>]]></rp210:ApplicationName>"));
  EXPECT_EQ(Platform::utf16ToWstring(valueAs<Types::UTF16String>(document.first(), "ApplicationName").value()),
            wstring(u"ac<d>"));
}

TEST(LosslessImport, KeepsInstanceUIDsAndReferences) {
  Imported document(prefaceWith("<rp210:ContentStorageObject><s377m:ContentStorage rp210:InstanceUID='" +
                                std::string(kStorageUID) + "'/></rp210:ContentStorageObject>"));
  EXPECT_EQ(document.first().instanceUID()->toString(), Utils::stringToWstring(kPrefaceUID));
  ASSERT_EQ(document.partition().sets().size(), 2u);
  EXPECT_EQ(document.partition().sets()[1]->instanceUID()->toString(), Utils::stringToWstring(kStorageUID));
  EXPECT_THAT(document.messages(), IsEmpty());
}

TEST(LosslessImport, MakesDarkGroupsThatCanBeReferredTo) {
  Imported document(prefaceWith("<rp210:ContentStorageObject><s377m:Dangling_REF types:TargetInstance='" +
                                std::string(kStorageUID) + "'/></rp210:ContentStorageObject>") +
                    "");
  EXPECT_THAT(document.messages(), IsEmpty()) << "the name of the pointer is that of a missing set";
  const std::string payload = "3C0A001002020202020202020202020202020202";
  Imported dark(
      documentOf("<groups:FloatingDarkMetadata><groups:DarkMetadata "
                 "groups:Key='06.0E.2B.34.02.53.01.01.0F.00.00.00.00.00.00.00' groups:BEROctetCount='4'>" +
                 payload + "</groups:DarkMetadata></groups:FloatingDarkMetadata>"));
  const Types::UUID instanceUID(Utils::stringToWstring(kStorageUID), kDottedForm);
  ASSERT_EQ(dark.partition().findByInstanceUID(instanceUID).size(), 1u);
  EXPECT_EQ(dark.partition().findByInstanceUID(instanceUID).front()->berLength(), 4);
}

TEST(LosslessImport, FindsElementsByNamespaceWhateverThePrefix) {
  Imported document(
      "<a:MetadataSets xmlns:a='urn:SMPTE:S377M'><a:Preface xmlns='urn:SMPTE:RP210' xmlns:x='urn:SMPTE:RP210' "
      "x:InstanceUID='" +
      std::string(kPrefaceUID) + "'><ByteOrder>18761</ByteOrder></a:Preface></a:MetadataSets>");
  EXPECT_EQ(document.first().instanceUID()->toString(), Utils::stringToWstring(kPrefaceUID));
  EXPECT_EQ(valueAs<Types::Int16>(document.first(), "ByteOrder").value(), 18761);
  EXPECT_THAT(document.messages(), IsEmpty());
}

TEST(LosslessImport, ReadsCompoundValuesOfEitherVocabulary) {
  Imported document(
      "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' "
      "xmlns:st395='http://www.smpte-ra.org/schemas/434/2014/groups/395/2012' "
      "xmlns:st335='http://www.smpte-ra.org/schemas/434/2014/elements/335/2012' "
      "xmlns:st377Types='http://www.smpte-ra.org/schemas/434/2014/types/377-1/2012'><st395:TimelineTrack>"
      "<st335:EditRate><st377Types:Numerator>-25</st377Types:Numerator><st377Types:Denominator>1"
      "</st377Types:Denominator></st335:EditRate></st395:TimelineTrack></s377m:MetadataSets>",
      Vocabulary::kST434_2014);
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_TRUE(holds(valueOf(document.first(), "EditRate"), Types::Rational(-25, 1)));
}

TEST(LosslessImport, TakesABooleanInWords) {
  for (const auto& [text, expected] :
       std::vector<std::pair<std::string, bool>>{{"0", false}, {"1", true}, {"false", false}, {" true ", true}}) {
    Imported document(
        documentOf("<s377m:GPITrigger><rp210:ActiveState>" + text + "</rp210:ActiveState></s377m:GPITrigger>"));
    EXPECT_EQ(valueAs<Types::Boolean>(document.first(), "ActiveState").value(), expected) << text;
  }
}

// What a document cannot mean.

struct Mistake {
  const char* name;
  std::string content;  ///< of a Preface that starts in line 2
  std::string message;
};

void PrintTo(const Mistake& mistake, std::ostream* out) { *out << mistake.name; }

class DocumentMistake : public testing::TestWithParam<Mistake> {};

TEST_P(DocumentMistake, IsReportedWithLineSetAndPropertyAndLeftOut) {
  Imported document(prefaceWith(GetParam().content));
  EXPECT_THAT(document.messages(), ElementsAre(GetParam().message));
}

const std::string kSet = "3|Preface " + std::string(kPrefaceUID) + "|";

INSTANTIATE_TEST_SUITE_P(
    LosslessImport, DocumentMistake,
    testing::Values(
        Mistake{"AnUnknownElement", "<rp210:ByteOrdr>1</rp210:ByteOrdr>",
                kSet + "|the set has no property ByteOrdr in the namespace urn:SMPTE:RP210; the element is not read"},
        Mistake{"AnElementInAnotherNamespace", "<ByteOrder xmlns='urn:example'>1</ByteOrder>",
                kSet + "|the set has no property ByteOrder in the namespace urn:example; the element is not read"},
        Mistake{"AnElementInNoNamespace", "<ByteOrder>1</ByteOrder>",
                kSet + "|the set has no property ByteOrder in no namespace; the element is not read"},
        Mistake{"ASecondElement", "<rp210:ByteOrder>1</rp210:ByteOrder><rp210:ByteOrder>2</rp210:ByteOrder>",
                kSet + "ByteOrder|ByteOrder stands here a second time; only the first is read"},
        Mistake{"LettersInANumber", "<rp210:ByteOrder>12abc</rp210:ByteOrder>",
                kSet + "ByteOrder|'12abc' is no whole number from -32768 to 32767"},
        Mistake{"ANumberOutOfRange", "<rp210:ByteOrder>32768</rp210:ByteOrder>",
                kSet + "ByteOrder|'32768' is no whole number from -32768 to 32767"},
        Mistake{"ANegativeNumberWhereNoneCanBe", "<rp210:ObjectModelVersion>-1</rp210:ObjectModelVersion>",
                kSet + "ObjectModelVersion|'-1' is no whole number from 0 to 4294967295"},
        Mistake{"AnIdentifierThatLacksAnOctet",
                "<rp210:OperationalPattern>06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09</rp210:OperationalPattern>",
                kSet + "OperationalPattern|'06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09' is not the text of an AUID"},
        Mistake{"TwoIdentifiers", "<rp210:OperationalPattern>a b</rp210:OperationalPattern>",
                kSet + "OperationalPattern|'a b' is more than one identifier"},
        Mistake{"AFieldThatIsNoNumber",
                "<rp210:FileLastModified><types:Second>x</types:Second></rp210:FileLastModified>",
                kSet + "FileLastModified|'x' is no number from 0 to 255 for Second"},
        Mistake{"AMissingField", "<rp210:FileLastModified><types:Second>1</types:Second></rp210:FileLastModified>",
                kSet + "FileLastModified|mSec4 is missing or empty, and the value needs it"},
        Mistake{"AnEmptyField",
                "<rp210:FileLastModified><types:Second>1</types:Second><types:mSec4/></rp210:FileLastModified>",
                kSet + "FileLastModified|mSec4 is missing or empty, and the value needs it"},
        Mistake{"AReferenceToNoSet",
                "<rp210:ContentStorageObject><s377m:ContentStorage_REF types:TargetInstance='" +
                    std::string(kStorageUID) + "'/></rp210:ContentStorageObject>",
                kSet + "ContentStorageObject|no set of the document has the InstanceUID " + kStorageUID},
        Mistake{"AReferenceThatNamesNothing", "<rp210:ContentStorageObject/>",
                kSet + "ContentStorageObject|the reference is empty"},
        Mistake{"AnUnknownSetWithin", "<rp210:ContentStorageObject><s377m:Storage/></rp210:ContentStorageObject>",
                kSet + "ContentStorageObject|there is no set Storage in the namespace urn:SMPTE:S377M"},
        Mistake{"ASetOfTheOtherVocabularyWithin",
                "<rp210:ContentStorageObject><ContentStorage "
                "xmlns='http://www.smpte-ra.org/schemas/434/2014/groups/395/2012'/></rp210:ContentStorageObject>",
                kSet + "ContentStorageObject|there is no set ContentStorage in the namespace "
                       "http://www.smpte-ra.org/schemas/434/2014/groups/395/2012"},
        Mistake{"UnknownBytesThatAreNoHexadecimalDigits",
                "<groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag='12.34'>0G</groups:DarkElement>"
                "</groups:ExtensionElements>",
                kSet + "|'0G' is no run of octets: these are hexadecimal digits, two to an octet"},
        Mistake{"UnknownBytesOfWhichTheLastIsHalf",
                "<groups:ExtensionElements><groups:DarkElement groups:StaticLocalTag='12.34'>012</groups:DarkElement>"
                "</groups:ExtensionElements>",
                kSet + "|'012' is no run of octets: the last of them lacks its second digit"},
        Mistake{"AReferenceThatDoesNotSayWhereTo",
                "<rp210:ContentStorageObject><s377m:Content_REF/></rp210:ContentStorageObject>",
                kSet + "ContentStorageObject|the reference Content_REF names no set: it lacks the attribute "
                       "TargetInstance in the namespace urn:SMPTE:Types:MXF"},
        Mistake{"TextBesideExtensionElements", "<groups:ExtensionElements>text</groups:ExtensionElements>",
                kSet + "|'text' is text between the elements of ExtensionElements; it is not read"}),
    [](const testing::TestParamInfo<Mistake>& mistake) { return std::string(mistake.param.name); });

TEST(LosslessImport, ReportsAttributesThatAreNoIdentifiersOfTheSet) {
  Imported document(
      documentOf("<s377m:Preface xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:nil='false' "
                 "xml:space='preserve' rp210:GenerationUID='" +
                 std::string(kStorageUID) + "' note='x' InstanceUID='" + kPrefaceUID + "' rp210:TrackID='1'/>"));
  const std::string start = "the set has no attribute ";
  std::vector<std::string> messages;
  for (const auto& one : document.result().diagnostics) messages.push_back(messageOf(one));
  EXPECT_THAT(messages,
              testing::UnorderedElementsAre(start + "note in no namespace; it is not read",
                                            start + "InstanceUID in no namespace; it is not read",
                                            start + "TrackID in the namespace urn:SMPTE:RP210; it is not read"));
  EXPECT_THAT(document.kinds(), testing::Each(Kind::kUnknownAttribute));
}

TEST(LosslessImport, LeavesAPropertyThatItCannotReadUnsetAndListsIt) {
  Imported document(prefaceWith("<rp210:ByteOrder>x</rp210:ByteOrder>"));
  EXPECT_FALSE(property(document.first(), "ByteOrder").isPresent());
  ASSERT_EQ(document.result().unread.size(), 1u);
  EXPECT_EQ(document.result().unread[0].set, &document.first());
  EXPECT_EQ(document.result().unread[0].property, "ByteOrder");
}

TEST(LosslessImport, GivesASetWithoutAUsableInstanceUIDANewOne) {
  Imported document(documentOf("<s377m:Preface rp210:InstanceUID='01.02'/>"));
  ASSERT_NE(document.first().instanceUID(), nullptr);
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kInvalidInstanceUID));
  EXPECT_THAT(document.messages()[0],
              HasSubstr("|'01.02' is not an InstanceUID; the set gets a new one, to which nothing refers"));
}

TEST(LosslessImport, ReportsRootElementsThatAreNoSets) {
  Imported document(documentOf("<s377m:Prefce/>\n<note xmlns='urn:example'/>"));
  EXPECT_THAT(document.messages(), ElementsAre("2|||there is no set Prefce in the namespace urn:SMPTE:S377M",
                                               "3|||there is no set note in the namespace urn:example"));
  EXPECT_TRUE(document.partition().sets().empty());
}

TEST(LosslessImport, ReportsTextBesideSetsAndProperties) {
  const std::string start = "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'>";
  Imported document(documentOf("root\n" + start + "first<rp210:ByteOrder>1</rp210:ByteOrder></s377m:Preface>\n" +
                               start +
                               "<rp210:ByteOrder>1</rp210:ByteOrder><![CDATA[second]]></s377m:Preface>\n"
                               "<groups:FloatingDarkMetadata>third<!-- fourth --></groups:FloatingDarkMetadata>"));
  const std::string set = "Preface " + std::string(kPrefaceUID);
  const auto textIn = [](const std::string& text, const std::string& element) {
    return "'" + text + "' is text between the elements of " + element + "; it is not read";
  };
  EXPECT_THAT(
      document.messages(),
      ElementsAre("1|||" + textIn("root", "MetadataSets"), "3|" + set + "||" + textIn("first", "Preface"),
                  "4|" + set + "||" + textIn("second", "Preface"), "5|||" + textIn("third", "FloatingDarkMetadata")));
  EXPECT_THAT(document.kinds(), testing::Each(Kind::kStrayText));
}

TEST(LosslessImport, ReportsARootOfAnotherNameAndReadsWhatIsInIt) {
  for (const std::string root : {"Metadatasets xmlns='urn:SMPTE:S377M'", "MetadataSets"}) {
    Imported document("<" + root + "><s377m:Preface xmlns:s377m='urn:SMPTE:S377M'/></" +
                      root.substr(0, root.find(' ')) + ">");
    EXPECT_THAT(document.kinds(), ElementsAre(Kind::kUnknownRoot));
    EXPECT_THAT(document.messages()[0],
                HasSubstr("1|||the root element is " + root.substr(0, root.find(' ')) + " in "));
    EXPECT_THAT(document.messages()[0], HasSubstr(", not MetadataSets in the namespace urn:SMPTE:S377M"));
    EXPECT_EQ(document.partition().sets().size(), 1u);
  }
}

TEST(LosslessImport, GivesNamesAndNamespacesOfWhatItDoesNotKnowAsArguments) {
  Imported document(
      documentOf("<s377m:Preface>\n<rp210:ContentStorageObject><b:Set xmlns:b='urn:b' rp210:InstanceUID='" +
                 std::string(kStorageUID) +
                 "'/></rp210:ContentStorageObject>\n<a:Order xmlns:a='urn:a'/></s377m:Preface>\n<Preface/>"));
  std::vector<std::vector<std::string>> arguments;
  for (const auto& one : document.result().diagnostics) arguments.push_back(one.arguments);
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kUnknownSet, Kind::kUnknownProperty, Kind::kSetOfOtherNamespace));
  EXPECT_THAT(arguments, ElementsAre(ElementsAre("Set", "urn:b", kStorageUID), ElementsAre("Order", "urn:a"),
                                     ElementsAre("Preface", "", "")));
}

// What stands where it has no meaning.

std::string storageWith(const std::string& element) {
  return prefaceWith("<rp210:ContentStorageObject>" + element + "</rp210:ContentStorageObject></s377m:Preface>\n" +
                     "<s377m:ContentStorage rp210:InstanceUID='" + kStorageUID + "'/>\n<s377m:Identification>");
}

std::string closed(std::string text) {
  const std::string end = "</s377m:Preface>\n</s377m:MetadataSets>";
  const auto at = text.rfind("</s377m:Preface>");
  return text.replace(at, std::string("</s377m:Preface>").size(), "</s377m:Identification>");
}

TEST(LosslessImport, ReportsContentOfAPointer) {
  const std::string pointer = "<s377m:ContentStorage_REF types:TargetInstance='" + std::string(kStorageUID) + "'>";
  for (const std::string content : {"<rp210:Packages/>", "text", "<s377m:ContentStorage/>"}) {
    Imported document(closed(storageWith(pointer + content + "</s377m:ContentStorage_REF>")));
    EXPECT_THAT(document.kinds(), ElementsAre(Kind::kContentInPointer)) << content;
    EXPECT_EQ(document.result().unread.size(), 1u);
  }
  EXPECT_THAT(Imported(closed(storageWith(pointer + "<!-- here -->\n</s377m:ContentStorage_REF>"))).messages(),
              IsEmpty());
}

TEST(LosslessImport, ReportsASetWithinAReferenceThatIsAPointerToo) {
  Imported document(closed(storageWith("<s377m:ContentStorage types:TargetInstance='" + std::string(kStorageUID) +
                                       "'><rp210:Packages/></s377m:ContentStorage>")));
  EXPECT_THAT(document.kinds(), ElementsAre(Kind::kTargetOfSet));
  EXPECT_EQ(document.result().unread.size(), 1u);
}

TEST(LosslessImport, ReportsAttributesThatNoElementHas) {
  Imported document(
      "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M' xmlns:rp210='urn:SMPTE:RP210' root='1' "
      "xmlns:types='urn:SMPTE:Types:MXF' xmlns:groups='urn:SMPTE:Groups:MXF'>\n"
      "<s377m:TimelineTrack>\n<rp210:TrackID property='1'>1</rp210:TrackID>\n<rp210:EditRate>\n"
      "<types:Numerator field='1'>1</types:Numerator><types:Denominator>1</types:Denominator></rp210:EditRate>\n"
      "<rp210:TrackSegment>\n<s377m:Sequence_REF types:TargetInstance='" +
      std::string(kStorageUID) +
      "' pointer='1'/></rp210:TrackSegment>\n<groups:ExtensionElements container='1'>\n"
      "<groups:DarkElement groups:StaticLocalTag='12.34' dark='1'>00</groups:DarkElement></groups:ExtensionElements>\n"
      "</s377m:TimelineTrack>\n<s377m:Sequence rp210:InstanceUID='" +
      kStorageUID +
      "'/>\n<groups:FloatingDarkMetadata floating='1'>\n<groups:DarkMetadata groups:Key='06.0E.2B.34.02.05.01.01.0E."
      "7F.7F.7F.00.00.02.00' groups:BEROctetCount='4' set='1'>00</groups:DarkMetadata></groups:FloatingDarkMetadata>"
      "</s377m:MetadataSets>");
  EXPECT_THAT(document.kinds(), testing::Each(Kind::kStrayAttribute));
  std::vector<std::string> found;
  for (const auto& one : document.result().diagnostics) {
    found.push_back(std::to_string(one.place.line) + " " + one.arguments[0] + " " + one.arguments[1]);
  }
  EXPECT_THAT(found, ElementsAre("1 MetadataSets root", "3 TrackID property", "5 Numerator field",
                                 "7 Sequence_REF pointer", "8 ExtensionElements container", "9 DarkElement dark",
                                 "12 FloatingDarkMetadata floating", "13 DarkMetadata set"));
}

TEST(LosslessImport, ReportsASecondPrefaceAndReadsItBehindTheFirst) {
  Imported document(documentOf("<s377m:Preface/>\n<s377m:Preface/>"));
  EXPECT_THAT(
      document.messages(),
      ElementsAre("3|Preface||a partition has one Preface; this further one is read, but the first one counts"));
  EXPECT_EQ(document.partition().sets().size(), 2u);
  EXPECT_EQ(document.result().sets.size(), 2u);
  EXPECT_EQ(document.partition().preface(), &document.first());
}

TEST(LosslessImport, LeavesSetsWithoutInstanceUIDWithoutOneUnlessTheyAreReferredTo) {
  Imported document(
      documentOf("<s377m:Preface><rp210:ContentStorageObject><s377m:ContentStorage/>"
                 "</rp210:ContentStorageObject></s377m:Preface><groups:FloatingDarkMetadata>"
                 "<s377m:Identification/></groups:FloatingDarkMetadata>"));
  EXPECT_THAT(document.messages(), IsEmpty());
  const auto& sets = document.partition().sets();
  ASSERT_EQ(sets.size(), 3u);
  EXPECT_EQ(sets[0]->instanceUID(), nullptr);
  EXPECT_NE(sets[1]->instanceUID(), nullptr);
  EXPECT_EQ(sets[2]->instanceUID(), nullptr);
}

template <class Text, class Character>
void expectPadded(const std::vector<std::basic_string<Character>>& texts, uint32 itemSize) {
  const std::basic_string<Character> empty;
  const auto partition = emptyPartition(MetaMetadata::arrayOf(Text(empty.c_str()).identifier()));
  std::string items;
  for (const auto& text : texts) items += "<p:Element>" + std::string(text.begin(), text.end()) + "</p:Element>";
  importLosslessly(XMLBuilder::xml(withProperty(items)), *partition);
  const auto* value = valueOf(*partition->sets().front(), "Prop");
  ASSERT_NE(value, nullptr);
  const auto& array = dynamic_cast<const Types::Array&>(*value);
  EXPECT_EQ(array.itemSize(), itemSize);
  ASSERT_EQ(array.size(), texts.size());
  for (uint32 i = 0; i < array.size(); ++i) EXPECT_TRUE(holds(&array.at(i), Text(texts[i].c_str())));
}

TEST(LosslessImport, PadsTheTextsOfAnArrayToTheLongest) {
  expectPadded<Types::ISO7String, char>({"ab", "abcd", "", "a"}, 4);
  expectPadded<Types::ISO8String, char>({"abc", "a"}, 3);
  expectPadded<Types::UTF16String, char16_t>({u"abc", u"a"}, 6);
  expectPadded<Types::UTF8String, char16_t>({u"a", u"abc"}, 3);
}

TEST(LosslessImport, TakesTwoStrongReferencesToOneSet) {
  const std::string reference = "<s377m:TimelineTrack_REF types:TargetInstance='" + std::string(kStorageUID) + "'/>";
  const std::string tracks = "<rp210:PackageTracks>" + reference + "</rp210:PackageTracks>";
  Imported document(documentOf("<s377m:MaterialPackage>" + tracks + "</s377m:MaterialPackage><s377m:SourcePackage>" +
                               tracks + "</s377m:SourcePackage><s377m:TimelineTrack rp210:InstanceUID='" + kStorageUID +
                               "'/>"));
  EXPECT_THAT(document.messages(), IsEmpty()) << "files have such references";
}

// Whole files: nothing differs after a way through XML and back, in any form of the document.

struct Way {
  Path file;
  Vocabulary vocabulary;
  bool isNested;
  bool isFile;
};
void PrintTo(const Way& way, std::ostream* out) {
  *out << way.file.filename() << (way.vocabulary == Vocabulary::kLegacy ? " legacy" : " ST 434")
       << (way.isNested ? " nested" : " flat") << (way.isFile ? " file" : " buffer");
}

std::vector<Way> ways() {
  std::vector<Way> all;
  for (const auto& file : sampleFiles()) {
    for (const auto vocabulary : {Vocabulary::kLegacy, Vocabulary::kST434_2014}) {
      for (const bool isNested : {false, true}) {
        for (const bool isFile : {false, true}) all.push_back({file, vocabulary, isNested, isFile});
      }
    }
  }
  return all;
}

class LosslessRoundTrip : public testing::TestWithParam<Way> {};

/// Nested, a reference to a dark group is an element without content: the group stands at the end of the document, and
/// no reference names it.
std::size_t knownLosses(const Way& way) { return way.isNested && hasDarkTargets(way.file) ? 3 : 0; }

TEST_P(LosslessRoundTrip, ChangesNothing) {
  const auto dictionary = builtInDictionary(GetParam().vocabulary);
  const auto original = MXF::readHeaderMetadata(GetParam().file, dictionary);
  wstring xml;
  XMLBuilder::partition2XML(original.get(), GetParam().isNested, false, XMLUtils::EncodingType::kUTF8Indented, xml);
  const std::string text = Utils::wstringToString(xml);
  PartitionMetadata copy(dictionary);
  const auto entry = GetParam().isFile ? LosslessEntry::kFile : LosslessEntry::kBytes;
  const auto result = importLosslessly(text, copy, entry);
  EXPECT_TRUE(result.diagnostics.empty());
  EXPECT_TRUE(result.unread.empty());
  EXPECT_EQ(comparePartitions(*original, copy).differences.size(), knownLosses(GetParam()));
  for (const auto* set : original->sets()) {
    if (set->instanceUID() == nullptr) continue;
    EXPECT_EQ(copy.findByInstanceUID(*set->instanceUID()).size(), 1u) << set->name();
  }
}

INSTANTIATE_TEST_SUITE_P(Samples, LosslessRoundTrip, testing::ValuesIn(ways()));

}  // namespace
}  // namespace Vantor::XML2Partition
