#include "SetCommand.h"

#include <algorithm>

#include "CommonOptions.h"
#include "Core/Platform/Strings.h"
#include "DiagnosticText.h"
#include "DocumentEdit.h"
#include "DocumentSize.h"
#include "ErrorText.h"
#include "LosslessXML.h"
#include "MetadataEdit.h"
#include "ProgressBar.h"
#include "StartSet.h"
#include "StoppedChange.h"
#include "Summary.h"

namespace Vantor::Tool {

namespace {

/// The set that a user means.
const MetadataSet& findSet(const PartitionMetadata& metadata, const PropertyChoice& choice,
                           const std::optional<std::string>& start) {
  const auto sets = setsNamed(metadata, choice.set);
  if (sets.empty()) throw CommandError("there is no set '" + choice.set + "'; mxfxml info lists the sets");
  if (start) {
    const auto& chosen = findStartSet(metadata, *start);
    if (std::find(sets.begin(), sets.end(), &chosen) != sets.end()) return chosen;
    throw CommandError("the set '" + *start + "' is no " + choice.set);
  }
  if (!choice.number && sets.size() == 1) return *sets.front();
  if (choice.number && *choice.number <= sets.size()) return *sets[*choice.number - 1];
  throw CommandError("there are " + std::to_string(sets.size()) + " sets '" + choice.set + "'; write " + choice.set +
                     "[1] to " + choice.set + "[" + std::to_string(sets.size()) + "], or choose one with --start");
}

void requireUTF8(const std::string& text) {
  if (Utils::wstringToString(Utils::stringToWstring(text)) == text) return;
  throw UsageError("'" + Utils::wstringToString(Utils::stringToWstring(text)) + "' is no text in UTF-8");
}

std::string whyNoInstanceUID(const std::string& text) {
  return isInstanceUID(text) ? "" : "'" + text + "' is no InstanceUID";
}

/// Reads the edited document; what is wrong with a value ends the command.
LosslessXML::Import readEdited(const std::string& document, PartitionMetadata& edited, MetadataEdit& edit) {
  auto import =
      LosslessXML::Document::fromBytes(document.data(), documentSize(document.size())).import(edited, &edit.metadata());
  edit.takeForm(edited, import, DocumentForms::Scope::kAll);
  if (import.diagnostics.empty()) return import;
  auto diagnostic = import.diagnostics.front();
  diagnostic.place.line = 0;  // of a document that nobody sees
  throw CommandError(Tool::describe(diagnostic));
}

}  // namespace

SetCommand::SetCommand(CLI::App& program)
    : Command(program, "set", "Give properties in the header metadata of a file other values") {
  addInput(app(), input(), "MXF file");
  app()
      .add_option("Set.Property=VALUE", assignments_,
                  "What the property of a set is to be; Set[2] is the second\nset of that name in the file. "
                  "An empty VALUE is an empty text")
      ->type_name("");
  app()
      .add_option("--remove", removals_, "Take a property out of a set; may be given several times")
      ->type_name("Set.Property")
      ->allow_extra_args(false);
  app()
      .add_option("--start", start_, "Which of several sets of one name is meant: the one with this\nInstanceUID")
      ->type_name("ID")
      ->check(whyNoInstanceUID);
  addFile(app(), "-o,--output", output_, "Write a copy to this file instead of changing the file")
      ->type_name("OUTPUT.mxf");
  addPartition(app(), partition_,
               "header, footer or a number: change this partition only.\nWithout it, the header partition and all that "
               "repeat its\nmetadata are changed");
  dictionary_.addDictionary(app());
}

std::vector<Assignment> SetCommand::assignments() const {
  std::vector<Assignment> parsed;
  for (const auto& text : assignments_) {
    requireUTF8(text);
    parsed.push_back(Assignment::parse(text));
    requireOneChoice(parsed.back().target);
  }
  return parsed;
}

std::vector<PropertyChoice> SetCommand::removals() const {
  std::vector<PropertyChoice> parsed;
  for (const auto& text : removals_) {
    requireUTF8(text);
    parsed.push_back(PropertyChoice::parse(text));
    requireOneChoice(parsed.back());
  }
  return parsed;
}

void SetCommand::requireOneChoice(const PropertyChoice& choice) const {
  if (!start_ || !choice.number) return;
  throw UsageError("the number in " + choice.text + " and --start " + *start_ + " both choose a set; give one of them");
}

void SetCommand::run() const {
  if (assignments_.empty() && removals_.empty()) throw UsageError("Set.Property=VALUE or --remove is required");
  const auto given = assignments();
  const auto unwanted = removals();
  if (output_) refuseSameFile(input(), *output_);
  const auto definitions = dictionary_.load();
  undoStoppedChange(input());
  MetadataEdit edit(input(), definitions, nullptr, partition_);
  DocumentEdit document(edit.metadata());
  for (const auto& one : given) document.apply(findSet(edit.metadata(), one.target, start_), one);
  for (const auto& one : unwanted) document.remove(findSet(edit.metadata(), one, start_), one);
  PartitionMetadata edited(definitions);
  const auto import = readEdited(document.text(), edited, edit);
  edit.apply(edited, import, MetadataEdit::Origin::kKnown);
  write(edit);
}

void SetCommand::write(const MetadataEdit& edit) const {
  for (const auto& remark : edit.remarks()) printMessage(input().u8string() + ": " + remark);
  const auto durability = output_ ? edit.writeCopy(*output_, progressBar()) : edit.writeInPlace(progressBar());
  tellDone(edit.summary(), output_.value_or(input()), durability);
}

}  // namespace Vantor::Tool
