#include "DocumentForms.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

#include "Core/Comparison/DocumentDifference.h"
#include "Core/KLV/Keys.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
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

/// Whether a set of an edited document has a property as a whole document has it and a part of that leaves it out.
bool hasLeftOutProperty(const MetadataSet& edited, const PartitionDictionary& editedTags, const MetadataSet& whole,
                        const PartitionDictionary& wholeTags, const MetadataSet& part,
                        const PartitionDictionary& partTags) {
  std::unordered_set<const Element*> same;
  for (const auto& pair : pairProperties(edited, editedTags, whole, wholeTags)) {
    if (pair.left != nullptr && DocumentDifference::isSame(pair.left, pair.right)) same.insert(pair.right);
  }
  const auto pairs = pairProperties(part, partTags, whole, wholeTags);
  return std::any_of(pairs.begin(), pairs.end(),
                     [&same](const PropertyPair& pair) { return pair.left == nullptr && same.count(pair.right) != 0; });
}

/// The same for a set that all three may have.
bool hasLeftOut(const MetadataSet& whole, const PartitionMetadata& wholeSets, const PartitionMetadata& partSets,
                const PartitionMetadata& editedSets) {
  using DocumentDifference::findOnly;
  if (whole.instanceUID() == nullptr) return false;
  const auto* edited = findOnly(editedSets, *whole.instanceUID());
  if (edited == nullptr) return false;
  if (partSets.findByInstanceUID(*whole.instanceUID()).empty()) return true;
  const auto* part = findOnly(partSets, *whole.instanceUID());
  // Most sets are in the part as they are; to tell that takes the least time.
  return part != nullptr && part->inDefinitionOrder().size() < whole.inDefinitionOrder().size() &&
         hasLeftOutProperty(*edited, editedSets.partitionDictionary(), whole, wholeSets.partitionDictionary(), *part,
                            partSets.partitionDictionary());
}

/// Whether an edited document shows something that a whole document has and a part of that leaves out.
bool showsMore(const DocumentContent& edited, const DocumentContent& whole, const DocumentContent& part) {
  const auto& sets = whole.partition->sets();
  if (std::any_of(sets.begin(), sets.end(), [&](const MetadataSet* set) {
        return whole.unnamed.count(set) == 0 && hasLeftOut(*set, *whole.partition, *part.partition, *edited.partition);
      })) {
    return true;
  }
  const auto inEdited = DocumentDifference::darkKLVsOf(*edited.partition);
  const auto inPart = DocumentDifference::darkKLVsOf(*part.partition);
  const auto inWhole = DocumentDifference::darkKLVsOf(*whole.partition);
  return std::any_of(inWhole.begin(), inWhole.end(), [&](const DocumentDifference::DarkKLVs::value_type& dark) {
    return inPart.count(dark.first) == 0 && inEdited.count(dark.first) != 0;
  });
}

}  // namespace

DocumentContent contentOf(const PartitionMetadata& metadata, const LosslessXML::Import& import) {
  DocumentContent content{&metadata};
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

DocumentForms::DocumentForms(Path file, const MXF::PartitionInfo& partition,
                             SharedPtr<const MetaMetadata::Dictionary> dictionary,
                             SharedPtr<const MetaMetadata::Dictionary> plain)
    : file_(std::move(file)),
      partition_(partition),
      dictionary_(std::move(dictionary)),
      plain_(std::move(plain)),
      original_(MXF::readHeaderMetadata(file_, dictionary_, partition)) {}

bool DocumentForms::hasPreface() const { return original_->preface() != nullptr; }

void DocumentForms::requireReadable() const {
  for (const MetadataSet* set : original_->sets()) {
    if (set->instanceUID() == nullptr) continue;
    const auto& first = *original_->findByInstanceUID(*set->instanceUID()).front();
    if (&first == set || (set->definition() != nullptr && set->definition() == first.definition())) continue;
    throw CommandError("the metadata in the file cannot be edited: the " + first.name() + " and the " + set->name() +
                       " have one InstanceUID, " + set->instanceUID()->dottedText());
  }
}

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
  const XMLUtils::UnicodeString text(std::move(document));
  auto read = std::make_shared<ReadDocument>(dictionary_);
  requireReadable();
  const auto parsed = LosslessXML::Document::fromBytes(text.utf16(), documentSize(text.utf16Size()));
  read->import = parsed.import(*read->metadata);
  return read;
}

