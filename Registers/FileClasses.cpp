#include "Registers/FileClasses.h"

#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/Chains.h"
#include "Registers/RegisterKeys.h"

namespace Vantor::Registers {

namespace {

using Kind = DefinitionProblem::Kind;

/// One less than `Definitions::check` allows, as InterchangeObject comes above those that are cut.
constexpr uint32 kMostGenerations = 99;
/// As many as `Definitions::check` allows.
constexpr uint64 kMostListedProperties = 1000000;

constexpr uint8 kGroupOctet = 0x02, kAnyCoding = 0x7f;

bool isGroup(const KLV::Key& key) { return KLV::isSmpteLabel(key) && key.octet(5) == kGroupOctet; }

/// As the registers have them, for any coding.
KLV::Key setKeyOf(const KLV::Key& key) {
  return isGroup(key) ? key.withOctet(KLV::Key::kCodingOctet, kAnyCoding) : key;
}

}  // namespace

FileClasses::FileClasses(const MetaDictionary& file, const Identifications& identifications, Definitions& into,
                         Templates::vector<DefinitionProblem>& problems)
    : file_(file), identifications_(identifications), into_(into), problems_(problems) {
  places_.assign(file.classes.size(), kChainEnd);
  for (uint32 number = 0; number < file.classes.size(); ++number) add(file.classes[number], number);
  nameAdded();
  findParents();
}

void FileClasses::add(const FileClass& one, uint32 number) {
  const auto key = keyOf(one);
  if (!key) return;
  if (const auto* known = into_.findSet(*key)) {
    places_[number] = static_cast<uint32>(known - into_.sets().data());
    return;
  }
  const auto place = static_cast<uint32>(into_.sets().size() + added_.size());
  const auto [other, isNew] = addedByKey_.emplace(MetaMetadata::comparableKey(*key), place);
  places_[number] = other->second;
  if (!isNew)
    return problem(Kind::kSecondDefinition, one, file_.classes[numbers_[other->second - into_.sets().size()]].name);
  SetDefinition set;
  set.key = *key;
  set.isConcrete = one.isConcrete;
  set.origin.line = one.number;
  added_.push_back(std::move(set));
  numbers_.push_back(number);
}

void FileClasses::nameAdded() {
  DefinitionNames names;
  for (const char* reserved : {"DarkMetadata", "FloatingDarkMetadata"}) names.add(reserved);
  for (const auto& set : into_.sets()) {
    names.add(set.symbol);
    names.add(set.tagName);
  }
  for (const auto& common : into_.commonNames()) {
    if (!common.property) names.add(common.name);
  }
  for (std::size_t i = 0; i < added_.size(); ++i) names.want(file_.classes[numbers_[i]].name, "Class", added_[i].key);
  const auto taken = names.take();
  for (std::size_t i = 0; i < added_.size(); ++i) {
    const auto& one = file_.classes[numbers_[i]];
    added_[i].symbol = added_[i].tagName = into_.keep(taken[i]);
    if (taken[i] != one.name) problem(Kind::kRenamed, one, taken[i]);
  }
}

std::optional<KLV::Key> FileClasses::keyOf(const FileClass& one) {
  const auto key = one.identification ? identifications_.keyOf(*one.identification) : std::nullopt;
  if (!key) {
    problem(Kind::kNoIdentification, one);
  } else if (!isGroup(*key) && !KLV::isSwappedUUID(*key)) {
    problem(Kind::kNoSetKey, one);
  } else if (KLV::isOfObjectDirectory(*key)) {
    problem(Kind::kObjectDirectory, one);
  } else {
    return setKeyOf(*key);
  }
  return std::nullopt;
}

uint32 FileClasses::placeOf(const KLV::Key& reference) const {
  const auto identification = file_.identificationOf(reference);
  if (const auto* known = into_.findSet(identification)) return static_cast<uint32>(known - into_.sets().data());
  const auto key = identifications_.keyOf(identification);
  const auto found = addedByKey_.find(MetaMetadata::comparableKey(setKeyOf(key.value_or(identification))));
  return found == addedByKey_.end() ? kChainEnd : found->second;
}

void FileClasses::findParents() {
  for (const auto& set : into_.sets()) {
    const auto* parent = set.parent.empty() ? nullptr : into_.findSet(set.parent);
    parents_.push_back(parent == nullptr ? kChainEnd : static_cast<uint32>(parent - into_.sets().data()));
  }
  root_ = placeOf(RegisterKeys::kInterchangeObject);
  const auto first = static_cast<uint32>(parents_.size());
  for (const uint32 number : numbers_) {
    parents_.push_back(parentOf(file_.classes[number], static_cast<uint32>(parents_.size())));
  }
  cutChains(
      static_cast<uint32>(parents_.size()), kMostGenerations, [&](uint32 place) { return parents_[place]; },
      [&](uint32 place, bool isCircle) {
        if (place < first) return;  // valid definitions have no such chains
        parents_[place] = root_;
        problem(isCircle ? Kind::kCircle : Kind::kTooDeep, file_.classes[numbers_[place - first]]);
      });
  for (uint32 i = 0; i < added_.size(); ++i) {
    if (parents_[first + i] != kChainEnd) added_[i].parent = symbolOf(parents_[first + i]);
  }
}

/// A root is its own parent in AAF. It inherits from InterchangeObject, so that its sets have an InstanceUID.
uint32 FileClasses::parentOf(const FileClass& one, uint32 place) {
  const uint32 parent = one.parent ? placeOf(*one.parent) : kChainEnd;
  if (parent == place) return root_;
  if (parent != kChainEnd) return parent;
  problem(Kind::kMissingParent, one);
  return root_;
}

bool FileClasses::isDefinition(uint32 place) const {
  for (; place != kChainEnd; place = parents_[place]) {
    if (RegisterKeys::isDefinitionRoot(setAt(place).key)) return true;
  }
  return false;
}

bool FileClasses::hasTooManyProperties() const {
  Templates::vector<uint64> own(parents_.size());
  for (std::size_t i = 0; i < into_.sets().size(); ++i) own[i] = into_.sets()[i].properties.size();
  for (std::size_t i = 0; i < places_.size(); ++i) {
    if (places_[i] != kChainEnd) own[places_[i]] += file_.classes[i].properties.size();
  }
  for (const auto& property : file_.properties) {
    const uint32 place = property.memberOf ? placeOf(*property.memberOf) : kChainEnd;
    if (place != kChainEnd) ++own[place];
  }
  uint64 sum = 0;
  for (uint32 place = 0; place < parents_.size(); ++place) {
    for (uint32 at = place; at != kChainEnd; at = parents_[at]) sum += own[at];
  }
  return sum > kMostListedProperties;
}

const SetDefinition& FileClasses::setAt(uint32 place) const {
  const auto known = static_cast<uint32>(into_.sets().size());
  return place < known ? into_.sets()[place] : added_[place - known];
}

void FileClasses::problem(Kind kind, const FileClass& one, std::string detail) {
  problems_.push_back({kind, "class " + one.name, std::move(detail)});
}

}  // namespace Vantor::Registers
