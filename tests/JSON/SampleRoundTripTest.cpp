#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "LosslessXML.h"
#include "tests/JSON/Support.h"
#include "tests/SampleFiles.h"

/// The header metadata of files, to JSON and back.
namespace Vantor::JSON {
namespace {

std::unique_ptr<PartitionMetadata> throughXML(PartitionMetadata& metadata, bool isNested) {
  LosslessXML::ExportOptions options;
  options.nestStrongReferences = isNested;
  const auto document = LosslessXML::exportBytes(metadata, options, XMLUtils::EncodingType::kUTF8);
  auto back = std::make_unique<PartitionMetadata>(metadata.partitionDictionary().dictionary());
  LosslessXML::Document::fromBytes(document.data(), document.size()).import(*back);
  return back;
}

/// How many differences there are but in the order of sets.
uint64 differencesBesideOrder(const PartitionMetadata& left, const PartitionMetadata& right) {
  const auto comparison = comparePartitions(left, right);
  uint64 count = comparison.differences.size();
  for (std::size_t i = 0; i < PartitionComparison::kInsignificantKinds; ++i) count += comparison.insignificant[i];
  return count - comparison.count(InsignificantDifference::kSetOrder);
}

class JSONSample : public testing::TestWithParam<Path> {
 protected:
  std::unique_ptr<PartitionMetadata> metadata = MXF::readHeaderMetadata(GetParam(), builtInDictionary());
};

TEST_P(JSONSample, ComesBackAsFromXML) {
  const auto fromXML = throughXML(*metadata, true);
  const auto fromJSON = imported(exported(*metadata), *metadata);
  EXPECT_EQ(differencesBesideOrder(*fromXML, *fromJSON), 0u);
  EXPECT_TRUE(octetsOf(*fromJSON) == octetsOf(*fromXML));
  EXPECT_TRUE(octetsOf(*throughXML(*metadata, false)) == octetsOf(*fromXML));
}

TEST_P(JSONSample, ComesBackAsInTheFile) {
  const auto back = imported(exported(*metadata), *metadata);
  EXPECT_TRUE(comparePartitions(*metadata, *back, Pairing::kByIdentifier).isEqual());
  EXPECT_EQ(back->entries().size(), metadata->entries().size());
}

INSTANTIATE_TEST_SUITE_P(All, JSONSample, testing::ValuesIn(sampleFiles()),
                         [](const auto& parameter) { return testNameOf(parameter.param); });

/// With the environment variable VANTOR_REWRITE_GOLDEN=1 the documents in tests/data become what the library writes
/// now; the difference is to be reviewed before it is committed.
TEST(JSONGoldenFiles, AreWhatTheLibraryWrites) {
  const char* flag = std::getenv("VANTOR_REWRITE_GOLDEN");
  const bool isRewriting = flag != nullptr && std::string(flag) == "1";
  for (const char* name : {"op1a", "bmx-rdd9-embedxml.header"}) {
    const Path folder(VANTOR_TEST_DATA_DIR);
    const auto metadata = MXF::readHeaderMetadata(folder / (std::string(name) + ".mxf"), builtInDictionary());
    const auto golden = folder / (std::string(name) + ".json");
    if (isRewriting) std::ofstream(golden, std::ios::binary) << exported(*metadata);
    std::ifstream file(golden, std::ios::binary);
    EXPECT_EQ(exported(*metadata), std::string(std::istreambuf_iterator<char>(file), {})) << golden;
  }
  if (isRewriting) GTEST_SKIP() << "rewrote the documents";
}

}  // namespace
}  // namespace Vantor::JSON
