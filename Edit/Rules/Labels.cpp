#include <algorithm>
#include <unordered_set>

#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/OperationalPattern.h"
#include "Core/Types/Collection.h"
#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

/// Rules about labels.
namespace Vantor::Edit {

namespace {

using Types::UniversalLabel;
using namespace Types::Identifiers;

/// ST 298: a label of the labels register; 04 is its category, 01 the register.
bool isRegistryLabel(const UniversalLabel& label) {
  return label.octet(1) == 0x06 && label.octet(2) == 0x0e && label.octet(3) == 0x2b && label.octet(4) == 0x34 &&
         label.octet(5) == 0x04 && label.octet(6) == 0x01;
}

template <class Visit>
void forEachLabel(const Types::SimpleDataType& value, Visit&& visit) {
  const auto type = value.identifier();
  if (type == kUniversalLabel || type == kAUID) visit(UniversalLabel(value.rawBuffer()));
  if (type != kArray && type != kBatch) return;
  const auto& collection = static_cast<const Types::Collection&>(value);
  for (uint32 i = 0; i < collection.size(); ++i) forEachLabel(collection.at(i), visit);
}

/// Finds labels that nothing defines: no register, no dictionary file, and no definition in the metadata themselves.
class UnknownLabels {
 public:
  UnknownLabels(const Model& model, Report& report) : dictionary_(model.dictionary()), report_(report) {
    for (const auto* definition : model.all("DefinitionObject")) {
      if (const auto label = labelOf(*definition, "DefinitionObjectIdentification")) defined_.insert(*label);
    }
  }

  void check(const MetadataSet& set, const Element& element) {
    if (definitionOf(element) == nullptr || element.wireValue() == nullptr) return;
    forEachLabel(*element.wireValue(), [&](const UniversalLabel& label) {
      if (isRegistryLabel(label) && !isKnown(label)) report_.add(set, symbolOf(element), {textOf(label)});
    });
  }

 private:
  bool isKnown(const UniversalLabel& label) const {
    return dictionary_.findLabel(label) != nullptr || builtInLabels().findLabel(label) != nullptr ||
           defined_.count(label) != 0;
  }

  const MetaMetadata::Dictionary& dictionary_;
  Report& report_;
  std::unordered_set<UniversalLabel> defined_;
};

void checkKnown(const Model& model, Report& report) {
  UnknownLabels labels(model, report);
  for (const auto* set : model.sets()) {
    for (const auto* element : set->inDefinitionOrder()) labels.check(*set, *element);
  }
}

void checkPattern(const Model& model, Report& report) {
  if (model.preface() == nullptr) return;
  const auto pattern = labelOf(*model.preface(), "OperationalPattern");
  if (pattern && !MXF::isOperationalPattern(*pattern)) {
    report.add(*model.preface(), "OperationalPattern", {textOf(*pattern)});
  }
}

/// Whether a scheme covers a framework: the registers give both the same item designator, as far as it names the scheme
/// (octets 9 to 13). Frameworks that end before octet 13 are those of a whole node.
bool covers(const UniversalLabel& scheme, const KLV::Key& framework) {
  const uint8 *left = scheme.rawBuffer() + 8, *right = framework.rawBuffer() + 8;
  return std::equal(left, left + 4, right) && (left[4] == right[4] || right[4] == 0);
}

void checkMissingSchemes(const Model& model, Report& report) {
  if (model.preface() == nullptr) return;
  const auto schemes = labelsOf(*model.preface(), "DescriptiveSchemes");
  for (const auto* framework : model.all("DescriptiveFramework")) {
    const bool isCovered = std::any_of(schemes.begin(), schemes.end(),
                                       [&](const UniversalLabel& scheme) { return covers(scheme, framework->key()); });
    if (!isCovered) report.add(*framework);
  }
}

/// A scheme that the dictionary does not know may belong to dark frameworks.
void checkUnusedSchemes(const Model& model, Report& report) {
  if (model.preface() == nullptr) return;
  const auto& sets = model.metadata().sets();
  for (const auto& scheme : labelsOf(*model.preface(), "DescriptiveSchemes")) {
    const bool isUsed =
        std::any_of(sets.begin(), sets.end(), [&](const MetadataSet* set) { return covers(scheme, set->key()); });
    if (!isUsed) report.add(*model.preface(), "DescriptiveSchemes", {textOf(scheme)});
  }
}

}  // namespace

const RuleTable& labelRules() {
  static const RuleTable table = {
      {{"unknown-label", Severity::kNote, "no register has the label {label}", "ST 400"}, checkKnown},
      {{"operational-pattern", Severity::kError, "{label} is no operational pattern", "ST 377-1, Operational Patterns"},
       checkPattern},
      {{"missing-scheme", Severity::kWarning, "the Preface does not list the scheme of the framework",
        "ST 377-1, Preface"},
       checkMissingSchemes},
      {{"unused-scheme", Severity::kNote, "no set belongs to the scheme {label}", "ST 377-1, Preface"},
       checkUnusedSchemes}};
  return table;
}

}  // namespace Vantor::Edit
