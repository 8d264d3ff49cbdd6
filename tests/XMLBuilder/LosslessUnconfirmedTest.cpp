#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/XMLBuilder/LosslessSupport.h"

/// What a lossless import takes as it is, because files have it, and notes for those who know the file.
namespace Vantor::XML2Partition {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Kind = ImportDiagnostic::Kind;

const std::string kPreface = "Preface " + std::string(kPrefaceUID);

std::vector<std::string> unconfirmedOf(const Imported& document) {
  std::vector<std::string> texts;
  for (const auto& one : document.result().unconfirmed) {
    const auto& diagnostic = one.diagnostic;
    texts.push_back(std::to_string(diagnostic.line) + "|" + diagnostic.set + "|" + diagnostic.property + "|" +
                    diagnostic.message);
  }
  return texts;
}

std::string storageOf(const std::string& target) {
  return "<s377m:Preface rp210:InstanceUID='" + std::string(kPrefaceUID) +
         "'>\n<rp210:ContentStorageObject><s377m:Dangling_REF types:TargetInstance='" + target +
         "'/></rp210:ContentStorageObject></s377m:Preface>";
}
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

TEST(Unconfirmed, AreReferencesThatSayThatThereIsNoSet) {
  const Imported document(documentOf(storageOf(kStorageUID)));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_THAT(unconfirmedOf(document), ElementsAre("3|" + kPreface +
                                                   "|ContentStorageObject|no set of the document has "
                                                   "the InstanceUID " +
                                                   std::string(kStorageUID)));
  EXPECT_EQ(document.result().unconfirmed.front().property, nullptr);
}

TEST(Unconfirmed, AreNoReferencesToDarkSetsThatAreThere) {
  const Imported document(documentOf(storageOf(kStorageUID) + darkSet("3C0A001002020202020202020202020202020202")));
  EXPECT_THAT(unconfirmedOf(document), IsEmpty());
}

TEST(Unconfirmed, AreOctetsThatAreNotTheLocalSetThatTheirKeySays) {
  const Imported document(documentOf(darkSet("3C0A001102020202020202020202020202020202")));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_THAT(unconfirmedOf(document),
              ElementsAre("3|||dark metadata: the octets are no local set, which the key "
                          "06.0E.2B.34.02.53.01.01.0D.01.01.01.7F.7F.7F.7F says that they are"));
}

TEST(Unconfirmed, AreUnknownPropertiesThatTheSetHasUnderTheirNames) {
  Imported document(
      prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder>" +
                  extensions(unknown("StaticLocalTag='3B.01'", "0002") + unknown("StaticLocalTag='3C.0A'", "02") +
                             unknown("UniversalLabel='06.0E.2B.34.01.01.01.01.01.01.15.02.00.00.00.00'",
                                     "02020202020202020202020202020202"))));
  EXPECT_THAT(document.messages(), IsEmpty());
  EXPECT_THAT(unconfirmedOf(document),
              ElementsAre("4|" + kPreface + "||the set has the property ByteOrder already; this one is not read",
                          "5|" + kPreface + "||the set has the property InstanceID already; this one is not read",
                          "6|" + kPreface + "||the set has the property InstanceID already; this one is not read"));
  EXPECT_EQ(std::distance(document.first().invalidBegin(), document.first().invalidEnd()), 3);
  for (const auto& one : document.result().unconfirmed) {
    EXPECT_EQ(one.set, &document.first());
    EXPECT_EQ(one.diagnostic.kind, Kind::kSecondElement);
    one.set->remove(*one.property);
  }
  EXPECT_EQ(document.first().invalidBegin(), document.first().invalidEnd());
}

TEST(Unconfirmed, AreUnknownPropertiesThatTheSetHasTwice) {
  const std::string label = "UniversalLabel='06.0E.2B.34.01.01.01.0E.0F.0F.0F.0F.00.00.00.01'";
  const Imported document(prefaceWith(extensions(unknown("StaticLocalTag='1F.22'", "01") + unknown(label, "01") +
                                                 unknown("StaticLocalTag='1F.22'", "02") + unknown(label, "02"))));
  EXPECT_THAT(unconfirmedOf(document),
              ElementsAre("6|" + kPreface + "||the set has a property of its tag already; this one is not read",
                          "7|" + kPreface + "||the set has a property of its tag already; this one is not read"));
}

/// As files have them whose values are of no length that their types have.
TEST(Unconfirmed, AreNoUnknownPropertiesThatTheSetHasNotOtherwise) {
  const Imported document(identificationWith(
      extensions(unknown("StaticLocalTag='3C.0A'", "02") + unknown("StaticLocalTag='3C.06'", "02"))));
  EXPECT_THAT(unconfirmedOf(document), IsEmpty());
}

TEST(LosslessDiagnostics, NameSetsWithoutAnInstanceUIDByTheirKindAlone) {
  const Imported document(identificationWith("<rp210:ThisGenerationID>1</rp210:ThisGenerationID>"));
  EXPECT_EQ(document.result().unnamed.size(), 1u);
  ASSERT_THAT(document.result().diagnostics, SizeIs(1));
  EXPECT_EQ(document.result().diagnostics.front().set, "Identification");
}

TEST(LosslessDiagnostics, TakeAPropertyThatIsSaidTwiceForUnread) {
  Imported document(prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder><rp210:ByteOrder>2</rp210:ByteOrder>"));
  ASSERT_THAT(document.result().unread, SizeIs(1));
  EXPECT_EQ(document.result().unread.front().set, &document.first());
  EXPECT_EQ(document.result().unread.front().property, "ByteOrder");
}

TEST(LosslessDiagnostics, TellTheInstanceUIDsOfUnknownSets) {
  const Imported document(
      documentOf("<s377m:Prefce rp210:InstanceUID='" + std::string(kPrefaceUID) + "'/>\n<s377m:Prefce/>"));
  ASSERT_THAT(document.result().unknownSets, SizeIs(1));
  EXPECT_EQ(Utils::wstringToString(document.result().unknownSets.front()), kPrefaceUID);
  ASSERT_THAT(document.result().diagnostics, SizeIs(2));
  EXPECT_TRUE(document.result().diagnostics.front().isNewSet);
  EXPECT_FALSE(Imported(documentOf("<Preface/>")).result().diagnostics.front().isNewSet);
}

}  // namespace
}  // namespace Vantor::XML2Partition
