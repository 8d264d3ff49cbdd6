#include <algorithm>
#include <array>
#include <charconv>

#include "Core/Metadata/PartitionMetadata.h"
#include "Core/Platform/Raise.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/AUID.h"

namespace Vantor {

namespace {

using Exceptions::InvalidFormat;
using Exceptions::raise;

/// A name and the number in brackets behind it; 0 for none.
struct NumberedName {
  explicit NumberedName(std::string_view text) : name(text) {
    const auto bracket = text.find('[');
    if (bracket == std::string_view::npos || text.back() != ']') return;
    const char* const end = text.data() + text.size() - 1;
    const auto [stop, error] = std::from_chars(text.data() + bracket + 1, end, number);
    if (error == std::errc() && stop == end && number != 0) {
      name = text.substr(0, bracket);
    } else {
      number = 0;
    }
  }

  std::string_view name;
  std::size_t number = 0;
};

/// The octets of an identifier, as an AUID, because some writers use a label as an InstanceUID.
std::optional<Types::AUID> identifierFrom(std::string_view name) {
  const wstring text = Utils::stringToWstring(std::string(name));
  std::array<uint8, Types::AUID::kSize> octets{};
  if (Types::AUID::parseText(text, octets.data()) || Types::AUID::parseText(u"urn:uuid:" + text, octets.data())) {
    return Types::AUID(octets);
  }
  return std::nullopt;
}

[[noreturn]] void raiseNotFound(const PartitionMetadata& partition, std::string_view text, std::size_t count) {
  const NumberedName wanted(text);
  if (count != 0) raise<InvalidFormat>("there is no {}: the partition has {} of these sets", text, count);
  if (identifierFrom(wanted.name)) {
    raise<InvalidFormat>("the partition has no set with the identifier {}", wanted.name);
  }
  const auto& dictionary = *partition.partitionDictionary().dictionary();
  if (dictionary.findSetsByName(wanted.name).empty()) raise<InvalidFormat>("the dictionary has no set '{}'", text);
  raise<InvalidFormat>("the partition has no set {}", wanted.name);
}

[[noreturn]] void raiseAmbiguous(std::string_view name, std::size_t count) {
  raise<InvalidFormat>("{0} is ambiguous: {1} sets; use {0}[1] {2} {0}[{1}]", name, count, count == 2 ? "or" : "to");
}

}  // namespace

PartitionMetadata::Sets PartitionMetadata::setsNamed(std::string_view name) const {
  if (const auto identifier = identifierFrom(name)) {
    const auto& identified = findByInstanceUID(Types::UUID(identifier->rawBuffer()));
    return !identified.empty() ? identified : find(KLV::Key(identifier->rawBuffer()));
  }
  Sets sets;
  const auto definitions = dictionary_.dictionary()->findSetsByName(name);
  for (const auto* definition : definitions) {
    for (MetadataSet* set : find(definition->key())) {
      if (set->definition() == definition) sets.push_back(set);
    }
  }
  if (definitions.size() > 1) {
    std::sort(sets.begin(), sets.end(),
              [](const MetadataSet* left, const MetadataSet* right) { return left->ordinal_ < right->ordinal_; });
  }
  return sets;
}

FoundSets PartitionMetadata::findAll(std::string_view name) const {
  const NumberedName wanted(name);
  auto sets = setsNamed(wanted.name);
  if (wanted.number != 0) sets = wanted.number <= sets.size() ? Sets{sets[wanted.number - 1]} : Sets();
  return FoundSets(std::move(sets));
}

MetadataSet* PartitionMetadata::tryFind(std::string_view name) const {
  const auto found = findAll(name);
  if (found.size() > 1) raiseAmbiguous(name, found.size());
  return found.empty() ? nullptr : &found[0];
}

MetadataSet& PartitionMetadata::find(std::string_view name) const {
  if (auto* found = tryFind(name)) return *found;
  raiseNotFound(*this, name, setsNamed(NumberedName(name).name).size());
}

}  // namespace Vantor
