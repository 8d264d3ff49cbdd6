#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "XMLBuilder/DocumentDescription.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// What a loaded document shows before it is imported, and documents that cannot be loaded.
namespace Vantor::XML2Partition {
namespace {

using LosslessXML::Document;
using MetaMetadata::Vocabulary;
using testing::StartsWith;

std::optional<Vocabulary> vocabularyIn(const std::string& content) { return loaded(documentOf(content)).vocabulary(); }

constexpr const char* kLegacySet = "<s377m:Preface/>";
constexpr const char* kLegacyProperty = "<p:ByteOrder xmlns:p='urn:SMPTE:RP210'/>";
constexpr const char* kSchemaSet = "<g:Preface xmlns:g='http://www.smpte-ra.org/schemas/434/2014/groups/395/2012'/>";
constexpr const char* kSchemaProperty =
    "<e:ByteOrder xmlns:e='http://www.smpte-ra.org/schemas/434/2014/elements/335/2012'/>";

TEST(DocumentVocabulary, IsThatOfTheFirstSetOrPropertyOfEither) {
  for (const std::string first : {kLegacySet, kLegacyProperty}) {
    EXPECT_EQ(vocabularyIn(first + kSchemaSet), Vocabulary::kLegacy) << first;
  }
  for (const std::string first : {kSchemaSet, kSchemaProperty}) {
    EXPECT_EQ(vocabularyIn(first + kLegacySet), Vocabulary::kST434_2014) << first;
  }
}

TEST(DocumentVocabulary, IsFoundBehindOtherNamespacesHoweverManyComeFirst) {
  std::string others;
  for (int i = 0; i < 1000; ++i) others += "<x:Preface xmlns:x='urn:example:sets'>text<y/></x:Preface><Preface/>\n";
  EXPECT_EQ(vocabularyIn(others), std::nullopt);
  EXPECT_EQ(vocabularyIn(others + kSchemaProperty), Vocabulary::kST434_2014);
  EXPECT_EQ(vocabularyIn("<a><b>" + std::string(kLegacyProperty) + "</b></a>"), Vocabulary::kLegacy);
}

TEST(DocumentVocabulary, GoesByNamespacesWhateverThePrefixes) {
  EXPECT_EQ(vocabularyIn("<s377m:Preface xmlns:s377m='http://www.smpte-ra.org/schemas/434/2014/groups/395/2012'/>"),
            Vocabulary::kST434_2014);
}

TEST(DocumentForm, IsNestedWhereMoreSetsStandWithinReferencesThanArePointedAt) {
  const std::string uid = "='" + std::string(kStorageUID) + "'/>";
  const std::string nested = prefaceWith("<rp210:ContentStorageObject><s377m:ContentStorage rp210:InstanceUID" + uid +
                                         "</rp210:ContentStorageObject><rp210:PrimaryPackage><s377m:SourcePackage_REF "
                                         "types:TargetInstance" +
                                         uid + "</rp210:PrimaryPackage>");
  EXPECT_TRUE(loaded(nested).isNested()) << "either form points at sets that weak references lead to";
  const std::string flat = documentOf(
      "<s377m:Preface><rp210:ContentStorageObject><s377m:ContentStorage_REF "
      "types:TargetInstance" +
      uid +
      "</rp210:ContentStorageObject></s377m:Preface><s377m:ContentStorage "
      "rp210:InstanceUID" +
      uid);
  EXPECT_FALSE(loaded(flat).isNested());
  EXPECT_TRUE(loaded(documentOf("")).isNested());
}

TEST(DocumentDescription, IsReadFromTheInstructionBeforeTheRoot) {
  LosslessXML::Description description;
  description.isNested = false;
  description.digest = 7;
  const auto instruction =
      "<?mxfxml " + Utils::wstringToString(XMLBuilder::renderDescription(description)) + "?>\n<!-- here -->";
  for (const auto entry : kLosslessEntries) {
    const auto document = loaded("<?xml version='1.0'?><?other?>" + instruction + prefaceWith(""), entry);
    ASSERT_TRUE(document.description());
    EXPECT_FALSE(document.description()->isNested);
    EXPECT_EQ(document.description()->digest, 7u);
    EXPECT_TRUE(document.isNested()) << "by its sets, whatever the instruction";
  }
  EXPECT_FALSE(loaded(prefaceWith("") + instruction).description());
  EXPECT_FALSE(loaded("<?mxfxml form='nested'?>" + prefaceWith("")).description());
}

TEST(Document, GivesTheSameImportAgain) {
  const auto document = loaded(prefaceWith("<rp210:ByteOrder>1</rp210:ByteOrder>"));
  for (int i = 0; i < 2; ++i) {
    PartitionMetadata partition(builtInDictionary());
    EXPECT_EQ(document.import(partition).sets.size(), 1u);
    EXPECT_EQ(valueAs<Types::Int16>(*partition.sets().front(), "ByteOrder").value(), 1);
  }
}

TEST(Document, ThatIsNotWellFormedIsAParseErrorInWords) {
  for (const auto entry : kLosslessEntries) {
    const auto failure = failureOf([entry] { loaded("<a>\n<b></a>", entry); });
    EXPECT_EQ(failure.kind, "ParseError");
    EXPECT_THAT(failure.message, StartsWith("not well-formed XML: line 2, column "));
  }
  EXPECT_EQ(failureOf([] { Document::fromBytes(nullptr, 0); }).kind, "ParseError");
}

TEST(Document, ThatMayBeWellFormedButIsNotReadIsAParseErrorInOtherWords) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  for (const auto& [text, message] : std::vector<std::pair<std::string, const char*>>{
           {"<?xml version='1.0' encoding='KOI8-R'?><a/>",
            "unreadable XML: line 1, column 1: encoding 'KOI8-R' is not supported"},
           {"<a>\n\xfc</a>", "unreadable XML: line 2, column 1: a character is not in UTF-8;"},
           {"<!DOCTYPE a [<!-- ] -->]><a/>", "unreadable XML: line 1, column 1: a document type declaration with"},
           {deep, "line 1, column 3001: elements nest deeper than 1000 levels (limit 'nesting')"}}) {
    const auto failure = failureOf([&text = text] { loaded(text); });
    EXPECT_EQ(failure.kind, "ParseError");
    EXPECT_THAT(failure.message, StartsWith(message));
  }
}

TEST(Document, ThatCannotBeReadIsAnIOErrorThatNamesTheFile) {
  try {
    Document::fromFile("/nonexistent/document.xml");
    FAIL();
  } catch (const Exceptions::IOError& error) {
    EXPECT_THAT(error.message(), StartsWith("cannot read /nonexistent/document.xml: "));
  }
}

}  // namespace
}  // namespace Vantor::XML2Partition
