#include <algorithm>
#include <unordered_map>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Types/VersionType.h"
#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

/// Rules about partitions: what their packs state, and how their metadata agree.
namespace Vantor::Edit {

namespace {

using KLV::PartitionKind;

void checkDamage(const CheckedFile& file, Report& report) {
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    if (file.state().partitions[i].info.damaged) report.add(i, "");
  }
}

/// Reports the partitions that have a problem of one kind. @param property  what of the pack; may be empty.
void reportProblems(const CheckedFile& file, std::string FileState::Partition::*kind, const char* property,
                    Report& report) {
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    const auto& problem = file.state().partitions[i].*kind;
    if (!problem.empty()) report.add(i, property, {problem});
  }
}

void checkProblems(const CheckedFile& file, Report& report) {
  reportProblems(file, &FileState::Partition::problem, "", report);
}

void checkCounts(const CheckedFile& file, Report& report) {
  reportProblems(file, &FileState::Partition::countProblem, "HeaderByteCount", report);
}

void checkDirectories(const CheckedFile& file, Report& report) {
  reportProblems(file, &FileState::Partition::directoryProblem, "", report);
}

void checkWhole(const CheckedFile& file, Report& report) {
  if (file.isCut()) report.add({std::to_string(file.state().fileSize)});
}

void checkPartitionKinds(const CheckedFile& file, Report& report) {
  const auto& partitions = file.state().partitions;
  for (std::size_t i = 0; i < partitions.size(); ++i) {
    const auto kind = partitions[i].info.pack.kind;
    const bool isFirst = i == 0, isLast = i + 1 == partitions.size();
    if ((kind == PartitionKind::kHeader) != isFirst || (kind == PartitionKind::kFooter && !isLast)) report.add(i, "");
  }
}

/// The header partition names the footer partition; what the others name is compared with where that is.
void checkNamedFooter(const CheckedFile& file, Report& report) {
  const auto& partitions = file.state().partitions;
  const uint64 named = partitions.front().info.pack.footerPartition;
  for (std::size_t i = 1; i < partitions.size() && named != 0; ++i) {
    const auto& partition = partitions[i].info;
    if (partition.offset - file.state().runIn == named && !MXF::isFooter(partition)) report.add(i, "");
  }
}

void checkRandomIndex(const CheckedFile& file, Report& report) {
  if (!file.isCut() && !file.state().randomIndexProblem.empty()) report.add({file.state().randomIndexProblem});
}

void checkIndexCount(const CheckedFile& file, Report& report) {
  const auto& index = file.state().randomIndex;
  const auto number = file.state().partitions.size();
  if (index && index->size() != number) report.add({std::to_string(index->size()), std::to_string(number)});
}

void checkIndexEntries(const CheckedFile& file, Report& report) {
  const auto& index = file.state().randomIndex;
  if (!index || index->size() != file.state().partitions.size()) return;
  for (std::size_t i = 0; i < index->size(); ++i) {
    const auto& partition = file.state().partitions[i].info;
    const auto& entry = (*index)[i];
    const uint64 offset = partition.offset - file.state().runIn;
    if (partition.damaged || (entry.offset == offset && entry.bodySID == partition.pack.bodySID)) continue;
    report.add(i, "",
               {std::to_string(entry.bodySID), std::to_string(entry.offset), std::to_string(partition.pack.bodySID),
                std::to_string(offset)});
  }
}

/// A file is finished when the header or footer partition is closed and has final metadata.
void checkFinished(const CheckedFile& file, Report& report) {
  const auto& partitions = file.state().partitions;
  const bool isFinished = std::any_of(partitions.begin(), partitions.end(), [](const FileState::Partition& partition) {
    return partition.metadata != nullptr && isClosedComplete(partition.info);
  });
  if (!isFinished) report.add(0, "");
}

void checkHeaderStatus(const CheckedFile& file, Report& report) {
  const auto& partitions = file.state().partitions;
  const bool hasFinalFooter = std::any_of(partitions.begin() + 1, partitions.end(), [](const auto& partition) {
    return partition.metadata != nullptr && isClosedComplete(partition.info);
  });
  if (hasFinalFooter && !isClosedComplete(partitions.front().info)) report.add(0, "");
}

void checkFooterStatus(const CheckedFile& file, Report& report) {
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    const auto& partition = file.state().partitions[i].info;
    if (MXF::isFooter(partition) && !KLV::isClosed(partition.pack.status)) report.add(i, "");
  }
}

template <class Visit>
void forEachPack(const CheckedFile& file, Visit&& visit) {
  for (std::size_t i = 0; i < file.state().partitions.size(); ++i) {
    const auto& partition = file.state().partitions[i].info;
    if (!partition.damaged) visit(i, partition);
  }
}