bool DocumentForms::hasOtherSets() const {
  const auto& sets = original_->sets();
  return std::any_of(sets.begin(), sets.end(),
                     [](const MetadataSet* set) { return !KLV::isStructuralMetadataSet(set->key()); });
}

/// A document without a Preface starts from the first set in it, as far as that is one of the original. One that has a
/// Preface may start from another set, too, which refers to it or stands beside such a set.
std::vector<const MetadataSet*> DocumentForms::startsOf(const DocumentContent& edited,
                                                        const LosslessXML::Import& import) const {
  std::vector<const MetadataSet*> starts;
  const auto* first = import.sets.empty() ? nullptr : counterpartOf(*import.sets.front(), *original_);
  if (first == original_->preface()) first = nullptr;
  if (edited.partition->preface() != nullptr || first == nullptr) starts.push_back(nullptr);
  if (first != nullptr) starts.push_back(first);
  return starts;
}

std::vector<DocumentForms::Form> DocumentForms::formsOf(const DocumentContent& edited,
                                                        const LosslessXML::Import& import) const {
  const bool isFromPreface = scope_ == Scope::kAll && edited.partition->preface() != nullptr;
  const auto starts = isFromPreface ? std::vector<const MetadataSet*>{nullptr} : startsOf(edited, import);
  std::vector<Form> forms;
  for (const auto* start : starts) {
    for (const bool isNested : {false, true}) {
      forms.push_back({false, isNested, false, start});
      if (plain_ != nullptr) forms.push_back({true, isNested, false, start});
    }
  }
  return forms;
}

bool DocumentForms::mayBeStructuralOnly(const ReadDocument& whole, const ReadDocument& part,
                                        const DocumentContent& edited, const LosslessXML::Import& import) const {
  if (scope_ == Scope::kStructural) return true;
  using Kind = LosslessXML::Diagnostic::Kind;
  const auto& all = import.diagnostics;
  const bool hasUnknown = std::any_of(all.begin(), all.end(), [&](const LosslessXML::Diagnostic& one) {
    if (one.kind != Kind::kUnknownSet && one.kind != Kind::kSetOfOtherNamespace) return false;
    if (one.arguments.at(2).empty()) return false;
    const auto& found =
        original_->findByInstanceUID(Types::UUID(Utils::stringToWstring(one.arguments[2]), kDottedForm));
    return !found.empty() && !KLV::isStructuralMetadataSet(found.front()->key());
  });
  return !hasUnknown && !showsMore(edited, whole.content(), part.content());
}

DocumentForms::Choice DocumentForms::choose(const DocumentContent& edited, const LosslessXML::Import& import) {
  Choice best{nullptr, std::numeric_limits<std::size_t>::max()};
  const auto take = [&](const std::shared_ptr<const ReadDocument>& document, const Form& form) {
    const auto edits = countEdits(document->content(), edited);
    if (edits < best.edits) best = {document, edits, form.start, form.isStructuralOnly};
  };
  const bool hasParts = hasOtherSets() && scope_ != Scope::kAll;
  for (const auto& form : formsOf(edited, import)) {
    const auto whole = documentOf(form);
    if (!hasParts || scope_ != Scope::kStructural) take(whole, form);
    if (best.edits == 0) return best;
    if (!hasParts) continue;
    const Form partForm{form.isPlain, form.isNested, true, form.start};
    const auto part = documentOf(partForm);
    if (mayBeStructuralOnly(*whole, *part, edited, import)) take(part, partForm);
  }
  return best;
}

}  // namespace Vantor::Tool
