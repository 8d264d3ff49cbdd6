#pragma once

#include <memory>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>

#include "Assignment.h"
#include "Core/Metadata/PartitionMetadata.h"

namespace Vantor::Tool {

/// An export that is edited without an editor.
class DocumentEdit {
 public:
  explicit DocumentEdit(PartitionMetadata& metadata);
  ~DocumentEdit();
  DocumentEdit(const DocumentEdit&) = delete;
  DocumentEdit& operator=(const DocumentEdit&) = delete;

  /// Gives the property of a set another value. A rational is written "25/1"; properties with other values of several
  /// parts, collections and references take none.
  /// @throws CommandError when there is no such set or property, or no such value.
  void apply(const MetadataSet& set, const Assignment& assignment);

  /// The document as UTF-8.
  std::string text() const;

 private:
  xercesc::DOMElement& elementOf(const MetadataSet& set) const;

  std::unique_ptr<xercesc::DOMNode> document_;
};

}  // namespace Vantor::Tool
