#include "Edit/DocumentMerge.h"

#include <algorithm>
#include <unordered_set>

#include "Core/Metadata/PartitionDigest.h"
#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/UMID32.h"

namespace Vantor::Edit {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;
using Exceptions::raiseAt;
using LosslessXML::Diagnostic;

/// The package identifiers of a partition, as octets in file order.
std::vector<std::string> packagesOf(const PartitionMetadata& partition) {
  std::vector<std::string> packages;
  for (const MetadataSet* set : partition.sets()) {
    const auto* property = set->find("PackageID");
    const auto* value = property == nullptr ? nullptr : property->wireValue();
    if (value != nullptr)
      packages.emplace_back(reinterpret_cast<const char*>(value->rawBuffer()), value->encodedSize());
  }
  return packages;
}

constexpr std::size_t kMaterialNumber = 16;  // its first octet in a UMID (ST 330)

std::string umidText(const std::string& octets) {
  if (octets.size() != Types::UMID32::kSize) return "of " + std::to_string(octets.size()) + " octets";
  return Utils::wstringToString(Types::UMID32(reinterpret_cast<const uint8*>(octets.data())).toString(kDottedForm));
}

void requireSharedPackage(const PartitionMetadata& theirs, const PartitionMetadata& ours) {
  const auto ofTheirs = packagesOf(theirs), ofOurs = packagesOf(ours);
  if (ofTheirs.empty() || ofOurs.empty()) return;
  const std::unordered_set<std::string> known(ofOurs.begin(), ofOurs.end());
  if (std::any_of(ofTheirs.begin(), ofTheirs.end(), [&](const auto& one) { return known.count(one) != 0; })) return;
  raise<DocumentOfOtherFile>("the document is of another file: it has the package {}, the file has the package {}",
                             umidText(ofTheirs.front()), umidText(ofOurs.front()));
}

/// Whether the identifier has a material number. Some writers leave all but the last octet of it zero, in every file.
bool isUnique(const std::string& umid) {
  return umid.size() != Types::UMID32::kSize || umid.find_first_not_of('\0', kMaterialNumber) < umid.size() - 1;
}

/// Whether all InstanceUIDs begin with the same octets, as those of writers that number the sets of each file from 1.
bool areNumbered(const PartitionMetadata& partition) {
  constexpr std::size_t kSame = 10;
  const auto& sets = partition.sets();
  const auto differs = [&](const MetadataSet* left, const MetadataSet* right) {
    const auto *one = left->instanceUID(), *other = right->instanceUID();
    return one != nullptr && other != nullptr &&
           !std::equal(one->rawBuffer(), one->rawBuffer() + kSame, other->rawBuffer());
  };
  return std::adjacent_find(sets.begin(), sets.end(), differs) == sets.end();
}

/// InstanceUIDs prove nothing: some writers give the sets of every file the same.
void requireUniquePackage(const PartitionMetadata& theirs, const PartitionMetadata& ours) {
  const auto packages = packagesOf(theirs);
  if (packagesOf(ours).empty() || std::any_of(packages.begin(), packages.end(), isUnique)) return;
  raise<DocumentOfOtherFile>(
      "the document does not describe this state of the file, and has no package with an identifier of its own, so "
      "that it may be of another file");
}

void requireSharedSet(const PartitionMetadata& theirs, const PartitionMetadata& ours) {
  const auto& sets = theirs.sets();
  const bool shares = std::any_of(sets.begin(), sets.end(), [&](const MetadataSet* set) {
    return set->instanceUID() != nullptr && !ours.findByInstanceUID(*set->instanceUID()).empty();
  });
  if (sets.empty() || shares) return;
  raise<DocumentOfOtherFile>("the document is of another file or partition: none of its InstanceUIDs is in the file");
}

/// No document can have sets of two kinds with one InstanceUID.
void requireDistinctSets(const PartitionMetadata& ours) {
  for (const MetadataSet* set : ours.sets()) {
    if (set->instanceUID() == nullptr) continue;
    const auto& first = *ours.findByInstanceUID(*set->instanceUID()).front();
    if (&first == set || (set->definition() != nullptr && set->definition() == first.definition())) continue;
    raise<InvalidFormat>("no document of the file can be merged: the {} and the {} have one InstanceUID, {}",
                         first.name(), set->name(), set->instanceUID()->dottedText());
  }
}

DocumentForm formOf(const LosslessXML::Document& document, const PartitionMetadata& ours, const MergeOptions& options) {
  DocumentForm form;
  if (const auto& description = document.description()) {
    form.isNested = description->isNested;
    form.isStructuralOnly = description->isStructuralOnly;
    form.start = description->start;
    return form;
  }
  form.isNested = document.isNested();
  form.isStructuralOnly = options.isStructuralOnly;
  form.isAssumed = true;
  if (options.start.empty()) return form;
  const auto& start = ours.find(options.start);
  if (start.instanceUID() == nullptr) raise<InvalidFormat>("the {} has no InstanceUID", start.name());
  form.start = *start.instanceUID();
  return form;
}

/// Without the set that it starts from, a document would remove everything.
void requireStart(const PartitionMetadata& theirs, const PartitionMetadata& ours, const DocumentForm& form) {
  if (theirs.entries().empty()) raise<InvalidFormat>("the document has no set that could be read");
  if (form.start || theirs.preface() != nullptr || ours.preface() == nullptr) return;
  if (!form.isAssumed) raise<InvalidFormat>("the document has no Preface, which no file can be without");
  raise<InvalidFormat>("the document has no Preface, and does not describe what it is an export of");
}

/// Whether the set is one of the file or a new one is not known.
void requireIdentifiedSets(const std::vector<Diagnostic>& diagnostics) {
  const auto found = std::find_if(diagnostics.begin(), diagnostics.end(), [](const Diagnostic& diagnostic) {
    return diagnostic.kind == Diagnostic::Kind::kInvalidInstanceUID ||
           diagnostic.kind == Diagnostic::Kind::kMissingInstanceUID;
  });
  if (found == diagnostics.end()) return;
  raiseAt<InvalidFormat>(found->place.line,
                         "line {}: the set has no valid InstanceUID, so that it matches no set of the file",
                         found->place.line);
}

/// A nested document in the exact form has nothing in the place of a reference to a set that is written elsewhere. The
/// reference is kept.
void acceptHiddenReferences(LosslessXML::Import& import) {
  constexpr auto kHidden = Diagnostic::Kind::kEmptyReference;
  auto& listed = import.diagnostics;
  const auto isHidden = [](const Diagnostic& one) { return one.kind == kHidden; };
  listed.erase(std::remove_if(listed.begin(), listed.end(), isHidden), listed.end());
  auto& further = import.furtherDiagnostics;
  further.erase(std::remove_if(further.begin(), further.end(), [](const auto& one) { return one.kind == kHidden; }),
                further.end());
}

void copyPrimer(const PartitionDictionary& from, PartitionDictionary& to) {
  to.setPrimerCoding(from.primerKey(), from.primerLengthOctets());
  for (const auto& entry : from.primerEntries()) to.addPrimerEntry(entry);
}

/// Which of the sets with one InstanceUID was edited, no one knows.
void requireUniqueSets(const PartitionMetadata& theirs, const PartitionMetadata& ours) {
  for (const MetadataSet* set : theirs.sets()) {
    if (set->instanceUID() == nullptr) continue;
    const auto& sharing = theirs.findByInstanceUID(*set->instanceUID());
    if (sharing.size() == 1 || sharing.size() <= ours.findByInstanceUID(*set->instanceUID()).size()) continue;
    raise<InvalidFormat>("the {} and the {} of the document have one InstanceUID, {}; give one of them another",
                         sharing[0]->name(), sharing[1]->name(), set->instanceUID()->dottedText());
  }
}

/// An empty partition for the sets of a document, with the primer of ours.
EditedDocument emptyDocument(const PartitionMetadata& ours, DocumentForm form) {
  requireDistinctSets(ours);
  EditedDocument edited{std::make_unique<PartitionMetadata>(ours.partitionDictionary().dictionary()), {}, form};
  copyPrimer(ours.partitionDictionary(), edited.partition->partitionDictionary());
  return edited;
}

}  // namespace

