#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <map>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMLSParser.hpp>

#include "Core/DataIO/Memory.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/FileStructure.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "XMLUtils/LoadDocument.h"
#include "tests/SampleFiles.h"
#include "tests/Sanitized.h"
#include "tests/XMLBuilder/EveryTypeDocument.h"
#include "tests/XMLBuilder/Mutator.h"

/// Damaged documents and damaged files. Whatever the damage, a function of the libraries ends with a result or with one
/// of their exceptions, and so does every function that takes the result.
namespace Vantor::XML2Partition {
namespace {

using ::testing::Contains;
using ::testing::Key;
using ::testing::Not;
using XMLBuilder::exported;
using XMLBuilder::Flags;
using XMLBuilder::kFlat;
using XMLBuilder::kNested;

constexpr int kParts = 8;
const int kMutants = isSanitized() ? 100 : 250;  // of each part

/// Exports a partition and has the text parsed, which must succeed.
std::string parsed(PartitionMetadata& partition, Flags flags) {
  std::string text = exported(partition, flags);
  if (text.empty()) return text;
  const auto parser = XMLUtils::createParser();
  XMLUtils::loadDocumentFromBuffer(reinterpret_cast<const uint8*>(text.data()), text.size(), *parser);
  return text;
}

/// Counts how operations on mutants end. An exception that is none of the libraries' fails the test, which prints the
/// number of the mutant, to make that again.
class Outcomes {
 public:
  /// @return whether the operation finished.
  template <class Operation>
  bool count(uint32 mutant, const Operation& operation) {
    try {
      const Failure failure = failureOf(operation);
      ++kinds_[failure.kind];
      return failure.kind == "nothing";
    } catch (const std::exception& error) {
      ADD_FAILURE() << "mutant " << mutant << " ends with a foreign exception: " << error.what();
    } catch (...) {
      ADD_FAILURE() << "mutant " << mutant << " ends with a foreign exception";
    }
    return false;
  }

  int succeeded() const { return kinds_.count("nothing") == 0 ? 0 : kinds_.at("nothing"); }
  /// How often each kind of exception came.
  const std::map<std::string, int>& kinds() const { return kinds_; }

 private:
  std::map<std::string, int> kinds_;
};

/// A document, a dictionary by which an import accepts it, and what is exported then.
struct Document {
  std::string text;
  SharedPtr<const MetaMetadata::Dictionary> dictionary;
  std::string reexported = {};
};

std::vector<Document> documents() {
  std::vector<Document> all;
  for (const auto& name : {XMLName{}, XMLName{u"st434", XMLBuilder::kSt434Elements}}) {
    EveryTypeDocument everyType(name);
    all.push_back({everyType.text(), everyType.dictionary()});
  }
  for (const auto& file : mxfFilesIn(VANTOR_TEST_DATA_DIR)) {
    if (file.filename() == "bmx-imf-j2c.header.mxf") continue;  // an import refuses its document
    const auto partition = MXF::readHeaderMetadata(file, builtInDictionary());
    for (const auto flags : {kNested, kFlat}) all.push_back({exported(*partition, flags), builtInDictionary()});
  }
  for (auto& document : all) {
    PartitionMetadata partition(document.dictionary);
    importRaw(document.text, partition);
    document.reexported = renumbered(exported(partition));
  }
  return all;
}

TEST(EveryTypeDocument, HasAValueOfEveryTypeThatIsRead) {
  for (const auto& name : {XMLName{}, XMLName{u"st434", XMLBuilder::kSt434Elements}}) {
    EveryTypeDocument everyType(name);
    PartitionMetadata partition(everyType.dictionary());
    auto& set = *importRaw(everyType.text(), partition).front();
    for (const std::string type : {
#define VANTOR_NAME_TYPE(Type, number, octets) #Type,
             VANTOR_FOR_EACH_TYPE(VANTOR_NAME_TYPE)
#undef VANTOR_NAME_TYPE
         }) {
      const bool isRead = type != "LocalTag" && type != "DataValue";
      EXPECT_EQ(property(set, type).isPresent(), isRead) << type;
      if (isRead && type != "Array" && type != "Batch") {
        EXPECT_EQ(dynamic_cast<const Types::Collection&>(*valueOf(set, type + "Array")).size(), 2u) << type;
        EXPECT_EQ(dynamic_cast<const Types::Collection&>(*valueOf(set, type + "Batch")).size(), 2u) << type;
      }
    }
  }
}

/// Most go through a buffer.
Entry entryOf(uint32 mutant) {
  if (mutant % 8 == 0) return Entry::kFile;
  return mutant % 4 == 1 ? Entry::kString : Entry::kBuffer;
}

class MutatedDocuments : public ::testing::TestWithParam<int> {
 protected:
  void mutate(uint32 mutant, const std::vector<Document>& originals) {
    Mutator mutator(mutant);
    const auto& original = originals[mutator.below(originals.size())];
    std::string text = original.text;
    mutator.mutateDocument(text);
    PartitionMetadata partition(original.dictionary);
    if (!imports_.count(mutant, [&] { importRaw(text, partition, entryOf(mutant)); })) return;
    exports_.count(mutant, [&] {
      parsed(partition, kFlat);
      if (renumbered(parsed(partition, kNested)) != original.reexported) ++changed_;
    });
    writes_.count(mutant, [&] {
      DataIO::Memory::MemoryDataSink sink;
      MXF::writeHeaderMetadata(partition, MXF::SetOrder::kFile, sink);
    });
  }

