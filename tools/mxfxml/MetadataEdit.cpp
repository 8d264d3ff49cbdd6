#include "MetadataEdit.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "CommonOptions.h"
#include "Core/Comparison/DocumentDifference.h"
#include "Core/Comparison/PartitionComparison.h"
#include "Core/Comparison/SetPairing.h"
#include "Core/DataIO/Memory.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "ErrorText.h"
#include "Interruption.h"
#include "LongValues.h"
#include "MetadataRepetitions.h"
#include "StoppedChange.h"

namespace Vantor::Tool {

namespace {

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

const Types::UUID* prefaceUID(const PartitionMetadata& partition) {
  const auto* preface = partition.preface();
  return preface == nullptr ? nullptr : preface->instanceUID();
}

/// Whether a partition has a set with the InstanceUID of another, which has one.
bool has(const PartitionMetadata& partition, const MetadataSet& set) {
  return !partition.findByInstanceUID(*set.instanceUID()).empty();
}

bool sharesASet(const PartitionMetadata& left, const PartitionMetadata& right) {
  return std::any_of(left.sets().begin(), left.sets().end(),
                     [&](const MetadataSet* set) { return set->instanceUID() != nullptr && has(right, *set); });
}

/// Such a set would be added to those that are there.
void requireInstanceUIDs(const LosslessXML::Import& import) {
  for (const auto& diagnostic : import.diagnostics) {
    if (diagnostic.kind != LosslessXML::Diagnostic::Kind::kInvalidInstanceUID &&
        diagnostic.kind != LosslessXML::Diagnostic::Kind::kMissingInstanceUID) {
      continue;
    }
    throw CommandError("a set whose InstanceUID cannot be read cannot be told from a new one; nothing is written");
  }
}

/// A document of another file would replace everything.
void requireSameMetadata(const PartitionMetadata& edited, const PartitionMetadata& original) {
  if (edited.entries().empty()) throw CommandError("the document has no set that could be read; nothing is written");
  const auto *found = prefaceUID(edited), *expected = prefaceUID(original);
  if (found != nullptr && expected != nullptr && !(*found == *expected)) {
    throw CommandError("the document is not one of these metadata: the InstanceUID of its Preface is not " +
                       expected->dottedText() + "; edit an export of this file and partition");
  }
  if (!edited.sets().empty() && !sharesASet(edited, original)) {
    throw CommandError(
        "the document is not one of these metadata: no InstanceUID in it is one of theirs; edit an export of this file "
        "and partition");
  }
}

/// The file, unless a change of it was stopped.
const Path& withoutStoppedChange(const Path& file) {
  refuseStoppedChange(file);
  return file;
}

/// Whether the other partition has the same set under the same InstanceUID.
bool hasSame(const MetadataSet& set, const PartitionMetadata& partition, const PartitionMetadata& other) {
  const auto* found = DocumentDifference::findOnly(other, *set.instanceUID());
  return found != nullptr &&
         DocumentDifference::areSame(set, partition.partitionDictionary(), *found, other.partitionDictionary());
}

/// Whether the sets of two partitions that say the same have the same InstanceUIDs.
bool haveSameIdentifiers(const PartitionMetadata& left, const PartitionMetadata& right) {
  const SetPairing pairing(left, right);
  const auto& pairs = pairing.setPairs();
  return std::all_of(pairs.begin(), pairs.end(), [&](const SetPairing::SetPair& pair) {
    const auto *leftUID = pair.first->instanceUID(), *rightUID = pair.second->instanceUID();
    if (leftUID == nullptr || rightUID == nullptr) return leftUID == rightUID;
    // Of sets that say the same and that nothing refers to, any may be paired with any.
    return *leftUID == *rightUID || hasSame(*pair.first, left, right);
  });
}

/// The sets that strong references of a partition lead to.
std::unordered_set<Types::UUID> ownedBy(const PartitionMetadata& partition) {
  std::vector<Types::UUID> targets;
  for (const MetadataSet* set : partition.sets()) {
    for (const Element& property : *set) property.appendTargets({false}, targets);
  }
  return {targets.begin(), targets.end()};
}

using Diagnostic = LosslessXML::Diagnostic;

/// A diagnostic without lines: an edit moves them, and a document in one line has none to tell apart.
std::string nameOf(const Diagnostic& one) {
  std::string name = std::to_string(static_cast<int>(one.kind)) + "\n" + one.place.set + "\n" + one.place.property;
  if (one.kind == Diagnostic::Kind::kDifferentCopy) return name;
  for (const auto& argument : one.arguments) name += "\n" + argument;
  return name;
}

/// What is wrong with the unedited document is so in the file, or because of the form of the document. A set with an
/// InstanceUID that is none would be added to those that are there all the same.
void dropKnown(const std::vector<Diagnostic>& known, std::vector<Diagnostic>& diagnostics) {
  std::unordered_set<std::string> names;
  for (const auto& one : known) names.insert(nameOf(one));
  const auto isKnown = [&](const Diagnostic& one) {
    return one.kind != Diagnostic::Kind::kInvalidInstanceUID && names.count(nameOf(one)) != 0;
  };
  diagnostics.erase(std::remove_if(diagnostics.begin(), diagnostics.end(), isKnown), diagnostics.end());
}

/// Which of the partitions reading the metadata takes.
MXF::PartitionInfo partitionIn(const Path& file, const MXF::PartitionChoice& choice) {
  DataIO::File::FileDataSource source(file);
  return MXF::findPartition(source, choice);
}

}  // namespace

MetadataEdit::MetadataEdit(const Path& file, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                           SharedPtr<const MetaMetadata::Dictionary> plain,
                           std::optional<MXF::PartitionChoice> partition)
    : file_(withoutStoppedChange(file)),
      state_(DataIO::File::stateOf(file_)),
      dictionary_(std::move(dictionary)),
      plain_(std::move(plain)),
      partition_(partition),
      structure_(MXF::readStructure(file_)),
      chosen_(partitionIn(file_, partition_.value_or(MXF::PartitionChoice()))),
      forms_(file_, chosen_, dictionary_, plain_) {
  forms_.requireReadable();
}

void MetadataEdit::takeForm(const PartitionMetadata& edited, LosslessXML::Import& import, DocumentForms::Scope scope) {
  scope_ = scope;
  forms_.setScope(scope);
  unedited_ = forms_.choose(contentOf(edited, import), import);
  dropKnown(unedited_.document->import.diagnostics, import.diagnostics);
}

void MetadataEdit::apply(const PartitionMetadata& edited, const LosslessXML::Import& import, Origin origin) {
  requireInstanceUIDs(import);
  requireSameMetadata(edited, metadata());
  const auto content = contentOf(edited, import);
  const bool isOfKnownPart = edited.preface() != nullptr || unedited_.start != nullptr;
  rules_.mayRemove = import.diagnostics.empty() && isOfKnownPart;
  const auto number = numberOfPartition();
  if (auto bytes = merge(metadata(), content, summary_)) replacements_.emplace_back(number, std::move(bytes));
  requireClearScope(edited);
  tellPart(edited);
  if (isOfKnownPart) {
    tellKept("parts of it could not be read", "; --strict refuses such documents");
  } else {
    tellKept("it has no Preface and starts with a set that is new", "");
  }
  tellUntaken();
  if (!partition_) replaceRepetitions(content, import, origin);
}

std::size_t MetadataEdit::numberOfPartition() const {
  if (const auto number = MXF::partitionAt(structure_, chosen_.offset)) return *number;
  const auto choice = partition_.value_or(MXF::PartitionChoice());
  throw CommandError(describe(choice) + " at byte offset " + std::to_string(chosen_.offset) +
                     " is not among the partitions that the file lists");
}

SharedPtr<const Bytes> MetadataEdit::merge(const PartitionMetadata& original, const DocumentContent& edited,
                                           MergeSummary& done) {
  const auto shown = unedited_.document->content(), full = forms_.full()->content();
  std::unique_ptr<PartitionMetadata> merged;
  try {
    merged = mergeEdits(original, {shown, full}, edited, rules_, &done);
  } catch (const UnclearEdit& error) {
    throw CommandError(std::string(error.what()) + "; edit an export of all sets with --flat");
  } catch (const Exceptions::InvalidFormat& error) {
    throw CommandError(error.message());
  }
  if (done.isUnchanged()) return nullptr;
  if (replacements_.empty()) remarks_ = warningsOfLongValues(*merged);
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(*merged, MXF::SetOrder::kFile, sink);
  return std::make_shared<const Bytes>(sink.take());
}

void MetadataEdit::replaceRepetitions(const DocumentContent& edited, const LosslessXML::Import& import, Origin origin) {
  MetadataRepetitions repetitions(file_, structure_);
  const SharedPtr<const Bytes> ofHeader = replacements_.empty() ? nullptr : replacements_.front().bytes;
  Repetition last;
  for (std::size_t i = 1; i < structure_.partitions.size(); ++i) {
    const auto& partition = structure_.partitions[i];
    if (partition.damaged || partition.pack.headerByteCount == 0) continue;
    const auto like = repetitions.like(i);
    if (like == MetadataRepetitions::Like::kNone) last = repetitionIn(i, edited, import, origin);
    const Repetition found = like == MetadataRepetitions::Like::kHeader ? Repetition{ofHeader} : last;
    if (found.bytes != nullptr) replacements_.emplace_back(i, found.bytes);
    if (!found.difference.empty()) tellOther(i, found.difference, found.help);
  }
}

MetadataEdit::Repetition MetadataEdit::repetitionIn(std::size_t partition, const DocumentContent& edited,
                                                    const LosslessXML::Import& import, Origin origin) {
  MergeSummary repeated;
  DocumentForms other(file_, structure_.partitions[partition], dictionary_, plain_);
  if (!comparePartitions(metadata(), other.original()).isEqual()) {
    if (origin == Origin::kGuessed) requireCloserToHeader(other, partition, edited, import);
    return {nullptr, "has other metadata than the header partition", "edits them"};
  }
  if (!haveSameIdentifiers(metadata(), other.original())) {
    return {nullptr, "has the metadata of the header partition under other InstanceUIDs",
            "edits them, in an export of them"};
  }
  return {merge(other.original(), edited, repeated)};
}

void MetadataEdit::tellOther(std::size_t partition, const std::string& difference, const std::string& help) {
  const auto number = std::to_string(partition);
  remarks_.push_back("partition " + number + " " + difference + ", and keeps them; --partition " + number + " " + help);
}

void MetadataEdit::requireCloserToHeader(DocumentForms& other, std::size_t partition, const DocumentContent& edited,
                                         const LosslessXML::Import& import) const {
  if (unedited_.edits == 0 || !other.hasPreface()) return;
  other.setScope(scope_);
  const auto choice = other.choose(edited, import);
  const auto edits = choice.edits;
  if (edits > unedited_.edits) return;
  const bool isSame = countEdits(choice.document->content(), unedited_.document->content()) == 0;
  if (edits == unedited_.edits && isSame) return;  // nothing in the document is otherwise in the other partition
  const auto number = std::to_string(partition);
  throw CommandError("the document has " + counted(edits, "difference") + " from an export of partition " + number +
                     ", and " + std::to_string(unedited_.edits) +
                     " from one of the header partition; tell which it was, with --partition " + number +
                     " or --partition header");
}

std::size_t MetadataEdit::countLeftOut(const PartitionMetadata& edited) {
  const auto& full = *forms_.full();
  const auto unnamed = full.content().unnamed;
  const auto& sets = full.metadata->sets();
  return static_cast<std::size_t>(std::count_if(sets.begin(), sets.end(), [&](const MetadataSet* set) {
    if (set->instanceUID() == nullptr || unnamed.count(set) != 0) return false;
    return !has(*unedited_.document->metadata, *set) && !has(edited, *set);
  }));
}

/// A set that nothing in the document refers to belongs to what an export of structural sets leaves out: to take it out
/// and keep that may be half of what was meant.
void MetadataEdit::requireClearScope(const PartitionMetadata& edited) {
  if (scope_ != DocumentForms::Scope::kGuessed || !unedited_.isStructuralOnly || summary_.removedSets == 0) return;
  const auto& shown = *unedited_.document->metadata;
  const auto owned = ownedBy(shown);
  const bool isClear = std::all_of(shown.sets().begin(), shown.sets().end(), [&](const MetadataSet* set) {
    return set->instanceUID() == nullptr || owned.count(*set->instanceUID()) != 0 || has(edited, *set);
  });
  if (isClear) return;
  const auto count = countLeftOut(edited);
  throw CommandError("the document is one of structural sets, in which case " + counted(count, "set") +
                     " that it leaves out would be kept, or one of all sets, of which " +
                     (count == 1 ? "it was" : "they were") +
                     " taken out; tell which it was, with --structural-only or --whole");
}

void MetadataEdit::tellPart(const PartitionMetadata& edited) {
  if (unedited_.start == nullptr && !unedited_.isStructuralOnly) return;
  const auto count = countLeftOut(edited);
  if (count == 0) return;
  const auto* start = unedited_.start;
  const std::string kind = unedited_.isStructuralOnly ? "is one of structural sets" : "has no Preface";
  const bool isGuessed = start == nullptr && scope_ == DocumentForms::Scope::kGuessed;
  remarks_.push_back("the document " + kind + (start == nullptr ? "" : " and starts with the " + start->name()) + "; " +
                     counted(count, "set") + " that such a document leaves out " + (count == 1 ? "is" : "are") +
                     " kept" + (isGuessed ? "; --whole takes out what the document lacks" : ""));
}

void MetadataEdit::tellKept(const std::string& reason, const std::string& help) {
  constexpr std::size_t kMostNamed = 5;
  const auto& kept = summary_.kept;
  if (kept.empty()) return;
  const auto sets = static_cast<std::size_t>(
      std::count_if(kept.begin(), kept.end(), [](const MergePlace& place) { return place.property.empty(); }));
  const auto properties = kept.size() - sets;
  std::string text = sets == 0 ? "" : counted(sets, "set");
  if (sets != 0 && properties != 0) text += " and ";
  if (properties != 0) text += std::to_string(properties) + (properties == 1 ? " property" : " properties");
  text += std::string(" that the document lacks ") + (kept.size() == 1 ? "is" : "are") + " kept, since " + reason;
  remarks_.push_back(text + (kept.size() > kMostNamed ? help : ""));
  if (kept.size() > kMostNamed) return;
  for (const auto& place : kept) {
    remarks_.push_back("kept: the " + (place.property.empty() ? "" : place.property + " of the ") + place.set);
  }
}

void MetadataEdit::tellUntaken() {
  for (const auto& untaken : summary_.untaken) {
    remarks_.push_back("an edit of the " + untaken.set + " was not taken: " + untaken.reason);
  }
}

std::string MetadataEdit::summary() const {
  if (summary_.isUnchanged()) return "nothing is edited";
  std::string text = counted(summary_.changedSets, "set") + " changed";
  text += " (" + std::to_string(summary_.changedProperties) +
          (summary_.changedProperties == 1 ? " property" : " properties") + "), ";
  text += std::to_string(summary_.addedSets) + " added, " + std::to_string(summary_.removedSets) +
          " removed; written to " + counted(replacements_.size(), "partition");
  return text;
}

DataIO::File::Durability MetadataEdit::writeInPlace(const MXF::Progress& progress) const {
  constexpr auto kDone = DataIO::File::Durability::kSurvivesPowerFailure;
  if (replacements_.empty()) return kDone;
  Interruption interruption;
  if (MXF::fits(file_, state_, replacements_)) {
    MXF::replaceInPlace(file_, state_, replacements_);
    return kDone;
  }
  return MXF::rewrite(file_, state_, replacements_, file_, interruption.stopping(progress));
}

DataIO::File::Durability MetadataEdit::writeCopy(const Path& target, const MXF::Progress& progress) const {
  Interruption interruption;
  return MXF::rewrite(file_, state_, replacements_, target, interruption.stopping(progress));
}

}  // namespace Vantor::Tool
