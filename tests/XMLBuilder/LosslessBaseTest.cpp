#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/XMLBuilder/LosslessSupport.h"

/// What a lossless import confirms with the partition that the document was exported from, and what it makes of unknown
/// properties.
namespace Vantor::XML2Partition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = LosslessXML::Diagnostic::Kind;

const std::string kPreface = "Preface " + std::string(kPrefaceUID);

std::string storageOf(const std::string& pointer, const std::string& rest = "") {
  return documentOf("<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) +
                    "'>\n<rp210:ContentStorageObject><s377m:" + pointer + " types:TargetInstance='" + kStorageUID +
                    "'/></rp210:ContentStorageObject></s377m:Preface>" + rest);
}
const std::string kStorage = "\n<s377m:ContentStorage rp210:InstanceUID='" + std::string(kStorageUID) + "'/>";

std::string darkSet(const std::string& octets) {
  return "<groups:FloatingDarkMetadata>\n<groups:DarkMetadata groups:Key='06.0E.2B.34.02.53.01.01.0D.01.01.01.7F.7F.7F."
         "7F'>" +
         octets + "</groups:DarkMetadata></groups:FloatingDarkMetadata>";
}
std::string unknown(const std::string& mark, const std::string& octets) {
  return "<groups:DarkElement groups:" + mark + ">" + octets + "</groups:DarkElement>\n";
}
std::string extensions(const std::string& content) {
  return "<groups:ExtensionElements>\n" + content + "</groups:ExtensionElements>";
}

/// What an import reports of a document, with a partition that another document stands for.
std::vector<std::string> messagesOf(const std::string& text, const std::string& baseText,
                                    LosslessXML::Extent extent = LosslessXML::Extent::kDescribed) {
  Imported base(baseText);
  return Imported(text, base.partition(), extent).messages();
}

TEST(LosslessBase, ConfirmsReferencesThatDangleInItToo) {
  const std::string missing =
      "3|" + kPreface + "|ContentStorageObject|no set of the document has the InstanceUID " + std::string(kStorageUID);
  for (const std::string pointer : {"Dangling_REF", "ContentStorage_REF"}) {
    const auto text = storageOf(pointer);
    EXPECT_THAT(messagesOf(text, storageOf("Dangling_REF")), IsEmpty()) << pointer;
    EXPECT_THAT(messagesOf(text, prefaceWith("")), ElementsAre(missing)) << pointer;
  }
  EXPECT_THAT(Imported(storageOf("Dangling_REF")).messages(), IsEmpty());
  EXPECT_THAT(Imported(storageOf("ContentStorage_REF")).messages(), ElementsAre(missing));
}

TEST(LosslessBase, ConfirmsReferencesToSetsThatAPartLeavesOut) {
  const auto text = storageOf("ContentStorage_REF");
  EXPECT_THAT(messagesOf(text, documentOf(kStorage), LosslessXML::Extent::kPart), IsEmpty());
  EXPECT_THAT(messagesOf(text, documentOf(kStorage)),
              ElementsAre("3|" + kPreface + "|ContentStorageObject|no set of the document has the InstanceUID " +
                          std::string(kStorageUID)));
}

TEST(LosslessBase, IsNotAskedForDarkSetsThatTheDocumentHas) {
  EXPECT_THAT(
      messagesOf(storageOf("Dangling_REF", darkSet("3C0A001002020202020202020202020202020202")), prefaceWith("")),
      IsEmpty());
}

TEST(LosslessBase, ConfirmsDarkSetsThatAreNoLocalSets) {
  const auto text = documentOf(darkSet("3C0A001102020202020202020202020202020202"));
  EXPECT_THAT(Imported(text).messages(), IsEmpty());
  EXPECT_THAT(messagesOf(text, text), IsEmpty());
  EXPECT_THAT(messagesOf(text, documentOf(darkSet("3C0A0012"))),
              ElementsAre("3|||dark metadata: the key 06.0E.2B.34.02.53.01.01.0D.01.01.01.7F.7F.7F.7F is that of a "
                          "local set; the octets are not one"));
}

constexpr const char* kInstanceUIDLabel = "UniversalLabel='06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00'";
constexpr const char* kLabel = "UniversalLabel='06.0E.2B.34.01.01.01.0E.0F.0F.0F.0F.00.00.00.01'";

std::ptrdiff_t extensionsOf(const MetadataSet& set) { return std::distance(set.invalidBegin(), set.invalidEnd()); }

