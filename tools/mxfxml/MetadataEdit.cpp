#include "MetadataEdit.h"

#include <algorithm>

#include "CommonOptions.h"
#include "Core/DataIO/Memory.h"
#include "Core/DataIO/UndoJournal.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/MXF/HeaderMetadataWriter.h"
#include "Core/Metadata/PartitionComparison.h"
#include "Core/Metadata/StructuralMetadataKeys.h"
#include "Core/Platform/Strings.h"
#include "DocumentSize.h"
#include "ErrorText.h"
#include "Interruption.h"
#include "LongValues.h"
#include "XMLBuilder.h"
#include "XMLUtils/EncodingType.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

/// What a document of a partition gives that nobody has edited.
std::unique_ptr<PartitionMetadata> throughXML(PartitionMetadata& partition, bool isNested, bool isStructuralOnly,
                                              const SharedPtr<const MetaMetadata::Dictionary>& dictionary) {
  wstring document;
  XMLBuilder::partition2XML(&partition, isNested, isStructuralOnly, XMLUtils::EncodingType::kUTF8, document);
  if (document.empty()) throw CommandError("the metadata in the file have no Preface");
  const XMLUtils::UnicodeString text(document);
  auto copy = std::make_unique<PartitionMetadata>(dictionary);
  XML2Partition::importLosslesslyFromBuffer(reinterpret_cast<const uint8*>(text.utf16()),
                                            documentSize(text.utf16Size()), copy.get());
  return copy;
}

std::string counted(std::size_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

bool hasPreface(const PartitionMetadata& partition) {
  return !partition.find(Structural::StructuralMetadataKeys::preface()).empty();
}

const Types::UUID* prefaceUID(const PartitionMetadata& partition) {
  const auto& prefaces = partition.find(Structural::StructuralMetadataKeys::preface());
  return prefaces.empty() ? nullptr : prefaces.front()->instanceUID();
}

std::string dotted(const Types::UUID& identifier) { return Utils::wstringToString(identifier.toString(kDottedForm)); }

bool sharesASet(const PartitionMetadata& left, const PartitionMetadata& right) {
  return std::any_of(left.sets().begin(), left.sets().end(), [&](const MetadataSet* set) {
    return set->instanceUID() != nullptr && !right.findByInstanceUID(*set->instanceUID()).empty();
  });
}

/// Such a set would be added to those that are there.
void requireInstanceUIDs(const XML2Partition::LosslessImport& import) {
  for (const auto& diagnostic : import.diagnostics) {
    if (diagnostic.kind != XML2Partition::ImportDiagnostic::Kind::kUnusableIdentifier) continue;
    throw CommandError("a set whose InstanceUID cannot be read cannot be told from a new one; nothing is written");
  }
}

/// A document of another file would replace everything.
void requireSameMetadata(const PartitionMetadata& edited, const PartitionMetadata& original) {
  if (edited.entries().empty()) throw CommandError("the document has no set that could be read; nothing is written");
  const auto *found = prefaceUID(edited), *expected = prefaceUID(original);
  if (found != nullptr && expected != nullptr && !(*found == *expected)) {
    throw CommandError("the document is not one of these metadata: the InstanceUID of its Preface is not " +
                       dotted(*expected) + "; edit an export of this file and partition");
  }
  if (!edited.sets().empty() && !sharesASet(edited, original)) {
    throw CommandError(
        "the document is not one of these metadata: no InstanceUID in it is one of theirs; edit an export of this file "
        "and partition");
  }
}

}  // namespace

MetadataEdit::MetadataEdit(Path file, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                           const SharedPtr<const MetaMetadata::Dictionary>& plain,
                           std::optional<MXF::PartitionChoice> partition)
    : file_(std::move(file)), dictionary_(std::move(dictionary)), partition_(partition) {
  if (DataIO::File::hasJournal(file_)) {
    throw CommandError("a change of the file was stopped half-way; mxfxml recover " + file_.u8string() + " undoes it");
  }
  state_ = DataIO::File::stateOf(file_);
  const auto choice = partition_.value_or(MXF::PartitionChoice());
  structure_ = MXF::readStructure(file_);
  original_ = MXF::readHeaderMetadata(file_, dictionary_, choice);
  for (const bool isNested : {false, true}) forms_.push_back(throughXML(*original_, isNested, false, dictionary_));
  if (plain == nullptr) return;
  const auto other = MXF::readHeaderMetadata(file_, plain, choice);
  for (const bool isNested : {false, true}) forms_.push_back(throughXML(*other, isNested, false, dictionary_));
}

