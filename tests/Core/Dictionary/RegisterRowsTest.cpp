#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "Core/Dictionary/BuiltInDictionary.h"

// What the built-in dictionary holds, told as scripts/generate-dictionary tells it, against the counts and digests that
// it left in the data file.

namespace Vantor {
namespace {

using MetaMetadata::MetaCollectionElement;
using MetaMetadata::MetaElement;

/// Counts lines and digests them, each ended by a line feed: FNV-1a, 64 bits.
struct Summary {
  uint64 count = 0;
  uint64 digest = 0xCBF29CE484222325u;

  void add(const std::string& line) {
    ++count;
    for (const char c : line + "\n") digest = (digest ^ static_cast<uint8>(c)) * 0x100000001B3u;
  }
  friend bool operator==(const Summary& left, const Summary& right) {
    return left.count == right.count && left.digest == right.digest;
  }
  friend std::ostream& operator<<(std::ostream& to, const Summary& summary) {
    return to << summary.count << ", 0x" << std::hex << std::setw(16) << std::setfill('0') << summary.digest;
  }
};

Summary stored(const std::string& wanted) {
  static const std::map<std::string, Summary> summaries = {
#define VANTOR_SUMMARY(what, count, digest) {#what, {count, digest}},
#include "Core/Dictionary/SmpteRegisters.inc"
  };
  return summaries.at(wanted);
}

std::string dotted(const uint8* key) {
  std::ostringstream text;
  text << std::hex << std::setfill('0');
  for (int i = 0; i < 16; ++i) text << (i > 0 && i % 4 == 0 ? "." : "") << std::setw(2) << static_cast<int>(key[i]);
  return text.str();
}

std::string typeName(const MetaElement& element) {
  const auto* collection = dynamic_cast<const MetaCollectionElement*>(&element);
  std::string name = Types::Identifiers::name(element.dataType());
  if (collection == nullptr) return name;
  return name + "Of(" + Types::Identifiers::name(collection->dataSubType()) + ")";
}

std::string ascii(const wstring& text) { return {text.begin(), text.end()}; }

TEST(RegisterRows, MakeTheSetsThatTheGeneratorCounted) {
  const auto dictionary = builtInDictionary();
  Summary found;
  for (auto set = dictionary->metaMetadataSetBegin(); set != dictionary->metaMetadataSetEnd(); ++set) {
    const auto* parent = (*set)->parent();
    found.add(dotted((*set)->key().rawBuffer()) + " " + (*set)->symbol() + " " + (parent ? parent->symbol() : "-") +
              ((*set)->isConcrete() ? " concrete" : " abstract"));
  }
  EXPECT_EQ(found, stored("sets"));
}

TEST(RegisterRows, MakeThePropertiesThatTheGeneratorCounted) {
  const auto dictionary = builtInDictionary();
  Summary found;
  for (auto element = dictionary->metaElementBegin(); element != dictionary->metaElementEnd(); ++element) {
    found.add(dotted((*element)->key().rawBuffer()) + " " + (*element)->symbol() + " " + typeName(**element) + " " +
              ascii((*element)->extensionAttribute(MetaMetadata::kXMLTagName)));
  }
  EXPECT_EQ(found, stored("elements"));
}

TEST(RegisterRows, MakeTheAttributesInheritedOnesIncludedThatTheGeneratorCounted) {
  const auto dictionary = builtInDictionary();
  Summary found;
  for (auto set = dictionary->metaMetadataSetBegin(); set != dictionary->metaMetadataSetEnd(); ++set) {
    for (const auto& attribute : (*set)->attributes()) {
      std::ostringstream tag;
      tag << std::hex << std::setw(4) << std::setfill('0') << attribute.staticLocalTag();
      found.add(dotted((*set)->key().rawBuffer()) + " " +
                ascii(attribute.extensionAttribute(MetaMetadata::kSchemaIndex)) + " " +
                dotted(attribute.metaElement()->key().rawBuffer()) + " " + tag.str() +
                (attribute.requiredStatus() == 0 ? " required" : " optional"));
    }
  }
  EXPECT_EQ(found, stored("attributes"));
}

// Two rows of one property have to agree: the first defines it and the others are only places where it is used.
constexpr struct {
  const char* key;
  const char* told;
} kPropertyRows[] = {
#define VANTOR_PROPERTY(tag, key, symbol, type, status) {#key, #symbol " " #type},
#define VANTOR_PROPERTY_AS(tag, key, symbol, type, status, name) {#key, #symbol " " #type " " #name},
#include "Core/Dictionary/SmpteRegisters.inc"
};

TEST(RegisterRows, TellOnePropertyAlikeInEverySet) {
  std::map<std::string, std::set<std::string>> tellings;
  for (const auto& row : kPropertyRows) tellings[row.key].insert(row.told);
  for (const auto& [key, told] : tellings) EXPECT_EQ(told.size(), 1u) << key;
  EXPECT_EQ(tellings.size(), stored("elements").count);
}

}  // namespace
}  // namespace Vantor
