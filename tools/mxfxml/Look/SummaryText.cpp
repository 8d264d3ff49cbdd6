#include "Look/SummaryText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Core/Platform/Strings.h"
#include "Core/Types/Text/TypeText.h"
#include "Terminal/CharacterWidth.h"
#include "Terminal/TextStyle.h"

namespace Vantor::Tool {

namespace {

using Summary::Essence;
using Summary::MetadataSummary;
using Summary::Track;
using TrackKind = Summary::Track::Kind;

/// Fields of a group: those without a value are left out.
class Fields {
 public:
  void add(const std::string& name, const std::optional<std::string>& value) {
    if (value && !value->empty()) fields_.push_back({name, *value});
  }
  template <class Value, class Print>
  void add(const std::string& name, const std::optional<Value>& value, const Print& print) {
    if (value) add(name, std::optional<std::string>(print(*value)));
  }
  std::vector<FieldGroup::Field> take() { return std::move(fields_); }

 private:
  std::vector<FieldGroup::Field> fields_;
};

/// The parts that there are, with a separator between them.
std::string joined(std::initializer_list<std::optional<std::string>> parts, const char* separator) {
  std::string text;
  for (const auto& part : parts) {
    if (part && !part->empty()) text += (text.empty() ? "" : separator) + *part;
  }
  return text;
}

std::string dateText(const Types::Timestamp& date) { return Utils::wstringToString(Types::printValue(date)); }

std::string labelText(const Summary::Label& label) {
  return label.symbol.empty() ? label.key.dottedText() : label.symbol;
}

std::string numberText(uint32 number) { return std::to_string(number); }

std::string startText(const Summary::Timecode& start) {
  return start.text + " at " + std::to_string(start.framesPerSecond) + (start.dropFrame ? ", drop frame" : "");
}

/// "00:00:10.000, 250 frames at 25".
std::string durationText(const Summary::Duration& duration, const char* unit) {
  return timeText(duration.seconds()) + ", " + std::to_string(duration.editUnits) + " " + unit +
         (duration.editUnits == 1 ? "" : "s") + " at " + rateText(duration.editRate);
}

std::string writerText(const Summary::Writer& writer) {
  const auto product = joined({writer.product, writer.version ? writer.version : writer.productVersion}, " ");
  return joined({product, writer.company, writer.platform}, ", ");
}

std::string packageText(const Summary::Package& package) {
  const auto id = package.id ? std::optional<std::string>(package.id->dottedText()) : std::nullopt;
  return joined({package.name, id}, ", ");
}

const char* wordOf(Summary::Package::Kind kind) {
  switch (kind) {
    case Summary::Package::Kind::kMaterial:
      return "material package";
    case Summary::Package::Kind::kFile:
      return "file package";
    case Summary::Package::Kind::kSource:
      return "source package";
  }
  return "";
}

void addWriters(const MetadataSummary& summary, Fields& fields) {
  for (auto at = summary.writers.rbegin(); at != summary.writers.rend(); ++at) {
    const bool isLast = at == summary.writers.rbegin();
    fields.add(isLast ? "written by" : "before that by", writerText(*at));
    fields.add(isLast ? "written" : "on", at->date, dateText);
  }
}

std::vector<FieldGroup::Field> generalFields(const MetadataSummary& summary) {
  Fields fields;
  fields.add("title", summary.title);
  fields.add("start timecode", summary.start, startText);
  fields.add("source timecode", summary.sourceStart, startText);
  fields.add("duration", summary.duration,
             [&](const auto& duration) { return durationText(duration, summary.frameRate ? "frame" : "edit unit"); });
  const auto symbol = summary.operationalPattern ? labelText(*summary.operationalPattern) : std::string();
  fields.add("operational pattern", joined({summary.operationalPatternName, symbol}, ", "));
  addWriters(summary, fields);
  fields.add("modified", summary.modified, dateText);
  if (!summary.packages.empty()) fields.add("created", summary.packages.front().created, dateText);
  for (const auto& package : summary.packages) fields.add(wordOf(package.kind), packageText(package));
  for (const auto& scheme : summary.descriptiveSchemes) fields.add("descriptive scheme", labelText(scheme));
  return fields.take();
}

std::optional<std::string> codingText(const Essence& essence) {
  const auto label = essence.coding ? std::optional<std::string>(labelText(*essence.coding)) : std::nullopt;
  return joined({essence.codingName, label}, ", ");
}

const char* wordOf(Summary::Scan scan) {
  switch (scan) {
    case Summary::Scan::kProgressive:
      return "progressive";
    case Summary::Scan::kInterlaced:
      return "interlaced";
    case Summary::Scan::kSegmented:
      return "progressive, segmented";
  }
  return "";
}

std::string sizeText(const Essence& essence) {
  if (!essence.width || !essence.height) return {};
  const auto size = numberText(*essence.width) + "x" + numberText(*essence.height);
  const bool isStored = essence.storedWidth == essence.width && essence.storedHeight == essence.height;
  if (isStored || !essence.storedWidth || !essence.storedHeight) return size;
  return size + ", stored as " + numberText(*essence.storedWidth) + "x" + numberText(*essence.storedHeight);
}

std::string ratioText(const Summary::Ratio& ratio) {
  return std::to_string(ratio.numerator) + ":" + std::to_string(ratio.denominator);
}

/// "top field first (FieldOne)", or what the file has of that; of pictures that are not interlaced, the name of their
/// FieldDominance, or nothing.
std::optional<std::string> fieldOrderText(const Essence& essence) {
  const auto& dominant = essence.fieldDominance;
  if (essence.scan != Summary::Scan::kInterlaced) return dominant;
  if (!dominant) return "field order not given";
  const bool isField = *dominant == "FieldOne" || *dominant == "FieldTwo";
  if (!essence.fieldOrder) return *dominant + (isField ? " first" : "");
  const bool isTopFirst = *essence.fieldOrder == Summary::FieldOrder::kTopFirst;
  return std::string(isTopFirst ? "top" : "bottom") + " field first (" + *dominant + ")";
}

std::string scanText(const Essence& essence) {
  const auto scan = essence.scan ? std::optional<std::string>(wordOf(*essence.scan)) : std::nullopt;
  return joined({scan, essence.frameLayout, fieldOrderText(essence)}, ", ");
}

std::string depthText(uint32 depth) { return numberText(depth) + " bits"; }

void addPicture(const Essence& essence, Fields& fields) {
  fields.add("size", sizeText(essence));
  fields.add("aspect ratio", essence.aspectRatio, ratioText);
  fields.add("scan", scanText(essence));
  const auto depth = essence.bitDepth ? std::optional<std::string>(depthText(*essence.bitDepth)) : std::nullopt;
  fields.add("sampling", joined({essence.subsampling, depth}, ", "));
  fields.add("colour primaries", essence.colorPrimaries, labelText);
  fields.add("transfer", essence.transferCharacteristic, labelText);
  fields.add("coding equations", essence.codingEquations, labelText);
}

/// "language: en"; nothing where there is no value.
std::optional<std::string> labelled(const char* label, const std::optional<std::string>& value) {
  return value ? std::optional<std::string>(std::string(label) + ": " + *value) : std::nullopt;
}

std::string channelText(const Summary::Channel& channel, const Essence& essence) {
  std::optional<std::string> group;
  if (channel.group) {
    const auto& found = essence.groups[*channel.group];
    group = "in " + (found.tagSymbol ? *found.tagSymbol : found.tagName.value_or("a group"));
  }
  return joined({channel.tagSymbol, channel.tagName, labelled("language", channel.language), group}, ", ");
}

std::string groupText(const Summary::SoundGroup& group) {
  return joined({group.tagSymbol, group.tagName, labelled("language", group.language), labelled("title", group.title),
                 labelled("content", group.contentKind), labelled("element", group.elementKind)},
                ", ");
}

void addSound(const Essence& essence, Fields& fields) {
  fields.add("sampling rate", essence.samplingRate, [](const auto& rate) { return rateText(rate) + " Hz"; });
  fields.add("depth", essence.bitDepth, depthText);
  fields.add("channels", essence.channelCount, numberText);
  for (const auto& channel : essence.channels) {
    fields.add(channel.number ? "channel " + numberText(*channel.number) : "channel", channelText(channel, essence));
  }
  for (const auto& group : essence.groups) fields.add("group", groupText(group));
}

const char* headingOf(TrackKind kind) {
  switch (kind) {
    case TrackKind::kPicture:
      return "Video";
    case TrackKind::kSound:
      return "Audio";
    case TrackKind::kData:
      return "Data";
    case TrackKind::kTimecode:
      return "Timecode";
    case TrackKind::kDescriptive:
      return "Descriptive metadata";
    case TrackKind::kOther:
      return "Other";
  }
  return "";
}

bool isSame(const std::optional<Summary::Duration>& left, const std::optional<Summary::Duration>& right) {
  return left && right && left->seconds() == right->seconds();
}

/// All of a track but its number and name.
std::vector<FieldGroup::Field> trackFields(const MetadataSummary& summary, const Track& track) {
  Fields fields;
  const bool isPicture = track.kind == TrackKind::kPicture;
  if (track.essence != nullptr) fields.add("coding", codingText(*track.essence));
  if (track.essence != nullptr && isPicture) addPicture(*track.essence, fields);
  if (track.essence != nullptr && track.kind == TrackKind::kSound) addSound(*track.essence, fields);
  fields.add("start", track.start, startText);
  if (isPicture) fields.add("frame rate", track.editRate, rateText);
  if (!isSame(track.duration, summary.duration)) {
    fields.add("duration", track.duration, [](const auto& duration) { return durationText(duration, "edit unit"); });
  }
  if (track.essence == nullptr) return fields.take();
  fields.add("languages", track.essence->languages);
  fields.add("wrapping", track.essence->container, labelText);
  return fields.take();
}

std::string trackName(const Track& track) {
  const auto id = track.id ? std::optional<std::string>(numberText(*track.id)) : std::nullopt;
  return joined({id, track.name}, " ");
}

bool areSame(const std::vector<FieldGroup::Field>& left, const std::vector<FieldGroup::Field>& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](const auto& one, const auto& other) {
    return one.name == other.name && one.value == other.value;
  });
}

