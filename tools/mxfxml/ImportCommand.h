#pragma once

#include <optional>

#include "Command.h"
#include "Core/MXF/PartitionChoice.h"
#include "Core/Metadata/PartitionMetadata.h"
#include "DiagnosticText.h"
#include "DictionaryOptions.h"
#include "DocumentForms.h"
#include "LosslessXML.h"

namespace Vantor::Tool {

class MetadataEdit;

/// `mxfxml import`: writes the header metadata of an XML document as an MXF file that holds nothing else, or puts what
/// was edited in it into the file that it was exported from.
class ImportCommand final : public Command {
 public:
  explicit ImportCommand(CLI::App& program);
  void run() const override;

 private:
  void addTarget();
  void addWayOfReading();
  /// Writes a file with nothing but the metadata.
  void writeHeaderOnly() const;
  /// Puts the metadata into a file that is there.
  void editFile() const;
  void apply(MetadataEdit& edit, const PartitionMetadata& edited, const LosslessXML::Import& import) const;
  void write(const MetadataEdit& edit) const;
  DocumentForms::Scope scope() const;
  /// Tells on standard error what could not be read. @throws CommandError when that is to end the command.
  void tell(const Diagnostics& diagnostics) const;

  std::optional<Path> output_;
  std::optional<Path> into_;
  bool inPlace_ = false;
  bool isWhole_ = false;
  bool isStructuralOnly_ = false;
  std::optional<MXF::PartitionChoice> partition_;
  bool exact_ = false;
  bool strict_ = false;
  DictionaryOptions dictionary_;
};

}  // namespace Vantor::Tool
