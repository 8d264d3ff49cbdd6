#include "Registers/KnownProperties.h"

#include <algorithm>

#include "Registers/Chains.h"

namespace Vantor::Registers {

namespace {

bool isAncestorOrSelf(uint32 ancestor, uint32 set, const FileClasses& classes) {
  while (set != kChainEnd && set != ancestor) set = classes.parentOf(set);
  return set == ancestor;
}

}  // namespace

KnownProperties::KnownProperties(const Definitions& definitions) {
  for (uint32 set = 0; set < definitions.sets().size(); ++set) {
    for (const auto& use : definitions.sets()[set].properties) {
      add(use);
      const auto& property = definitions.properties()[use.property];
      setsByName_[property.symbol].push_back(set);
      if (property.tagName != property.symbol) setsByName_[property.tagName].push_back(set);
    }
  }
  for (const auto& common : definitions.commonNames()) {
    if (common.property) setsByName_[common.name].push_back(common.set);
  }
}

void KnownProperties::add(const PropertyUse& use) {
  const auto [known, isNew] = tags_.emplace(use.property, use.staticLocalTag);
  if (!isNew && known->second != use.staticLocalTag) known->second.reset();
  if (use.staticLocalTag != 0) taken_.insert(use.staticLocalTag);
}

std::optional<uint16> KnownProperties::tagOf(uint32 property) const {
  const auto found = tags_.find(property);
  return found == tags_.end() ? std::optional<uint16>(uint16{0}) : found->second;
}

bool KnownProperties::hasNameWith(std::string_view name, const std::vector<uint32>& sets,
                                  const FileClasses& classes) const {
  const auto found = setsByName_.find(name);
  if (found == setsByName_.end()) return false;
  const auto isRelated = [&](uint32 one, uint32 other) {
    return isAncestorOrSelf(one, other, classes) || isAncestorOrSelf(other, one, classes);
  };
  return std::any_of(found->second.begin(), found->second.end(), [&](uint32 known) {
    return std::any_of(sets.begin(), sets.end(), [&](uint32 set) { return isRelated(known, set); });
  });
}

}  // namespace Vantor::Registers