/// The tracks of a kind; neighbours with the same fields under one heading.
void addTracks(const MetadataSummary& summary, TrackKind kind, std::vector<FieldGroup>& groups) {
  const std::size_t before = groups.size();
  for (const auto& track : summary.tracks) {
    if (track.kind != kind) continue;
    auto fields = trackFields(summary, track);
    const bool joins = groups.size() != before && areSame(groups.back().fields, fields);
    if (!joins) groups.push_back({headingOf(kind), std::move(fields)});
    const auto name = trackName(track);
    if (!name.empty()) groups.back().heading += (joins ? ", " : ", track ") + name;
  }
}

FieldGroup groupOf(const Summary::Framework& framework) {
  FieldGroup group{"Descriptive metadata, " + framework.set + (framework.track ? ", track " + *framework.track : ""),
                   {}};
  for (const auto& value : framework.values) {
    const bool isOwn = value.set == framework.set;
    group.fields.push_back({isOwn ? value.property : value.set + "." + value.property, value.value});
  }
  return group;
}

/// A long value cut, with what it has in all.
std::string shortened(const std::string& value) {
  constexpr std::size_t kMostColumns = 400;
  if (columnsOf(value) <= kMostColumns) return value;
  return wrapped(value, kMostColumns, kMostColumns).front() + " ... (" + std::to_string(value.size()) + " bytes)";
}