EditedDocument readDocument(const LosslessXML::Document& document, const PartitionMetadata& ours,
                            const MergeOptions& options) {
  auto edited = emptyDocument(ours, formOf(document, ours, options));
  const bool isPart = edited.form.isStructuralOnly || edited.form.start;
  edited.import =
      document.import(*edited.partition, &ours, isPart ? LosslessXML::Extent::kPart : LosslessXML::Extent::kDescribed);
  if (edited.form.isAssumed && edited.form.isNested) acceptHiddenReferences(edited.import);
  const auto& description = document.description();
  edited.isOfEarlierState = description && description->digest != digestOf(ours);
  return edited;
}

EditedDocument readDocument(const SetsOfDocument& document, const PartitionMetadata& ours) {
  DocumentForm form;
  form.isNested = false;
  form.start = document.start;
  form.isAssumed = !document.digest;
  auto edited = emptyDocument(ours, form);
  document.read(*edited.partition);
  requireUniqueSets(*edited.partition, ours);
  edited.isOfEarlierState = document.digest && *document.digest != digestOf(ours);
  return edited;
}

MergeReport mergeDocument(const EditedDocument& edited, PartitionMetadata& ours, const MergeOptions& options) {
  requireIdentifiedSets(edited.import.diagnostics);
  requireStart(*edited.partition, ours, edited.form);
  if ((edited.form.isAssumed || edited.isOfEarlierState) && !options.mergesOtherFile) {
    requireSharedPackage(*edited.partition, ours);
    requireSharedSet(*edited.partition, ours);
  }
  if (edited.form.isAssumed && options.expectsUnchanged) {
    raise<FileHasChanged>("the document does not describe the state of the file that it was exported from");
  }
  if (edited.isOfEarlierState && options.expectsUnchanged) {
    raise<FileHasChanged>("the file has changed since the document was exported");
  }
  const bool mayBeOfOther = edited.isOfEarlierState || (edited.form.isAssumed && areNumbered(ours));
  if (mayBeOfOther && !options.mergesOtherFile) {
    requireUniquePackage(*edited.partition, ours);
  }
  Theirs theirs{*edited.partition};
  theirs.mayRemove = edited.import.diagnostics.empty() && edited.import.furtherDiagnostics.empty();
  for (const auto& unread : edited.import.unread) {
    const auto* instanceUID = unread.set->instanceUID();
    if (instanceUID != nullptr) theirs.unread.emplace(*instanceUID, unread.property);
  }
  return merge(ours, ours, theirs, Scope(ours, *edited.partition, edited.form));
}

}  // namespace Vantor::Edit
