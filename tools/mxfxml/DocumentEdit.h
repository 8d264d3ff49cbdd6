#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <xercesc/dom/DOMDocument.hpp>

#include "Assignment.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// An export that is edited without an editor.
class DocumentEdit {
 public:
  /// @param metadata  lives as long as this object.
  explicit DocumentEdit(PartitionMetadata& metadata);
  ~DocumentEdit();
  DocumentEdit(const DocumentEdit&) = delete;
  DocumentEdit& operator=(const DocumentEdit&) = delete;

  /// Gives the property of a set another value. A rational is written "25/1"; properties with other values of several
  /// parts, collections and references take none.
  /// @param set  of the metadata.
  /// @throws CommandError when the set has no such property or no InstanceUID of its own, or the property no such
  /// value; UsageError when it was given one before.
  void apply(const MetadataSet& set, const Assignment& assignment);

  /// Takes a property out, and leaves the sets that it refers to; does nothing where the set does not have it.
  /// @throws CommandError as above, and for the identifiers of sets; UsageError when it was given a value before.
  void remove(const MetadataSet& set, const PropertyChoice& choice);

  /// The document as UTF-8.
  std::string text() const;

 private:
  wstring identifierOf(const MetadataSet& set) const;
  xercesc::DOMElement& elementOf(const MetadataSet& set) const;

  const PartitionMetadata& metadata_;
  std::unique_ptr<xercesc::DOMNode> document_;
  std::set<std::pair<const MetadataSet*, const MetaMetadata::MetaElement*>> assigned_;
};

}  // namespace Vantor::Tool
