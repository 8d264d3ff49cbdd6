#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Definitions/DefinitionsText.h"
#include "Registers/FileDefinitions.h"
#include "SomeMetaDictionary.h"

// What is made of a MetaDictionary, written as a dictionary file and read again; and MetaDictionaries with damage.

namespace Vantor::Registers {
namespace {

std::string learned(const PartitionMetadata& metadata, Definitions into = builtInDefinitions()) {
  const auto found = addFileDefinitions(metadata, "file.mxf", into);
  return textOf(into, "Learned.", found.source);
}

/// The definitions of a text as a text.
std::string readAndWritten(const std::string& text) {
  auto definitions = builtInDefinitions();
  const auto first = static_cast<uint32>(definitions.sources().size());
  definitions.readText(text, "learned.dictionary");
  definitions.check();
  return textOf(definitions, "Learned.", first);
}

Bytes sampleWithMetaDictionary() {
  std::ifstream file(std::string(VANTOR_TEST_DATA_DIR) + "/libmxf-writeaviddv50.header.mxf", std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::unique_ptr<PartitionMetadata> metadataOf(const Bytes& bytes) {
  DataIO::Memory::MemoryDataSource source(bytes.data(), bytes.size());
  return MXF::readHeaderMetadata(source, builtInDictionary());
}

TEST(LearnedDictionaryText, IsReadAsTheSameDefinitions) {
  SomeMetaDictionary file;
  auto& base = file.addClass("a1000000.00000001.0f0e0d0c.00004001", u"Grading", "060e2b34.02530101.0d010101.01010100");
  auto& own = file.addClass("060e2b34.02530101.0f0e0d0c.00000001", u"Look", "a1000000.00000001.0f0e0d0c.00004001");
  base.set("IsConcrete", Types::Boolean(false));
  file.addEnumeration("a3000000.00000001.0f0e0d0c.00004001", u"Grade", "060e2b34.01040101.01010100.00000000",
                      {{0, u"Rough"}, {1, u"Fine"}});
  file.addType("TypeDefinitionStrongObjectReference", "a3000000.00000002.0f0e0d0c.00004001", u"LookReference",
               "ReferencedType", "060e2b34.02530101.0f0e0d0c.00000001");
  file.addProperty(base, "a2000000.00000001.0f0e0d0c.00004001", u"Grade", "a3000000.00000001.0f0e0d0c.00004001",
                   0x7001);
  file.addProperty(own, "a2000000.00000002.0f0e0d0c.00004001", u"Next", "a3000000.00000002.0f0e0d0c.00004001");
  auto& preface = file.addClass("060e2b34.02530101.0d010101.01012f00", u"Header", "");
  file.addProperty(preface, "a2000000.00000003.0f0e0d0c.00004001", u"Looks", "a3000000.00000002.0f0e0d0c.00004001");
  const auto text = learned(file.metadata());
  EXPECT_EQ(text, R"(dictionary 1
# Learned.

enum Grade UInt8
  0  Rough
  1  Fine

namespace properties ownP urn:vantor:own:properties

extend Preface
  -  a2000000.00000003.0f0e0d0c.00004001  Looks  StrongReference(Look)  optional

namespace sets own urn:vantor:own:sets

060e2b34.027f0101.0f0e0d0c.00000001  Look  Grading
  -  a2000000.00000002.0f0e0d0c.00004001  Next  StrongReference(Look)  optional

a1000000.00000001.0f0e0d0c.00004001  Grading  InterchangeObject  abstract
  7001  a2000000.00000001.0f0e0d0c.00004001  Grade  Grade  optional
)");
  EXPECT_EQ(readAndWritten(text), text);
}

TEST(LearnedDictionaryText, MayBeReadTwice) {
  const auto text = learned(*metadataOf(sampleWithMetaDictionary()));
  auto once = builtInDefinitions(), twice = builtInDefinitions();
  once.readText(text, "one.dictionary");
  twice.readText(text, "one.dictionary");
  twice.readText(text, "other.dictionary");
  once.check();
  twice.check();
  const auto usesOf = [](const Definitions& definitions) {
    std::vector<std::size_t> counts;
    for (const auto& set : definitions.sets()) counts.push_back(set.properties.size());
    return counts;
  };
  EXPECT_EQ(usesOf(twice), usesOf(once));
  EXPECT_EQ(twice.properties().size(), once.properties().size());
  EXPECT_EQ(twice.labels().size(), once.labels().size());
  ASSERT_EQ(twice.enumerations().size(), once.enumerations().size());
  for (std::size_t i = 0; i < once.enumerations().size(); ++i) {
    EXPECT_EQ(twice.enumerations()[i].values.size(), once.enumerations()[i].values.size());
  }
}

/// The message for a dictionary that follows another one.
std::string refusalOf(const std::string& first, const std::string& second) {
  auto definitions = builtInDefinitions();
  definitions.readText("dictionary 1\n" + first, "one.dictionary");
  try {
    definitions.readText("dictionary 1\n" + second, "other.dictionary");
    definitions.check();
  } catch (const Exceptions::InvalidFormat& error) {
    return error.message();
  }
  return {};
}

TEST(SecondDefinitions, AreRefusedWhereTheyDiffer) {
  const std::string grade = "enum Grade UInt8\n  0  Rough\n  1  Fine\n";
  EXPECT_EQ(refusalOf(grade, grade), "");
  EXPECT_EQ(
      refusalOf(grade, "enum Grade UInt8\n  0  Rough\n  1  Finer\n"),
      "other.dictionary:4: there is an enumeration 'Grade' already (one.dictionary:2), without the value 1 Finer; "
      "choose another name");
  const std::string key = "060e2b34.04010101.0f0e0d0c.01000000";
  EXPECT_EQ(refusalOf("label " + key + " Acme Acme's\n", "label " + key + " Acme Acme's\n"), "");
  EXPECT_NE(refusalOf("label " + key + " Acme Acme's\n", "label " + key + " Acme Another\n"), "");
  const std::string row = " a2000000.00000001.0f0e0d0c.00004001 Gain UInt8 optional\n";
  EXPECT_EQ(refusalOf("extend Preface\n  -" + row, "extend Preface\n  -" + row), "");
  EXPECT_NE(refusalOf("extend Preface\n  -" + row, "extend Preface\n  7001" + row), "");
}

TEST(LearnedDictionaryText, OfASampleIsReadAsTheSameDefinitions) {
  const auto metadata = metadataOf(sampleWithMetaDictionary());
  const auto text = learned(*metadata);
  EXPECT_GT(text.size(), 3000u);
  EXPECT_EQ(readAndWritten(text), text);
}

/// Random octets in place of others, in the values of the sets that define.
TEST(LearnedDictionaryText, OfDamagedDefinitionsIsADictionaryAllTheSame) {
  const auto whole = sampleWithMetaDictionary();
  std::mt19937 random(20230715);
  std::size_t read = 0;
  for (int round = 0; round < 40; ++round) {
    auto bytes = whole;
    for (int i = 0; i < 300; ++i) bytes[9000 + random() % (bytes.size() - 9000)] = static_cast<uint8>(random());
    std::unique_ptr<PartitionMetadata> metadata;
    try {
      metadata = metadataOf(bytes);
    } catch (const Exceptions::BaseException&) {
      continue;  // no metadata, no definitions
    }
    ++read;
    const auto text = learned(*metadata);
    EXPECT_EQ(readAndWritten(text), text) << round;
  }
  EXPECT_GT(read, 0u);
}

/// Identifications and references of definitions exchanged among themselves.
TEST(LearnedDictionaryText, OfConfusedDefinitionsIsADictionaryAllTheSame) {
  const auto bytes = sampleWithMetaDictionary();
  std::mt19937 random(20230716);
  for (int round = 0; round < 25; ++round) {
    const auto metadata = metadataOf(bytes);
    std::vector<std::pair<MetadataSet*, const char*>> places;
    for (auto* set : metadata->sets()) {
      for (const auto* property : {"MetaDefinitionIdentification", "ParentClass", "PropertyType", "RenamedType",
                                   "SetElementType", "VariableArrayElementType", "ElementType", "ReferencedType"}) {
        if (set->has(property)) places.emplace_back(set, property);
      }
    }
    for (int i = 0; i < 200; ++i) {
      const auto &one = places[random() % places.size()], &other = places[random() % places.size()];
      one.first->set(one.second, Types::AUID(other.first->get<Types::AUID>(other.second)));
    }
    const auto text = learned(*metadata);
    EXPECT_EQ(readAndWritten(text), text) << round;
  }
}

}  // namespace
}  // namespace Vantor::Registers
