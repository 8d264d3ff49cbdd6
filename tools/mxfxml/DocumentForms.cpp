#include "DocumentForms.h"

#include <algorithm>
#include <limits>

#include "Core/KLV/Keys.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "DocumentSize.h"
#include "ErrorText.h"
#include "XMLBuilder.h"
#include "XMLUtils/EncodingType.h"
#include "XMLUtils/UnicodeString.h"

namespace Vantor::Tool {

namespace {

/// The set of a partition that has the InstanceUID of one of another; null when there is none.
const MetadataSet* counterpartOf(const MetadataSet& set, const PartitionMetadata& partition) {
  if (set.instanceUID() == nullptr) return nullptr;
  const auto& found = partition.findByInstanceUID(*set.instanceUID());
  return found.empty() ? nullptr : found.front();
}

/// In which of the two forms a document can be: the one that most of its references have.
std::vector<bool> nestingsOf(const XML2Partition::ReferenceForms& references) {
  if (references.nested == references.pointers) return {false, true};
  return {references.nested > references.pointers};
}

}  // namespace

DocumentContent contentOf(const PartitionMetadata& metadata, const XML2Partition::LosslessImport& import) {
  DocumentContent content{&metadata};
  for (const auto& unnamed : import.unnamed) content.unnamed.insert(unnamed.set);
  for (const MetadataSet* set : metadata.sets()) {
    // A dark group is told by its octets then.
    const bool isDark = dynamic_cast<const DarkParsedGroup*>(set) != nullptr;
    if (set->instanceUID() == nullptr && !isDark) content.unnamed.insert(set);
  }
  for (const auto& unread : import.unread) {
    const auto* instanceUID = unread.set->instanceUID();
    if (instanceUID != nullptr) content.unread.insert(DocumentContent::keyOf(*instanceUID, unread.property));
  }
  return content;
}

DocumentForms::DocumentForms(Path file, const MXF::PartitionChoice& partition,
                             SharedPtr<const MetaMetadata::Dictionary> dictionary,
                             SharedPtr<const MetaMetadata::Dictionary> plain)
    : file_(std::move(file)),
      partition_(partition),
      dictionary_(std::move(dictionary)),
      plain_(std::move(plain)),
      original_(MXF::readHeaderMetadata(file_, dictionary_, partition)) {}

bool DocumentForms::hasPreface() const { return original_->preface() != nullptr; }

PartitionMetadata& DocumentForms::plainOriginal() {
  if (plainOriginal_ == nullptr) plainOriginal_ = MXF::readHeaderMetadata(file_, plain_, partition_);
  return *plainOriginal_;
}

std::shared_ptr<const ReadDocument> DocumentForms::full() {
  if (full_ == nullptr) full_ = make({});
  return full_;
}

std::shared_ptr<const ReadDocument> DocumentForms::make(const Form& form) {
  PartitionMetadata& partition = form.isPlain ? plainOriginal() : *original_;
  const auto* start = form.start == nullptr ? partition.preface() : counterpartOf(*form.start, partition);
  if (start == nullptr) throw CommandError("the metadata in the file have no Preface");
  wstring document;
  XMLBuilder::partition2XML(&partition, start, form.isNested, form.isStructuralOnly, XMLUtils::EncodingType::kUTF8,
                            document);
  const XMLUtils::UnicodeString text(document);
  auto read = std::make_shared<ReadDocument>(dictionary_);
  read->import = XML2Partition::importLosslesslyFromBuffer(reinterpret_cast<const uint8*>(text.utf16()),
                                                           documentSize(text.utf16Size()), read->metadata.get());
  return read;
}

std::vector<DocumentForms::Form> DocumentForms::formsOf(bool isNested, const MetadataSet* start) const {
  const auto& sets = original_->sets();
  const bool hasOthers = std::any_of(sets.begin(), sets.end(),
                                     [](const MetadataSet* set) { return !KLV::isStructuralMetadataSet(set->key()); });
  std::vector<Form> forms;
  for (const bool isPlain : {false, true}) {
    if (isPlain && plain_ == nullptr) continue;
    forms.push_back({isPlain, isNested, false, start});
    if (hasOthers) forms.push_back({isPlain, isNested, true, start});
  }
  return forms;
}

/// A document without a Preface starts from the first set in it, as far as that is one of the original. One that has a
/// Preface may start from another set, too, which refers to it or stands beside such a set.
std::vector<const MetadataSet*> DocumentForms::startsOf(const DocumentContent& edited,
                                                        const XML2Partition::LosslessImport& import) const {
  std::vector<const MetadataSet*> starts;
  const auto* first = import.sets.empty() ? nullptr : counterpartOf(*import.sets.front(), *original_);
  if (first == original_->preface()) first = nullptr;
  if (edited.partition->preface() != nullptr || first == nullptr) starts.push_back(nullptr);
  if (first != nullptr) starts.push_back(first);
  return starts;
}

DocumentForms::Choice DocumentForms::choose(const DocumentContent& edited,
                                            const XML2Partition::LosslessImport& import) {
  Choice best{nullptr, std::numeric_limits<std::size_t>::max()};
  for (const auto* start : startsOf(edited, import)) {
    for (const bool isNested : nestingsOf(import.references)) {
      for (const auto& form : formsOf(isNested, start)) {
        if (best.edits == 0) return best;
        const auto document = form.isFull() ? full() : make(form);
        const auto edits = countEdits(document->content(), edited);
        if (edits < best.edits) best = {document, edits, start, form.isStructuralOnly};
      }
    }
  }
  return best;
}

}  // namespace Vantor::Tool
