#include "CharacterWidth.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/TypeText.h"
#include "SummaryText.h"

namespace Vantor::Tool {

namespace {

using Summary::Essence;

/// Lines of keys below a prefix, such as "track.0.".
class Lines {
 public:
  Lines(std::string& text, std::string prefix) : text_(text), prefix_(std::move(prefix)) {}

  Lines below(const std::string& name, std::size_t place) const {
    return {text_, prefix_ + name + "." + std::to_string(place) + "."};
  }
  Lines below(const std::string& name) const { return {text_, prefix_ + name + "."}; }

  void add(const std::string& key, const std::string& value) const {
    text_ += prefix_ + key + "=" + printable(value) + "\n";
  }
  void add(const std::string& key, const Summary::Ratio& ratio) const {
    add(key, std::to_string(ratio.numerator) + "/" + std::to_string(ratio.denominator));
  }
  void add(const std::string& key, const Summary::Label& label) const {
    add(key, label.key.dottedText());
    if (!label.symbol.empty()) add(key + "_symbol", label.symbol);
  }
  void add(const std::string& key, const Types::Timestamp& date) const {
    add(key, Utils::wstringToString(Types::printValue(date)));
  }
  void add(const std::string& key, const Types::UMID32& id) const { add(key, id.dottedText()); }
  void add(const std::string& key, bool value) const { add(key, std::string(value ? "yes" : "no")); }
  template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
  void add(const std::string& key, Number number) const {
    add(key, std::to_string(number));
  }
  void add(const std::string& key, const Summary::Timecode& start) const {
    add(key, start.text);
    add(key + "_frames", start.frames);
    add(key + "_base", start.framesPerSecond);
    add(key + "_drop", start.dropFrame);
  }
  void add(const std::string& key, const Summary::Duration& duration) const {
    add(key, duration.editUnits);
    add(key + "_rate", duration.editRate);
    add(key + "_time", timeText(duration.seconds()));
  }
  template <class Value>
  void add(const std::string& key, const std::optional<Value>& value) const {
    if (value) add(key, *value);
  }

 private:
  std::string& text_;
  std::string prefix_;
};

const char* kindName(Summary::Package::Kind kind) {
  switch (kind) {
    case Summary::Package::Kind::kMaterial:
      return "material";
    case Summary::Package::Kind::kFile:
      return "file";
    case Summary::Package::Kind::kSource:
      return "source";
  }
  return "";
}

const char* kindName(Summary::Track::Kind kind) {
  static constexpr const char* kNames[] = {"picture", "sound", "data", "timecode", "descriptive", "other"};
  return kNames[static_cast<std::size_t>(kind)];
}

const char* scanName(Summary::Scan scan) {
  static constexpr const char* kNames[] = {"progressive", "interlaced", "segmented"};
  return kNames[static_cast<std::size_t>(scan)];
}

void addPackage(const Summary::Package& package, const Lines& lines) {
  lines.add("kind", std::string(kindName(package.kind)));
  lines.add("name", package.name);
  lines.add("id", package.id);
  lines.add("created", package.created);
  lines.add("modified", package.modified);
  lines.add("start", package.start);
}

void addPictureAndSound(const Essence& essence, const Lines& lines) {
  lines.add("width", essence.width);
  lines.add("height", essence.height);
  lines.add("stored_width", essence.storedWidth);
  lines.add("stored_height", essence.storedHeight);
  lines.add("aspect_ratio", essence.aspectRatio);
  lines.add("frame_layout", essence.frameLayout);
  if (essence.scan) lines.add("scan", std::string(scanName(*essence.scan)));
  lines.add("field_dominance", essence.fieldDominance);
  lines.add("subsampling", essence.subsampling);
  lines.add("bit_depth", essence.bitDepth);
  lines.add("sampling_rate", essence.samplingRate);
  lines.add("channels", essence.channelCount);
  lines.add("languages", essence.languages);
}

void addSoundLabels(const Essence& essence, const Lines& lines) {
  for (std::size_t i = 0; i < essence.channels.size(); ++i) {
    const auto& channel = essence.channels[i];
    const auto at = lines.below("channel", i);
    at.add("number", channel.number);
    at.add("symbol", channel.tagSymbol);
    at.add("name", channel.tagName);
    at.add("language", channel.language);
    at.add("group", channel.group);
  }
  for (std::size_t i = 0; i < essence.groups.size(); ++i) {
    const auto at = lines.below("group", i);
    at.add("symbol", essence.groups[i].tagSymbol);
    at.add("name", essence.groups[i].tagName);
    at.add("language", essence.groups[i].language);
  }
}

void addTrack(const Summary::Track& track, const Lines& lines) {
  lines.add("kind", std::string(kindName(track.kind)));
  lines.add("package", track.package);
  lines.add("id", track.id);
  lines.add("name", track.name);
  lines.add("edit_rate", track.editRate);
  lines.add("duration", track.duration);
  lines.add("start", track.start);
  if (track.essence == nullptr) return;
  lines.add("descriptor", track.essence->descriptor);
  lines.add("coding", track.essence->coding);
  lines.add("coding_name", track.essence->codingName);
  lines.add("container", track.essence->container);
  lines.add("sample_rate", track.essence->sampleRate);
  lines.add("length", track.essence->length);
  addPictureAndSound(*track.essence, lines);
  addSoundLabels(*track.essence, lines);
}

void addWriter(const Summary::Writer& writer, const Lines& lines) {
  lines.add("company", writer.company);
  lines.add("product", writer.product);
  lines.add("version", writer.version);
  lines.add("product_version", writer.productVersion);
  lines.add("toolkit_version", writer.toolkitVersion);
  lines.add("platform", writer.platform);
  lines.add("date", writer.date);
}

void addFramework(const Summary::Framework& framework, const Lines& lines) {
  lines.add("set", framework.set);
  lines.add("track", framework.track);
  for (const auto& value : framework.values) lines.add(value.set + "." + value.property, value.value);
}

template <class Items, class Add>
void addEach(const Lines& lines, const char* name, const Items& items, const Add& add) {
  for (std::size_t i = 0; i < items.size(); ++i) add(items[i], lines.below(name, i));
}

}  // namespace

std::string fieldLines(const Summary::MetadataSummary& summary) {
  std::string text;
  const Lines lines(text, "");
  lines.add("title", summary.title);
  lines.add("operational_pattern", summary.operationalPattern);
  lines.add("operational_pattern_name", summary.operationalPatternName);
  lines.add("modified", summary.modified);
  lines.add("start", summary.start);
  lines.add("source_start", summary.sourceStart);
  lines.add("duration", summary.duration);
  lines.add("frame_rate", summary.frameRate);
  addEach(lines, "package", summary.packages, addPackage);
  addEach(lines, "track", summary.tracks, addTrack);
  addEach(lines, "writer", summary.writers, addWriter);
  addEach(lines, "framework", summary.frameworks, addFramework);
  return text;
}

}  // namespace Vantor::Tool
