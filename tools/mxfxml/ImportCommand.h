#pragma once

#include <optional>
#include <string>

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "DictionaryOptions.h"
#include "LosslessXML.h"

namespace Vantor::Edit {
class File;
}

namespace Vantor::Tool {

/// `mxfxml import`: writes the header metadata of an XML document as an MXF file that holds nothing else, or merges the
/// edits of a document into the file that it was exported from.
class ImportCommand final : public Command {
 public:
  explicit ImportCommand(CLI::App& program);
  void run() const override;

 private:
  void addTarget();
  void addDescription();
  void addWayOfReading();
  void writeHeaderOnly() const;
  void editFile() const;
  void merge(const LosslessXML::Document& document, Edit::File& file) const;
  void save(Edit::File& file) const;
  void report(const std::vector<LosslessXML::Diagnostic>& diagnostics) const;

  std::optional<Path> output_;
  std::optional<Path> into_;
  bool inPlace_ = false;
  bool isStructuralOnly_ = false;
  std::string start_;
  bool mergesAnyway_ = false;
  bool expectsUnchanged_ = false;
  std::optional<MXF::PartitionChoice> partition_;
  bool exact_ = false;
  bool strict_ = false;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
