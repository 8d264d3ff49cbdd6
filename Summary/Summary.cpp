#include "Summary/Summary.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "Core/MXF/OperationalPattern.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/Timecode.h"
#include "Summary/EssenceOf.h"
#include "Summary/Frameworks.h"
#include "Summary/PackageIndex.h"
#include "Summary/Values.h"

namespace Vantor::Summary {

namespace {

using MXF::TrackKind;

std::optional<Timecode> timecodeIn(const MetadataSet& set) {
  const auto frames = integerOf(set, "StartTimecode");
  const auto base = numberIn(set, "FramesPerSecond");
  if (!frames || !base || *base > 0xffff) return std::nullopt;
  Timecode timecode{*frames, static_cast<uint16>(*base), integerOf(set, "DropFrame").value_or(0) != 0, {}};
  timecode.text = timecodeText(timecode.frames, timecode.framesPerSecond, timecode.dropFrame);
  return timecode;
}

bool isSame(const Timecode& left, const Timecode& right) {
  return left.frames == right.frames && left.framesPerSecond == right.framesPerSecond &&
         left.dropFrame == right.dropFrame;
}

Writer writerOf(const MetadataSet& identification) {
  Writer writer;
  writer.company = textIn(identification, "ApplicationSupplierName");
  writer.product = textIn(identification, "ApplicationName");
  writer.version = textIn(identification, "ApplicationVersionString");
  writer.productVersion = printedIn(identification, "ApplicationVersion");
  writer.toolkitVersion = printedIn(identification, "ToolkitVersion");
  writer.platform = textIn(identification, "ApplicationPlatform");
  writer.date = dateIn(identification, "FileModificationDate");
  return writer;
}

class SummaryReader {
 public:
  explicit SummaryReader(const PartitionMetadata& metadata) : metadata_(metadata), packages_(metadata) {}

  MetadataSummary read() {
    if (const auto* preface = metadata_.preface()) addPreface(*preface);
    for (const auto* package : packages_.packages()) addPackage(*package);
    addMain();
    result_.frameworks = frameworksOf(metadata_);
    return std::move(result_);
  }

 private:
  using Place = PackageIndex::Place;

  void addPreface(const MetadataSet& preface) {
    result_.operationalPattern = labelIn(preface, "OperationalPattern");
    if (result_.operationalPattern) {
      result_.operationalPatternName = MXF::operationalPatternName(result_.operationalPattern->key);
    }
    result_.essenceContainers = labelsIn(preface, "EssenceContainers");
    result_.descriptiveSchemes = labelsIn(preface, "DescriptiveSchemes");
    result_.modified = dateIn(preface, "FileLastModified");
    for (const auto* set : targetsIn(metadata_, preface, "IdentificationList"))
      result_.writers.push_back(writerOf(*set));
  }

  void addPackage(const MetadataSet& set) {
    Package package;
    const bool isMaterial = isKind(set, "MaterialPackage");
    const auto* descriptor = isMaterial ? nullptr : targetIn(metadata_, set, "EssenceDescription");
    const bool isFile = descriptor != nullptr && isKind(*descriptor, "FileDescriptor");
    package.kind = isMaterial ? Package::Kind::kMaterial : isFile ? Package::Kind::kFile : Package::Kind::kSource;
    package.name = textIn(set, "PackageName");
    if (const auto* id = valueOf<Types::UMID32>(set, "PackageID")) package.id = *id;
    package.created = dateIn(set, "CreationTime");
    package.modified = dateIn(set, "PackageLastModified");
    package.usage = labelIn(set, "PackageUsage");
    package.start = startOf(set);
    starts_.emplace(&set, package.start);
    result_.packages.push_back(std::move(package));
  }

  /// Where the first timecode track of a package starts.
  std::optional<Timecode> startOf(const MetadataSet& package) const {
    for (const auto* track : targetsIn(metadata_, package, "PackageTracks")) {
      if (auto start = startOfTrack(*track)) return start;
    }
    return std::nullopt;
  }

  std::optional<Timecode> startOfTrack(const MetadataSet& track) const {
    const auto* timecode = packages_.timecodeOf(track);
    return timecode == nullptr ? std::nullopt : timecodeIn(*timecode);
  }

  /// The tracks, then what the whole file has of the first ones.
  void addMain() {
    const auto& all = packages_.packages();
    const auto hasMaterial = !all.empty() && result_.packages.front().kind == Package::Kind::kMaterial;
    const auto wanted = hasMaterial ? Package::Kind::kMaterial : Package::Kind::kFile;
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (result_.packages[i].kind == wanted) addTracks(i, *all[i]);
    }
    if (hasMaterial) result_.title = result_.packages.front().name;
    if (hasMaterial) result_.start = result_.packages.front().start;
    const auto* main = mainTrack();
    if (main == nullptr) return;
    result_.duration = main->duration;
    if (main->kind == TrackKind::kPicture) result_.frameRate = main->editRate;
    addSourceStart(*sets_[static_cast<std::size_t>(main - result_.tracks.data())]);
  }

