#include <algorithm>
#include <memory>
#include <vector>

#include "CommandLine/Command.h"
#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "CommandLine/RuleOptions.h"
#include "Core/DataIO/OneState.h"
#include "Core/Platform/Path.h"
#include "Edit/Check.h"
#include "Input/Salvage.h"
#include "Input/StoppedChange.h"
#include "Report/FindingText.h"
#include "Report/JSONOutput.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardStreams.h"

namespace Vantor::Tool {

namespace {

class CheckCommand final : public Command {
 public:
  explicit CheckCommand(CLI::App& program)
      : Command(program, "check", "Print what in the metadata of files breaks the rules of the standards") {
    const auto take = [this](const std::vector<std::string>& names) {
      for (const auto& name : names) files_.push_back(Platform::pathFromUTF8(name));
    };
    app().add_option_function<std::vector<std::string>>("FILE", take, "MXF files")->type_name("")->check(whyNoFileName);
    rules_.addIgnore(app(), "Leave out what breaks this rule");
    app().add_flag("--rules", printsRules_, "Print the rules with their severity and source instead");
    salvage_.add(app());
    addJSON(app(), isJSON_);
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app());
    addLimits(app());
    addExamples({"check in.mxf", "check --rules"});
  }

  ExitCode run() const override {
    if (printsRules_ != files_.empty()) throw UsageError("give files, or --rules");
    if (printsRules_) {
      printRules();
      return kSuccess;
    }
    ExitCode highest = kSuccess;
    const auto shared = dictionary_.load();
    auto checked = JSON::Value::array();
    for (const auto& file : files_) highest = std::max(highest, check(file, shared, checked));
    if (isJSON_) printJSON(formatted("check").add("files", std::move(checked)));
    return highest;
  }
  ExitCode failure() const override { return kTrouble; }

 private:
  void printRules() const {
    if (isJSON_) return printJSON(formatted("rules").add("rules", jsonOfRules()));
    writeStandardOutput(tableOfRules());
  }

  /// @param checked  with --json, gets an object for the file.
  ExitCode check(const Path& file, const SharedPtr<const MetaMetadata::Dictionary>& shared,
                 JSON::Value& checked) const {
    auto json = JSON::Value::object().add("file", Platform::pathToUTF8(file));
    Edit::FileState state;
    std::vector<Edit::Finding> findings;
    try {
      refuseStoppedChange(file);
      state = read(file, shared);
      findings = rules_.withoutIgnored(Edit::check(state));
    } catch (...) {
      const auto problem = currentExceptionText(file);
      printMessage(problem);
      checked.append(json.add("problem", oneLine(problem)));
      return kTrouble;
    }
    const auto& header = state.partitions.front();
    if (isJSON_) {
      json.add("findings", jsonOf(findings));
      addMissing(header.missing, json);
      checked.append(std::move(json));
    } else {
      print(file, findings);
    }
    if (!header.missing.empty()) return reportMissing(file, *header.metadata, header.missing);
    const bool isSound = std::all_of(findings.begin(), findings.end(), [](const Edit::Finding& finding) {
      return finding.rule->severity == Edit::Severity::kNote;
    });
    return isSound ? kSuccess : kFailure;
  }

  Edit::FileState read(const Path& file, const SharedPtr<const MetaMetadata::Dictionary>& shared) const {
    Missing missing;  // which the state has, too
    const auto partition = DictionaryOptions::partitionOf(file, {}, {}, salvage_.placeFor(missing));
    const auto dictionary = dictionary_.usesOwn() ? dictionary_.loadFor(partition) : shared;
    const auto onDamage = salvage_.isOn() ? Edit::OnDamage::kSalvage : Edit::OnDamage::kStop;
    return DataIO::File::readInOneState(
        file, [&](DataIO::SeekableSource& source) { return Edit::readState(source, dictionary, limits(), onDamage); });
  }

  /// With the name of the file on each line where there are several files.
  void print(const Path& file, const std::vector<Edit::Finding>& findings) const {
    const std::string name = oneLine(Platform::pathToUTF8(file)) + ": ";
    std::string text;
    for (const auto& finding : findings) text += (files_.size() > 1 ? name : "") + oneLine(lineOf(finding)) + "\n";
    writeStandardOutput(text + name + summaryOf(findings) + "\n");
  }

  std::vector<Path> files_;
  RuleOptions rules_;
  SalvageOption salvage_;
  bool printsRules_ = false;
  bool isJSON_ = false;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> checkCommand(CLI::App& program) { return std::make_unique<CheckCommand>(program); }

}  // namespace Vantor::Tool
