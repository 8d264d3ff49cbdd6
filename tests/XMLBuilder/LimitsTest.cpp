#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/Platform/Limits.h"
#include "LosslessXML.h"
#include "XMLBuilder.h"
#include "XMLUtils/EncodingType.h"
#include "tests/XMLBuilder/ImportSupport.h"
#include "tests/XMLBuilder/LosslessSupport.h"

/// Every reader and writer of documents within limits that its caller sets.
namespace Vantor::XML2Partition {
namespace {

using Exceptions::LimitExceeded;
using Exceptions::ParseError;
using ::testing::Contains;
using ::testing::SizeIs;
using Kind = LosslessXML::Diagnostic::Kind;

Limits with(uint64 Limits::*limit, uint64 value) {
  Limits limits;
  limits.*limit = value;
  return limits;
}

/// A Preface and `count` Identifications that nothing refers to.
std::string documentOfSets(int count) {
  std::string text = XMLBuilder::xml("<s377m:MetadataSets {s377m} {rp210} {types} {groups}><s377m:Preface/>") +
                     "<groups:FloatingDarkMetadata>";
  for (int i = 0; i < count; ++i) text += "<s377m:Identification/>";
  return text + "</groups:FloatingDarkMetadata></s377m:MetadataSets>";
}

/// What a limit refuses, as the exception has it.
std::string refusedLimit(const std::function<void()>& action) {
  try {
    action();
  } catch (const LimitExceeded& refused) {
    return refused.arguments().back();
  }
  return "none";
}

/// The three functions with limits.
void importExactly(const std::string& text, PartitionMetadata& partition, const Limits& limits, Entry entry) {
  if (entry == Entry::kBuffer) {
    getPartitionMetadataFromBuffer(reinterpret_cast<const uint8*>(text.data()), static_cast<uint32>(text.size()),
                                   &partition, limits);
  } else if (entry == Entry::kString) {
    getPartitionMetadataFromString(wstring(text.begin(), text.end()), &partition, limits);
  } else {
    const TemporaryFile file(text);
    getPartitionMetadataFromFile(file.unicodePath().utf16(), &partition, limits);
  }
}

TEST(LimitsOfTheExactImport, HoldForEachFunction) {
  const auto text = documentOfSets(10);
  for (const auto entry : kEntries) {
    const auto limitOf = [&](const Limits& limits) {
      PartitionMetadata partition(builtInDictionary());
      return refusedLimit([&] { importExactly(text, partition, limits, entry); });
    };
    EXPECT_EQ(limitOf({}), "none");
    EXPECT_EQ(limitOf(with(&Limits::sets, 11)), "none");
    EXPECT_EQ(limitOf(with(&Limits::sets, 10)), "sets");
    EXPECT_EQ(limitOf(with(&Limits::nesting, 2)), "nesting");
    EXPECT_EQ(limitOf(with(&Limits::names, 3)), "names");
    EXPECT_EQ(limitOf(with(&Limits::memory, 20000)), "memory");
  }
}

TEST(LimitsOfTheExactImport, AreParseErrors) {
  PartitionMetadata partition(builtInDictionary());
  EXPECT_THROW(importExactly(documentOfSets(10), partition, with(&Limits::memory, 20000), Entry::kBuffer), ParseError);
}

TEST(LimitsOfTheLosslessImport, HoldForTheDocumentAndItsSets) {
  const auto text = documentOfSets(10);
  const auto limitOf = [&](const Limits& limits) {
    return refusedLimit([&] {
      PartitionMetadata partition(builtInDictionary());
      LosslessXML::Document::fromBytes(text.data(), text.size(), limits).import(partition);
    });
  };
  EXPECT_EQ(limitOf({}), "none");
  EXPECT_EQ(limitOf(with(&Limits::sets, 11)), "none");
  EXPECT_EQ(limitOf(with(&Limits::sets, 10)), "sets");
  EXPECT_EQ(limitOf(with(&Limits::nesting, 2)), "nesting");
  EXPECT_EQ(limitOf(with(&Limits::names, 3)), "names");
  EXPECT_EQ(limitOf(with(&Limits::memory, 20000)), "memory");
  const TemporaryFile file(text);
  EXPECT_EQ(refusedLimit([&] { LosslessXML::Document::fromFile(file.path(), with(&Limits::documentSize, 100)); }),
            "document");
}

TEST(LimitsOfTheLosslessImport, CutTheDiagnosticsButKeepOneOfEachKind) {
  std::string unknown;
  for (int i = 0; i < 20; ++i) unknown += "<u xmlns='urn:nobody'/>";
  const auto text = XMLBuilder::xml("<s377m:MetadataSets {s377m} {rp210}>") + unknown + "text<s377m:Preface/>" +
                    unknown + "</s377m:MetadataSets>";
  const auto imported = [&text](uint64 diagnostics) {
    PartitionMetadata partition(builtInDictionary());
    return LosslessXML::Document::fromBytes(text.data(), text.size(), with(&Limits::diagnostics, diagnostics))
        .import(partition);
  };
  const auto all = imported(1000);
  EXPECT_THAT(all.diagnostics, SizeIs(41));
  EXPECT_TRUE(all.furtherDiagnostics.empty());
  const auto some = imported(5);
  std::vector<Kind> kinds;
  for (const auto& one : some.diagnostics) kinds.push_back(one.kind);
  EXPECT_THAT(kinds, Contains(Kind::kUnknownSet));
  EXPECT_THAT(kinds, Contains(Kind::kStrayText));
  std::size_t further = 0;
  for (const auto& [kind, count] : some.furtherDiagnostics) further += count;
  EXPECT_EQ(kinds.size() + further, 41u);
  EXPECT_LE(kinds.size(), 6u);
}

/// A partition whose sets have something to write.
TestPartition partitionOfSets(uint32 count) {
  TestDictionary dictionary;
  dictionary.property("Text", Types::Identifiers::kUTF16String);
  TestPartition partition(dictionary.set("Preface", {"Text"}).set("A", {"Text"}));
  partition.add("Preface", 1);
  for (uint32 i = 0; i < count; ++i) partition.add("A", 2 + i);
  return partition;
}

TEST(LimitsOfTheExport, BoundTheMemoryOfTheDocument) {
  const auto partition = partitionOfSets(200);
  const auto* start = partition->preface();
  const auto limitOf = [&](const Limits& limits) {
    return refusedLimit([&] { XMLBuilder::partition2XML(&*partition, start, true, false, limits); });
  };
  EXPECT_EQ(limitOf({}), "none");
  EXPECT_EQ(limitOf(with(&Limits::memory, 50000)), "memory");
  EXPECT_EQ(limitOf({}), "none") << "the refusal leaves nothing behind";
}

TEST(LimitsOfTheExport, BoundTheSizeOfTheText) {
  const auto partition = partitionOfSets(10);
  const auto* start = partition->preface();
  wstring text;
  XMLBuilder::partition2XML(&*partition, start, true, false, XMLUtils::EncodingType::kUTF8, text);
  const auto limitOf = [&](uint64 bytes) {
    wstring out;
    return refusedLimit([&] {
      XMLBuilder::partition2XML(&*partition, start, true, false, XMLUtils::EncodingType::kUTF8, out,
                                with(&Limits::outputSize, bytes));
    });
  };
  EXPECT_EQ(limitOf(2 * text.size()), "none");
  EXPECT_EQ(limitOf(2 * text.size() - 2), "output");
}

TEST(LimitsOfTheExport, CountBytesInTheEncodingThatIsWritten) {
  const auto partition = partitionOfSets(10);
  LosslessXML::ExportOptions options;
  for (const auto encoding : {XMLUtils::EncodingType::kUTF8Indented, XMLUtils::EncodingType::kUTF16Indented}) {
    options.limits = {};
    const auto size = LosslessXML::exportBytes(*partition, options, encoding).size();
    // The byte order mark is no part of the text.
    const auto mark = XMLUtils::isUTF16(encoding) ? 2u : 0u;
    options.limits.outputSize = size;
    EXPECT_EQ(refusedLimit([&] { LosslessXML::exportBytes(*partition, options, encoding); }), "none");
    options.limits.outputSize = size - mark - 1;
    EXPECT_EQ(refusedLimit([&] { LosslessXML::exportBytes(*partition, options, encoding); }), "output");
  }
}

}  // namespace
}  // namespace Vantor::XML2Partition
