#include "Registers/FileTypes.h"

#include <algorithm>

#include "Core/MetaMetadata/RegisterKey.h"
#include "Registers/Chains.h"
#include "Registers/RegisterKeys.h"
#include "Registers/TypesTable.h"

namespace Vantor::Registers {

namespace {

using Kind = DefinitionProblem::Kind;
using MetaMetadata::comparableKey;

constexpr KLV::Key kAUIDType = RegisterKeys::type(0x0103010000000000);
constexpr KLV::Key kCharacterType = RegisterKeys::type(0x0110010000000000);  // of UTF-16

/// Fewer than `RegisterTypes` follows, as the types of the registers at the end of a chain count, too.
constexpr uint32 kMostBases = 90;

/// Whether values of the type are carried as those of its base are.
bool isCarriedAsBase(TypeKind kind) {
  return kind == TypeKind::kRename || kind == TypeKind::kEnumeration || kind == TypeKind::kVariableArray ||
         kind == TypeKind::kSet;
}

bool isReference(TypeKind kind) { return kind == TypeKind::kStrongReference || kind == TypeKind::kWeakReference; }

}  // namespace

FileTypes::FileTypes(const MetaDictionary& dictionary, Templates::vector<DefinitionProblem>& problems)
    : dictionary_(dictionary), problems_(problems) {
  entries_.types = registeredTypes();
  for (const auto& type : entries_.types) {
    places_.emplace(comparableKey(type.key), static_cast<uint32>(places_.size()));
  }
  addOwn();
  for (const auto& [place, own] : own_) refer(entries_.types[place], dictionary.types[own]);
  cutCircles();
  for (const auto& [place, own] : own_) {
    if (entries_.types[place].kind == TypeKind::kString) referToCharacter(entries_.types[place]);
  }
  types_.emplace(entries_);
}

void FileTypes::addOwn() {
  for (uint32 own = 0; own < dictionary_.types.size(); ++own) {
    const auto& type = dictionary_.types[own];
    if (!type.identification) {
      problems_.push_back({Kind::kNoIdentification, "type " + type.name});
      continue;
    }
    const auto place = static_cast<uint32>(entries_.types.size());
    const auto [known, isNew] = places_.emplace(comparableKey(*type.identification), place);
    if (isNew) {
      own_.emplace(place, own);
      entries_.types.push_back({*type.identification, type.name, type.kind, type.size, type.isSigned, {}, {}, {}});
    } else if (own_.count(known->second) != 0) {
      problems_.push_back({Kind::kSecondDefinition, "type " + type.name, entries_.types[known->second].symbol});
    }
  }
}

void FileTypes::refer(TypeEntry& type, const FileType& own) {
  if (own.isExtendible) {
    type.base = kAUIDType;
  } else if (isReference(type.kind)) {
    if (own.base) type.base = dictionary_.identificationOf(*own.base);
  } else if (isCarriedAsBase(type.kind) || type.kind == TypeKind::kString) {
    const auto* base = own.base ? entryOf(*own.base) : nullptr;
    if (base == nullptr) return carryAsBytes(type, Kind::kMissingType);
    type.base = base->key;
  }
}

// Definitions of characters have no coding; AAF knows those of UTF-16.
void FileTypes::referToCharacter(TypeEntry& string) {
  const auto* at = &string;
  for (uint32 bases = 0; at != nullptr && at->base && bases < kMostBases; ++bases) at = entryOf(*at->base);
  if (at == nullptr || at->kind != TypeKind::kCharacter) return;
  const bool isOwn = own_.count(static_cast<uint32>(at - entries_.types.data())) != 0;
  string.base = isOwn ? kCharacterType : at->key;
}

void FileTypes::cutCircles() {
  const auto next = [&](uint32 place) {
    const auto& type = entries_.types[place];
    return isCarriedAsBase(type.kind) ? placeOf(*type.base) : kChainEnd;
  };
  cutChains(static_cast<uint32>(entries_.types.size()), kMostBases, next, [&](uint32 place, bool isCircle) {
    carryAsBytes(entries_.types[place], isCircle ? Kind::kCircle : Kind::kTooManyBases);
  });
}

void FileTypes::carryAsBytes(TypeEntry& type, Kind why) {
  problems_.push_back({why, "type " + type.symbol});
  type.kind = TypeKind::kOther;
}

uint32 FileTypes::placeOf(const KLV::Key& key) const { return places_.at(comparableKey(key)); }

const TypeEntry* FileTypes::entryOf(const KLV::Key& reference) const {
  const auto found = places_.find(comparableKey(dictionary_.identificationOf(reference)));
  return found == places_.end() ? nullptr : &entries_.types[found->second];
}

RegisteredType FileTypes::find(const std::optional<KLV::Key>& reference) const {
  const auto* entry = reference ? entryOf(*reference) : nullptr;
  return entry == nullptr ? RegisteredType() : types_->find(entry->key).value_or(RegisteredType());
}

const FileType* FileTypes::ownEnumeration(const RegisteredType& type) const {
  if (type.enumeration == nullptr) return nullptr;
  const auto found = own_.find(static_cast<uint32>(type.enumeration - entries_.types.data()));
  return found == own_.end() ? nullptr : &dictionary_.types[found->second];
}

}  // namespace Vantor::Registers