  Outcomes imports_;
  Outcomes exports_;
  Outcomes writes_;
  int changed_ = 0;  ///< what is exported is not what would be without the damage
};

TEST_P(MutatedDocuments, AreImportedAndExportedOrRefused) {
  const auto originals = documents();
  for (int i = 0; i < kMutants; ++i) mutate(static_cast<uint32>(GetParam() * kMutants + i), originals);

  EXPECT_GT(imports_.succeeded(), kMutants / 5);
  EXPECT_LT(imports_.succeeded(), kMutants * 4 / 5);
  EXPECT_GT(changed_, kMutants / 5);
  EXPECT_EQ(exports_.succeeded(), imports_.succeeded());
  EXPECT_EQ(writes_.succeeded(), imports_.succeeded());
  EXPECT_THAT(imports_.kinds(), Contains(Key("ParseError")));
  EXPECT_THAT(imports_.kinds(), Contains(Key("InvalidFormat")));
}

INSTANTIATE_TEST_SUITE_P(Parts, MutatedDocuments, ::testing::Range(0, kParts));

/// The header partition of a file up to the end of its metadata.
struct Header {
  std::string bytes;
  std::size_t metadataStart;
  std::string exported;
};

std::vector<Header> headers() {
  std::vector<Header> all;
  for (const auto& file : mxfFilesIn(VANTOR_TEST_DATA_DIR)) {
    const auto partition = MXF::readStructure(file).partitions.front();
    std::ifstream stream(file, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(stream)), {});
    const auto end = partition.packEnd + partition.pack.headerByteCount;
    if (end < bytes.size()) bytes.resize(static_cast<std::size_t>(end));
    all.push_back({std::move(bytes), static_cast<std::size_t>(partition.packEnd),
                   exported(*MXF::readHeaderMetadata(file, builtInDictionary()))});
  }
  return all;
}

class MutatedHeaders : public ::testing::TestWithParam<int> {
 protected:
  void mutate(uint32 mutant, const std::vector<Header>& originals) {
    Mutator mutator(mutant);
    const auto& original = originals[mutator.below(originals.size())];
    std::string bytes = original.bytes;
    mutator.mutateKLVs(bytes, original.metadataStart);
    const TemporaryFile file(bytes);
    std::unique_ptr<PartitionMetadata> partition;
    if (!reads_.count(mutant, [&] { partition = MXF::readHeaderMetadata(file.path(), builtInDictionary()); })) return;
    std::string nested;
    exports_.count(mutant, [&] {
      parsed(*partition, kFlat);
      nested = parsed(*partition, kNested);
      if (nested != original.exported) ++changed_;
    });
    if (nested.empty()) return;  // there is no Preface any more
    PartitionMetadata readBack(builtInDictionary());
    imports_.count(mutant, [&] { importRaw(nested, readBack); });
  }

  Outcomes reads_;
  Outcomes exports_;
  Outcomes imports_;
  int changed_ = 0;  ///< what is exported is not what would be without the damage
};

TEST_P(MutatedHeaders, AreReadAndExportedOrRefused) {
  const auto originals = headers();
  for (int i = 0; i < kMutants; ++i) mutate(static_cast<uint32>(GetParam() * kMutants + i), originals);

  EXPECT_GT(reads_.succeeded(), kMutants / 5);
  EXPECT_LT(reads_.succeeded(), kMutants * 4 / 5);
  EXPECT_GT(changed_, kMutants / 10);
  EXPECT_EQ(exports_.succeeded(), reads_.succeeded());
  EXPECT_GT(imports_.succeeded(), kMutants / 5);
  EXPECT_THAT(imports_.kinds(), Not(Contains(Key("ParseError"))));
}

INSTANTIATE_TEST_SUITE_P(Parts, MutatedHeaders, ::testing::Range(0, kParts));

}  // namespace
}  // namespace Vantor::XML2Partition
