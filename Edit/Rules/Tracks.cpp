#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

#include "Core/Comparison/ValueText.h"
#include "Core/Types/Batch.h"
#include "Edit/Rules/PackageFacts.h"
#include "Edit/Rules/Rule.h"

/// Rules about tracks and their components.
namespace Vantor::Edit {

namespace {

using Types::Rational;

/// Reports every track of a package whose number another one has. @param skipped  stands for no number.
void checkNumbers(const Package& package, const char* property, std::optional<int64> skipped, Report& report) {
  std::unordered_set<int64> numbers;
  for (const auto* track : package.tracks) {
    const auto number = integerOf(*track, property);
    if (!number || number == skipped || numbers.insert(*number).second) continue;
    report.add(*track, property, {std::to_string(*number), package.set->name()});
  }
}

void checkTrackIDs(const Model& model, Report& report) {
  for (const auto& package : model.packages()) checkNumbers(package, "TrackID", std::nullopt, report);
}

/// 0 stands for no track where clips and descriptors name one (ST 377-1).
void checkZeroTrackIDs(const Model& model, Report& report) {
  for (const auto* track : model.all("Track")) {
    if (integerOf(*track, "TrackID") == 0) report.add(*track, "TrackID");
  }
}

/// The number links a track to its essence elements (ST 379-1) in packages with essence in the file; in others it
/// counts the tracks of one kind.
void checkTrackNumbers(const Model& model, Report& report) {
  for (const auto* package : model.packagesWithEssence()) checkNumbers(*package, "EssenceTrackNumber", 0, report);
}

void checkZeroNumbers(const Model& model, Report& report) {
  for (const auto* package : model.packagesWithEssence()) {
    for (const auto* track : package->tracks) {
      const bool isZero = integerOf(*track, "EssenceTrackNumber") == 0;
      if (isZero && package->hasStream && isEssenceTrack(model, *track)) report.add(*track, "EssenceTrackNumber");
    }
  }
}

/// Segments abut; a transition overlaps with both its neighbours, so that its length counts backwards. Events have
/// positions instead. None where a length is unknown, or not even their sum is one.
std::optional<int64> sumOf(const Model& model, const std::vector<const MetadataSet*>& components) {
  int64 sum = 0;
  for (const auto* component : components) {
    const auto length = integerOf(*component, "ComponentLength");
    constexpr int64 kLongest = std::numeric_limits<int64>::max() / 2;
    if (length.value_or(-1) < 0 || *length > kLongest || model.is(*component, "Event")) return std::nullopt;
    if (sum > kLongest || sum < -kLongest) return std::nullopt;
    sum += model.is(*component, "Transition") ? -*length : *length;
  }
  return sum;
}

void checkSequenceLengths(const Model& model, Report& report) {
  for (const auto* sequence : model.all("Sequence")) {
    const auto length = integerOf(*sequence, "ComponentLength");
    const auto sum = sumOf(model, model.targets(*sequence, "ComponentObjects"));
    if (length.value_or(-1) < 0 || !sum || *sum == *length) continue;
    report.add(*sequence, "ComponentLength", {std::to_string(*length), std::to_string(*sum)});
  }
}

void checkDataDefinitions(const Model& model, Report& report) {
  for (const auto* sequence : model.all("Sequence")) {
    const auto definition = labelOf(*sequence, "ComponentDataDefinition");
    if (!definition) continue;
    for (const auto* component : model.targets(*sequence, "ComponentObjects")) {
      const auto other = labelOf(*component, "ComponentDataDefinition");
      if (other && !areSame(*other, *definition)) {
        report.add(*component, "ComponentDataDefinition", {textOf(*other), textOf(*definition)});
      }
    }
  }
}

/// The duration of a track in seconds, and that of one edit unit.
struct Duration {
  double seconds;
  double unit;
};

std::optional<Duration> durationOf(const Model& model, const MetadataSet& track) {
  const auto length = lengthOf(model, track);
  const auto* rate = valueOf<Rational>(track, "EditRate");
  if (!length || rate == nullptr || !isPositive(*rate)) return std::nullopt;
  const double unit = static_cast<double>(rate->denominator()) / rate->numerator();
  return Duration{static_cast<double>(*length) * unit, unit};
}

/// Tracks of two edit rates cannot be more equal than one edit unit.
bool areUnequal(const Duration& left, const Duration& right) {
  const double tolerance = left.unit == right.unit ? left.unit / 2 : std::max(left.unit, right.unit) * 1.001;
  return std::abs(left.seconds - right.seconds) > tolerance;
}

void checkEqualTracks(const Model& model, const Package& package, Report& report) {
  std::optional<Duration> first;
  for (const auto* track : package.tracks) {
    const auto duration = isEssenceTrack(model, *track) ? durationOf(model, *track) : std::nullopt;
    if (!duration) continue;
    if (first && areUnequal(*first, *duration)) {
      report.add(*track, "TrackSegment", {std::to_string(duration->seconds), std::to_string(first->seconds)});
    }
    if (!first) first = duration;
  }
}

void checkUnequalTracks(const Model& model, Report& report) {
  for (const auto& package : model.packages()) {
    if (model.is(*package.set, "MaterialPackage")) checkEqualTracks(model, package, report);
  }
}

/// Whether timecode may count every second or fourth edit unit, or as many in one: 25 frames per second of a track of
/// 50 pictures. A track of 48,000 samples has any timecode.
bool fits(int64 base, const Rational& rate) {
  const double perSecond = static_cast<double>(rate.numerator()) / rate.denominator();
  const double ratio = perSecond / static_cast<double>(base), larger = std::max(ratio, 1 / ratio);
  const double whole = std::round(larger);
  constexpr double kRoundedRate = 0.002;  // 30 frames per second stand for 30000/1001
  constexpr double kMostPictures = 1000;  // per second; other rates are of sound
  const bool isMultiple = whole == 1 || whole == 2 || whole == 4 || perSecond >= kMostPictures;
  return std::llround(perSecond) == base || (isMultiple && std::abs(larger / whole - 1) < kRoundedRate);
}

void checkTimecodeRates(const Model& model, Report& report) {
  for (const auto& component : model.components()) {
    const auto* rate = valueOf<Rational>(*component.track, "EditRate");
    if (rate == nullptr || !isPositive(*rate)) continue;
    const auto base =
        model.is(*component.set, "Timecode") ? integerOf(*component.set, "FramesPerSecond") : std::nullopt;
    if (base.value_or(0) == 0 || fits(*base, *rate)) continue;
    report.add(*component.set, "FramesPerSecond", {std::to_string(*base), valueText(*rate)});
  }
}

/// Counted in frames from midnight.
void checkStartTimecodes(const Model& model, Report& report) {
  constexpr int64 kDay = 24 * 3600;
  for (const auto* timecode : model.all("Timecode")) {
    const auto start = integerOf(*timecode, "StartTimecode"), base = integerOf(*timecode, "FramesPerSecond");
    if (!start || base.value_or(0) == 0 || (*start >= 0 && *start < kDay * *base)) continue;
    report.add(*timecode, "StartTimecode", {std::to_string(*start), std::to_string(*base)});
  }
}

/// No tracks at all stand for all of them (ST 377-1).
void checkDescribedTracks(const Model& model, Report& report) {
  for (const auto& component : model.components()) {
    const auto* described = valueOf<Types::Batch>(*component.set, "DescribedTrackIDs");
    for (uint32 i = 0; described != nullptr && i < described->size(); ++i) {
      const auto id = integerOf(described->at(i));
      if (!id || component.package->byTrackID.count(*id) != 0) continue;
      report.add(*component.set, "DescribedTrackIDs", {component.package->set->name(), std::to_string(*id)});
    }
  }
}

/// 0 stands for none.
void checkLinkedTracks(const Model& model, Report& report) {
  for (const auto& descriptor : model.descriptors()) {
    const auto id = integerOf(*descriptor.set, "LinkedTrackID");
    if (id.value_or(0) == 0 || descriptor.package->byTrackID.count(*id) != 0) continue;
    report.add(*descriptor.set, "LinkedTrackID", {descriptor.package->set->name(), std::to_string(*id)});
  }
}

/// Only this property links a descriptor to its track where a package has several.
void checkUnlinkedDescriptors(const Model& model, Report& report) {
  for (const auto& descriptor : model.descriptors()) {
    if (descriptor.whole == nullptr || integerOf(*descriptor.set, "LinkedTrackID").value_or(0) != 0) continue;
    report.add(*descriptor.set, "LinkedTrackID");
  }
}

/// `kOther` for a descriptor of anything but essence of one kind.
MXF::TrackKind describedKind(const Model& model, const MetadataSet& descriptor) {
  if (model.is(descriptor, "PictureDescriptor")) return MXF::TrackKind::kPicture;
  if (model.is(descriptor, "SoundDescriptor")) return MXF::TrackKind::kSound;
  return model.is(descriptor, "DataEssenceDescriptor") ? MXF::TrackKind::kData : MXF::TrackKind::kOther;
}

void checkDescribedKinds(const Model& model, Report& report) {
  for (const auto& descriptor : model.descriptors()) {
    const auto* track = linkedTrackOf(descriptor);
    const auto own = describedKind(model, *descriptor.set);
    const auto other = track == nullptr ? std::nullopt : dataDefinitionOf(model, *track);
    if (own == MXF::TrackKind::kOther || !other || own == MXF::trackKindOf(*other)) continue;
    report.add(*descriptor.set, "LinkedTrackID", {std::to_string(*integerOf(*track, "TrackID"))});
  }
}

void checkDoubledLinks(const Model& model, Report& report) {
  std::unordered_set<const MetadataSet*> linked;
  for (const auto& descriptor : model.descriptors()) {
    const auto* track = descriptor.whole == nullptr ? nullptr : linkedTrackOf(descriptor);
    if (track == nullptr || linked.insert(track).second) continue;
    report.add(*descriptor.set, "LinkedTrackID", {std::to_string(*integerOf(*track, "TrackID"))});
  }
}

bool isFinished(const CheckedFile& file, const Model& model) {
  const auto& partitions = model.partitions();
  return std::any_of(partitions.begin(), partitions.end(),
                     [&](std::size_t number) { return isClosedComplete(file.state().partitions[number].info); });
}

/// Events have positions; static tracks have no time.
void checkUnknownLengths(const Model& model, Report& report) {
  for (const auto& component : model.components()) {
    if (!model.is(*component.track, "TimelineTrack") || model.is(*component.set, "Event")) continue;
    const auto length = integerOf(*component.set, "ComponentLength");
    if (length.value_or(-1) == -1) report.add(*component.set, "ComponentLength");
  }
}

/// A file that is still being written does not know them.
void checkFinalLengths(const CheckedFile& file, Report& report) {
  for (const auto& model : file.models()) {
    if (!isFinished(file, model)) continue;
    Report ofMetadata = report.about(model.partitions());
    checkUnknownLengths(model, ofMetadata);
  }
}

/// Counted in units of the sample rate; compared only where that is the edit rate of the track.
void checkEssenceLengths(const Model& model, Report& report) {
  for (const auto& descriptor : model.descriptors()) {
    const auto* track = linkedTrackOf(descriptor);
    const auto* sampleRate = valueOf<Rational>(*descriptor.set, "SampleRate");
    const auto* editRate = track == nullptr ? nullptr : valueOf<Rational>(*track, "EditRate");
    if (sampleRate == nullptr || editRate == nullptr || !areEqual(*sampleRate, *editRate)) continue;
    const auto length = integerOf(*descriptor.set, "EssenceLength"), other = lengthOf(model, *track);
    if (length.value_or(-1) < 0 || !other || *other == *length) continue;
    report.add(*descriptor.set, "EssenceLength", {std::to_string(*length), std::to_string(*other)});
  }
}

}  // namespace

const RuleTable& trackRules() {
  static const RuleTable table = {
      {{"track-id", Severity::kError, "TrackID {number} occurs twice in the {package}", "ST 377-1, Generic Track"},
       checkTrackIDs},
      {{"zero-track-id", Severity::kWarning, "the TrackID 0 stands for no track", "ST 377-1, Generic Track"},
       checkZeroTrackIDs},
      {{"track-number", Severity::kWarning, "number {number} occurs twice in the {package}",
        "ST 377-1, Generic Track; ST 379-1"},
       checkTrackNumbers},
      {{"zero-track-number", Severity::kWarning, "no number links the track to its essence in the file",
        "ST 377-1, Generic Track; ST 379-1"},
       checkZeroNumbers},
      {{"sequence-length", Severity::kWarning, "the length is {length}, that of all components {sum}",
        "ST 377-1, Sequence"},
       checkSequenceLengths},
      {{"data-definition", Severity::kWarning, "the component's data definition is {own}, that of its sequence {other}",
        "ST 377-1, Structural Component"},
       checkDataDefinitions},
      {{"unequal-tracks", Severity::kWarning, "the track lasts {seconds} s, the first one of the package {seconds} s",
        "ST 377-1, Material Package"},
       checkUnequalTracks},
      {{"timecode-rate", Severity::kWarning, "{base} frames per second do not fit the edit rate {rate}",
        "ST 377-1, Timecode Component"},
       checkTimecodeRates},
      {{"start-timecode", Severity::kWarning, "{frames} frames are no time of day at {base} frames per second",
        "ST 377-1, Timecode Component; ST 12-1"},
       checkStartTimecodes},
      {{"described-track", Severity::kWarning, "the {package} has no track {number}", "ST 377-1, DM Segment"},
       checkDescribedTracks},
      {{"linked-track", Severity::kWarning, "the {package} has no track {number}", "ST 377-1, File Descriptor"},
       checkLinkedTracks},
      {{"unlinked-descriptor", Severity::kWarning, "one of several descriptors of a package names no track",
        "ST 377-1, File Descriptor"},
       checkUnlinkedDescriptors},
      {{"linked-kind", Severity::kWarning, "track {number} has another kind of essence than the descriptor",
        "ST 377-1, File Descriptor"},
       checkDescribedKinds},
      {{"doubled-link", Severity::kWarning, "a descriptor before it describes track {number} already",
        "ST 377-1, File Descriptor"},
       checkDoubledLinks},
      {{"unknown-length", Severity::kWarning, "the component of a finished file has no length",
        "ST 377-1, Structural Component"},
       checkFinalLengths},
      {{"essence-length", Severity::kWarning, "the essence has the length {length}, its track {other}",
        "ST 377-1, File Descriptor"},
       checkEssenceLengths}};
  return table;
}

}  // namespace Vantor::Edit