TEST(LosslessBase, ConfirmsUnknownPropertiesThatTheSetHasUnderTheirNames) {
  const auto text =
      prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder>" +
                  extensions(unknown("StaticLocalTag='3B.01'", "0002") + unknown("StaticLocalTag='3C.0A'", "02") +
                             unknown(kInstanceUIDLabel, "02020202020202020202020202020202")));
  Imported alone(text);
  EXPECT_THAT(alone.messages(), IsEmpty());
  EXPECT_EQ(extensionsOf(alone.first()), 3);
  Imported confirmed(text, alone.partition());
  EXPECT_THAT(confirmed.messages(), IsEmpty());
  EXPECT_EQ(extensionsOf(confirmed.first()), 3);
  Imported base(prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder>"));
  Imported refused(text, base.partition());
  EXPECT_THAT(refused.messages(),
              ElementsAre("4|" + kPreface + "||the set already has the property ByteOrder; this one is not read",
                          "5|" + kPreface + "||the set already has the property InstanceID; this one is not read",
                          "6|" + kPreface + "||the set already has the property InstanceID; this one is not read"));
  EXPECT_EQ(extensionsOf(refused.first()), 0);
}

TEST(LosslessBase, ConfirmsUnknownPropertiesThatTheSetHasTwice) {
  const auto text = prefaceWith(extensions(unknown("StaticLocalTag='1F.22'", "01") + unknown(kLabel, "01") +
                                           unknown("StaticLocalTag='1F.22'", "02") + unknown(kLabel, "02")));
  const auto once = prefaceWith(extensions(unknown("StaticLocalTag='1F.22'", "01") + unknown(kLabel, "01")));
  EXPECT_THAT(Imported(text).messages(), IsEmpty());
  EXPECT_THAT(messagesOf(text, text), IsEmpty());
  EXPECT_THAT(messagesOf(text, once),
              ElementsAre("6|" + kPreface + "||the set already has a property with this tag; this one is not read",
                          "7|" + kPreface + "||the set already has a property with this tag; this one is not read"));
}

TEST(LosslessBase, ConfirmsMisplacedPropertiesThatTheSetHasTwice) {
  const std::string track = "<rp210:TrackID>1</rp210:TrackID>\n";
  const auto text = prefaceWith(extensions(track + track));
  const auto second = "5|" + kPreface + "||the set already has the property TrackID; this one is not read";
  Imported alone(text);
  EXPECT_THAT(alone.messages(), ElementsAre(second));
  EXPECT_EQ(extensionsOf(alone.first()), 1);
  Imported base(prefaceWith(extensions(track)));
  EXPECT_THAT(Imported(text, base.partition()).messages(), ElementsAre(second));
  MetadataSet& set = base.first();
  const auto* definition = set.invalidBegin()->metaAttribute().metaElement();
  set.createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(definition));
  Imported confirmed(text, base.partition());
  EXPECT_THAT(confirmed.messages(), IsEmpty());
  EXPECT_EQ(extensionsOf(confirmed.first()), 2);
}

TEST(LosslessBase, ConfirmsSetsWithoutInstanceUIDAsManyAsItHas) {
  const std::string identification = "<s377m:Identification/>\n";
  const std::string missing =
      "the set has no rp210:InstanceUID; restore it, or name a new set: rp210:InstanceUID=\"new:...\"";
  Imported one(documentOf(identification));
  EXPECT_THAT(Imported(documentOf(identification), one.partition()).messages(), IsEmpty());
  Imported two(documentOf(identification + identification), one.partition());
  EXPECT_THAT(two.messages(), ElementsAre("3|Identification||" + missing));
  EXPECT_THAT(two.kinds(), ElementsAre(Kind::kMissingInstanceUID));
}

