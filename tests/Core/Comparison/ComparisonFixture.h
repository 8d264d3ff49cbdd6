#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Platform/Strings.h"
#include "tests/Core/Metadata/TestPartition.h"

/// Two partitions to compare, and the result of the comparison as text.
namespace Vantor {

inline std::string dotted(uint32 number) { return Utils::wstringToString(uid(number).toString(kDottedForm)); }

class PartitionComparisonTest : public testing::Test {
 protected:
  /// Each difference as "kind: set #number: property: left -> right", where #number stands for `uid(number)`.
  std::vector<std::string> differences() {
    comparison_ = comparePartitions(left_, right_, pairing_);
    std::vector<std::string> texts;
    for (const auto& difference : comparison_.differences) {
      std::string text = std::string(name(difference.kind)) + ": " + difference.set + " " + difference.instanceUID;
      if (!difference.property.empty()) {
        text += ": " + difference.property + ": " + difference.left + " -> " + difference.right;
      }
      texts.push_back(withNumbers(text));
    }
    return texts;
  }

  static std::string withNumbers(std::string text) {
    const std::string zeros = dotted(0).substr(0, 45);
    for (auto at = text.find(zeros); at != std::string::npos; at = text.find(zeros)) {
      text.replace(at, 47, "#" + std::to_string(std::stoul(text.substr(at + 45, 2), nullptr, 16)));
    }
    return text;
  }

  /// The insignificant differences that were counted, without kinds that did not occur.
  std::vector<std::string> insignificant() const {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < PartitionComparison::kInsignificantKinds; ++i) {
      const auto kind = static_cast<InsignificantDifference>(i);
      if (comparison_.count(kind) != 0) texts.push_back(name(kind) + (" " + std::to_string(comparison_.count(kind))));
    }
    return texts;
  }

  /// A Preface with a Child and a Thing that is this child, in both partitions; InstanceUIDs of the right from 101 up.
  void addChain() {
    refer(addSet(left_, "Preface", 1), "Child", 2);
    refer(addSet(right_, "Preface", 101), "Child", 102);
    leftThing_ = &addSet(left_, "Thing", 2);
    rightThing_ = &addSet(right_, "Thing", 102);
  }

  PartitionMetadata left_{testDictionary()};
  PartitionMetadata right_{testDictionary()};
  Pairing pairing_ = Pairing::kByPlace;
  MetadataSet* leftThing_ = nullptr;
  MetadataSet* rightThing_ = nullptr;
  PartitionComparison comparison_;
};

/// The same for tests that begin with a Thing on each side.
class ThingComparison : public PartitionComparisonTest {
 protected:
  void SetUp() override { addChain(); }
};

/// Appends items to an array or batch, which is made with the first.
inline void appendNumbers(MetadataSet& set, const char* name, const std::vector<uint16>& numbers) {
  auto& collection = property<CollectionElement>(set, name);
  for (const uint16 number : numbers) collection.append(std::make_unique<Types::UInt16>(number));
}

}  // namespace Vantor
