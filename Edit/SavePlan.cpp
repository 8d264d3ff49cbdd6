#include "Edit/SavePlan.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "Core/Comparison/PartitionComparison.h"
#include "Core/Comparison/SetPairing.h"
#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/MXF/PrefaceLabels.h"
#include "Core/MXF/ReplacementSafety.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/PartitionDictionary.h"
#include "Core/Platform/Raise.h"
#include "Edit/Consequences.h"
#include "Edit/Differences.h"
#include "Edit/EditedSets.h"
#include "Edit/Repetitions.h"

namespace Vantor::Edit {

namespace {

SharedPtr<const Bytes> written(PartitionMetadata& metadata) {
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(metadata, MXF::SetOrder::kFile, sink);
  return std::make_shared<const Bytes>(sink.take());
}

/// Whether the other partition has the same set under the same InstanceUID.
bool hasSame(const MetadataSet& set, const PartitionMetadata& partition, const PartitionMetadata& other) {
  const auto* found = findOnly(other, *set.instanceUID());
  return found != nullptr && areSame(set, partition.partitionDictionary(), *found, other.partitionDictionary());
}

/// Whether the sets of two partitions with the same content have the same InstanceUIDs.
bool haveSameInstanceUIDs(const PartitionMetadata& left, const PartitionMetadata& right) {
  const SetPairing pairing(left, right);
  const auto& pairs = pairing.setPairs();
  return std::all_of(pairs.begin(), pairs.end(), [&](const SetPairing::SetPair& pair) {
    const auto *leftUID = pair.first->instanceUID(), *rightUID = pair.second->instanceUID();
    if (leftUID == nullptr || rightUID == nullptr) return leftUID == rightUID;
    // Sets with the same content that no reference leads to may be paired either way.
    return *leftUID == *rightUID || hasSame(*pair.first, left, right);
  });
}

/// The labels of the Preface that an edit has changed.
MXF::PackLabels editedLabels(const PartitionMetadata& before, const PartitionMetadata& after) {
  MXF::PackLabels labels;
  const auto *old = before.preface(), *now = after.preface();
  if (old == nullptr || now == nullptr) return labels;
  const auto pattern = MXF::operationalPatternOf(*now);
  if (pattern != MXF::operationalPatternOf(*old)) labels.operationalPattern = pattern;
  auto containers = MXF::essenceContainersOf(*now);
  if (containers != MXF::essenceContainersOf(*old)) labels.essenceContainers = std::move(containers);
  return labels;
}

class Planner {
 public:
  Planner(const EditedFile& file, const SaveOptions& options, std::optional<Types::UUID>& signedBy)
      : file_(file), options_(options), signedBy_(signedBy) {}

  SavePlan run() {
    const auto old = bytesInFile();
    auto bytes = written(file_.metadata);
    if (!isEdited(old, *bytes)) return {};
    before_ = MXF::readHeaderMetadata(file_.source, file_.dictionary, file_.partition, file_.limits);
    if (completeAndSign()) bytes = written(file_.metadata);
    auto& report = plan_.report;
    report.isSigned = options_.signature.has_value();
    report.changes = changesBetween(old, *bytes, file_.dictionary);
    report.equalValues = equalValuesOf(*before_, file_.metadata);
    report.movedTimecodes = movedTimecodesOf(*before_, file_.metadata);
    report.longValues = longValuesOf(file_.metadata);
    structure_ = MXF::readStructure(file_.source);
    if (options_.isForced) rooms_ = MXF::refuseUnsafe(file_.source, structure_, &report.unchecked);
    plan_.replacements.isForced = !report.unchecked.empty();
    planMetadata(bytes);
    if (options_.completesEdits) planPacks();
    planFindings();
    return std::move(plan_);
  }

 private:
  bool isEdited(const Bytes& old, const Bytes& bytes) const {
    return !changesBetween(old, bytes, file_.dictionary).isNone();
  }

  bool completeAndSign() {
    if (options_.completesEdits) plan_.report.followed = completeEdit(*before_, file_.metadata);
    if (options_.signature) signedBy_ = sign(*before_, file_.metadata, *options_.signature, signedBy_);
    return !plan_.report.followed.empty() || options_.signature;
  }

  Bytes bytesInFile() const {
    file_.source.seek(file_.partition.packEnd);
    Bytes bytes(static_cast<std::size_t>(file_.end - file_.partition.packEnd));
    file_.source.read(bytes.data(), bytes.size());
    return bytes;
  }

  void planMetadata(const SharedPtr<const Bytes>& bytes) {
    auto& metadata = plan_.replacements.metadata;
    metadata.emplace_back(numberOf(file_.partition, structure_), bytes);
    if (!file_.choice) planRepetitions(bytes);
    plan_.report.partitions = metadata.size();
  }

  void planRepetitions(const SharedPtr<const Bytes>& bytes) {
    Repetitions repetitions(file_.source, structure_);
    Repetition last;
    for (std::size_t i = 1; i < structure_.partitions.size(); ++i) {
      const auto& partition = structure_.partitions[i];
      if (!MXF::hasMetadata(partition) || (options_.isForced && !rooms_[i])) continue;
      const auto like = repetitions.like(i);
      if (like == Repetitions::Like::kHeader) {
        plan_.replacements.metadata.emplace_back(i, bytes);
        continue;
      }
      if (like == Repetitions::Like::kNone) last = repetitionOf(partition);
      if (last.bytes == nullptr) {
        plan_.report.unedited.push_back({i, last.reason, isBetter(i)});
      } else {
        plan_.replacements.metadata.emplace_back(i, last.bytes);
      }
    }
  }