TEST(LosslessBase, ConfirmsAsManyPrefacesAsItHas) {
  const std::string preface = "<s377m:Preface/>\n";
  EXPECT_THAT(messagesOf(documentOf(preface + preface), documentOf(preface + preface)), IsEmpty());
  Imported one(documentOf(preface));
  EXPECT_THAT(Imported(documentOf("<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) + "'/>" + preface),
                       one.partition())
                  .kinds(),
              ElementsAre(Kind::kSecondPreface));
}

TEST(LosslessBase, GivesUnknownPropertiesTheTagsOfItsPrimer) {
  PartitionMetadata base(builtInDictionary());
  base.partitionDictionary().findOrGenerate(
      Types::UniversalLabel(u"06.0E.2B.34.01.01.01.0E.0F.0F.0F.0F.00.00.00.01", kDottedForm), 0x8123);
  Imported document(prefaceWith(extensions(unknown(kLabel, "01"))), base);
  ASSERT_EQ(extensionsOf(document.first()), 1);
  const auto& attribute = document.first().invalidBegin()->metaAttribute();
  EXPECT_EQ(dynamic_cast<const MetaMetadata::UnknownAttribute&>(attribute).localTag().value(), 0x8123);
}

/// As files have them whose values are of no length that their types have.
TEST(LosslessUnknownProperty, StaysOneWhenItsOctetsAreNoValue) {
  Imported document(prefaceWith(extensions(unknown("StaticLocalTag='3B.01'", "02"))));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_FALSE(property(document.first(), "ByteOrder").isPresent());
  EXPECT_EQ(extensionsOf(document.first()), 1);
}

TEST(LosslessUnknownProperty, BecomesThePropertyThatItsTagMeans) {
  Imported document(prefaceWith(extensions(unknown("StaticLocalTag='3B.01'", "0002"))));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_EQ(valueAs<Types::Int16>(document.first(), "ByteOrder").value(), 2);
  EXPECT_EQ(extensionsOf(document.first()), 0);
}

TEST(LosslessUnknownProperty, BecomesThePropertyThatItsLabelMeansUnderItsStaticTag) {
  Imported document(
      prefaceWith(extensions(unknown("UniversalLabel='06.0E.2B.34.01.01.01.01.03.01.02.01.02.00.00.00'", "0002"))));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_EQ(valueAs<Types::Int16>(document.first(), "ByteOrder").value(), 2);
  const auto& label = property(document.first(), "ByteOrder").metaAttribute().metaElement()->key();
  EXPECT_EQ(document.partition().partitionDictionary().tryFindTag(label), 0x3b01);
}

TEST(LosslessUnknownProperty, BecomesAMisplacedOneThatItsTagMeans) {
  Imported document(prefaceWith(extensions(unknown("StaticLocalTag='48.01'", "00000007"))));
  ASSERT_EQ(extensionsOf(document.first()), 1);
  EXPECT_EQ(valueAs<Types::UInt32>(document.first(), "TrackID").value(), 7u);
}

TEST(LosslessExtension, BecomesThePropertyOfTheSetThatItIsNamedAfter) {
  const std::string order = "<rp210:ByteOrder>2</rp210:ByteOrder>";
  Imported document(prefaceWith(extensions(order)));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_EQ(valueAs<Types::Int16>(document.first(), "ByteOrder").value(), 2);
  EXPECT_EQ(extensionsOf(document.first()), 0);
  EXPECT_THAT(Imported(prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder>" + extensions(order))).messages(),
              ElementsAre("4|" + kPreface + "||the set already has the property ByteOrder; this one is not read"));
}

TEST(LosslessDiagnostics, NameSetsWithoutAnInstanceUIDByTheirKindAlone) {
  const Imported document(
      prefaceWith("<rp210:ContentStorageObject><s377m:ContentStorage><rp210:Foo/></s377m:ContentStorage>"
                  "</rp210:ContentStorageObject>"));
  EXPECT_THAT(document.messages(), ElementsAre(testing::StartsWith("3|ContentStorage||")));
}

TEST(LosslessDiagnostics, TakeAPropertyThatStandsThereTwiceForUnread) {
  Imported document(prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder><rp210:ByteOrder>2</rp210:ByteOrder>"));
  ASSERT_EQ(document.result().unread.size(), 1u);
  EXPECT_EQ(document.result().unread.front().set, &document.first());
  EXPECT_EQ(document.result().unread.front().property, "ByteOrder");
}

TEST(LosslessDiagnostics, AreDescribedWithTheirPlace) {
  EXPECT_EQ(LosslessXML::describe({Kind::kEmptyReference, {7, "Preface", "ContentStorageObject"}}),
            "line 7: Preface: ContentStorageObject: the reference is empty");
  EXPECT_EQ(LosslessXML::describe({Kind::kUnknownAttribute, {}, {"a", ""}}),
            "the set has no attribute a in no namespace; it is not read");
}

}  // namespace
}  // namespace Vantor::XML2Partition