/// A name, and its value in a column of its own.
std::string linesOf(const FieldGroup::Field& field, std::size_t left, std::size_t columns, bool hasColor) {
  std::string start = "  " + field.name;
  start.append(columnsOf(start) + 2 <= left ? left - columnsOf(start) : 2, ' ');
  const std::size_t used = columnsOf(start);
  start = styled(start, Style::kDim, hasColor);
  std::string lines;
  for (const auto& line :
       wrapped(shortened(printable(field.value)), columns > used ? columns - used : 1, columns - left)) {
    lines += start + line + "\n";
    start = std::string(left, ' ');
  }
  return lines;
}

std::string linesOf(const FieldGroup& group, std::size_t columns, bool hasColor) {
  std::size_t names = 0;
  for (const auto& field : group.fields) names = std::max(names, columnsOf(field.name));
  const std::size_t left = std::min(names + 4, columns / 2);
  std::string lines;
  for (const auto& field : group.fields) lines += linesOf(field, left, columns, hasColor);
  return lines;
}

}  // namespace

std::string rateText(const Summary::Ratio& rate) {
  if (rate.numerator % rate.denominator == 0) return std::to_string(rate.numerator / rate.denominator);
  char text[32];
  std::snprintf(text, sizeof text, "%.5g", rate.value());
  return std::string(text) + " (" + std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator) + ")";
}

std::string timeText(double seconds) {
  constexpr long long kMilliSeconds = 1000, kSeconds = 60, kMinutes = 60;
  constexpr double kMost = 1e12;  // beyond any file, and well within the type
  const long long all = std::llround(std::clamp(seconds, -kMost, kMost) * kMilliSeconds);
  const long long inSeconds = all / kMilliSeconds;
  char text[48];
  std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld.%03lld", inSeconds / (kSeconds * kMinutes),
                inSeconds / kSeconds % kMinutes, inSeconds % kSeconds, all % kMilliSeconds);
  return text;
}

std::vector<FieldGroup> groupsOf(const MetadataSummary& summary) {
  std::vector<FieldGroup> groups = {{"General", generalFields(summary)}};
  for (const auto kind :
       {TrackKind::kPicture, TrackKind::kSound, TrackKind::kData, TrackKind::kTimecode, TrackKind::kOther}) {
    addTracks(summary, kind, groups);
  }
  for (const auto& framework : summary.frameworks) groups.push_back(groupOf(framework));
  return groups;
}

std::string textOf(const std::vector<FieldGroup>& groups, std::size_t columns, bool hasColor) {
  std::string text;
  for (const auto& group : groups) {
    if (!text.empty()) text += "\n";
    for (const auto& line : wrapped(printable(group.heading), columns, columns)) {
      text += styled(line, Style::kName, hasColor) + "\n";
    }
    text += linesOf(group, columns, hasColor);
  }
  return text;
}

}  // namespace Vantor::Tool
