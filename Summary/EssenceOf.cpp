#include "Summary/EssenceOf.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "Core/Types/Array.h"
#include "Core/Types/RGBALayout.h"
#include "Summary/CodingName.h"
#include "Summary/Values.h"

namespace Vantor::Summary {

namespace {

// FrameLayout (ST 377-1).
enum Layout : uint8 { kFullFrame, kSeparateFields, kOneField, kMixedFields, kSegmentedFrame };

/// The coding that a kind of descriptor is for, where its label gives none.
std::optional<std::string> codingNameOf(const MetadataSet& descriptor) {
  static constexpr std::pair<std::string_view, const char*> kKinds[] = {
      {"WAVEPCMDescriptor", "PCM"},           {"AES3PCMDescriptor", "PCM"}, {"DCPCMSoundDescriptor", "PCM"},
      {"MPEGAudioDescriptor", "MPEG audio"},  {"VBIDataDescriptor", "VBI"}, {"ANCDataDescriptor", "ancillary data"},
      {"DCTimedTextDescriptor", "timed text"}};
  for (const auto& [kind, name] : kKinds) {
    if (isKind(descriptor, kind)) return name;
  }
  return std::nullopt;
}

void addCoding(const MetadataSet& descriptor, Essence& essence) {
  for (const auto* property : {"PictureCompression", "SoundCompression", "DataEssenceCoding"}) {
    if (!essence.coding) essence.coding = labelIn(descriptor, property);
  }
  if (essence.coding) essence.codingName = codingName(essence.coding->key);
  if (!essence.codingName) essence.codingName = codingNameOf(descriptor);
}

/// The first of some properties that is there and not 0.
std::optional<uint32> firstSize(const MetadataSet& descriptor, std::initializer_list<const char*> properties) {
  for (const auto* property : properties) {
    const auto size = numberIn(descriptor, property);
    if (size && *size != 0) return size;
  }
  return std::nullopt;
}

std::optional<Scan> scanOf(uint32 layout) {
  if (layout > kSegmentedFrame) return std::nullopt;
  switch (static_cast<Layout>(layout)) {
    case kFullFrame:
      return Scan::kProgressive;
    case kSeparateFields:
    case kOneField:
    case kMixedFields:
      return Scan::kInterlaced;
    case kSegmentedFrame:
      return Scan::kSegmented;
  }
  return std::nullopt;
}

enum class Topmost { kUnknown, kFirst, kSecond };

/// Which of two fields has the topmost line, by the lines in which their pictures begin: of the odd number of lines of
/// a frame, the second field begins half a line down, so that it is the upper one when it begins a line earlier than
/// that.
Topmost topmostField(const MetadataSet& descriptor) {
  constexpr int64 kFrames[] = {525, 625, 1125};  // ST 125, ITU-R BT.601 and ST 274
  const auto* lines = valueOf<Types::Array>(descriptor, "VideoLineMap");
  if (lines == nullptr || lines->size() != 2) return Topmost::kUnknown;
  const auto distance = integerOf(lines->at(1)).value_or(0) - integerOf(lines->at(0)).value_or(0);
  for (const auto frame : kFrames) {
    if (distance == frame / 2 + 1) return Topmost::kFirst;
    if (distance == frame / 2) return Topmost::kSecond;
  }
  return Topmost::kUnknown;
}

std::optional<FieldOrder> fieldOrderOf(const MetadataSet& descriptor) {
  constexpr uint32 kFieldOne = 1, kFieldTwo = 2;  // FieldDominance (ST 377-1)
  const auto dominant = numberIn(descriptor, "FieldDominance");
  const auto topmost = topmostField(descriptor);
  if ((dominant != kFieldOne && dominant != kFieldTwo) || topmost == Topmost::kUnknown) return std::nullopt;
  const bool isTopFirst = (dominant == kFieldOne) == (topmost == Topmost::kFirst);
  return isTopFirst ? FieldOrder::kTopFirst : FieldOrder::kBottomFirst;
}

void addSize(const MetadataSet& descriptor, Essence& essence) {
  essence.storedWidth = numberIn(descriptor, "StoredWidth");
  essence.storedHeight = numberIn(descriptor, "StoredHeight");
  essence.width = firstSize(descriptor, {"DisplayWidth", "SampledWidth", "StoredWidth"});
  essence.height = firstSize(descriptor, {"DisplayHeight", "SampledHeight", "StoredHeight"});
  const auto layout = numberIn(descriptor, "FrameLayout");
  const bool isOfField = layout == uint32{kSeparateFields};
  if (essence.height && isOfField && *essence.height <= 0x7fffffff) *essence.height *= 2;
  essence.frameLayout = nameIn(descriptor, "FrameLayout");
  if (layout) essence.scan = scanOf(*layout);
}

std::optional<std::string> subsamplingOf(const MetadataSet& descriptor) {
  const auto across = numberIn(descriptor, "HorizontalSubsampling");
  const auto down = numberIn(descriptor, "VerticalSubsampling");
  if (across == 2u && down == 2u) return "4:2:0";
  if (!across || (down && down != 1u)) return std::nullopt;
  if (*across == 1) return "4:4:4";
  if (*across == 2) return "4:2:2";
  return *across == 4 ? std::optional<std::string>("4:1:1") : std::nullopt;
}

/// Of RGB, of Y, Cb and Cr, which are Y, U and V here, and of XYZ.
bool isColor(const Types::RGBAComponent& component) {
  return component.code != 0 && std::strchr("RGBYUVXZ", component.code) != nullptr;
}

/// None where colours differ in depth, or have one beyond integers (ST 377-1: from 252 on).
std::optional<uint32> layoutDepth(const MetadataSet& descriptor) {
  constexpr uint8 kFirstFloat = 252;
  const auto* layout = valueOf<Types::RGBALayout>(descriptor, "PixelLayout");
  std::optional<uint32> depth;
  for (uint32 i = 0; layout != nullptr && i < Types::RGBALayout::kComponents; ++i) {
    const auto component = layout->get(i);
    if (!isColor(component)) continue;
    if (component.depth >= kFirstFloat || (depth && *depth != component.depth)) return std::nullopt;
    depth = component.depth;
  }
  return depth;
}

void addPicture(const MetadataSet& descriptor, Essence& essence) {
  addSize(descriptor, essence);
  essence.aspectRatio = givenRatioIn(descriptor, "ImageAspectRatio");
  essence.fieldDominance = nameIn(descriptor, "FieldDominance");
  if (essence.scan == Scan::kInterlaced) essence.fieldOrder = fieldOrderOf(descriptor);
  essence.subsampling = subsamplingOf(descriptor);
  essence.bitDepth = firstSize(descriptor, {"ComponentDepth"});
  if (!essence.bitDepth) essence.bitDepth = layoutDepth(descriptor);
  essence.colorPrimaries = labelIn(descriptor, "ColorPrimaries");
  essence.transferCharacteristic = labelIn(descriptor, "TransferCharacteristic");
  essence.codingEquations = labelIn(descriptor, "CodingEquations");
}

SoundGroup groupOf(const MetadataSet& label) {
  SoundGroup group;
  group.tagSymbol = textIn(label, "MCATagSymbol");
  group.tagName = textIn(label, "MCATagName");
  group.language = textIn(label, "RFC5646SpokenLanguage");
  group.title = textIn(label, "MCATitle");
  group.contentKind = textIn(label, "MCAAudioContentKind");
  group.elementKind = textIn(label, "MCAAudioElementKind");
  return group;
}

Channel channelOf(const MetadataSet& label) {
  Channel channel;
  channel.number = firstSize(label, {"MCAChannelID"});
  channel.tagSymbol = textIn(label, "MCATagSymbol");
  channel.tagName = textIn(label, "MCATagName");
  channel.language = textIn(label, "RFC5646SpokenLanguage");
  return channel;
}

void addLabels(const PartitionMetadata& metadata, const MetadataSet& descriptor, Essence& essence) {
  const auto labels = targetsIn(metadata, descriptor, "SubDescriptors");
  std::unordered_map<Types::UUID, std::size_t> groups;  // by MCALinkID
  for (const auto* label : labels) {
    const bool isChannel = isKind(*label, "AudioChannelLabelSubDescriptor");
    if (isChannel || !isKind(*label, "MCALabelSubDescriptor")) continue;
    if (const auto* link = valueOf<Types::UUID>(*label, "MCALinkID")) groups.emplace(*link, essence.groups.size());
    essence.groups.push_back(groupOf(*label));
  }
  for (const auto* label : labels) {
    if (!isKind(*label, "AudioChannelLabelSubDescriptor")) continue;
    auto channel = channelOf(*label);
    const auto* link = valueOf<Types::UUID>(*label, "SoundfieldGroupLinkID");
    const auto group = link == nullptr ? groups.end() : groups.find(*link);
    if (group != groups.end()) channel.group = group->second;
    essence.channels.push_back(std::move(channel));
  }
  const auto numberOf = [](const Channel& channel) { return channel.number.value_or(0xffffffff); };
  std::stable_sort(essence.channels.begin(), essence.channels.end(),
                   [&](const auto& left, const auto& right) { return numberOf(left) < numberOf(right); });
}

void addSound(const PartitionMetadata& metadata, const MetadataSet& descriptor, Essence& essence) {
  essence.samplingRate = ratioIn(descriptor, "AudioSampleRate");
  essence.channelCount = numberIn(descriptor, "ChannelCount");
  essence.bitDepth = firstSize(descriptor, {"QuantizationBits"});
  if (const auto locked = integerOf(descriptor, "Locked")) essence.locked = *locked != 0;
  addLabels(metadata, descriptor, essence);
}

}  // namespace

Essence essenceOf(const PartitionMetadata& metadata, const MetadataSet& descriptor) {
  Essence essence;
  essence.descriptor = descriptor.name();
  addCoding(descriptor, essence);
  essence.container = labelIn(descriptor, "ContainerFormat");
  essence.sampleRate = ratioIn(descriptor, "SampleRate");
  const auto length = integerOf(descriptor, "EssenceLength");
  if (length && *length >= 0) essence.length = length;
  if (isKind(descriptor, "PictureDescriptor")) addPicture(descriptor, essence);
  if (isKind(descriptor, "SoundDescriptor")) addSound(metadata, descriptor, essence);
  essence.languages = textIn(descriptor, "RFC5646LanguageTagList");
  if (!essence.languages) essence.languages = textIn(descriptor, "EventTextLanguageCode");
  return essence;
}

}  // namespace Vantor::Summary
