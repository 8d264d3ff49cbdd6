#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>

#include "Core/DataIO/BigEndian.h"
#include "Core/Dictionary/BuiltInDictionary.h"
#include "Core/Types/Collection.h"
#include "Edit/DescriptiveSchemes.h"
#include "Edit/Rules/PackageFacts.h"
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

/// Properties whose values are labels, whatever their type allows. Without those of `kEssenceLabels`, a player does not
/// find its decoder.
constexpr std::array kEssenceLabels = {"PictureCompression", "SoundCompression", "ContainerFormat",
                                       "EssenceContainers"};
constexpr std::array kOtherLabels = {"TransferCharacteristic", "ColorPrimaries", "CodingEquations",
                                     "DescriptiveSchemes"};
constexpr const char* kDataDefinition = "ComponentDataDefinition";
constexpr const char* kPattern = "OperationalPattern";

template <std::size_t kCount>
bool lists(const std::array<const char*, kCount>& symbols, const std::string& symbol) {
  return std::find(symbols.begin(), symbols.end(), symbol) != symbols.end();
}

/// ST 298: any SMPTE label.
bool isLabel(const UniversalLabel& label) {
  return label.octet(1) == 0x06 && label.octet(2) == 0x0e && label.octet(3) == 0x2b && label.octet(4) == 0x34;
}

/// Some writers swap the halves of labels in properties whose type they take for a UUID.
UniversalLabel withSwappedHalves(const UniversalLabel& label) {
  constexpr std::ptrdiff_t kHalf = 8;
  std::array<uint8, UniversalLabel::kSize> octets;
  std::copy_n(label.rawBuffer(), octets.size(), octets.begin());
  std::rotate(octets.begin(), octets.begin() + kHalf, octets.end());
  return UniversalLabel(octets);
}

/// Whether labels begin with the octets of this one, up to the zeros at its end: the registers have nodes above labels.
bool isNode(const UniversalLabel& label) {
  constexpr std::size_t kVersion = 8;
  std::array<uint8, UniversalLabel::kSize> octets;
  std::copy_n(label.rawBuffer(), octets.size(), octets.begin());
  std::size_t end = octets.size();
  while (end > kVersion && octets[end - 1] == 0) --end;
  if (end == kVersion || end == octets.size()) return false;
  for (octets[end] = 1; octets[end] != 0; ++octets[end]) {
    if (builtInLabels().findLabel(UniversalLabel(octets)) != nullptr) return true;
  }
  return false;
}

/// Finds labels that nothing defines: no register, no dictionary file, and no definition in the metadata themselves.
class KnownLabels {
 public:
  explicit KnownLabels(const Model& model) : dictionary_(model.dictionary()) {
    for (const auto* definition : model.all("DefinitionObject")) {
      if (const auto label = labelOf(*definition, "DefinitionObjectIdentification")) defined_.insert(*label);
    }
  }

  bool has(const UniversalLabel& label) const {
    return dictionary_.findLabel(label) != nullptr || builtInLabels().findLabel(label) != nullptr || isDefined(label);
  }
  /// By the metadata themselves.
  bool isDefined(const UniversalLabel& label) const { return defined_.count(label) != 0; }

 private:
  const MetaMetadata::Dictionary& dictionary_;
  Labels defined_;
};

/// Calls `visit(set, symbol, label)` for the values of all properties that may be labels.
template <class Visit>
void forEachLabel(const Model& model, Visit&& visit) {
  for (const auto* set : model.sets()) {
    for (const auto* element : set->inDefinitionOrder()) {
      if (definitionOf(*element) == nullptr || element->wireValue() == nullptr) continue;
      forEachLabel(*element->wireValue(), [&](const UniversalLabel& label) { visit(*set, symbolOf(*element), label); });
    }
  }
}

/// Whether a label may be one of the labels register: by its octets, or by the property, where zeros stand for none.
bool isSought(const std::string& symbol, const UniversalLabel& label) {
  if (symbol == kDataDefinition || symbol == kPattern) return false;  // of which there are rules
  const bool isOther = lists(kOtherLabels, symbol) && label != UniversalLabel() && !isLabel(label);
  return isRegistryLabel(label) || (isOther && !isLabel(withSwappedHalves(label)));
}