void MetadataEdit::addStructuralForms(const PartitionMetadata& edited) {
  const auto has = [](const PartitionMetadata& partition, const MetadataSet& set) {
    return set.instanceUID() != nullptr && !partition.findByInstanceUID(*set.instanceUID()).empty();
  };
  const auto& sets = forms_.front()->sets();
  if (std::all_of(sets.begin(), sets.end(), [&](const MetadataSet* set) { return has(edited, *set); })) return;
  auto flat = throughXML(*original_, false, true, dictionary_);
  auto nested = throughXML(*original_, true, true, dictionary_);
  const auto isLeftOut = [&](const MetadataSet* set) { return !has(*flat, *set) || !has(*nested, *set); };
  // A document of all sets has at least one that no structural form has, unless they were all taken out.
  const auto isBeyondForms = [&](const MetadataSet* set) {
    return !has(*flat, *set) && !has(*nested, *set) && has(edited, *set);
  };
  if (std::none_of(sets.begin(), sets.end(), isLeftOut) || std::any_of(sets.begin(), sets.end(), isBeyondForms)) return;
  forms_.push_back(std::move(flat));
  forms_.push_back(std::move(nested));
}

void MetadataEdit::apply(const PartitionMetadata& edited, const XML2Partition::LosslessImport& import) {
  requireInstanceUIDs(import);
  requireSameMetadata(edited, *original_);
  for (const auto& unread : import.unread) {
    if (const auto* instanceUID = unread.set->instanceUID()) {
      rules_.untouched.insert(MergeRules::keyOf(*instanceUID, unread.property));
    }
  }
  rules_.mayRemove = import.diagnostics.empty() && hasPreface(edited);
  addStructuralForms(edited);
  replace(numberOfPartition(), *original_, edited, &summary_);
  if (!partition_) replaceRepetitions(edited);
}

std::size_t MetadataEdit::numberOfPartition() const {
  const auto choice = partition_.value_or(MXF::PartitionChoice());
  if (choice.kind() == MXF::PartitionChoice::Kind::kNumber) return choice.number();
  if (choice.kind() == MXF::PartitionChoice::Kind::kHeader) return 0;
  const auto& all = structure_.partitions;
  const auto footer = std::find_if(all.begin(), all.end(), [](const MXF::PartitionInfo& partition) {
    return partition.pack.kind == KLV::PartitionKind::kFooter;
  });
  return static_cast<std::size_t>(footer - all.begin());
}

void MetadataEdit::replace(std::size_t partition, const PartitionMetadata& original, const PartitionMetadata& edited,
                           MergeSummary* summary) {
  MergeSummary done;
  std::vector<const PartitionMetadata*> before;
  for (const auto& form : forms_) before.push_back(form.get());
  const auto merged = mergeEdits(original, before, edited, rules_, &done);
  if (summary != nullptr) *summary = done;
  if (done.isUnchanged()) return;
  if (summary != nullptr) remarks_ = warningsOfLongValues(*merged);
  DataIO::Memory::MemoryDataSink sink;
  MXF::writeHeaderMetadata(*merged, MXF::SetOrder::kFile, sink);
  replacements_.push_back({partition, Bytes(sink.rawBuffer(), sink.rawBuffer() + sink.serializedSize())});
}

void MetadataEdit::replaceRepetitions(const PartitionMetadata& edited) {
  for (std::size_t i = 1; i < structure_.partitions.size(); ++i) {
    const auto& partition = structure_.partitions[i];
    if (partition.damaged || partition.pack.headerByteCount == 0) continue;
    const auto metadata =
        MXF::readHeaderMetadata(file_, dictionary_, MXF::PartitionChoice::number(static_cast<uint32>(i)));
    if (comparePartitions(*original_, *metadata).isEqual()) {
      replace(i, *metadata, edited, nullptr);
    } else {
      remarks_.push_back("partition " + std::to_string(i) +
                         " has other metadata than the header partition, and keeps them; --partition " +
                         std::to_string(i) + " edits them");
    }
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

void MetadataEdit::writeInPlace(const MXF::Progress& progress) const {
  if (replacements_.empty()) return;
  Interruption interruption;
  if (MXF::fits(file_, state_, replacements_)) return MXF::replaceInPlace(file_, state_, replacements_);
  MXF::rewrite(file_, state_, replacements_, file_, interruption.stopping(progress));
}

void MetadataEdit::writeCopy(const Path& target, const MXF::Progress& progress) const {
  Interruption interruption;
  MXF::rewrite(file_, state_, replacements_, target, interruption.stopping(progress));
}

}  // namespace Vantor::Tool
