#include "SetCommand.h"

#include <algorithm>
#include <set>
#include <utility>

#include "CommonOptions.h"
#include "Core/Platform/Strings.h"
#include "Edit/File.h"
#include "EditText.h"
#include "ErrorText.h"
#include "Interruption.h"
#include "ProgressBar.h"
#include "StoppedChange.h"
#include "Summary.h"

namespace Vantor::Tool {

namespace {

void requireUTF8(const std::string& text) {
  if (Utils::wstringToString(Utils::stringToWstring(text)) == text) return;
  throw UsageError("'" + Utils::wstringToString(Utils::stringToWstring(text)) + "' is no text in UTF-8");
}

/// Refuses a property that is given twice: the second value would replace the first.
class Once {
 public:
  void require(const MetadataSet& set, const PropertyChoice& choice) {
    const auto* definition = set.definition() == nullptr ? nullptr : set.definition()->findAttribute(choice.property);
    if (definition != nullptr && !given_.emplace(&set, definition).second) {
      throw UsageError(choice.text + " is given more than once");
    }
  }

 private:
  std::set<std::pair<const MetadataSet*, const MetaMetadata::MetaAttribute*>> given_;
};

}  // namespace

SetCommand::SetCommand(CLI::App& program)
    : Command(program, "set", "Change or remove properties in the header metadata of a file") {
  addInput(app(), input(), "MXF file");
  app()
      .add_option("Set.Property=VALUE", assignments_,
                  "The new value of a property; Set[2] is the second set of that\nname in the file. "
                  "An empty VALUE is an empty text")
      ->type_name("");
  app()
      .add_option("--remove", removals_, "Remove a property from a set; may be given several times")
      ->type_name("Set.Property")
      ->allow_extra_args(false);
  app()
      .add_option("--start", start_, "Of several sets with one name, edit the one with this\nInstanceUID")
      ->type_name("ID");
  addFile(app(), "-o,--output", output_, "Write a copy to this file instead of changing the file")
      ->type_name("OUTPUT.mxf");
  addPartition(app(), partition_,
               "header, footer or a number: change this partition only.\nBy default, the header partition and all that "
               "repeat its\nmetadata are changed");
  dictionary_.addDictionary(app());
}

std::vector<Assignment> SetCommand::assignments() const {
  std::vector<Assignment> parsed;
  for (const auto& text : assignments_) {
    requireUTF8(text);
    parsed.push_back(Assignment::parse(text));
  }
  return parsed;
}

std::vector<PropertyChoice> SetCommand::removals() const {
  std::vector<PropertyChoice> parsed;
  for (const auto& text : removals_) {
    requireUTF8(text);
    parsed.push_back(PropertyChoice::parse(text));
  }
  return parsed;
}

MetadataSet& SetCommand::find(const PartitionMetadata& metadata, const PropertyChoice& choice) const {
  if (!start_) return metadata.find(choice.set);
  auto& chosen = metadata.find(*start_);
  for (auto& set : metadata.findAll(choice.set)) {
    if (&set == &chosen) return set;
  }
  throw CommandError("the set '" + *start_ + "' is no " + choice.set);
}

void SetCommand::run() const {
  if (assignments_.empty() && removals_.empty()) throw UsageError("Set.Property=VALUE or --remove is required");
  const auto given = assignments();
  const auto unwanted = removals();
  if (output_) refuseSameFile(input(), *output_);
  const auto definitions = dictionary_.load();
  undoStoppedChange(input());
  Edit::File file(input(), definitions, partition_);
  edit(file.metadata(), given, unwanted);
  save(file);
}

void SetCommand::edit(PartitionMetadata& metadata, const std::vector<Assignment>& given,
                      const std::vector<PropertyChoice>& unwanted) const {
  Once once;
  for (const auto& one : given) {
    auto& set = find(metadata, one.target);
    once.require(set, one.target);
    set.set(one.target.property, Utils::stringToWstring(one.value));
  }
  for (const auto& one : unwanted) {
    auto& set = find(metadata, one);
    once.require(set, one);
    set.remove(one.property);
  }
}

void SetCommand::save(Edit::File& file) const {
  Interruption interruption;
  const auto progress = interruption.stopping(progressBar());
  const auto report = output_ ? file.saveCopy(*output_, progress) : file.save(progress);
  printRemarks(input(), report);
  tellDone(summaryOf(report), output_.value_or(input()), report.durability);
}

}  // namespace Vantor::Tool
