#include "Command.h"

#include <memory>
#include <optional>

#include "CommonOptions.h"
#include "ComparisonText.h"
#include "Core/Comparison/SetPairing.h"
#include "Core/MXF/HeaderMetadataReader.h"
#include "Core/Platform/Strings.h"
#include "DiagnosticText.h"
#include "DictionaryOptions.h"
#include "ErrorText.h"
#include "LosslessXML.h"
#include "StandardStreams.h"
#include "StoppedChange.h"
#include "XMLUtils/InputFile.h"

namespace Vantor::Tool {

namespace {

std::string textOf(const Types::UUID* instanceUID) {
  return instanceUID == nullptr ? "nothing" : Utils::wstringToString(instanceUID->toString());
}

/// A line for each pair of sets in the same place whose InstanceUIDs differ.
std::string identifierLines(const PartitionMetadata& left, const PartitionMetadata& right) {
  const SetPairing pairing(left, right, Pairing::kByIdentifier);
  std::string lines;
  for (const auto& [one, other] : pairing.setPairs()) {
    const auto *before = one->instanceUID(), *after = other->instanceUID();
    const bool isSame = before == nullptr || after == nullptr ? before == after : *before == *after;
    if (!isSame) lines += "identifier: " + one->name() + ": " + textOf(before) + " -> " + textOf(after) + "\n";
  }
  return lines;
}

class DiffCommand final : public Command {
 public:
  explicit DiffCommand(CLI::App& program)
      : Command(program, "diff", "Print the differences between the header metadata of two files, MXF or XML") {
    addInput("MXF or XML file");
    addFileArgument(app(), "OTHER", other_, "MXF or XML file to compare it with");
    app().add_flag("--strict", strict_,
                   "Fail on content of a document that occurs twice or means\nnothing, instead of warning");
    app().add_flag("--ignore-ids", ignoreIdentifiers_,
                   "Pair sets by the references to them, not by InstanceUID;\nother InstanceUIDs are no difference");
    addPartition(app(), partition_,
                 "Of MXF files: header (default), footer, or a number in file\norder from 0, which is the header "
                 "partition");
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
    addExamples({"diff a.mxf b.mxf", "diff in.mxf edited.xml"});
  }

  ExitCode run() const override {
    if (partition_ && XMLUtils::looksLikeXML(input()) && XMLUtils::looksLikeXML(other_)) {
      throw UsageError("--partition is for MXF files, and neither file is one");
    }
    Diagnostics ofInput, ofOther;
    const auto metadata = dictionary_.read({sourceOf(input(), ofInput), namingOther(sourceOf(other_, ofOther))});
    printDiagnostics(input(), ofInput, strict_);
    namingFile(other_, [&] { printDiagnostics(other_, ofOther, strict_); });
    const auto &left = metadata.front(), &right = metadata.back();
    const auto pairing = ignoreIdentifiers_ ? Pairing::kByPlace : Pairing::kByIdentifier;
    const auto comparison = comparePartitions(*left, *right, pairing);
    const std::string identifiers = ignoreIdentifiers_ ? "" : identifierLines(*left, *right);
    writeStandardOutput(identifiers + describe(comparison));
    return comparison.isEqual() && identifiers.empty() ? kSuccess : kFailure;
  }
  ExitCode failure() const override { return kTrouble; }

 private:
  using Source = DictionaryOptions::Source;

  /// @param diagnostics  receives those of a document, from the last time that it is read.
  Source sourceOf(const Path& file, Diagnostics& diagnostics) const {
    const auto choice = partition_.value_or(MXF::PartitionChoice());
    const auto read = [=, &diagnostics](const DictionaryOptions::LoadFor& load) {
      if (XMLUtils::looksLikeXML(file)) return readDocument(file, load, diagnostics);
      refuseStoppedChange(file);
      return MXF::readHeaderMetadata(file, load({}), choice);
    };
    return {file, read};
  }

  static Source namingOther(const Source& source) {
    const auto read = [=](const auto& load) { return namingFile(source.file, [&] { return source.read(load); }); };
    return {source.file, read};
  }

  static std::unique_ptr<PartitionMetadata> readDocument(const Path& file, const DictionaryOptions::LoadFor& load,
                                                         Diagnostics& diagnostics) {
    const auto document = LosslessXML::Document::fromFile(file);
    auto metadata = std::make_unique<PartitionMetadata>(load(document.vocabulary()));
    diagnostics = document.import(*metadata).diagnostics;
    return metadata;
  }

  Path other_;
  bool ignoreIdentifiers_ = false;
  bool strict_ = false;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> diffCommand(CLI::App& program) { return std::make_unique<DiffCommand>(program); }

}  // namespace Vantor::Tool
