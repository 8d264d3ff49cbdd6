#include <gmock/gmock.h>

#include "Core/Dictionary/Definitions.h"
#include "Core/Dictionary/PropertyTypeText.h"
#include "tests/XMLBuilder/GoldenValues.h"

/// A document with a property of every type that a dictionary file knows, in both vocabularies.
namespace Vantor::XMLBuilder {
namespace {

using MetaMetadata::Vocabulary;
using Types::Identifiers::Identifier;

/// One property: its row in the dictionary, and its content in a document.
struct Content {
  std::string symbol;
  std::string type;
  bool isCollection = false;
  std::vector<SharedPtr<const Types::SimpleDataType>> values;  ///< none for a reference
  std::string legacy;
  std::string st434;
};

bool isReference(Identifier type) {
  return type == Types::Identifiers::kStrongReference || type == Types::Identifiers::kWeakReference;
}

/// A property for each golden value of a type, and collections of all of them where the type has a size.
template <class T>
void addContents(std::vector<Content>& contents) {
  const auto values = Golden<T>::values();
  const auto identifier = values[0].value->identifier();
  const std::string type = Types::Identifiers::name(identifier);
  if (propertyTypeNamed(type) != identifier) return;
  if (isReference(identifier)) return contents.push_back({type, type + "(Leaf)", false, {}, {}, {}});
  for (const auto& golden : values) {
    contents.push_back(
        {type + std::to_string(contents.size()), type, false, {golden.value}, golden.legacy, golden.st434});
  }
  if (Types::Identifiers::typeSize(identifier) == 0) return;
  for (const std::string collection : {"ArrayOf", "BatchOf"}) {
    Content content{collection + type, collection + "(" + type + ")", true, {}, {}, {}};
    for (const auto& golden : values) {
      content.values.push_back(golden.value);
      content.legacy += "<{P}:Element>" + golden.legacy + "</{P}:Element>";
      content.st434 += "<{P}:Element>" + golden.st434 + "</{P}:Element>";
    }
    contents.push_back(content);
  }
}

constexpr const char* kLeafReference = "<{S}:Leaf_REF types:TargetInstance=\"{2}\"/>";

const std::vector<Content>& everyContent() {
  static const auto all = [] {
    std::vector<Content> contents;
#define VANTOR_ADD_TYPE(Type, number, octets) addContents<Types::Type>(contents);
    VANTOR_FOR_EACH_TYPE(VANTOR_ADD_TYPE)
#undef VANTOR_ADD_TYPE
    return contents;
  }();
  return all;
}

std::string dictionaryText() {
  std::string rows = "dictionary 1\n";
  const std::string identifier = "  3c0a  060e2b34.01010101.01011502.00000000  InstanceUID  UUID  required\n";
  rows += "060e2b34.02530101.0d010101.01012f00  Preface  -\n" + identifier;
  uint32 number = 10000000;  // eight digits
  for (const auto& content : everyContent()) {
    rows += "  -  060e2b34.01010101.0f0e0d0c." + std::to_string(number++) + "  " + content.symbol + "  " +
            content.type + "  optional\n";
  }
  return rows + "060e2b34.02530101.0d010101.0f0f0100  Leaf  -\n" + identifier;
}

class EveryTypeExport : public ::testing::TestWithParam<std::tuple<Vocabulary, Flags>> {
 protected:
  EveryTypeExport() {
    Definitions definitions;
    definitions.readText(dictionaryText(), "every-type.dictionary");
    const TestPartition partition(definitions.makeDictionary(vocabulary()));
    fill(partition.add("Preface", 1));
    partition.add("Leaf", 2);
    text_ = exported(partition, std::get<Flags>(GetParam()));
  }

  Vocabulary vocabulary() const { return std::get<Vocabulary>(GetParam()); }
  bool isLegacy() const { return vocabulary() == Vocabulary::kLegacy; }
  bool nests() const { return std::get<Flags>(GetParam()).nestStrongReferences; }
  const std::string& text() const { return text_; }

  /// What the root holds.
  std::string expectedSets() const {
    std::string properties;
    for (const auto& content : everyContent()) {
      properties += "<{P}:" + content.symbol + ">" + valueOf(content) + "</{P}:" + content.symbol + ">";
    }
    const std::string leaf = std::string("<{S}:Leaf rp210:InstanceUID=\"{2}\"/>");
    std::string sets =
        "<{S}:Preface rp210:InstanceUID=\"{1}\">" + properties + "</{S}:Preface>" + (nests() ? "" : leaf);
    sets = replaced(sets, "{LEAF}", nests() ? leaf : kLeafReference);
    sets = replaced(sets, "{LEAF_REF}", kLeafReference);
    return replaced(replaced(sets, "{P}", isLegacy() ? "rp210" : "st335"), "{S}", isLegacy() ? "s377m" : "st395");
  }

 private:
  static void fill(TestSet preface) {
    for (const auto& content : everyContent()) {
      const char* symbol = content.symbol.c_str();
      if (content.values.empty()) preface.refer(symbol, 2);
      for (const auto& value : content.values) {
        content.isCollection ? preface.item(symbol, *value) : preface.value(symbol, *value);
      }
    }
  }

  std::string valueOf(const Content& content) const {
    if (content.values.empty()) return content.symbol == "StrongReference" ? "{LEAF}" : "{LEAF_REF}";
    return isLegacy() ? content.legacy : content.st434;
  }

  static std::string replaced(std::string text, const std::string& placeholder, const std::string& meaning) {
    for (std::size_t at = 0; (at = text.find(placeholder, at)) != std::string::npos; at += meaning.size()) {
      text.replace(at, placeholder.size(), meaning);
    }
    return text;
  }

  std::string text_;
};

TEST_P(EveryTypeExport, WritesEachValueInTheFormOfItsVocabulary) {
  const std::string legacy = "<s377m:MetadataSets {rp210} {s377m} {s422mTypes} {types}>";
  const std::string schemas = "<s377m:MetadataSets {rp210} {s377m} {st335} {st377Types} {st395} {types}>";
  EXPECT_XML(text(), (isLegacy() ? legacy : schemas) + expectedSets() + "</s377m:MetadataSets>");
}

TEST(EveryTypeExports, MeetEveryTypeThatADictionaryFileKnows) {
  std::size_t types = 0;
#define VANTOR_COUNT_TYPE(Type, number, octets) \
  if (propertyTypeNamed(#Type) == Types::Identifiers::k##Type) ++types;
  VANTOR_FOR_EACH_TYPE(VANTOR_COUNT_TYPE)
#undef VANTOR_COUNT_TYPE
  EXPECT_EQ(types, 34u);
  std::set<std::string> met;
  for (const auto& content : everyContent()) {
    if (!content.isCollection) met.insert(content.type);
  }
  EXPECT_EQ(met.size(), types);
}

INSTANTIATE_TEST_SUITE_P(Vocabularies, EveryTypeExport,
                         ::testing::Combine(::testing::Values(Vocabulary::kLegacy, Vocabulary::kST434_2014),
                                            ::testing::Values(kNested, kFlat)),
                         [](const auto& info) {
                           const bool isLegacy = std::get<Vocabulary>(info.param) == Vocabulary::kLegacy;
                           const bool nests = std::get<Flags>(info.param).nestStrongReferences;
                           return std::string(isLegacy ? "Legacy" : "Schemas") + (nests ? "Nested" : "Flat");
                         });

}  // namespace
}  // namespace Vantor::XMLBuilder
