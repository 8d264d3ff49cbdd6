#include "Core/Metadata/SetDetails.h"

#include <algorithm>
#include <unordered_map>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Metadata/PropertyText.h"
#include "Core/Metadata/ReferenceTargets.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/StringText.h"
#include "Core/Types/Types.h"
#include "Core/Types/ValueText.h"

namespace Vantor {

namespace {

using Properties = std::vector<std::string_view>;
using Types::Identifiers::Identifier;

constexpr std::string_view kDataDefinition = "ComponentDataDefinition";
constexpr std::size_t kMostCharacters = 32;
constexpr std::size_t kLastOctets = 3 * 8 - 1;  // with the points between them

/// Sets that inherit from one of these have the same, unless they stand here, too.
const std::unordered_map<std::string_view, Properties>& knownProperties() {
  static const std::unordered_map<std::string_view, Properties> properties = {
      {"Identification", {"ApplicationSupplierName", "ApplicationName", "FileModificationDate"}},
      {"Package", {"PackageName", "PackageID"}},
      {"EssenceData", {"EssenceStreamID", "LinkedPackageID"}},
      {"Track", {"TrackID", "TrackName"}},
      {"Component", {kDataDefinition}},
      {"Timecode", {"StartTimecode", "FramesPerSecond"}},
      {"SourceReference", {kDataDefinition, "SourceTrackID", "StartPosition"}},
      {"Event", {"EventPosition", "EventComment"}},
      {"FileDescriptor", {"LinkedTrackID", "ContainerFormat"}},
      {"PictureDescriptor", {"LinkedTrackID", "PictureCompression", "StoredWidth", "StoredHeight"}},
      {"SoundDescriptor", {"LinkedTrackID", "AudioSampleRate", "ChannelCount"}},
      {"MCALabelSubDescriptor", {"MCATagSymbol", "MCATagName", "RFC5646SpokenLanguage"}},
      {"TaggedValue", {"Tag", "Value"}},
  };
  return properties;
}

bool isTextOrNumber(Identifier type) {
  using namespace Types::Identifiers;
  constexpr Identifier kTypes[] = {kUTF16String, kUTF8String, kISO7String, kISO8String, kInt8,   kInt16,  kInt32,
                                   kInt64,       kUInt8,      kUInt16,     kUInt32,     kUInt64, kLength, kPosition};
  return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

bool isIdentifier(Identifier type) {
  using namespace Types::Identifiers;
  return type == kUMID32 || type == kUMID64 || type == kUUID;
}

Properties propertiesOf(const MetadataSet& set) {
  for (const auto* kind = set.definition(); kind != nullptr; kind = kind->parent()) {
    const auto found = knownProperties().find(kind->symbol());
    if (found != knownProperties().end()) return found->second;
  }
  for (const Element* element : set.inDefinitionOrder()) {
    const auto* definition = element->metaAttribute().metaElement();
    const auto* value = element->wireValue();
    if (definition != nullptr && value != nullptr && isTextOrNumber(value->identifier())) return {definition->symbol()};
  }
  return {};
}

/// In UTF-16, so that no character is cut in halves.
wstring beginningOf(const wstring& text) {
  if (text.size() <= kMostCharacters) return text;
  std::size_t units = kMostCharacters - 3;
  if (text[units] >= 0xdc00 && text[units] < 0xe000) --units;
  return text.substr(0, units) + u"...";
}

std::string commonOrSymbol(const MetadataSet& set, std::string_view symbol) {
  const auto* attribute = set.definition()->findAttribute(symbol);
  const auto common =
      attribute == nullptr ? std::string_view() : set.definition()->commonNameOf(*attribute->metaElement());
  return std::string(common.empty() ? symbol : common);
}

}  // namespace

std::string shortText(const MetadataSet& set, std::string_view property) {
  const auto* element = set.find(property);
  const auto* value = element == nullptr ? nullptr : element->wireValue();
  if (value == nullptr) return "";
  const auto type = value->identifier();
  if (Types::isTextType(type) && type != Types::Identifiers::kUTF16) {
    return Utils::wstringToString(Types::quotedText(beginningOf(Types::textOfValue(*value))));
  }
  const wstring text = printProperty({&set, set.definitionOf(*element)}, *value);
  const bool isShortened = isIdentifier(type) && text.size() > kMostCharacters;
  return Utils::wstringToString(isShortened ? u"..." + text.substr(text.size() - kLastOctets) : beginningOf(text));
}

std::vector<std::string> detailsOf(const MetadataSet& set) {
  std::vector<std::string> details;
  for (const auto property : propertiesOf(set)) {
    const auto text = shortText(set, property);
    if (text.empty()) continue;
    details.push_back(property == kDataDefinition ? text : commonOrSymbol(set, property) + " " + text);
  }
  return details;
}

SetOwners::SetOwners(const PartitionMetadata& partition) {
  for (const MetadataSet* set : partition.sets()) {
    for (const MetadataSet* target : targetsOf(*set, partition, ReferenceKinds{})) owners_.emplace(target, set);
  }
  for (const auto& [set, owner] : owners_) findPackage(*set);
}

/// Each set is passed once, however long the chains are. References of damaged files may go round in circles.
void SetOwners::findPackage(const MetadataSet& set) {
  std::vector<const MetadataSet*> path;
  const MetadataSet* package = nullptr;
  for (const MetadataSet* at = &set; at != nullptr; at = ownerOf(*at)) {
    const auto [known, isNew] = packages_.emplace(at, nullptr);
    if (!isNew) {
      package = known->second;  // null where the circle closes
      break;
    }
    path.push_back(at);
    const auto* owner = ownerOf(*at);
    if (owner != nullptr && owner->find("PackageID") != nullptr) {
      package = owner;
      break;
    }
  }
  for (const auto* passed : path) packages_[passed] = package;
}

const MetadataSet* SetOwners::ownerOf(const MetadataSet& set) const {
  const auto found = owners_.find(&set);
  return found == owners_.end() ? nullptr : found->second;
}

const MetadataSet* SetOwners::packageOf(const MetadataSet& set) const {
  const auto found = packages_.find(&set);
  return found == packages_.end() ? nullptr : found->second;
}

}  // namespace Vantor
