#include "Edit/Differences.h"

#include <algorithm>

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/KLV/BERLength.h"
#include "Core/Types/Types.h"

namespace Vantor::Edit {

namespace {

using Types::Identifiers::Identifier;

/// The exact form has this many components of a pixel layout.
constexpr uint32 kComponentsShown = 5;
/// Octets of the length field of a set that was not read.
constexpr uint8 kDefaultLengthOctets = 4;

bool isText(Identifier type) {
  return type == Types::Identifiers::kUTF16String || type == Types::Identifiers::kUTF8String ||
         type == Types::Identifiers::kISO7String || type == Types::Identifiers::kISO8String;
}

bool isCollection(Identifier type) { return type == Types::Identifiers::kArray || type == Types::Identifiers::kBatch; }

bool areSameToTheLetter(const Types::SimpleDataType& base, const Types::SimpleDataType& theirs) {
  if (base.equals(theirs)) return true;
  if (base.identifier() != theirs.identifier()) return false;
  if (base.identifier() == Types::Identifiers::kRGBALayout) {
    const auto &left = static_cast<const Types::RGBALayout&>(base),
               &right = static_cast<const Types::RGBALayout&>(theirs);
    for (uint32 i = 0; i < kComponentsShown; ++i) {
      if (left.get(i) != right.get(i)) return false;
    }
    return true;
  }
  if (!isCollection(base.identifier())) return false;
  const auto &left = static_cast<const Types::Collection&>(base),
             &right = static_cast<const Types::Collection&>(theirs);
  if (left.size() != right.size()) return false;
  for (uint32 i = 0; i < left.size(); ++i) {
    if (!areSameToTheLetter(left.at(i), right.at(i))) return false;
  }
  return true;
}

bool isEmptyCollection(const Types::SimpleDataType* value) {
  return value != nullptr && isCollection(value->identifier()) &&
         static_cast<const Types::Collection*>(value)->size() == 0;
}

/// The octets of a property's value, without the final NULs of texts.
Bytes octetsOf(const Element& property) {
  const auto* value = property.wireValue();
  if (value == nullptr) return {};
  Bytes octets(value->rawBuffer(), value->rawBuffer() + value->encodedSize());
  while (isText(value->identifier()) && !octets.empty() && octets.back() == 0) octets.pop_back();
  return octets;
}

bool wasReadFromKLV(const MetadataSet& set) {
  if (asGroup(&set) != nullptr) return true;
  return std::any_of(set.begin(), set.end(), [](const Element& property) { return property.localTag() != 0; });
}

/// The usual case, which needs no pairing: both sets have the same valid properties and no others.
bool haveSameValidProperties(const MetadataSet& base, const MetadataSet& theirs, Fidelity fidelity) {
  if (base.invalidBegin() != base.invalidEnd() || theirs.invalidBegin() != theirs.invalidEnd()) return false;
  auto left = base.begin(), right = theirs.begin();
  for (; left != base.end() && right != theirs.end(); ++left, ++right) {
    if (&left->metaAttribute() != &right->metaAttribute() || !areSame(&*left, &*right, fidelity)) return false;
  }
  return left == base.end() && right == theirs.end();
}

}  // namespace

bool areSame(const Element* base, const Element* theirs, Fidelity fidelity) {
  const bool isLetter = fidelity == Fidelity::kLetter;
  if (base == nullptr || theirs == nullptr) {
    return base == theirs || (isLetter && theirs == nullptr && isEmptyCollection(base->wireValue()));
  }
  const auto *baseValue = base->wireValue(), *theirValue = theirs->wireValue();
  if (baseValue == nullptr || theirValue == nullptr) return baseValue == theirValue;
  if (isEmptyCollection(baseValue) && isEmptyCollection(theirValue)) return true;
  return isLetter ? areSameToTheLetter(*baseValue, *theirValue) : baseValue->equals(*theirValue);
}

const MetadataSet* findOnly(const PartitionMetadata& partition, const Types::UUID& instanceUID) {
  const auto& found = partition.findByInstanceUID(instanceUID);
  return found.size() == 1 ? found.front() : nullptr;
}

std::vector<PropertyPair> differingProperties(const MetadataSet& left, const PartitionDictionary& leftTags,
                                              const MetadataSet& right, const PartitionDictionary& rightTags,
                                              Fidelity fidelity) {
  std::vector<PropertyPair> differing;
  if (haveSameValidProperties(left, right, fidelity)) return differing;
  for (const auto& pair : pairProperties(left, leftTags, right, rightTags)) {
    if (!areSame(pair.left, pair.right, fidelity)) differing.push_back(pair);
  }
  return differing;
}

bool areSame(const MetadataSet& left, const PartitionDictionary& leftTags, const MetadataSet& right,
             const PartitionDictionary& rightTags, Fidelity fidelity) {
  const auto *leftGroup = asGroup(&left), *rightGroup = asGroup(&right);
  if (leftGroup == nullptr && rightGroup == nullptr) {
    return left.definition() == right.definition() &&
           differingProperties(left, leftTags, right, rightTags, fidelity).empty();
  }
  return leftGroup != nullptr && rightGroup != nullptr && leftGroup->key() == rightGroup->key() &&
         leftGroup->value() == rightGroup->value();
}

std::string contentOf(const MetadataSet& set, const PartitionDictionary& tags) {
  std::string content = set.name();
  const auto add = [&content](const void* octets, std::size_t size) {
    content += " " + std::to_string(size) + ":";
    content.append(static_cast<const char*>(octets), size);
  };
  for (const Element* property : set.inDefinitionOrder()) {
    if (set.definition() != nullptr && &property->metaAttribute() == set.definition()->instanceUIDAttribute()) continue;
    const PropertyIdentity identity(*property, tags);
    const uint64 name[] = {static_cast<uint64>(identity.kind), identity.label.head, identity.label.tail, identity.tag};
    add(name, sizeof name);
    const Bytes octets = octetsOf(*property);
    add(octets.data(), octets.size());
  }
  return content;
}

uint8 writtenLengthOctets(uint8 octets, uint64 size) {
  return octets == 0 || octets > KLV::kMaxBEROctets ? uint8{0} : KLV::berOctets(size, octets);
}

bool hasOtherLengthOctets(const MetadataSet& before, const MetadataSet& after) {
  if (after.berLength() == kDefaultLengthOctets && !wasReadFromKLV(after)) return false;
  const auto octetsOf = [](const MetadataSet& set) {
    const auto* group = asGroup(&set);
    return writtenLengthOctets(set.berLength(), group == nullptr ? 0 : group->value().size());
  };
  return octetsOf(after) != 0 && octetsOf(after) != octetsOf(before);
}

}  // namespace Vantor::Edit