  /// The first picture track, else the first sound track, else the first with a duration. Null for none.
  const Track* mainTrack() const {
    const auto first = [this](const auto& isWanted) -> const Track* {
      const auto found = std::find_if(result_.tracks.begin(), result_.tracks.end(), isWanted);
      return found == result_.tracks.end() ? nullptr : &*found;
    };
    for (const auto kind : {TrackKind::kPicture, TrackKind::kSound}) {
      if (const auto* track = first([kind](const Track& each) { return each.kind == kind; })) return track;
    }
    return first([](const Track& each) { return each.duration.has_value(); });
  }

  void addTracks(std::size_t package, const MetadataSet& set) {
    for (const auto* track : targetsIn(metadata_, set, "PackageTracks")) {
      result_.tracks.push_back(trackOf(package, set, *track));
      sets_.push_back(track);
    }
  }

  Track trackOf(std::size_t package, const MetadataSet& packageSet, const MetadataSet& set) {
    Track track;
    track.package = package;
    track.id = numberIn(set, "TrackID");
    track.number = numberIn(set, "EssenceTrackNumber");
    if (track.number == 0u) track.number.reset();
    track.name = textIn(set, "TrackName");
    track.editRate = ratioIn(set, "EditRate");
    if (const auto* segment = targetIn(metadata_, set, "TrackSegment")) addSegment(*segment, track);
    if (track.kind == TrackKind::kTimecode) track.start = startOfTrack(set);
    if (track.kind != TrackKind::kTimecode) track.essence = essenceBehind(packageSet, set, track.id);
    return track;
  }

  static void addSegment(const MetadataSet& segment, Track& track) {
    if (const auto definition = labelOf(segment, "ComponentDataDefinition")) track.kind = MXF::trackKindOf(*definition);
    const auto length = integerOf(segment, "ComponentLength");
    if (length && *length >= 0 && track.editRate) track.duration = Duration{*length, *track.editRate};
  }

  /// The packages that a track leads to, the nearest first.
  std::vector<Place> sourcesOf(const MetadataSet& track) const {
    std::vector<Place> places;
    std::unordered_set<const MetadataSet*> seen;
    for (const auto* at = &track; at != nullptr && places.size() < kMostSources && seen.insert(at).second;) {
      const auto place = packages_.sourceOf(*at);
      if (!place) break;
      places.push_back(*place);
      at = packages_.trackAt(*place);
    }
    return places;
  }

  std::shared_ptr<const Essence> essenceBehind(const MetadataSet& package, const MetadataSet& track,
                                               std::optional<uint32> id) {
    const auto* own = id ? packages_.descriptorAt({&package, *id}) : packages_.soleDescriptor(package);
    if (own != nullptr) return essenceFor(*own);
    for (const auto& place : sourcesOf(track)) {
      if (const auto* descriptor = packages_.descriptorAt(place)) return essenceFor(*descriptor);
    }
    return nullptr;
  }

  std::shared_ptr<const Essence> essenceFor(const MetadataSet& descriptor) {
    auto& essence = essences_[&descriptor];
    if (essence == nullptr) essence = std::make_shared<const Essence>(essenceOf(metadata_, descriptor));
    return essence;
  }

  void addSourceStart(const MetadataSet& track) {
    for (const auto& place : sourcesOf(track)) {
      const auto& start = starts_.at(place.package);
      if (!start) continue;
      if (!result_.start || !isSame(*start, *result_.start)) result_.sourceStart = start;
      return;
    }
  }

  static constexpr std::size_t kMostSources = 16;  // generations of packages, of which files have up to three

  const PartitionMetadata& metadata_;
  PackageIndex packages_;
  MetadataSummary result_;
  std::vector<const MetadataSet*> sets_;  // of `result_.tracks`
  std::unordered_map<const MetadataSet*, std::optional<Timecode>> starts_;
  std::unordered_map<const MetadataSet*, std::shared_ptr<const Essence>> essences_;
};

}  // namespace

MetadataSummary summaryOf(const PartitionMetadata& metadata) { return SummaryReader(metadata).read(); }

std::vector<Partition> partitionsOf(const MXF::FileStructure& structure) {
  std::vector<Partition> partitions;
  for (const auto& info : structure.partitions) {
    partitions.push_back({partitions.size(), info.pack.kind, info.pack.status, MXF::hasMetadata(info)});
  }
  return partitions;
}

std::string timecodeText(int64 frames, uint16 framesPerSecond, bool dropFrame) {
  const auto text = Types::printTimecode(frames, {framesPerSecond, dropFrame});
  return text ? Utils::wstringToString(*text) : std::to_string(frames);
}

}  // namespace Vantor::Summary
