#include <unordered_set>

#include "Core/MXF/OperationalPattern.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about packages, and about source clips, which lead from one to the next.
namespace Vantor::Edit {

namespace {

using Types::UMID32;

void checkDoubledPackages(const Model& model, Report& report) {
  for (const auto& package : model.packages()) {
    const auto* first = package.id == nullptr ? nullptr : model.findPackage(*package.id);
    if (first != nullptr && first != &package) report.add(*package.set, "PackageID", {first->set->fullName()});
  }
}

/// ST 330: a basic UMID starts with a label and its length.
bool isUMID(const UMID32& id) {
  return id.octet(1) == 0x06 && id.octet(2) == 0x0a && id.octet(3) == 0x2b && id.octet(4) == 0x34 &&
         id.octet(13) == 0x13;
}

void checkIdentifiers(const Model& model, Report& report) {
  for (const auto& package : model.packages()) {
    if (package.id != nullptr && !isUMID(*package.id))
      report.add(*package.set, "PackageID", {package.id->dottedText()});
  }
}

void checkMaterialPackage(const Model& model, Report& report) {
  const auto storages = model.all("ContentStorage");
  if (!storages.empty() && model.all("MaterialPackage").empty()) report.add(*storages.front(), "Packages");
}

/// A clip in a track of a package; `source` is the package that it refers to, or null.
struct Clip {
  const MetadataSet& set;
  const Package& package;
  const MetadataSet& track;
  const Package* source;
};

/// Calls `visit` for every clip that refers to a package: a zero identifier ends the chain (ST 377-1).
template <class Visit>
void forEachClip(const Model& model, Visit&& visit) {
  for (const auto& component : model.components()) {
    const auto* id = valueOf<UMID32>(*component.set, "SourcePackageID");
    if (id == nullptr || *id == UMID32()) continue;
    visit(Clip{*component.set, *component.package, *component.track, model.findPackage(*id)});
  }
}

bool asksForPackages(const Model& model) {
  const auto* preface = model.preface();
  const auto pattern = preface == nullptr ? std::nullopt : labelOf(*preface, "OperationalPattern");
  return pattern && MXF::hasInternalEssence(*pattern);
}

std::string sourceOf(const Clip& clip) { return valueOf<UMID32>(clip.set, "SourcePackageID")->dottedText(); }

void checkSourcePackages(const Model& model, Report& report) {
  if (!asksForPackages(model)) return;
  forEachClip(model, [&](const Clip& clip) {
    if (clip.source != nullptr || !model.is(*clip.package.set, "MaterialPackage")) return;
    report.add(clip.set, "SourcePackageID", {sourceOf(clip)});
  });
}

void checkLowerPackages(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    if (clip.source != nullptr || model.is(*clip.package.set, "MaterialPackage")) return;
    report.add(clip.set, "SourcePackageID", {sourceOf(clip)});
  });
}

const MetadataSet* sourceTrackOf(const Clip& clip) {
  const auto id = integerOf(clip.set, "SourceTrackID");
  if (clip.source == nullptr || !id) return nullptr;
  const auto found = clip.source->byTrackID.find(*id);
  return found == clip.source->byTrackID.end() ? nullptr : found->second;
}

void checkSourceTracks(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    const auto id = integerOf(clip.set, "SourceTrackID");
    if (clip.source == nullptr || !id || sourceTrackOf(clip) != nullptr) return;
    report.add(clip.set, "SourceTrackID", {clip.source->set->fullName(), std::to_string(*id)});
  });
}

/// Compared only where both tracks count in the same units.
void checkSourceLengths(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    const auto* track = sourceTrackOf(clip);
    if (track == nullptr) return;
    const auto *rate = valueOf<Types::Rational>(clip.track, "EditRate"),
               *other = valueOf<Types::Rational>(*track, "EditRate");
    const auto start = integerOf(clip.set, "StartPosition"), length = integerOf(clip.set, "ComponentLength");
    const auto available = lengthOf(model, *track);
    if (rate == nullptr || other == nullptr || !areEqual(*rate, *other)) return;
    if (!start || length.value_or(-1) < 0 || !available || *start <= *available - *length) return;
    report.add(clip.set, "ComponentLength",
               {std::to_string(*length), std::to_string(*start), std::to_string(*available)});
  });
}

void checkSourceKinds(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    const auto* track = sourceTrackOf(clip);
    const auto* segment = track == nullptr ? nullptr : model.target(*track, "TrackSegment");
    if (segment == nullptr) return;
    const auto own = labelOf(clip.set, "ComponentDataDefinition"), other = labelOf(*segment, "ComponentDataDefinition");
    if (own && other && !areSame(*own, *other)) {
      report.add(clip.set, "ComponentDataDefinition", {textOf(*own), textOf(*other)});
    }
  });
}

}  // namespace

const RuleTable& packageRules() {
  static const RuleTable table = {
      {{"doubled-package", Severity::kError, "the {package} before it has the same PackageID",
        "ST 377-1, Generic Package"},
       checkDoubledPackages},
      {{"package-id", Severity::kWarning, "{identifier} is no basic UMID", "ST 330"}, checkIdentifiers},
      {{"material-package", Severity::kError, "there is no material package", "ST 377-1, Material Package"},
       checkMaterialPackage},
      {{"source-package", Severity::kError,
        "the file has no package {identifier}, though its operational pattern asks for it",
        "ST 377-1, Operational Patterns"},
       checkSourcePackages},
      {{"lower-source-package", Severity::kNote, "the file has no package {identifier}",
        "ST 377-1, Lower-Level Source Packages"},
       checkLowerPackages},
      {{"source-track", Severity::kError, "the {package} has no track {number}", "ST 377-1, Source Clip"},
       checkSourceTracks},
      {{"source-length", Severity::kWarning, "the clip takes {length} from {start} on, its source has {length}",
        "ST 377-1, Source Clip"},
       checkSourceLengths},
      {{"source-kind", Severity::kWarning, "the clip's data definition is {own}, that of its source {other}",
        "ST 377-1, Source Clip"},
       checkSourceKinds}};
  return table;
}

}  // namespace Vantor::Edit
