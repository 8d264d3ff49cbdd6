#include <algorithm>
#include <unordered_set>

#include "Core/DataIO/BigEndian.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/MXF/OperationalPattern.h"
#include "Core/Types/Collection.h"
#include "Edit/DescriptiveSchemes.h"
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

/// Pairs schemes with sets. The registers give nearly every scheme and its frameworks (but see `isSchemeOf`) the same
/// item designator as far as it names the scheme, octets 9 to 13; sets with 0 in octet 13 are those of a whole node.
class SchemeIndex {
 public:
  void add(const uint8* label) {
    const auto scheme = numberOf(label);
    schemes_.insert(scheme);
    nodes_.insert(scheme >> 8);
    if ((scheme & 0xff) == 0) wholeNodes_.insert(scheme >> 8);
  }

  /// @param label  of a set, where schemes were added.
  bool covers(const uint8* label) const {
    const auto scheme = numberOf(label);
    return schemes_.count(scheme) != 0 || ((scheme & 0xff) == 0 && nodes_.count(scheme >> 8) != 0);
  }
  /// @param label  of a scheme, where sets were added.
  bool isCovered(const uint8* label) const {
    const auto scheme = numberOf(label);
    return schemes_.count(scheme) != 0 || wholeNodes_.count(scheme >> 8) != 0;
  }

 private:
  static uint64 numberOf(const uint8* label) { return DataIO::readBigEndian<uint64>(label + 8) >> 24; }

  std::unordered_set<uint64> schemes_;
  std::unordered_set<uint64> nodes_;
  std::unordered_set<uint64> wholeNodes_;
};

/// The keys of frameworks, each once: no more than the dictionary has.
std::vector<const KLV::Key*> keysOf(const std::vector<const MetadataSet*>& frameworks) {
  std::unordered_set<const MetaMetadata::MetaMetadataSet*> kinds;
  std::vector<const KLV::Key*> keys;
  for (const auto* framework : frameworks) {
    if (kinds.insert(framework->definition()).second) keys.push_back(&framework->key());
  }
  return keys;
}

/// Which kinds of frameworks have a scheme among some labels. Looks at each kind once.
class ListedKinds {
 public:
  explicit ListedKinds(std::vector<UniversalLabel> labels) : labels_(std::move(labels)) {
    for (const auto& label : labels_) schemes_.add(label.rawBuffer());
  }

  bool has(const MetadataSet& framework) {
    const auto [kind, isNew] = kinds_.emplace(framework.definition(), false);
    if (isNew) kind->second = isListed(framework.key());
    return kind->second;
  }

 private:
  bool isListed(const KLV::Key& key) const {
    return schemes_.covers(key.rawBuffer()) ||
           std::any_of(labels_.begin(), labels_.end(), [&](const auto& label) { return isSchemeOf(label, key); });
  }

  std::vector<UniversalLabel> labels_;
  SchemeIndex schemes_;
  std::unordered_map<const MetaMetadata::MetaMetadataSet*, bool> kinds_;
};

void checkMissingSchemes(const Model& model, Report& report) {
  if (model.preface() == nullptr) return;
  ListedKinds listed(labelsOf(*model.preface(), "DescriptiveSchemes"));
  for (const auto* framework : model.all("DescriptiveFramework")) {
    if (!listed.has(*framework)) report.add(*framework);
  }
}

/// A scheme that the dictionary does not know may belong to dark frameworks.
void checkUnusedSchemes(const Model& model, Report& report) {
  if (model.preface() == nullptr) return;
  SchemeIndex sets;
  for (const auto* set : model.metadata().sets()) sets.add(set->key().rawBuffer());
  const auto keys = keysOf(model.all("DescriptiveFramework"));
  for (const auto& scheme : labelsOf(*model.preface(), "DescriptiveSchemes")) {
    const bool isUsed =
        sets.isCovered(scheme.rawBuffer()) ||
        std::any_of(keys.begin(), keys.end(), [&](const auto* key) { return isSchemeOf(scheme, *key); });
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
