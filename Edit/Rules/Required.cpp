#include <algorithm>
#include <array>
#include <string_view>

#include "Edit/Rules/Model.h"
#include "Edit/Rules/Rule.h"

/// Rules about properties that are missing.
///
/// The registers mark many properties as required; how much it matters that one is missing depends on who reads it.
/// Without those of `kNeeded`, a reader does not find its way from the Preface to the essence. Writers in the field
/// take those of `kOftenMissing` for optional, whatever the registers say, and players get on without them. The
/// registers leave those of `kDemanded` optional, as a general object model may; ST 377-1 demands them.
namespace Vantor::Edit {

namespace {

struct Place {
  std::string_view set;
  std::string_view property;
};

constexpr std::array<Place, 20> kNeeded = {{{"Preface", "ContentStorageObject"},
                                            {"Preface", "OperationalPattern"},
                                            {"Preface", "EssenceContainers"},
                                            {"ContentStorage", "Packages"},
                                            {"EssenceData", "LinkedPackageID"},
                                            {"EssenceData", "EssenceStreamID"},
                                            {"Package", "PackageID"},
                                            {"Package", "PackageTracks"},
                                            {"Track", "TrackID"},
                                            {"Track", "TrackSegment"},
                                            {"TimelineTrack", "EditRate"},
                                            {"EventTrack", "EventTrackEditRate"},
                                            {"Component", "ComponentDataDefinition"},
                                            {"Sequence", "ComponentObjects"},
                                            {"SourceClip", "SourcePackageID"},
                                            {"SourceClip", "SourceTrackID"},
                                            {"SourceClip", "StartPosition"},
                                            {"FileDescriptor", "ContainerFormat"},
                                            {"MultipleDescriptor", "FileDescriptors"},
                                            {"InterchangeObject", "InstanceID"}}};

constexpr std::array<Place, 4> kDemanded = {{{"Preface", "DescriptiveSchemes"},
                                             {"Identification", "FileModificationDate"},
                                             {"Track", "EssenceTrackNumber"},
                                             {"FileDescriptor", "SampleRate"}}};

constexpr std::array<Place, 2> kOftenMissing = {
    {{"DCTimedTextDescriptor", "ResourceID"}, {"TaggedValueDefinition", "TaggedValueParentProperties"}}};

/// Lists that are as good as missing when they are empty.
constexpr std::array<Place, 2> kNeededItems = {
    {{"ContentStorage", "Packages"}, {"MultipleDescriptor", "FileDescriptors"}}};

/// Packages without essence in the file may lack it; for the others there is a rule of its own.
constexpr std::string_view kDescription = "EssenceDescription";

/// A table for look-ups: the properties by their symbols, which are those of one set each.
template <std::size_t kCount>
bool lists(const std::array<Place, kCount>& places, std::string_view property) {
  return std::any_of(places.begin(), places.end(), [&](const Place& place) { return place.property == property; });
}

bool isMissing(const MetadataSet& set, std::string_view property) { return valueOf(set, property) == nullptr; }

bool isEmpty(const MetadataSet& set, std::string_view property) {
  std::vector<Types::UUID> items;
  const auto* element = set.find(property);
  if (element != nullptr) element->appendTargets({false}, items);
  return !isMissing(set, property) && items.empty();
}

template <std::size_t kCount>
void checkPlaces(const Model& model, const std::array<Place, kCount>& places, Report& report) {
  for (const auto& place : places) {
    for (const auto* set : model.all(place.set)) {
      if (isMissing(*set, place.property)) report.add(*set, std::string(place.property));
    }
  }
}

void checkNeeded(const Model& model, Report& report) {
  checkPlaces(model, kNeeded, report);
  for (const auto& place : kNeededItems) {
    for (const auto* set : model.all(place.set)) {
      if (isEmpty(*set, place.property)) report.add(*set, std::string(place.property));
    }
  }
}
void checkOftenMissing(const Model& model, Report& report) { checkPlaces(model, kOftenMissing, report); }

bool isRegisterRequired(const MetaMetadata::MetaAttribute& attribute) {
  const auto& symbol = attribute.metaElement()->symbol();
  return attribute.requiredStatus() == 0 && symbol != kDescription && !lists(kNeeded, symbol) &&
         !lists(kOftenMissing, symbol) && !lists(kDemanded, symbol);
}

void checkRequired(const Model& model, Report& report) {
  checkPlaces(model, kDemanded, report);
  for (const auto* set : model.sets()) {
    for (const auto& attribute : set->definition()->attributes()) {
      if (!isRegisterRequired(attribute)) continue;
      const auto* element = set->find(attribute.metaElement()->key());
      const bool hasValue = element != nullptr && element->isPresent() && element->wireValue() != nullptr;
      if (!hasValue) report.add(*set, attribute.metaElement()->symbol());
    }
  }
}

}  // namespace

const RuleTable& requiredRules() {
  static const RuleTable table = {
      {{"needed-property", Severity::kError, "a property that readers need is missing or empty", "ST 377-1"},
       checkNeeded},
      {{"required-property", Severity::kWarning, "a required property is missing", "ST 377-1, ST 395"}, checkRequired},
      {{"often-missing-property", Severity::kNote, "a required property is missing that many writers leave out",
        "ST 395"},
       checkOftenMissing}};
  return table;
}

}  // namespace Vantor::Edit
