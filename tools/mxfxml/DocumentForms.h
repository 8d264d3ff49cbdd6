#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Core/MXF/FileStructure.h"
#include "Core/Platform/Path.h"
#include "Edit/PartitionMerge.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

DocumentContent contentOf(const PartitionMetadata& metadata, const LosslessXML::Import& import);

/// What reading a document gave.
struct ReadDocument {
  explicit ReadDocument(const SharedPtr<const MetaMetadata::Dictionary>& dictionary)
      : metadata(std::make_unique<PartitionMetadata>(dictionary)) {}

  DocumentContent content() const { return contentOf(*metadata, import); }

  std::unique_ptr<PartitionMetadata> metadata;
  LosslessXML::Import import;
};

/// The metadata of one partition, and the documents of them that an export can write. None is made before it is wanted.
///
/// A document does not say how it was exported, but that decides what it shows. Whether it nests sets is told by the
/// sets themselves: those that strong references lead to stand within the references or elsewhere, and no edit changes
/// most of them. All else (with the user's definitions or without, of all sets or of the structural ones, from the
/// Preface or another set) is told by which of these documents differs from the edited one in the fewest places.
class DocumentForms {
 public:
  /// @param dictionary  that the edited document was read with.
  /// @param plain       the same without the user's definitions, which the document may have been made with; null when
  ///                    there are none.
  /// @throws what reading the file throws.
  DocumentForms(Path file, const MXF::PartitionInfo& partition, SharedPtr<const MetaMetadata::Dictionary> dictionary,
                SharedPtr<const MetaMetadata::Dictionary> plain);

  /// As they are in the file.
  PartitionMetadata& original() { return *original_; }
  /// Whether there can be any document.
  bool hasPreface() const;
  /// @throws CommandError when two different sets share an InstanceUID: no document with both can be read.
  void requireReadable() const;

  /// Which sets a document is an export of.
  enum class Scope {
    kGuessed,    ///< what the document itself tells
    kAll,        ///< all sets; one with a Preface starts from that
    kStructural  ///< structural ones
  };
  /// Chosen by the user; guessed until then.
  void setScope(Scope scope) { scope_ = scope; }

  /// What came closest to an edited document. One that shows something that an export of structural sets leaves out is
  /// none, however close it is.
  struct Choice {
    std::shared_ptr<const ReadDocument> document;
    std::size_t edits;                   ///< how many places differ
    const MetadataSet* start = nullptr;  ///< of the original, where the document starts; null for the Preface
    bool isStructuralOnly = false;       ///< whether it leaves out references to other sets
  };
  /// @throws CommandError when the metadata have no Preface.
  Choice choose(const DocumentContent& edited, const LosslessXML::Import& import);
  /// The flat document of all sets.
  std::shared_ptr<const ReadDocument> full();

 private:
  struct Form {
    bool isPlain = false;
    bool isNested = false;
    bool isStructuralOnly = false;
    const MetadataSet* start = nullptr;  ///< of the original; null for the Preface
    bool isFull() const { return !isPlain && !isNested && !isStructuralOnly && start == nullptr; }
  };
  /// The forms, without those of structural sets.
  std::vector<Form> formsOf(const DocumentContent& edited, const LosslessXML::Import& import) const;
  /// Whether there is anything that an export of structural sets can leave out.
  bool hasOtherSets() const;
  bool mayBeStructuralOnly(const ReadDocument& whole, const ReadDocument& part, const DocumentContent& edited,
                           const LosslessXML::Import& import) const;
  std::vector<const MetadataSet*> startsOf(const DocumentContent& edited, const LosslessXML::Import& import) const;
  std::shared_ptr<const ReadDocument> make(const Form& form);
  PartitionMetadata& plainOriginal();

  std::shared_ptr<const ReadDocument> documentOf(const Form& form) { return form.isFull() ? full() : make(form); }

  Path file_;
  Scope scope_ = Scope::kGuessed;
  MXF::PartitionInfo partition_;
  SharedPtr<const MetaMetadata::Dictionary> dictionary_;
  SharedPtr<const MetaMetadata::Dictionary> plain_;
  std::unique_ptr<PartitionMetadata> original_;
  std::unique_ptr<PartitionMetadata> plainOriginal_;
  std::shared_ptr<const ReadDocument> full_;
};

}  // namespace Vantor::Tool
