#include "SetCommand.h"

#include <algorithm>

#include "Assignment.h"
#include "CommonOptions.h"
#include "Core/Platform/Strings.h"
#include "DiagnosticText.h"
#include "DocumentEdit.h"
#include "ErrorText.h"
#include "MetadataEdit.h"
#include "ProgressBar.h"
#include "StandardStreams.h"
#include "StartSet.h"
#include "XML2Partition.h"

namespace Vantor::Tool {

namespace {

/// The set that an assignment is about.
const MetadataSet& findSet(const PartitionMetadata& metadata, const Assignment& assignment,
                           const std::optional<std::string>& start) {
  const auto sets = setsNamed(metadata, assignment.set);
  if (sets.empty()) throw CommandError("there is no set '" + assignment.set + "'");
  if (start) {
    const auto& chosen = findStartSet(metadata, *start);
    if (std::find(sets.begin(), sets.end(), &chosen) != sets.end()) return chosen;
    throw CommandError("the set '" + *start + "' is no " + assignment.set);
  }
  if (!assignment.number && sets.size() == 1) return *sets.front();
  if (assignment.number && *assignment.number <= sets.size()) return *sets[*assignment.number - 1];
  throw CommandError("there are " + std::to_string(sets.size()) + " sets '" + assignment.set + "'; write " +
                     assignment.set + "[1] to " + assignment.set + "[" + std::to_string(sets.size()) +
                     "], or choose one with --start");
}

void requireUTF8(const std::string& text) {
  if (Utils::wstringToString(Utils::stringToWstring(text)) == text) return;
  throw CommandError("'" + Utils::wstringToString(Utils::stringToWstring(text)) + "' is no text in UTF-8");
}

/// Reads the edited document; what is wrong with a value ends the command.
XML2Partition::LosslessImport readEdited(const std::string& document, PartitionMetadata& edited) {
  auto import = XML2Partition::importLosslesslyFromBuffer(reinterpret_cast<const uint8*>(document.data()),
                                                          static_cast<uint32>(document.size()), &edited);
  if (import.diagnostics.empty()) return import;
  auto diagnostic = import.diagnostics.front();
  diagnostic.line = 0;  // of a document that nobody sees
  throw CommandError(describe(diagnostic));
}

}  // namespace

SetCommand::SetCommand(CLI::App& program)
    : Command(program, "set", "Give properties in the header metadata of a file other values") {
  addInput(app(), input(), "MXF file");
  app()
      .add_option("Set.Property=VALUE", assignments_,
                  "What the property of a set is to be; Set[2] is the second\nset of that name in the file")
      ->required()
      ->type_name("");
  app()
      .add_option("--start", start_, "Which of several sets of one name is meant: the one with this\nInstanceUID")
      ->type_name("ID");
  addFile(app(), "-o,--output", output_, "Write a copy to this file instead of changing the file")
      ->type_name("OUTPUT.mxf");
  addPartition(app(), partition_,
               "header, footer or a number: change this partition only.\nWithout it, the header partition and all that "
               "repeat its\nmetadata are changed");
  dictionary_.addDictionary(app());
}

void SetCommand::run() const {
  if (output_) refuseSameFile(input(), *output_);
  const auto definitions = dictionary_.load();
  MetadataEdit edit(input(), definitions, nullptr, partition_);
  DocumentEdit document(edit.metadata());
  for (const auto& text : assignments_) {
    requireUTF8(text);
    const auto assignment = Assignment::parse(text);
    document.apply(findSet(edit.metadata(), assignment, start_), assignment);
  }
  PartitionMetadata edited(definitions);
  const auto import = readEdited(document.text(), edited);
  edit.apply(edited, import);
  for (const auto& remark : edit.remarks()) printMessage(input().u8string() + ": " + remark);
  if (output_) {
    edit.writeCopy(*output_, progressBar());
  } else {
    edit.writeInPlace(progressBar());
  }
  writeStandardOutput(edit.summary() + "\n");
}

}  // namespace Vantor::Tool
