#include "Look/SummaryJSON.h"

#include <map>
#include <string>
#include <type_traits>

#include "Core/Platform/Strings.h"
#include "Core/Types/Text/TypeText.h"
#include "Look/MetadataText.h"
#include "Look/PartitionText.h"
#include "Look/SummaryText.h"

namespace Vantor::Tool {

namespace {

using JSON::Value;
using Summary::Essence;

/// Rates and ratios have a text of their own: "30000/1001", "16:9".
Value ratio(const Summary::Ratio& ratio, const char* sign) {
  const auto numerator = std::to_string(ratio.numerator), denominator = std::to_string(ratio.denominator);
  const bool isWhole = ratio.denominator == 1 && *sign == '/';
  auto json = Value::object().add("numerator", ratio.numerator).add("denominator", ratio.denominator);
  if (ratio.denominator != 0) json.add("value", ratio.value());
  return json.add("text", isWhole ? numerator : numerator + sign + denominator);
}

Value memberOf(const Summary::Ratio& rate) { return ratio(rate, "/"); }
Value aspectRatio(const Summary::Ratio& aspect) { return ratio(aspect, ":"); }

Value memberOf(const Summary::Label& label) {
  auto json = Value::object().add("value", label.key.dottedText());
  if (!label.symbol.empty()) json.add("label", label.symbol);
  if (!label.name.empty()) json.add("name", label.name);
  return json;
}

Value memberOf(const Types::Timestamp& date) { return Utils::wstringToString(Types::printValue(date)); }
Value memberOf(const Types::UMID32& id) { return id.dottedText(); }
Value memberOf(const std::string& text) { return text; }
Value memberOf(bool value) { return value; }
template <class Number, std::enable_if_t<std::is_integral_v<Number> && !std::is_same_v<Number, bool>, int> = 0>
Value memberOf(Number number) {
  return static_cast<int64>(number);
}

Value memberOf(const Summary::Timecode& timecode) {
  return Value::object()
      .add("value", timecode.frames)
      .add("framesPerSecond", int64{timecode.framesPerSecond})
      .add("dropFrame", timecode.dropFrame)
      .add("text", timecode.text);
}

Value memberOf(const Summary::Duration& duration) {
  return Value::object()
      .add("value", duration.editUnits)
      .add("editRate", memberOf(duration.editRate))
      .add("seconds", duration.seconds())
      .add("text", timeText(duration.seconds()));
}

/// Adds a member where there is a value.
template <class Type>
void addTo(Value& object, const char* name, const std::optional<Type>& value) {
  if (value) object.add(name, memberOf(*value));
}

/// Adds an array, also one without items.
template <class Items, class Describe>
void addEach(Value& object, const char* name, const Items& items, const Describe& describe) {
  auto list = Value::array();
  for (const auto& item : items) list.append(describe(item));
  object.add(name, std::move(list));
}

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

const char* orderName(Summary::FieldOrder order) {
  return order == Summary::FieldOrder::kTopFirst ? "topFirst" : "bottomFirst";
}

Value describePackage(const Summary::Package& package) {
  auto json = Value::object().add("kind", kindName(package.kind));
  addTo(json, "name", package.name);
  addTo(json, "id", package.id);
  addTo(json, "created", package.created);
  addTo(json, "modified", package.modified);
  addTo(json, "start", package.start);
  addTo(json, "usage", package.usage);
  return json;
}

void addPicture(const Essence& essence, Value& json) {
  addTo(json, "width", essence.width);
  addTo(json, "height", essence.height);
  addTo(json, "storedWidth", essence.storedWidth);
  addTo(json, "storedHeight", essence.storedHeight);
  if (essence.aspectRatio) json.add("aspectRatio", aspectRatio(*essence.aspectRatio));
  addTo(json, "frameLayout", essence.frameLayout);
  if (essence.scan) json.add("scan", scanName(*essence.scan));
  addTo(json, "fieldDominance", essence.fieldDominance);
  if (essence.fieldOrder) json.add("fieldOrder", orderName(*essence.fieldOrder));
  addTo(json, "subsampling", essence.subsampling);
  addTo(json, "bitDepth", essence.bitDepth);
  addTo(json, "colorPrimaries", essence.colorPrimaries);
  addTo(json, "transferCharacteristic", essence.transferCharacteristic);
  addTo(json, "codingEquations", essence.codingEquations);
}

Value describeChannel(const Summary::Channel& channel) {
  auto json = Value::object();
  addTo(json, "number", channel.number);
  addTo(json, "tagSymbol", channel.tagSymbol);
  addTo(json, "tagName", channel.tagName);
  addTo(json, "language", channel.language);
  addTo(json, "group", channel.group);
  return json;
}

Value describeGroup(const Summary::SoundGroup& group) {
  auto json = Value::object();
  addTo(json, "tagSymbol", group.tagSymbol);
  addTo(json, "tagName", group.tagName);
  addTo(json, "language", group.language);
  addTo(json, "title", group.title);
  addTo(json, "contentKind", group.contentKind);
  addTo(json, "elementKind", group.elementKind);
  return json;
}

void addSound(const Essence& essence, Value& json) {
  addTo(json, "samplingRate", essence.samplingRate);
  addTo(json, "channelCount", essence.channelCount);
  addTo(json, "locked", essence.locked);
  if (!essence.channels.empty()) addEach(json, "channels", essence.channels, describeChannel);
  if (!essence.groups.empty()) addEach(json, "groups", essence.groups, describeGroup);
}

Value describeEssence(const Essence& essence) {
  auto json = Value::object().add("descriptor", essence.descriptor);
  addTo(json, "coding", essence.coding);
  addTo(json, "codingName", essence.codingName);
  addTo(json, "container", essence.container);
  addTo(json, "sampleRate", essence.sampleRate);
  addTo(json, "length", essence.length);
  addPicture(essence, json);
  addSound(essence, json);
  addTo(json, "languages", essence.languages);
  return json;
}

Value describeTrack(const Summary::Track& track) {
  auto json = Value::object().add("package", memberOf(track.package)).add("kind", kindName(track.kind));
  addTo(json, "id", track.id);
  addTo(json, "number", track.number);
  addTo(json, "name", track.name);
  addTo(json, "editRate", track.editRate);
  addTo(json, "duration", track.duration);
  addTo(json, "start", track.start);
  if (track.essence != nullptr) json.add("essence", describeEssence(*track.essence));
  return json;
}

Value describeWriter(const Summary::Writer& writer) {
  auto json = Value::object();
  addTo(json, "company", writer.company);
  addTo(json, "product", writer.product);
  addTo(json, "version", writer.version);
  addTo(json, "productVersion", writer.productVersion);
  addTo(json, "toolkitVersion", writer.toolkitVersion);
  addTo(json, "platform", writer.platform);
  addTo(json, "date", writer.date);
  return json;
}

Value describeFramework(const Summary::Framework& framework) {
  auto json = Value::object().add("set", framework.set);
  addTo(json, "track", framework.track);
  addEach(json, "values", framework.values, [](const auto& value) {
    return Value::object().add("set", value.set).add("property", value.property).add("value", value.value);
  });
  return json;
}

Value describePartition(const Summary::Partition& partition) {
  return Value::object()
      .add("number", memberOf(partition.number))
      .add("kind", nameOf(partition.kind))
      .add("status", nameOf(partition.status))
      .add("hasMetadata", partition.hasMetadata);
}

Value memberOf(const std::map<std::string, std::size_t>& counts) {
  auto json = Value::object();
  for (const auto& [name, count] : counts) json.add(name, memberOf(count));
  return json;
}

}  // namespace

void addSummary(const Summary::MetadataSummary& summary, Value& object) {
  const auto label = [](const auto& one) { return memberOf(one); };
  addTo(object, "title", summary.title);
  addTo(object, "operationalPattern", summary.operationalPattern);
  addTo(object, "operationalPatternName", summary.operationalPatternName);
  addEach(object, "essenceContainers", summary.essenceContainers, label);
  addEach(object, "descriptiveSchemes", summary.descriptiveSchemes, label);
  addTo(object, "modified", summary.modified);
  addTo(object, "start", summary.start);
  addTo(object, "sourceStart", summary.sourceStart);
  addTo(object, "duration", summary.duration);
  addTo(object, "frameRate", summary.frameRate);
  addEach(object, "packages", summary.packages, describePackage);
  addEach(object, "tracks", summary.tracks, describeTrack);
  addEach(object, "writers", summary.writers, describeWriter);
  addEach(object, "frameworks", summary.frameworks, describeFramework);
}

Value jsonOf(const std::vector<Summary::Partition>& partitions) {
  auto list = Value::array();
  for (const auto& partition : partitions) list.append(describePartition(partition));
  return list;
}

Value countsOf(const PartitionMetadata& metadata) {
  std::map<std::string, std::size_t> sets;
  for (const MetadataSet* set : metadata.sets()) {
    if (set->definition() != nullptr) ++sets[set->definition()->symbol()];
  }
  const Counts counts(metadata);
  return Value::object()
      .add("sets", memberOf(sets))
      .add("darkSets", memberOf(counts.dark))
      .add("unknownProperties", memberOf(counts.unknownProperties))
      .add("unreadableValues", memberOf(counts.unreadableValues))
      .add("misplacedProperties", memberOf(counts.misplacedProperties));
}

}  // namespace Vantor::Tool