void checkThisPartition(const CheckedFile& file, Report& report) {
  forEachPack(file, [&](std::size_t number, const MXF::PartitionInfo& partition) {
    const uint64 offset = partition.offset - file.state().runIn;
    if (partition.pack.thisPartition == offset) return;
    report.add(number, "ThisPartition", {std::to_string(partition.pack.thisPartition), std::to_string(offset)});
  });
}

void checkPreviousPartition(const CheckedFile& file, Report& report) {
  forEachPack(file, [&](std::size_t number, const MXF::PartitionInfo& partition) {
    const uint64 offset = number == 0 ? 0 : file.state().partitions[number - 1].info.offset - file.state().runIn;
    if (partition.pack.previousPartition == offset) return;
    report.add(number, "PreviousPartition", {std::to_string(partition.pack.previousPartition), std::to_string(offset)});
  });
}

/// Calls `visit(number, pack, offset)` for every pack that does not state the offset of the footer partition.
template <class Visit>
void forEachOtherFooter(const CheckedFile& file, Visit&& visit) {
  const auto& last = file.state().partitions.back().info;
  if (!MXF::isFooter(last)) return;
  const uint64 offset = last.offset - file.state().runIn;
  forEachPack(file, [&](std::size_t number, const MXF::PartitionInfo& partition) {
    if (partition.pack.footerPartition != offset) visit(number, partition.pack, offset);
  });
}

void checkFooterPartition(const CheckedFile& file, Report& report) {
  forEachOtherFooter(file, [&](std::size_t number, const MXF::PartitionPack& pack, uint64 offset) {
    if (pack.footerPartition == 0) return;
    report.add(number, "FooterPartition", {std::to_string(pack.footerPartition), std::to_string(offset)});
  });
}

/// Open partitions are written before the place of the footer partition is known.
void checkUnknownFooter(const CheckedFile& file, Report& report) {
  forEachOtherFooter(file, [&](std::size_t number, const MXF::PartitionPack& pack, uint64 offset) {
    if (pack.footerPartition == 0 && KLV::isClosed(pack.status)) {
      report.add(number, "FooterPartition", {std::to_string(offset)});
    }
  });
}

/// The metadata that a pack is to agree with: its own, else the best of the file.
const MetadataSet* prefaceFor(const CheckedFile& file, std::size_t partition) {
  const auto* model = file.modelOf(partition);
  if (model == nullptr) model = file.best();
  return model == nullptr ? nullptr : model->preface();
}

std::string versionText(int major, int minor) { return std::to_string(major) + "." + std::to_string(minor); }

void checkVersions(const CheckedFile& file, Report& report) {
  forEachPack(file, [&](std::size_t number, const MXF::PartitionInfo& partition) {
    const auto* preface = file.modelOf(number) == nullptr ? nullptr : file.modelOf(number)->preface();
    const auto* version = preface == nullptr ? nullptr : valueOf<Types::VersionType>(*preface, "FormatVersion");
    if (version == nullptr) return;
    const auto own = versionText(partition.pack.majorVersion, partition.pack.minorVersion);
    const auto other = versionText(version->major(), version->minor());
    if (own != other) report.add(number, "", {own, other});
  });
}

void checkPatterns(const CheckedFile& file, Report& report) {
  forEachPack(file, [&](std::size_t number, const MXF::PartitionInfo& partition) {
    const auto* preface = prefaceFor(file, number);
    const auto pattern = preface == nullptr ? std::nullopt : labelOf(*preface, "OperationalPattern");
    if (!pattern || areSame(*pattern, partition.pack.operationalPattern)) return;
    report.add(number, "OperationalPattern", {textOf(partition.pack.operationalPattern), textOf(*pattern)});
  });
}

/// Sets of essence containers, each made once for packs or Prefaces that share or repeat it.
class ContainerSets {
 public:
  const Labels& ofPreface(const MetadataSet& preface) {
    const auto [found, isNew] = ofPrefaces_.try_emplace(&preface);
    if (isNew) found->second = withoutVersions(labelsOf(preface, "EssenceContainers"));
    return found->second;
  }

  const Labels& ofPack(const MXF::PartitionPack& pack) {
    if (last_ == nullptr || pack.essenceContainers != *last_) ofLast_ = withoutVersions(pack.essenceContainers);
    last_ = &pack.essenceContainers;
    return ofLast_;
  }

 private:
  std::unordered_map<const MetadataSet*, Labels> ofPrefaces_;
  const std::vector<Types::UniversalLabel>* last_ = nullptr;
  Labels ofLast_;
};

