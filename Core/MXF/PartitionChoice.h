#pragma once

#include <string>
#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::MXF {

/// Which partition of a file is meant: the header partition, the footer partition, one by its number in file order,
/// where 0 is the header partition, or the one with the best metadata (`bestPartition` of FileStructure.h).
class PartitionChoice {
 public:
  enum class Kind { kHeader, kFooter, kNumber, kBest };

  /// The header partition.
  PartitionChoice() = default;
  static PartitionChoice header() { return {}; }
  static PartitionChoice footer() { return {Kind::kFooter, 0}; }
  static PartitionChoice number(uint32 number) { return {Kind::kNumber, number}; }
  static PartitionChoice best() { return {Kind::kBest, 0}; }
  /// Reads "header", "footer", "best" or decimal digits.
  /// @throws Exceptions::InvalidFormat naming the text when it is none of them, or a number over 4,294,967,295.
  static PartitionChoice parse(std::string_view text);

  Kind kind() const { return kind_; }
  /// The number; 0 unless the partition is chosen by its number.
  uint32 number() const { return number_; }
  /// What `parse` reads: "header", "footer", "best" or the number.
  std::string text() const;
  /// How messages name the partition: "header partition", "footer partition", "best partition" or "partition 2".
  std::string name() const;

 private:
  PartitionChoice(Kind kind, uint32 number) : kind_(kind), number_(number) {}

  Kind kind_ = Kind::kHeader;
  uint32 number_ = 0;
};

}  // namespace Vantor::MXF