void checkKnown(const Model& model, Report& report) {
  const KnownLabels known(model);
  forEachLabel(model, [&](const MetadataSet& set, const std::string& symbol, const UniversalLabel& label) {
    if (isSought(symbol, label) && !known.has(label) && !isNode(label)) report.add(set, symbol, {textOf(label)});
  });
}

/// Containers of zeros are none, of which there is a rule.
void checkEssenceLabels(const Model& model, Report& report) {
  const KnownLabels known(model);
  forEachLabel(model, [&](const MetadataSet& set, const std::string& symbol, const UniversalLabel& label) {
    if (!lists(kEssenceLabels, symbol) || isLabel(label) || known.isDefined(label)) return;
    if (label != UniversalLabel()) report.add(set, symbol, {textOf(label)});
  });
}

/// Where the register has the labels of a property: what these have from octet 9 on.
struct Branch {
  std::string_view property;
  std::string_view octets;
};
constexpr std::array<Branch, 8> kBranches = {{{"PictureCompression", "\x04\x01\x02"},
                                              {"SoundCompression", "\x04\x02\x02"},
                                              {"ContainerFormat", "\x0d\x01\x03"},
                                              {"EssenceContainers", "\x0d\x01\x03"},
                                              {"TransferCharacteristic", "\x04\x01\x01\x01\x01"},
                                              {"CodingEquations", "\x04\x01\x01\x01\x02"},
                                              {"ColorPrimaries", "\x04\x01\x01\x01\x03"},
                                              {kDataDefinition, "\x01\x03\x02"}}};

/// ST 400: 0E and 0F in octet 9 are of organisations and experiments, for whatever these like.
bool isElsewhere(const UniversalLabel& label, std::string_view octets) {
  constexpr uint8 kOrganisations = 0x0e;
  constexpr std::size_t kStart = 8;
  const auto isEqual = [](char left, uint8 right) { return static_cast<uint8>(left) == right; };
  return label.octet(9) < kOrganisations &&
         !std::equal(octets.begin(), octets.end(), label.rawBuffer() + kStart, isEqual);
}

void checkBranches(const Model& model, Report& report) {
  forEachLabel(model, [&](const MetadataSet& set, const std::string& symbol, const UniversalLabel& label) {
    const auto* branch = std::find_if(kBranches.begin(), kBranches.end(),
                                      [&](const Branch& candidate) { return candidate.property == symbol; });
    if (branch == kBranches.end() || !isRegistryLabel(label) || builtInLabels().findLabel(label) == nullptr) return;
    if (isElsewhere(label, branch->octets)) report.add(set, symbol, {textOf(label)});
  });
}

void checkKnownDefinitions(const Model& model, Report& report) {
  const KnownLabels known(model);
  for (const auto* component : model.all("Component")) {
    const auto label = labelOf(*component, kDataDefinition);
    const bool isOld = label && !isLabel(*label) && MXF::isEssence(MXF::trackKindOf(*label));
    if (label && !isOld && !known.has(*label)) report.add(*component, kDataDefinition, {textOf(*label)});
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
      {{"essence-label", Severity::kWarning, "{label} is no SMPTE label", "ST 298; ST 377-1, File Descriptor"},
       checkEssenceLabels},
      {{"label-kind", Severity::kWarning, "the label {label} stands for something of another kind", "ST 400"},
       checkBranches},
      {{"unknown-data-definition", Severity::kWarning, "no register has the data definition {label}",
        "ST 377-1, Structural Component; ST 400"},
       checkKnownDefinitions},
      {{"missing-scheme", Severity::kWarning, "the Preface does not list the scheme of the framework",
        "ST 377-1, Preface"},
       checkMissingSchemes},
      {{"unused-scheme", Severity::kNote, "no set belongs to the scheme {label}", "ST 377-1, Preface"},
       checkUnusedSchemes}};
  return table;
}

}  // namespace Vantor::Edit
