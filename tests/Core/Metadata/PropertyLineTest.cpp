#include "Core/Metadata/PropertyLine.h"

#include <gtest/gtest.h>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"
#include "Core/Types/WideStringType.h"

namespace Vantor {
namespace {

/// An Identification whose product has a name.
class NamedProduct {
 public:
  explicit NamedProduct(const wstring& name) { set_.set("ApplicationName", Types::UTF16String(name)); }

  MetadataSet& set() { return set_; }
  wstring line() const { return *lineOf(set_, heldProperty(set_, "ApplicationName")); }

 private:
  PartitionMetadata partition_{builtInDictionary()};
  MetadataSet& set_ = partition_.createMetadataSet("Identification");
};

TEST(PropertyLine, IsTheTextAsItIs) {
  for (const wstring text : {u"V1", u" two words ", u"@file", u"[1]", u"a \"b\"", u"", u"0x41", u"\\u000A"}) {
    EXPECT_EQ(NamedProduct(text).line(), text);
  }
}

TEST(PropertyLine, QuotesTextsThatReadAsSomethingElse) {
  EXPECT_EQ(NamedProduct(u"a\nb").line(), u"\"a\\u000Ab\"");
  EXPECT_EQ(NamedProduct(u"\"V1\"").line(), u"\"\\\"V1\\\"\"");
  EXPECT_EQ(NamedProduct(u" 0x[41]").line(), u"\" 0x[41]\"");
}

TEST(PropertyLine, IsReadBack) {
  for (const wstring text : {u"a\nb", u"\"V1\"", u"\"V1", u"\"V1\"... (5 octets)", u" 0x[41]", u"\\", u"a\tb\u2028"}) {
    NamedProduct original(text), copy(u"other");
    copy.set().set("ApplicationName", original.line());
    EXPECT_EQ(Types::textOfValue(copy.set().get<Types::UTF16String>("ApplicationName")), text);
  }
}

TEST(PropertyLine, OfAPropertyThatTheSetDoesNotHaveIsNone) {
  PartitionMetadata partition(builtInDictionary());
  const auto& preface = partition.createMetadataSet("Preface");
  EXPECT_EQ(lineOf(preface, heldProperty(preface, "PrimaryPackage")), std::nullopt);
  EXPECT_EQ(heldProperty(preface, "PrimaryPackage").definition->symbol(), "PrimaryPackage");
  EXPECT_THROW(heldProperty(preface, "PrimaryPackages"), Exceptions::InvalidFormat);
}

}  // namespace
}  // namespace Vantor
