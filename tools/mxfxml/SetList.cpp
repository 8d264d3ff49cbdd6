#include "SetList.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Core/Comparison/ValueText.h"
#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Types/Types.h"
#include "DictionaryText.h"
#include "TextTable.h"

namespace Vantor::Tool {

namespace {

using Properties = std::vector<std::string_view>;

constexpr std::string_view kDataDefinition = "ComponentDataDefinition";

/// What people know sets by; sets that inherit from one of these have the same, unless they stand here, too.
const std::unordered_map<std::string_view, Properties>& knownProperties() {
  static const std::unordered_map<std::string_view, Properties> properties = {
      {"Identification", {"ApplicationSupplierName", "ApplicationName", "FileModificationDate"}},
      {"Package", {"PackageName", "PackageID"}},
      {"EssenceData", {"EssenceStreamID", "LinkedPackageID"}},
      {"Track", {"TrackID", "TrackName"}},
      {"Component", {kDataDefinition}},
      {"Timecode", {"StartTimecode", "FramesPerSecond"}},
      {"SourceReference", {kDataDefinition, "SourceTrackID", "StartPosition"}},
      {"Event", {"EventPosition", "EventComment"}},
      {"FileDescriptor", {"LinkedTrackID", "ContainerFormat"}},
      {"PictureDescriptor", {"LinkedTrackID", "PictureCompression", "StoredWidth", "StoredHeight"}},
      {"SoundDescriptor", {"LinkedTrackID", "AudioSampleRate", "ChannelCount"}},
      {"MCALabelSubDescriptor", {"MCATagSymbol", "MCATagName", "RFC5646SpokenLanguage"}},
      {"TaggedValue", {"Tag", "Value"}},
  };
  return properties;
}

bool isTextOrNumber(Types::Identifiers::Identifier type) {
  using namespace Types::Identifiers;
  constexpr Identifier kTypes[] = {kUTF16String, kUTF8String, kISO7String, kISO8String, kInt8,   kInt16,  kInt32,
                                   kInt64,       kUInt8,      kUInt16,     kUInt32,     kUInt64, kLength, kPosition};
  return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

const Types::SimpleDataType* valueOf(const MetadataSet& set, std::string_view property) {
  const auto* element = set.find(property);
  return element == nullptr ? nullptr : element->wireValue();
}

class SetList {
 public:
  SetList(const PartitionMetadata& metadata, const Definitions& definitions)
      : metadata_(metadata), definitions_(definitions) {
    for (const MetadataSet* set : metadata.sets()) {
      if (set->definition() != nullptr) kinds_[set->definition()->symbol()].push_back(set);
    }
    for (const auto& [name, sets] : kinds_) {
      for (std::size_t i = 0; i < sets.size(); ++i) choices_[sets[i]] = choiceOf(*sets[i], i + 1, sets.size());
    }
    for (const MetadataSet* set : metadata.sets()) {
      for (const MetadataSet* target : targetsOf(*set, metadata, ReferenceKinds{})) owners_.emplace(target, set);
    }
  }

  std::string text() const {
    TextTable table(2);
    for (const auto& [name, sets] : kinds_) {
      for (const auto* set : sets) table.addRow(row(*set));
    }
    return table.text();
  }

 private:
  /// An abstract kind stands for all that inherit from it, so that its own sets have no numbers.
  static std::string choiceOf(const MetadataSet& set, std::size_t number, std::size_t count) {
    if (!set.definition()->isConcrete() && set.instanceUID() != nullptr) return set.instanceUID()->dottedText();
    return count == 1 ? set.name() : set.name() + "[" + std::to_string(number) + "]";
  }

  TextTable::Row row(const MetadataSet& set) const {
    std::string name = choices_.at(&set);
    name += MetaMetadata::namesOf(*set.definition()).substr(set.definition()->symbol().size());
    std::string details;
    for (const auto& detail : detailsOf(set)) details += (details.empty() ? "" : ", ") + detail;
    return details.empty() ? TextTable::Row{name} : TextTable::Row{name, details};
  }

  std::vector<std::string> detailsOf(const MetadataSet& set) const {
    std::vector<std::string> details;
    for (const auto property : propertiesOf(set)) addDetail(set, property, details);
    if (const auto* segment = segmentOf(set)) addDetail(*segment, kDataDefinition, details);
    const auto owner = owners_.find(&set);
    const bool isShown = owner != owners_.end() && owner->second->name() != "Preface" &&
                         owner->second->name() != "ContentStorage";  // of which there is one
    if (isShown) details.push_back("in " + choices_.at(owner->second));
    return details;
  }

  static Properties propertiesOf(const MetadataSet& set) {
    for (const auto* kind = set.definition(); kind != nullptr; kind = kind->parent()) {
      const auto found = knownProperties().find(kind->symbol());
      if (found != knownProperties().end()) return found->second;
    }
    for (const Element* element : set.inDefinitionOrder()) {
      const auto* definition = element->metaAttribute().metaElement();
      const auto* value = element->wireValue();
      if (definition != nullptr && value != nullptr && isTextOrNumber(value->identifier()))
        return {definition->symbol()};
    }
    return {};
  }

  /// What a track has on it: its kind is that of the track.
  const MetadataSet* segmentOf(const MetadataSet& set) const {
    if (set.find("TrackSegment") == nullptr) return nullptr;
    for (const MetadataSet* target : targetsOf(set, metadata_, ReferenceKinds{})) {
      if (valueOf(*target, kDataDefinition) != nullptr) return target;
    }
    return nullptr;
  }

  void addDetail(const MetadataSet& set, std::string_view property, std::vector<std::string>& details) const {
    const auto* value = valueOf(set, property);
    if (value == nullptr) return;
    const auto name = property == kDataDefinition ? std::string() : set.namesOf(property) + " ";
    details.push_back(name + textOf(*value));
  }

  std::string textOf(const Types::SimpleDataType& value) const {
    const bool isLabel =
        value.identifier() == Types::Identifiers::kAUID || value.identifier() == Types::Identifiers::kUniversalLabel;
    const auto name = isLabel ? labelName(definitions_, Types::UniversalLabel(value.rawBuffer())) : std::string();
    return name.empty() ? valueText(value) : name;
  }

  const PartitionMetadata& metadata_;
  const Definitions& definitions_;
  std::map<std::string, std::vector<const MetadataSet*>> kinds_;
  std::unordered_map<const MetadataSet*, std::string> choices_;
  std::unordered_map<const MetadataSet*, const MetadataSet*> owners_;  // the first that refers to a set
};

}  // namespace

std::string listOfSets(const PartitionMetadata& metadata, const Definitions& definitions) {
  return SetList(metadata, definitions).text();
}

}  // namespace Vantor::Tool
