#include <cstring>
#include <unordered_set>

#include "Core/Comparison/ValueText.h"
#include "Core/Types/Timestamp.h"
#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

/// Rules about who changed a file, and when.
namespace Vantor::Edit {

namespace {

using Types::Timestamp;

/// The date; null where it is missing or a part of it is 0, unknown (ST 377-1).
const Timestamp* dateOf(const MetadataSet& set, const char* property) {
  const auto* date = valueOf<Timestamp>(set, property);
  const bool isKnown = date != nullptr && date->year() != 0 && date->month() != 0 && date->day() != 0;
  return isKnown ? date : nullptr;
}

/// The octets of a timestamp stand in the order of their weight.
bool isBefore(const Timestamp& left, const Timestamp& right) {
  return std::memcmp(left.rawBuffer(), right.rawBuffer(), left.encodedSize()) < 0;
}

std::vector<const MetadataSet*> identificationsOf(const Model& model) {
  if (model.preface() == nullptr) return {};
  return model.targets(*model.preface(), "IdentificationList");
}

void checkPresence(const Model& model, Report& report) {
  const auto* preface = model.preface();
  if (preface == nullptr || valueOf(*preface, "IdentificationList") == nullptr) return;
  if (identificationsOf(model).empty()) report.add(*preface, "IdentificationList");
}

void checkOrder(const Model& model, Report& report) {
  const Timestamp* last = nullptr;
  for (const auto* identification : identificationsOf(model)) {
    const auto* date = dateOf(*identification, "FileModificationDate");
    if (date == nullptr) continue;
    if (last != nullptr && isBefore(*date, *last)) {
      report.add(*identification, "FileModificationDate", {valueText(*date), valueText(*last)});
    }
    last = date;
  }
}

void checkModification(const Model& model, Report& report) {
  const auto identifications = identificationsOf(model);
  if (identifications.empty()) return;
  const auto* modified = dateOf(*model.preface(), "FileLastModified");
  const auto* last = dateOf(*identifications.back(), "FileModificationDate");
  if (modified == nullptr || last == nullptr || !isBefore(*modified, *last)) return;
  report.add(*model.preface(), "FileLastModified", {valueText(*modified), valueText(*last)});
}

void checkPackageDates(const Model& model, Report& report) {
  for (const auto& package : model.packages()) {
    const auto* created = dateOf(*package.set, "CreationTime");
    const auto* modified = dateOf(*package.set, "PackageLastModified");
    if (created == nullptr || modified == nullptr || !isBefore(*modified, *created)) continue;
    report.add(*package.set, "PackageLastModified", {valueText(*modified), valueText(*created)});
  }
}

void checkGenerations(const Model& model, Report& report) {
  std::unordered_set<Types::UniversalLabel> generations = {Types::UniversalLabel()};
  for (const auto* identification : identificationsOf(model)) {
    if (const auto generation = labelOf(*identification, "GenerationID")) generations.insert(*generation);
  }
  for (const auto* set : model.sets()) {
    const auto generation = labelOf(*set, "LinkedGenerationID");
    if (generation && generations.count(*generation) == 0) {
      report.add(*set, "LinkedGenerationID", {textOf(*generation)});
    }
  }
}

void checkDoubledGenerations(const Model& model, Report& report) {
  std::unordered_set<Types::UniversalLabel> generations;
  for (const auto* identification : identificationsOf(model)) {
    const auto generation = labelOf(*identification, "GenerationID");
    if (generation && !generations.insert(*generation).second) {
      report.add(*identification, "GenerationID", {textOf(*generation)});
    }
  }
}

}  // namespace

const RuleTable& historyRules() {
  static const RuleTable table = {
      {{"identification-list", Severity::kWarning, "nothing identifies the program that wrote the file",
        "ST 377-1, Identification"},
       checkPresence},
      {{"identification-order", Severity::kWarning, "{date} is before the date of the identification before, {date}",
        "ST 377-1, Identification"},
       checkOrder},
      {{"modification-date", Severity::kWarning, "{date} is before the date of the last identification, {date}",
        "ST 377-1, Preface"},
       checkModification},
      {{"package-date", Severity::kWarning, "modified {date}, before it was created, {date}",
        "ST 377-1, Generic Package"},
       checkPackageDates},
      {{"unknown-generation", Severity::kWarning, "no identification has the generation {identifier}",
        "ST 377-1, Generation UID"},
       checkGenerations},
      {{"doubled-generation", Severity::kWarning, "an identification before it has the generation {identifier}",
        "ST 377-1, Identification"},
       checkDoubledGenerations}};
  return table;
}

}  // namespace Vantor::Edit
