#include "StartSet.h"

#include <array>
#include <optional>

#include "Core/MetaMetadata/ExtensionAttributes.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/AUID.h"
#include "ErrorText.h"

namespace Vantor::Tool {

namespace {

/// As an AUID, because a writer may have taken a label for an InstanceUID; the export then shows it as one.
std::optional<Types::UUID> instanceUIDFrom(const wstring& text) {
  std::array<uint8, Types::AUID::kSize> octets{};
  if (Types::AUID::parseText(text, octets.data()) || Types::AUID::parseText(u"urn:uuid:" + text, octets.data())) {
    return Types::UUID(octets);
  }
  return std::nullopt;
}

}  // namespace

std::vector<const MetadataSet*> setsNamed(const PartitionMetadata& partition, const std::string& name) {
  const wstring tagName = Utils::stringToWstring(name);
  std::vector<const MetadataSet*> found;
  for (const MetadataSet* set : partition.sets()) {
    const auto* definition = set->definition();
    if (definition == nullptr) continue;
    const bool isIt =
        definition->symbol() == name || definition->extensionAttribute(MetaMetadata::kXMLTagName) == tagName;
    if (isIt) found.push_back(set);
  }
  return found;
}

bool isInstanceUID(const std::string& text) { return instanceUIDFrom(Utils::stringToWstring(text)).has_value(); }

const MetadataSet& findStartSet(const PartitionMetadata& partition, const std::string& text) {
  const wstring wide = Utils::stringToWstring(text);
  if (const auto instanceUID = instanceUIDFrom(wide)) {
    const auto& sets = partition.findByInstanceUID(*instanceUID);
    if (sets.empty()) throw CommandError("no set of the partition has the InstanceUID '" + text + "'");
    return *sets.front();
  }
  const auto found = setsNamed(partition, text);
  if (found.empty()) throw CommandError("no set of the partition is named '" + text + "'");
  return *found.front();
}

}  // namespace Vantor::Tool
