#include <algorithm>

#include "Core/MXF/OperationalPattern.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about packages, and about source clips, which lead from one to the next.
namespace Vantor::Edit {

namespace {

using Types::Rational;
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

/// Without any package, that is what is wrong.
void checkMaterialPackage(const Model& model, Report& report) {
  const auto packages = storedPackages(model);
  const bool hasOne = std::any_of(packages.begin(), packages.end(),
                                  [&](const MetadataSet* package) { return model.is(*package, "MaterialPackage"); });
  if (!packages.empty() && !hasOne) report.add(*model.target(*model.preface(), "ContentStorageObject"), "Packages");
}

/// A clip in a track of a package; `source` is the package that it refers to, or null.
struct Clip {
  const MetadataSet& set;
  const Package& package;
  const MetadataSet& track;
  const Package* source;
};

template <class Visit>
void forEachClipOrEnd(const Model& model, Visit&& visit) {
  for (const auto& component : model.components()) {
    const auto* id = valueOf<UMID32>(*component.set, "SourcePackageID");
    if (id == nullptr) continue;
    visit(Clip{*component.set, *component.package, *component.track, model.findPackage(*id)});
  }
}

bool isEnd(const Clip& clip) { return *valueOf<UMID32>(clip.set, "SourcePackageID") == UMID32(); }

/// Calls `visit` for every clip that refers to a package: a zero identifier ends the chain (ST 377-1).
template <class Visit>
void forEachClip(const Model& model, Visit&& visit) {
  forEachClipOrEnd(model, [&](const Clip& clip) {
    if (!isEnd(clip)) visit(clip);
  });
}

bool asksForPackages(const Model& model) {
  const auto pattern = patternOf(model);
  return pattern && MXF::hasInternalEssence(*pattern);
}

std::string sourceOf(const Clip& clip) { return valueOf<UMID32>(clip.set, "SourcePackageID")->dottedText(); }

/// A chain does not end in a material package, unless its track has no essence.
void checkSourcePackages(const Model& model, Report& report) {
  if (!asksForPackages(model)) return;
  forEachClipOrEnd(model, [&](const Clip& clip) {
    if (clip.source != nullptr || !model.is(*clip.package.set, "MaterialPackage")) return;
    if (isEnd(clip) && !isEssenceTrack(model, clip.track)) return;
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

/// The part of its source that a clip takes, and how long the source is, in edit units of either track.
struct Extent {
  int64 start;
  int64 length;
  int64 available;
  Rational rate;
  Rational other;
};

/// None where anything is unknown.
std::optional<Extent> extentOf(const Model& model, const Clip& clip) {
  const auto* track = sourceTrackOf(clip);
  if (track == nullptr) return std::nullopt;
  const auto *rate = valueOf<Rational>(clip.track, "EditRate"), *other = valueOf<Rational>(*track, "EditRate");
  const auto start = integerOf(clip.set, "StartPosition"), length = integerOf(clip.set, "ComponentLength");
  const auto available = lengthOf(model, *track);
  if (rate == nullptr || other == nullptr || !isPositive(*rate) || !isPositive(*other)) return std::nullopt;
  if (!start || length.value_or(-1) < 0 || !available) return std::nullopt;
  return Extent{*start, *length, *available, *rate, *other};
}

/// Compared where both tracks count in the same units.
void checkSourceLengths(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    const auto extent = extentOf(model, clip);
    if (!extent || !areEqual(extent->rate, extent->other)) return;
    if (extent->start <= extent->available - extent->length) return;
    report.add(clip.set, "ComponentLength",
               {std::to_string(extent->length), std::to_string(extent->start), std::to_string(extent->available)});
  });
}

double secondsOf(int64 units, const Rational& rate) {
  return static_cast<double>(units) * rate.denominator() / rate.numerator();
}

/// A clip in other units than its source's may end within the last of these.
void checkSourceDurations(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    const auto extent = extentOf(model, clip);
    if (!extent || areEqual(extent->rate, extent->other)) return;
    const double end = secondsOf(extent->start, extent->rate) + secondsOf(extent->length, extent->rate);
    const double available = secondsOf(extent->available, extent->other);
    const double unit = std::max(secondsOf(1, extent->rate), secondsOf(1, extent->other));
    constexpr double kRounding = 1.001;
    if (end <= available + unit * kRounding) return;
    report.add(clip.set, "ComponentLength", {std::to_string(end), std::to_string(available)});
  });
}

void checkStarts(const Model& model, Report& report) {
  forEachClip(model, [&](const Clip& clip) {
    const auto start = integerOf(clip.set, "StartPosition");
    if (start.value_or(0) < 0) report.add(clip.set, "StartPosition", {std::to_string(*start)});
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
      {{"source-duration", Severity::kWarning, "the clip ends at {seconds} s of its source, which lasts {seconds} s",
        "ST 377-1, Source Clip"},
       checkSourceDurations},
      {{"start-position", Severity::kWarning, "the clip starts at {start}, before its source", "ST 377-1, Source Clip"},
       checkStarts},
      {{"source-kind", Severity::kWarning, "the clip's data definition is {own}, that of its source {other}",
        "ST 377-1, Source Clip"},
       checkSourceKinds}};
  return table;
}

}  // namespace Vantor::Edit
