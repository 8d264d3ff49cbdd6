#pragma once

#include <cstddef>

namespace Vantor {

class MetadataSet;
class PartitionMetadata;

namespace XMLBuilder {

/// A program in C++14 that uses the library by its exported headers alone.
struct OldStandard {
  /// Child elements of the root; 0 when there is no document.
  static std::size_t countChildren(PartitionMetadata* partition, const MetadataSet* start);
  /// Code units of the document's text.
  static std::size_t textSize(PartitionMetadata* partition);
};

}  // namespace XMLBuilder

}  // namespace Vantor
