#include "XMLUtils/DocumentVocabulary.h"

#include <gtest/gtest.h>

#include <xercesc/sax/SAXException.hpp>

#include "XMLUtils/UnicodeString.h"

namespace Vantor::XMLUtils {
namespace {

using MetaMetadata::Vocabulary;

std::optional<Vocabulary> vocabularyIn(const std::string& text) {
  return vocabularyOf(reinterpret_cast<const uint8*>(text.data()), text.size());
}

/// A document whose root is as every document has it, with this inside.
std::string documentWith(const std::string& content) {
  return "<s377m:MetadataSets xmlns:s377m='urn:SMPTE:S377M'>" + content + "</s377m:MetadataSets>";
}

constexpr const char* kLegacySet = "<s377m:Preface/>";
constexpr const char* kLegacyProperty = "<p:ByteOrder xmlns:p='urn:SMPTE:RP210'/>";
constexpr const char* kSchemaSet = "<g:Preface xmlns:g='http://www.smpte-ra.org/schemas/434/2014/groups/395/2012'/>";
constexpr const char* kSchemaProperty =
    "<e:ByteOrder xmlns:e='http://www.smpte-ra.org/schemas/434/2014/elements/335/2012'/>";

TEST(DocumentVocabulary, IsToldByTheFirstSetOrPropertyOfEither) {
  for (const std::string first : {kLegacySet, kLegacyProperty}) {
    EXPECT_EQ(vocabularyIn(documentWith(first + kSchemaSet)), Vocabulary::kLegacy) << first;
  }
  for (const std::string first : {kSchemaSet, kSchemaProperty}) {
    EXPECT_EQ(vocabularyIn(documentWith(first + kLegacySet)), Vocabulary::kST434_2014) << first;
  }
}

TEST(DocumentVocabulary, IsNotToldByOtherNamespacesHoweverManyComeFirst) {
  std::string others;
  for (int i = 0; i < 1000; ++i) others += "<x:Preface xmlns:x='urn:example:sets'>text</x:Preface><Preface/>\n";
  EXPECT_EQ(vocabularyIn(documentWith(others)), std::nullopt);
  EXPECT_EQ(vocabularyIn(documentWith(others + kSchemaProperty)), Vocabulary::kST434_2014);
}

TEST(DocumentVocabulary, GoesByNamespacesWhateverThePrefixes) {
  EXPECT_EQ(vocabularyIn(documentWith("<s377m:Preface xmlns:s377m="
                                      "'http://www.smpte-ra.org/schemas/434/2014/groups/395/2012'/>")),
            Vocabulary::kST434_2014);
}

TEST(DocumentVocabulary, IsFoundBeforeDamageButNotBehindIt) {
  EXPECT_EQ(vocabularyIn("<a><b xmlns='urn:SMPTE:RP210'/></c>"), Vocabulary::kLegacy);
  EXPECT_EQ(vocabularyIn("<a></c><b xmlns='urn:SMPTE:RP210'/></a>"), std::nullopt);
  EXPECT_EQ(vocabularyIn("<a>&undefined;<b xmlns='urn:SMPTE:RP210'/></a>"), std::nullopt);
  EXPECT_EQ(vocabularyIn("no document"), std::nullopt);
  EXPECT_EQ(vocabularyIn(""), std::nullopt);
  EXPECT_EQ(vocabularyOf(nullptr, 7), std::nullopt);
}

TEST(DocumentVocabulary, IsFoundInUTF16) {
  const wstring text = u"<a><b xmlns='urn:SMPTE:RP210'/></a>";
  EXPECT_EQ(vocabularyOf(reinterpret_cast<const uint8*>(text.data()), 2 * text.size()), Vocabulary::kLegacy);
}

TEST(DocumentVocabulary, IsNotLookedForBeyondTheLimitsOfLoading) {
  std::string deep;
  for (int i = 0; i < 100000; ++i) deep += "<a>";
  EXPECT_EQ(vocabularyIn(deep + kLegacySet), std::nullopt);
}

TEST(DocumentVocabulary, OfAFileThatCannotBeReadIsAnError) {
  const UnicodeString path(u"/nonexistent/document.xml");
  EXPECT_THROW(vocabularyOfFile(path.utf16()), xercesc::SAXException);
}

}  // namespace
}  // namespace Vantor::XMLUtils
