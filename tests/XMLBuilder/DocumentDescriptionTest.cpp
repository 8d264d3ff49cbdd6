#include "XMLBuilder/DocumentDescription.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"
#include "tests/XMLBuilder/Support.h"

namespace Vantor::XMLBuilder {
namespace {

using LosslessXML::Description;

constexpr const char16_t* kNestedHeader =
    u"form=\"nested\" sets=\"all\" partition=\"header\" vocabulary=\"legacy\" metadata=\"0123456789ABCDEF\"";

TEST(DocumentDescription, IsOnePseudoAttributePerField) {
  Description description;
  description.digest = 0x0123456789ABCDEF;
  EXPECT_EQ(renderDescription(description), kNestedHeader);
}

TEST(DocumentDescription, NamesTheStartSetByItsURN) {
  Description description;
  description.start = uid(0x1F);
  EXPECT_THAT(Utils::wstringToString(renderDescription(description)),
              testing::HasSubstr(" start=\"urn:uuid:00000000-0000-0000-0000-00000000001f\" "));
}

TEST(DocumentDescription, ReadsWhatItWrites) {
  const Description description{false, true, uid(7), "3", MetaMetadata::Vocabulary::kST434_2014, 0x8000000000000001};
  const auto data = renderDescription(description);
  const auto read = parseDescription(data);
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->isNested);
  EXPECT_TRUE(read->isStructuralOnly);
  EXPECT_EQ(read->start, uid(7));
  EXPECT_EQ(read->partition, "3");
  EXPECT_EQ(read->vocabulary, MetaMetadata::Vocabulary::kST434_2014);
  EXPECT_EQ(read->digest, 0x8000000000000001u);
  EXPECT_EQ(renderDescription(*read), data);
}

TEST(DocumentDescription, ReadsAttributesInAnyOrderAndIgnoresUnknownOnes) {
  const auto read = parseDescription(
      u"  metadata = '0123456789abcdef'\n later=\"1 ' 2\" vocabulary='legacy' partition='footer' sets='all' "
      u"form='flat' ");
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->isNested);
  EXPECT_EQ(read->partition, "footer");
  EXPECT_EQ(read->digest, 0x0123456789ABCDEFu);
}

TEST(DocumentDescription, RefusesToWriteAPartitionWithoutName) {
  Description description;
  description.partition = "body\"?>";
  EXPECT_THROW(renderDescription(description), Exceptions::InvalidFormat);
}

/// The data of `kNestedHeader` with the first occurrence of a text replaced.
wstring edited(std::u16string_view from, std::u16string_view to) {
  wstring data = kNestedHeader;
  return data.replace(data.find(from), from.size(), to);
}

TEST(DocumentDescription, DamagedDataGivesNone) {
  ASSERT_TRUE(parseDescription(kNestedHeader));
  for (const wstring& data : {wstring(),
                              wstring(u"nested"),
                              wstring(kNestedHeader) + u" start=\"urn:uuid:12\"",
                              wstring(kNestedHeader) + u" form=\"nested\"",
                              wstring(kNestedHeader) + u" x",
                              wstring(kNestedHeader) + u" x=1",
                              wstring(kNestedHeader) + u" x=\"1",
                              edited(u"form=\"nested\" ", u""),
                              edited(u"\" sets", u"\"sets"),
                              edited(u"nested", u"Nested"),
                              edited(u"all", u"some"),
                              edited(u"sets=\"all\" ", u""),
                              edited(u"header", u"body"),
                              edited(u"header", u"-1"),
                              edited(u"header", u""),
                              edited(u"legacy", u"new"),
                              edited(u"0123456789ABCDEF", u"123456789ABCDEF"),
                              edited(u"0123456789ABCDEF", u"00123456789ABCDEF"),
                              edited(u"0123456789ABCDEF", u"0123456789ABCDEG"),
                              edited(u"partition=\"header\" ", u"")}) {
    EXPECT_FALSE(parseDescription(data)) << Utils::wstringToString(data);
  }
}

}  // namespace
}  // namespace Vantor::XMLBuilder
