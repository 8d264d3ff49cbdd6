#include "Tree/SetNames.h"

#include <algorithm>
#include <unordered_set>

#include "Core/Comparison/ValueText.h"
#include "Core/MetaMetadata/CommonNames.h"
#include "Core/Metadata/SetValues.h"
#include "Core/Types/Text/StringText.h"

namespace Vantor::Tool {

namespace {

using Properties = std::vector<std::string_view>;

/// What people ask for first, by kind; sets that inherit from one have the same, behind their own.
const std::unordered_map<std::string_view, Properties>& firstProperties() {
  static const std::unordered_map<std::string_view, Properties> properties = {
      {"Preface", {"OperationalPattern", "FileLastModified", "FormatVersion"}},
      {"Identification",
       {"ApplicationSupplierName", "ApplicationName", "ApplicationVersionString", "FileModificationDate"}},
      {"Package", {"PackageName", "PackageID", "CreationTime", "PackageLastModified"}},
      {"Track", {"TrackID", "TrackName"}},
      {"TimelineTrack", {"TrackID", "TrackName", "EditRate"}},
      {"Component", {"ComponentDataDefinition", "ComponentLength"}},
      {"SourceReference", {"SourcePackageID", "SourceTrackID", "StartPosition"}},
      {"Timecode", {"StartTimecode", "FramesPerSecond", "DropFrame"}},
      {"PictureDescriptor",
       {"PictureCompression", "StoredWidth", "StoredHeight", "ImageAspectRatio", "FrameLayout", "SampleRate"}},
      {"SoundDescriptor", {"SoundCompression", "AudioSampleRate", "ChannelCount", "QuantizationBits"}},
      {"FileDescriptor", {"LinkedTrackID", "ContainerFormat", "SampleRate", "EssenceLength"}},
      {"MCALabelSubDescriptor", {"MCAChannelID", "MCATagSymbol", "MCATagName", "RFC5646SpokenLanguage"}},
      {"EssenceData", {"LinkedPackageID", "EssenceStreamID", "IndexStreamID"}},
  };
  return properties;
}

bool isText(const Element& element) {
  const auto* value = element.wireValue();
  return value != nullptr && Types::isTextType(value->identifier());
}

}  // namespace

SetNames::SetNames(const PartitionMetadata& metadata) {
  for (const auto* set : metadata.sets()) {
    if (set->definition() == nullptr) continue;
    auto& count = counts_[set->definition()];  // whose address stays
    places_.emplace(set, Place{++count, &count});
    const auto* id = valueOf<Types::UMID32>(*set, "PackageID");
    if (id != nullptr) packages_.emplace(*id, set);
  }
}

std::string SetNames::choiceOf(const MetadataSet& set) const {
  const auto found = places_.find(&set);
  if (found == places_.end() || *found->second.count == 1) return set.name();
  return set.name() + "[" + std::to_string(found->second.number) + "]";
}

std::string SetNames::nameOf(const MetadataSet& set) const {
  if (set.definition() == nullptr) return choiceOf(set);
  return choiceOf(set) + MetaMetadata::namesOf(*set.definition()).substr(set.definition()->symbol().size());
}

const std::string& SetNames::fullName(const MetadataSet& set) const {
  const auto found = fullNames_.find(&set);
  return found != fullNames_.end() ? found->second : fullNames_.emplace(&set, makeFullName(set)).first->second;
}

std::string SetNames::makeFullName(const MetadataSet& set) const {
  for (const auto* element : inOrderOfInterest(set)) {
    if (element->metaAttribute().metaElement() != nullptr && isText(*element)) {
      return choiceOf(set) + " " + valueText(set, *element);
    }
  }
  return choiceOf(set);
}

const MetadataSet* SetNames::findPackage(const Types::UMID32& id) const {
  const auto found = packages_.find(id);
  return found == packages_.end() ? nullptr : found->second;
}

std::vector<const Element*> inOrderOfInterest(const MetadataSet& set) {
  std::vector<const Element*> elements;
  std::unordered_set<const Element*> seen;
  const auto add = [&](const Element* element) {
    if (element != nullptr && element->isPresent() && seen.insert(element).second) elements.push_back(element);
  };
  for (const auto* kind = set.definition(); kind != nullptr; kind = kind->parent()) {
    const auto first = firstProperties().find(kind->symbol());
    if (first == firstProperties().end()) continue;
    for (const auto property : first->second) add(set.find(property));
  }
  for (const auto* element : set.inDefinitionOrder()) add(element);
  return elements;
}

}  // namespace Vantor::Tool