/// An open or incomplete partition may have been written before all containers were known.
void checkContainers(const CheckedFile& file, Report& report) {
  ContainerSets sets;
  forEachPack(file, [&](std::size_t number, const MXF::PartitionInfo& partition) {
    const auto* preface = prefaceFor(file, number);
    const bool isFinal = isClosedComplete(partition) || file.modelOf(number) != nullptr;
    if (preface == nullptr || !isFinal) return;
    const auto &own = sets.ofPack(partition.pack), &other = sets.ofPreface(*preface);
    if (own == other) return;
    report.add(number, "EssenceContainers", {std::to_string(own.size()), std::to_string(other.size())});
  });
}

/// Two complete partitions with metadata state the same (ST 377-1); an incomplete one may be less exact.
void checkRepetitions(const CheckedFile& file, Report& report) {
  for (const auto& model : file.models()) {
    const auto number = model.partitions().front();
    const auto& partitions = file.state().partitions;
    if (&model == file.best() || !isComplete(partitions[number].info) ||
        !isComplete(partitions[file.best()->partitions().front()].info))
      continue;
    const auto comparison = comparePartitions(model.metadata(), file.best()->metadata());
    if (comparison.isEqual()) continue;
    report.about(model.partitions())
        .add({std::to_string(file.best()->partitions().back()), std::to_string(comparison.differences.size())});
  }
}

}  // namespace

const RuleTable& partitionRules() {
  static const RuleTable table = {
      {{"damaged-pack", Severity::kError, "the partition pack cannot be read", "ST 377-1, Partition Pack"},
       checkDamage},
      {{"unreadable-metadata", Severity::kError, "the header metadata cannot be read: {reason}",
        "ST 377-1, Header Metadata"},
       checkProblems},
      {{"header-byte-count", Severity::kError, "the count of metadata bytes is wrong: {reason}",
        "ST 377-1, Partition Pack"},
       checkCounts},
      {{"object-directory", Severity::kError, "the object directory is wrong: {reason}",
        "no standard: OP-Atom files of one manufacturer"},
       checkDirectories},
      {{"partition-kind", Severity::kError,
        "only the first partition can be the header partition, and only the last one the footer partition",
        "ST 377-1, Partition Pack"},
       checkPartitionKinds},
      {{"footer-kind", Severity::kError, "the header partition names this one as the footer partition, which it is not",
        "ST 377-1, Partition Pack"},
       checkNamedFooter},
      {{"random-index", Severity::kWarning, "the random index pack cannot be read: {reason}",
        "ST 377-1, Random Index Pack"},
       checkRandomIndex},
      {{"random-index-count", Severity::kWarning,
        "the random index pack lists {number} partitions, the partition packs {number}", "ST 377-1, Random Index Pack"},
       checkIndexCount},
      {{"random-index-entry", Severity::kWarning,
        "the random index pack has stream {number} at {offset}, the file stream {number} at {offset}",
        "ST 377-1, Random Index Pack"},
       checkIndexEntries},
      {{"cut-file", Severity::kError, "the file ends at byte {offset}, before the footer partition that it names",
        "ST 377-1, Footer Partition"},
       checkWhole},
      {{"unfinished-file", Severity::kWarning, "no closed and complete partition has header metadata",
        "ST 377-1, Partition Status"},
       checkFinished},
      {{"header-status", Severity::kNote,
        "the header partition is open or incomplete; the final metadata are in a later one",
        "ST 377-1, Partition Status"},
       checkHeaderStatus},
      {{"footer-status", Severity::kWarning, "a footer partition cannot be open", "ST 377-1, Partition Status"},
       checkFooterStatus},
      {{"partition-offset", Severity::kError, "the partition pack states the offset {offset} and stands at {offset}",
        "ST 377-1, Partition Pack"},
       checkThisPartition},
      {{"previous-partition", Severity::kError,
        "the partition before it stands at {offset} by the pack, and at {offset} in the file",
        "ST 377-1, Partition Pack"},
       checkPreviousPartition},
      {{"footer-partition", Severity::kError,
        "the footer partition stands at {offset} by the pack, and at {offset} in the file", "ST 377-1, Partition Pack"},
       checkFooterPartition},
      {{"unknown-footer", Severity::kWarning,
        "a closed partition does not name the footer partition, which stands at {offset}", "ST 377-1, Partition Pack"},
       checkUnknownFooter},
      {{"format-version", Severity::kWarning, "the pack has version {own} of the format, the Preface {other}",
        "ST 377-1, Partition Pack"},
       checkVersions},
      {{"pack-pattern", Severity::kError, "the pack has the operational pattern {own}, the Preface {other}",
        "ST 377-1, Partition Pack"},
       checkPatterns},
      {{"pack-containers", Severity::kWarning,
        "the pack lists other essence containers ({number}) than the Preface ({number})", "ST 377-1, Partition Pack"},
       checkContainers},
      {{"repeated-metadata", Severity::kWarning, "differences from the metadata of partition {number}: {number}",
        "ST 377-1, Header Metadata Repetition"},
       checkRepetitions}};
  return table;
}

}  // namespace Vantor::Edit
