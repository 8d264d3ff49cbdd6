#include "Input/BetterPartition.h"

#include "CommandLine/CommonOptions.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Path.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"

namespace Vantor::Tool {

namespace {

/// The header partition for a file whose structure cannot be read: its metadata may be there all the same.
template <class Choose>
MXF::PartitionChoice chosenIn(const Path& file, Choose&& choose) {
  try {
    return choose(readStructure(file));
  } catch (const Exceptions::BaseException&) {
    return {};
  }
}

}  // namespace

MXF::PartitionChoice betterThanHeader(const MXF::FileStructure& structure) {
  const auto best = MXF::bestPartition(structure);
  const auto rank = [&](std::size_t number) { return MXF::rankOf(structure.partitions[number].pack.status); };
  if (!best || rank(*best) <= rank(0)) return {};
  return MXF::choiceOf(structure, *best);
}

MXF::PartitionChoice partitionIn(const Path& file, const MXF::PartitionChoice& choice) {
  if (choice.kind() != MXF::PartitionChoice::Kind::kBest) return choice;
  return chosenIn(file, [](const MXF::FileStructure& structure) {
    return MXF::choiceOf(structure, MXF::bestPartition(structure).value_or(0));
  });
}

void noteBetterPartition(const Path& file, bool isChosen) {
  if (isChosen) return;
  const auto best = chosenIn(file, betterThanHeader);
  if (best.kind() == MXF::PartitionChoice::Kind::kHeader) return;
  printMessage(Platform::pathToUTF8(file) + ": note: " + describe(best) + " is in a better state; --partition " +
               best.text() + " reads it");
}

}  // namespace Vantor::Tool