  bool isBetter(std::size_t number) const {
    const auto rank = [&](std::size_t i) { return MXF::rankOf(structure_.partitions[i].pack.status); };
    return number == MXF::bestPartition(structure_) && rank(number) > rank(0);
  }

  /// The edited metadata of another partition, or why it has none.
  struct Repetition {
    SharedPtr<const Bytes> bytes = nullptr;
    UneditedPartition::Reason reason = UneditedPartition::Reason::kOtherMetadata;  // where there are no bytes
  };
  Repetition repetitionOf(const MXF::PartitionInfo& partition) {
    const auto other = MXF::readHeaderMetadata(file_.source, file_.dictionary, partition, file_.limits);
    if (!comparePartitions(*before_, *other).isEqual()) return {nullptr, UneditedPartition::Reason::kOtherMetadata};
    if (!haveSameInstanceUIDs(*before_, *other)) return {nullptr, UneditedPartition::Reason::kOtherInstanceUIDs};
    reserveDarkTags(*other);
    const auto rejected = merge(*other, *before_, {file_.metadata}, Scope(*before_)).rejected;
    if (!rejected.empty()) return {nullptr, UneditedPartition::Reason::kUnidentifiedSets};
    return {written(*other)};
  }

  void planPacks() {
    auto labels = editedLabels(*before_, file_.metadata);
    if (labels.isEmpty()) return;
    if (file_.choice) labels.partition = plan_.replacements.metadata.front().partition;
    for (std::size_t i = 0; i < structure_.partitions.size(); ++i) {
      auto pack = structure_.partitions[i].pack;
      if (structure_.partitions[i].damaged) continue;
      if (i == labels.partition.value_or(i) && MXF::relabel(pack, labels)) plan_.report.packs.push_back(i);
    }
    plan_.replacements.labels = std::move(labels);
  }

  /// What the file will break that it does not break now.
  void planFindings() {
    const auto before = readState(file_.source, file_.dictionary, file_.limits);
    auto findings = check(stateAfter(before));
    // Nearly all files keep all rules.
    if (!findings.empty()) findings = newFindings(check(before), std::move(findings), changedProperties());
    plan_.report.findings = std::move(findings);
  }

  IsChanged changedProperties() const {
    std::set<std::pair<std::string, std::string>> changed;
    for (const auto& set : editedSets(*before_, file_.metadata)) {
      for (const auto& [old, now] : set.properties) {
        const auto* definition = (now == nullptr ? old : now)->metaAttribute().metaElement();
        if (definition != nullptr) changed.emplace(set.after->fullName(), definition->symbol());
      }
    }
    return [changed = std::move(changed)](const std::string& set, const std::string& property) {
      return changed.count({set, property}) != 0;
    };
  }

  FileState stateAfter(const FileState& before) const {
    FileState after = before;
    std::map<const Bytes*, SharedPtr<const PartitionMetadata>> read;
    for (const auto& replacement : plan_.replacements.metadata) {
      auto& metadata = read[replacement.bytes.get()];
      if (metadata == nullptr) metadata = readMetadata(*replacement.bytes, file_.dictionary, file_.limits);
      after.partitions[replacement.partition].metadata = metadata;
    }
    for (const auto number : plan_.report.packs) {
      MXF::relabel(after.partitions[number].info.pack, plan_.replacements.labels);
    }
    return after;
  }

  const EditedFile& file_;
  const SaveOptions& options_;
  std::optional<Types::UUID>& signedBy_;
  std::unique_ptr<PartitionMetadata> before_;
  MXF::FileStructure structure_;
  std::vector<std::optional<MXF::MetadataRoom>> rooms_;  // of a forced change
  SavePlan plan_;
};

}  // namespace

SavePlan planSave(const EditedFile& file, const SaveOptions& options, std::optional<Types::UUID>& signedBy) {
  return Planner(file, options, signedBy).run();
}

std::size_t numberOf(const MXF::PartitionInfo& partition, const MXF::FileStructure& structure) {
  if (const auto number = MXF::partitionAt(structure, partition.offset)) return *number;
  Exceptions::raise<Exceptions::IOError>("the partition at byte offset {} is not among those that the file lists",
                                         partition.offset);
}

/// Properties get none of the local tags used in dark sets.
void reserveDarkTags(PartitionMetadata& metadata) {
  auto& tags = metadata.partitionDictionary();
  for (const auto& entry : metadata.entries()) {
    const EntryView view(entry);
    if (!view.isDark()) continue;
    const auto* octets = reinterpret_cast<const uint8*>(view.octets.data());
    Vantor::reserveDarkTags(*view.key, octets, view.octets.size(), tags);
  }
}

std::vector<Finding> refusedFindings(const SaveReport& report, const SaveOptions& options) {
  std::vector<Finding> refused;
  std::copy_if(
      report.findings.begin(), report.findings.end(), std::back_inserter(refused), [&](const Finding& finding) {
        return finding.rule->severity != Severity::kNote && options.ignoredRules.count(finding.rule->code) == 0;
      });
  return refused;
}

namespace {

std::string messageOf(const std::vector<Finding>& findings) {
  const auto& first = findings.front();
  const std::string place =
      (first.set.empty() ? "" : first.set + ": ") + (first.property.empty() ? "" : first.property + ": ");
  const auto others = findings.size() - 1;
  return "the edit would make the file worse: " + place + describe(first) +
         (others == 0 ? "" : ", and " + std::to_string(others) + " more");
}

}  // namespace

FileGetsWorse::FileGetsWorse(std::vector<Finding> findings)
    : InvalidFormat(messageOf(findings), Exceptions::Format("").file(), __LINE__), findings_(std::move(findings)) {}

}  // namespace Vantor::Edit
