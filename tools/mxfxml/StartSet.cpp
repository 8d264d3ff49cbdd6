#include "StartSet.h"

#include <algorithm>
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

bool isNamed(const MetadataSet& set, const std::string& symbol, const wstring& tagName) {
  const auto* definition = set.definition();
  return definition != nullptr &&
         (definition->symbol() == symbol || definition->extensionAttribute(MetaMetadata::kXMLTagName) == tagName);
}

}  // namespace

const MetadataSet& findStartSet(const PartitionMetadata& partition, const std::string& text) {
  const wstring wide = Utils::stringToWstring(text);
  if (const auto instanceUID = instanceUIDFrom(wide)) {
    const auto& sets = partition.findByInstanceUID(*instanceUID);
    if (sets.empty()) throw CommandError("no set of the partition has the InstanceUID '" + text + "'");
    return *sets.front();
  }
  const auto& sets = partition.sets();
  const auto found =
      std::find_if(sets.begin(), sets.end(), [&](const MetadataSet* set) { return isNamed(*set, text, wide); });
  if (found == sets.end()) throw CommandError("no set of the partition is named '" + text + "'");
  return **found;
}

}  // namespace Vantor::Tool
