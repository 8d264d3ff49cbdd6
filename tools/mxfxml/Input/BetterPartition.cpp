#include "Input/BetterPartition.h"

#include "CommandLine/CommonOptions.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

namespace {

/// The header partition for a file whose structure cannot be read: its metadata may be there all the same.
MXF::PartitionChoice bestPartitionOf(const Path& file) {
  try {
    return betterThanHeader(Summary::partitionsOf(readStructure(file)));
  } catch (const Exceptions::BaseException&) {
    return {};
  }
}

}  // namespace

MXF::PartitionChoice betterThanHeader(const std::vector<Summary::Partition>& partitions) {
  const auto* best = Summary::bestOf(partitions);
  if (best == nullptr || Summary::rankOf(best->status) <= Summary::rankOf(partitions.front().status)) return {};
  if (best->kind == KLV::PartitionKind::kFooter) return MXF::PartitionChoice::footer();
  return MXF::PartitionChoice::number(static_cast<uint32>(best->number));
}

void noteBetterPartition(const Path& file, bool isChosen) {
  if (isChosen) return;
  const auto best = bestPartitionOf(file);
  if (best.kind() == MXF::PartitionChoice::Kind::kHeader) return;
  printMessage(Platform::pathToUTF8(file) + ": note: " + describe(best) + " is in a better state; --partition " +
               best.text() + " reads it");
}

}  // namespace Vantor::Tool
