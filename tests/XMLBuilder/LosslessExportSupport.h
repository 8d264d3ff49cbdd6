#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Comparison/PartitionComparison.h"
#include "LosslessXML.h"
#include "tests/XMLBuilder/Support.h"

/// Lossless documents of a partition, and what comes back from them.
namespace Vantor::XMLBuilder {

inline LosslessXML::ExportOptions optionsOf(Flags flags) {
  return {flags.nestStrongReferences, flags.excludeNonStructural};
}

/// The document as `exported` gives it, without its description.
inline std::string losslesslyExported(PartitionMetadata& partition, Flags flags = kNested) {
  const std::string text = LosslessXML::exportBytes(partition, optionsOf(flags), XMLUtils::EncodingType::kUTF8);
  EXPECT_THAT(text, testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?><?mxfxml form="));
  const auto end = text.find("?><s377m:MetadataSets");
  return end == std::string::npos ? text : text.substr(end + 2);
}
inline std::string losslesslyExported(const TestPartition& partition, Flags flags = kNested) {
  return losslesslyExported(*partition, flags);
}

/// Reads a document into an empty partition.
class Reimported {
 public:
  Reimported(const std::string& document, SharedPtr<const MetaMetadata::Dictionary> dictionary)
      : partition_(std::move(dictionary)) {
    result_ = LosslessXML::Document::fromBytes(document.data(), document.size()).import(partition_);
  }
  PartitionMetadata& operator*() { return partition_; }
  std::vector<std::string> messages() const {
    std::vector<std::string> texts;
    for (const auto& diagnostic : result_.diagnostics) texts.push_back(describe(diagnostic));
    return texts;
  }

 private:
  PartitionMetadata partition_;
  LosslessXML::Import result_;
};

inline Reimported reimported(PartitionMetadata& partition, Flags flags) {
  return {LosslessXML::exportBytes(partition, optionsOf(flags), XMLUtils::EncodingType::kUTF8),
          partition.partitionDictionary().dictionary()};
}

inline void expectNothingLost(PartitionMetadata& partition) {
  for (const auto& flags : {kNested, kFlat}) {
    auto copy = reimported(partition, flags);
    EXPECT_THAT(copy.messages(), testing::IsEmpty());
    EXPECT_EQ(comparePartitions(partition, *copy).differences.size(), 0u)
        << (flags.nestStrongReferences ? "nested" : "flat");
  }
}

}  // namespace Vantor::XMLBuilder
