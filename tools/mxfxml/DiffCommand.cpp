#include "CommandLine/Command.h"

#include <memory>
#include <optional>

#include "CommandLine/CommonOptions.h"
#include "CommandLine/DictionaryOptions.h"
#include "CommandLine/LimitOptions.h"
#include "Core/Comparison/SetPairing.h"
#include "Core/Platform/Path.h"
#include "Core/Platform/Strings.h"
#include "Input/BetterPartition.h"
#include "Input/InputDocument.h"
#include "Input/MetadataInput.h"
#include "Report/ComparisonText.h"
#include "Report/JSONOutput.h"
#include "Terminal/ErrorText.h"
#include "Terminal/StandardInput.h"
#include "Terminal/StandardStreams.h"
#include "Tree/DifferenceTree.h"
#include "Tree/TreeOutput.h"

namespace Vantor::Tool {

namespace {

std::string textOf(const Types::UUID* instanceUID) {
  return instanceUID == nullptr ? "nothing" : Utils::wstringToString(instanceUID->toString());
}

/// Sets in the same place whose InstanceUIDs differ.
struct OtherIdentifier {
  std::string set;
  const Types::UUID* left;  // null for none
  const Types::UUID* right;
};

std::vector<OtherIdentifier> otherIdentifiers(const PartitionMetadata& left, const PartitionMetadata& right) {
  const SetPairing pairing(left, right, Pairing::kByIdentifier);
  std::vector<OtherIdentifier> others;
  for (const auto& [one, other] : pairing.setPairs()) {
    const auto *before = one->instanceUID(), *after = other->instanceUID();
    const bool isSame = before == nullptr || after == nullptr ? before == after : *before == *after;
    if (!isSame) others.push_back({one->name(), before, after});
  }
  return others;
}

std::string linesOf(const std::vector<OtherIdentifier>& others) {
  std::string lines;
  for (const auto& [set, left, right] : others) {
    lines += "identifier: " + set + ": " + textOf(left) + " -> " + textOf(right) + "\n";
  }
  return lines;
}

/// How many there are, for a tree, which has no place for them.
std::string numberOf(const std::vector<OtherIdentifier>& others) {
  return others.empty() ? "" : "sets with another InstanceUID " + std::to_string(others.size()) + "\n";
}

JSON::Value listOf(const std::vector<OtherIdentifier>& others) {
  auto json = JSON::Value::array();
  for (const auto& [set, left, right] : others) {
    auto other = JSON::Value::object().add("set", set);
    if (left != nullptr) other.add("left", textOf(left));
    if (right != nullptr) other.add("right", textOf(right));
    json.append(std::move(other));
  }
  return json;
}

class DiffCommand final : public Command {
 public:
  explicit DiffCommand(CLI::App& program)
      : Command(program, "diff", "Print the differences between the header metadata of two files, MXF, XML or\nJSON") {
    addInput("MXF, XML or JSON file, or - for standard input", Dash::kInput);
    addFileArgument(app(), "OTHER", other_, "MXF, XML or JSON file to compare it with, or -", Dash::kInput);
    auto* tree =
        app().add_flag("--tree", tree_, "Print the sets that differ as a tree: + added, - removed,\n~ changed");
    addColor(app(), color_);
    app().add_flag("--strict", strict_,
                   "Fail on content of a document that occurs twice or means\nnothing, instead of warning");
    app().add_flag("--ignore-ids", ignoreIdentifiers_,
                   "Pair sets by the references to them, not by InstanceUID;\nother InstanceUIDs are no difference");
    addPartition(
        app(), partition_,
        "Of MXF files: header (default), footer, best for the one with\nthe best metadata, or a number in file "
        "order from 0, which is\nthe header partition");
    addJSON(app(), isJSON_)->excludes(tree);
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
    addLimits(app());
    addExamples({"diff a.mxf b.mxf", "diff in.mxf edited.xml"});
  }

  ExitCode run() const override {
    requireOneStandardInput({input(), other_});
    if (partition_ && documentFormatOf(input()) && documentFormatOf(other_)) {
      throw UsageError("--partition is for MXF files, and neither file is one");
    }
    InputProblems ofInput, ofOther;
    const auto metadata = dictionary_.read({sourceOf(input(), ofInput), namingOther(sourceOf(other_, ofOther))});
    printProblems(input(), ofInput, strict_);
    namingFile(other_, [&] { printProblems(other_, ofOther, strict_); });
    for (const auto& file : {input(), other_}) {
      if (!documentFormatOf(file)) noteBetterPartition(file, partition_.has_value());
    }
    const auto &left = metadata.front(), &right = metadata.back();
    const auto pairing = ignoreIdentifiers_ ? Pairing::kByPlace : Pairing::kByIdentifier;
    const auto comparison = comparePartitions(*left, *right, pairing);
    const auto identifiers = ignoreIdentifiers_ ? std::vector<OtherIdentifier>() : otherIdentifiers(*left, *right);
    if (isJSON_) {
      printJSON(jsonOf(identifiers, comparison));
    } else {
      writeStandardOutput(tree_ ? treeOf(*left, *right, pairing, comparison) + numberOf(identifiers)
                                : linesOf(identifiers) + describe(comparison));
    }
    return comparison.isEqual() && identifiers.empty() ? kSuccess : kFailure;
  }
  ExitCode failure() const override { return kTrouble; }

 private:
  using Source = DictionaryOptions::Source;

  Source sourceOf(const Path& file, InputProblems& problems) const {
    return metadataSource(file, partition_.value_or(MXF::PartitionChoice()), problems);
  }

  JSON::Value jsonOf(const std::vector<OtherIdentifier>& identifiers, const PartitionComparison& comparison) const {
    auto json = formatted("diff");
    json.add("left", Platform::pathToUTF8(input())).add("right", Platform::pathToUTF8(other_));
    json.add("identifiers", listOf(identifiers));
    addComparison(comparison, json);
    return json;
  }

  std::string treeOf(const PartitionMetadata& left, const PartitionMetadata& right, Pairing pairing,
                     const PartitionComparison& comparison) const {
    auto style = treeStyleFor(color_);
    style.hasSigns = true;
    const SetPairing pairs(left, right, pairing);
    return treeText(differenceTree(left, right, pairs, comparison, style), style) + countLines(comparison);
  }

  static Source namingOther(const Source& source) {
    const auto read = [=](const auto& load) { return namingFile(source.file, [&] { return source.read(load); }); };
    return {source.file, read};
  }

  Path other_;
  bool ignoreIdentifiers_ = false;
  bool strict_ = false;
  bool tree_ = false;
  bool isJSON_ = false;
  ColorChoice color_ = ColorChoice::kAuto;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> diffCommand(CLI::App& program) { return std::make_unique<DiffCommand>(program); }

}  // namespace Vantor::Tool
