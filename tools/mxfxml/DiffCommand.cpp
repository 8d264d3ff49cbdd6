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
#include "InputDocument.h"
#include "JSONOutput.h"
#include "StandardStreams.h"
#include "StoppedChange.h"

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

JSON::Value jsonOf(const std::vector<OtherIdentifier>& others) {
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
    addInput("MXF, XML or JSON file");
    addFileArgument(app(), "OTHER", other_, "MXF, XML or JSON file to compare it with");
    app().add_flag("--strict", strict_,
                   "Fail on content of a document that occurs twice or means\nnothing, instead of warning");
    app().add_flag("--ignore-ids", ignoreIdentifiers_,
                   "Pair sets by the references to them, not by InstanceUID;\nother InstanceUIDs are no difference");
    addPartition(app(), partition_,
                 "Of MXF files: header (default), footer, or a number in file\norder from 0, which is the header "
                 "partition");
    addJSON(app(), isJSON_);
    dictionary_.addDictionary(app());
    dictionary_.addOwnDictionary(app(), true);
  }

  ExitCode run() const override {
    if (partition_ && documentFormatOf(input()) && documentFormatOf(other_)) {
      throw UsageError("--partition is for MXF files, and neither file is one");
    }
    Read ofInput, ofOther;
    const auto metadata = dictionary_.read({sourceOf(input(), ofInput), namingOther(sourceOf(other_, ofOther))});
    print(input(), ofInput);
    namingFile(other_, [&] { print(other_, ofOther); });
    const auto &left = metadata.front(), &right = metadata.back();
    const auto pairing = ignoreIdentifiers_ ? Pairing::kByPlace : Pairing::kByIdentifier;
    const auto comparison = comparePartitions(*left, *right, pairing);
    const auto identifiers = ignoreIdentifiers_ ? std::vector<OtherIdentifier>() : otherIdentifiers(*left, *right);
    print(identifiers, comparison);
    return comparison.isEqual() && identifiers.empty() ? kSuccess : kFailure;
  }
  ExitCode failure() const override { return kTrouble; }

 private:
  /// What was found wrong with a document.
  struct Read {
    Diagnostics diagnostics;
    std::vector<std::string> unknown;
  };

  void print(const Path& document, const Read& read) const {
    refuseUnknown(document, read.unknown);
    printDiagnostics(document, read.diagnostics, strict_);
  }

  void print(const std::vector<OtherIdentifier>& identifiers, const PartitionComparison& comparison) const {
    if (!isJSON_) return writeStandardOutput(linesOf(identifiers) + describe(comparison));
    auto json = formatted("diff");
    json.add("left", oneLine(input().u8string())).add("right", oneLine(other_.u8string()));
    json.add("identifiers", jsonOf(identifiers));
    addComparison(comparison, json);
    printJSON(json);
  }

  using Source = DictionaryOptions::Source;

  /// @param result  receives what is wrong with a document, from the last time that it is read.
  Source sourceOf(const Path& file, Read& result) const {
    const auto choice = partition_.value_or(MXF::PartitionChoice());
    const auto read = [=, &result](const DictionaryOptions::LoadFor& load) {
      if (const auto format = documentFormatOf(file)) return readDocument({file, *format}, load, result);
      refuseStoppedChange(file);
      return MXF::readHeaderMetadata(file, load({}), choice);
    };
    return {file, read};
  }

  static Source namingOther(const Source& source) {
    const auto read = [=](const auto& load) { return namingFile(source.file, [&] { return source.read(load); }); };
    return {source.file, read};
  }

  static std::unique_ptr<PartitionMetadata> readDocument(const InputDocument& document,
                                                         const DictionaryOptions::LoadFor& load, Read& result) {
    auto metadata = std::make_unique<PartitionMetadata>(load(document.vocabulary()));
    result.diagnostics = document.import(*metadata, result.unknown);
    return metadata;
  }

  Path other_;
  bool ignoreIdentifiers_ = false;
  bool strict_ = false;
  bool isJSON_ = false;
  std::optional<MXF::PartitionChoice> partition_;
  DictionaryOptions dictionary_;
};

}  // namespace

std::unique_ptr<Command> diffCommand(CLI::App& program) { return std::make_unique<DiffCommand>(program); }

}  // namespace Vantor::Tool
