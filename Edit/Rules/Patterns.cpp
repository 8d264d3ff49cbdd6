#include <algorithm>
#include <unordered_set>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/OperationalPattern.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about operational patterns: which there are, and which packages they allow.
namespace Vantor::Edit {

namespace {

using Types::UniversalLabel;

void checkPattern(const Model& model, Report& report) {
  const auto pattern = patternOf(model);
  if (pattern && !MXF::isOperationalPattern(*pattern)) {
    report.add(*model.preface(), "OperationalPattern", {textOf(*pattern)});
  }
}

/// None where the label of the Preface is no operational pattern.
std::optional<UniversalLabel> realPatternOf(const Model& model) {
  const auto pattern = patternOf(model);
  return pattern && MXF::isOperationalPattern(*pattern) ? pattern : std::nullopt;
}

/// ST 377-1: octet 13 of a general pattern has the complexity of items, octet 14 that of packages.
bool isGeneral(const UniversalLabel& pattern) {
  const auto isComplexity = [&](int octet) { return pattern.octet(octet) >= 1 && pattern.octet(octet) <= 3; };
  return isComplexity(13) && isComplexity(14);
}
bool isAtom(const UniversalLabel& pattern) { return pattern.octet(13) == 0x10; }

bool isDefined(const Model& model, const UniversalLabel& label) {
  return builtInLabels().findLabel(label) != nullptr || model.dictionary().findLabel(label) != nullptr;
}

void checkComplexity(const Model& model, Report& report) {
  const auto pattern = realPatternOf(model);
  if (!pattern || isGeneral(*pattern) || isDefined(model, *pattern)) return;
  report.add(*model.preface(), "OperationalPattern", {textOf(*pattern)});
}

using FilePackages = std::unordered_set<const Package*>;

/// The packages that the essence tracks of material packages refer to.
FilePackages topLevelPackages(const Model& model) {
  FilePackages packages;
  for (const auto& component : model.components()) {
    if (!model.is(*component.package->set, "MaterialPackage") || !isEssenceTrack(model, *component.track)) continue;
    const auto* source = model.package(*component.set, "SourcePackageID");
    if (source != nullptr) packages.insert(source);
  }
  return packages;
}

/// Columns a and b of the patterns have one material package, c has alternatives.
void checkMaterialPackages(const Model& model, Report& report) {
  const auto pattern = realPatternOf(model);
  if (!pattern || !isGeneral(*pattern) || pattern->octet(14) == 3) return;
  const auto packages = storedPackages(model);
  const auto number = std::count_if(packages.begin(), packages.end(),
                                    [&](const MetadataSet* set) { return model.is(*set, "MaterialPackage"); });
  if (number > 1) report.add(*model.preface(), "OperationalPattern", {std::to_string(number)});
}

/// Pattern 1a.
void checkFilePackages(const Model& model, Report& report) {
  const auto pattern = realPatternOf(model);
  if (!pattern || pattern->octet(13) != 1 || pattern->octet(14) != 1) return;
  const auto number = topLevelPackages(model).size();
  if (number > 1) report.add(*model.preface(), "OperationalPattern", {std::to_string(number)});
}

void checkAtom(const Model& model, Report& report) {
  const auto pattern = realPatternOf(model);
  if (!pattern || !isAtom(*pattern)) return;
  for (const auto* package : model.packagesWithEssence()) {
    const auto number = std::count_if(package->tracks.begin(), package->tracks.end(),
                                      [&](const MetadataSet* track) { return isEssenceTrack(model, *track); });
    if (number > 1) report.add(*package->set, "PackageTracks", {std::to_string(number)});
  }
}

}  // namespace

const RuleTable& patternRules() {
  static const RuleTable table = {
      {{"operational-pattern", Severity::kError, "{label} is no operational pattern", "ST 377-1, Operational Patterns"},
       checkPattern},
      {{"unknown-pattern", Severity::kWarning, "no register has the operational pattern {label}",
        "ST 377-1, Operational Patterns; ST 400"},
       checkComplexity},
      {{"pattern-material", Severity::kWarning, "the operational pattern allows one material package, not {number}",
        "ST 377-1, Operational Patterns"},
       checkMaterialPackages},
      {{"pattern-files", Severity::kWarning,
        "the operational pattern allows one file package for all tracks, not {number}", "ST 378"},
       checkFilePackages},
      {{"pattern-tracks", Severity::kWarning, "the operational pattern allows one essence track, not {number}",
        "ST 390"},
       checkAtom}};
  return table;
}

}  // namespace Vantor::Edit
