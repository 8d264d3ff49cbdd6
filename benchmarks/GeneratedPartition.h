#pragma once

#include <memory>

#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Benchmarks {

/// A partition as an archive might hold it: a Preface and a content storage with packages of five sets each (package,
/// track, sequence, timecode, source clip), made through the model alone.
std::unique_ptr<PartitionMetadata> makePartition(std::size_t packages);

/// How many sets such a partition has.
constexpr std::size_t setsIn(std::size_t packages) { return 2 + 5 * packages; }

}  // namespace Vantor::Benchmarks
