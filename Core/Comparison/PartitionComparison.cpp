#include "Core/Comparison/PartitionComparison.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/Comparison/PropertyPairing.h"
#include "Core/Comparison/ValueText.h"
#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/KLV/LocalSet.h"
#include "Core/Metadata/CollectionElements.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Platform/Exceptions.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

using Kind = PartitionDifference::Kind;
using Property = PartitionDifference::Property;
using Insignificant = InsignificantDifference;
using Types::SimpleDataType;

constexpr const char* kNoValue = "no value";

/// Maps InstanceUIDs of one partition to those of the other, one to one. The first pair that has either of them
/// decides.
class IdentifierMap {
 public:
  /// Enters a pair unless one of them is mapped. @return whether they map to one another now.
  bool enter(const Types::UUID& left, const Types::UUID& right) {
    toRight_.emplace(left, right);
    toLeft_.emplace(right, left);
    return maps(left, right);
  }
  bool maps(const Types::UUID& left, const Types::UUID& right) const {
    const auto toRight = toRight_.find(left);
    const auto toLeft = toLeft_.find(right);
    return toRight != toRight_.end() && toRight->second == right && toLeft != toLeft_.end() && toLeft->second == left;
  }

 private:
  std::unordered_map<Types::UUID, Types::UUID> toRight_;
  std::unordered_map<Types::UUID, Types::UUID> toLeft_;
};

/// How many of a sequence of different numbers are outside its longest ascending subsequence.
uint64 countOutOfOrder(const std::vector<std::size_t>& sequence) {
  std::vector<std::size_t> lowestEnds;  // of ascending parts, by their length
  for (const std::size_t number : sequence) {
    const auto at = std::lower_bound(lowestEnds.begin(), lowestEnds.end(), number);
    if (at == lowestEnds.end()) {
      lowestEnds.push_back(number);
    } else {
      *at = number;
    }
  }
  return sequence.size() - lowestEnds.size();
}

bool hasSameOctets(const SimpleDataType& left, const SimpleDataType& right) {
  return left.encodedSize() == right.encodedSize() &&
         std::equal(left.rawBuffer(), left.rawBuffer() + left.encodedSize(), right.rawBuffer());
}

/// A property of one side, which decides how its values read.
struct Side {
  const MetadataSet* set = nullptr;
  const Element* property = nullptr;

  bool isUnread() const { return property->metaAttribute().asUnknown() != nullptr; }
  /// @param value  the property's, or an item of it; null for none.
  std::string textOf(const SimpleDataType* value) const {
    if (value == nullptr) return kNoValue;
    if (value == property->wireValue()) return valueText(*set, *property);
    return valueText({set, set->definitionOf(*property)}, *value);
  }
};

std::string textOf(const Types::UUID& identifier) { return identifier.dottedText(); }

std::string octetText(const uint8* octets, std::size_t size, std::size_t at) {
  return ", octet " + std::to_string(at) + " " + (at < size ? "is " + octetsText(octets + at, 1) : "is missing");
}

/// The label of a local tag; null when neither primer nor dictionary has one.
const Types::UniversalLabel* meaningOf(uint16 tag, const PartitionDictionary& tags) {
  if (const auto* label = tags.tryFind(tag)) return label;
  const auto* definition = tags.dictionary()->findElementByStaticTag(tag);
  return definition == nullptr ? nullptr : &definition->key();
}

bool isSameLabel(const Types::UniversalLabel* left, const Types::UniversalLabel* right) {
  if (left == nullptr || right == nullptr) return left == right;
  return MetaMetadata::elementIdentity(left->rawBuffer()) == MetaMetadata::elementIdentity(right->rawBuffer());
}

const uint8* octetsOf(const EntryView& entry) { return reinterpret_cast<const uint8*>(entry.octets.data()); }

bool isEmptyOptional(const Element& property) {
  const auto* attribute = dynamic_cast<const MetaMetadata::MetaAttribute*>(&property.metaAttribute());
  const auto* collection = dynamic_cast<const CollectionElement*>(&property);
  return attribute != nullptr && attribute->requiredStatus() != 0 && collection != nullptr && collection->size() == 0;
}

bool holdsInstanceUID(const Element& property, const MetadataSet& set) {
  return set.instanceUID() != nullptr && set.isInstanceUID(property);
}

bool holdsReferences(const Types::Collection& collection) {
  return collection.size() != 0 && dynamic_cast<const Types::Reference*>(&collection.at(0)) != nullptr;
}

/// Size of the length field of a property in a set coded 0x13.
uint8 lengthOctets(const Element& property) {
  const auto* value = property.wireValue();
  return KLV::berOctets(value == nullptr ? 0 : value->encodedSize(), property.lengthOctets());
}

/// The places of a right set's properties, in the order of their partners in the left set.
std::vector<std::size_t> placesInWritingOrder(const MetadataSet& left, const MetadataSet& right,
                                              const std::vector<PropertyPair>& pairs) {
  std::unordered_map<const Element*, std::size_t> rightPlaces;
  for (const Element* property : right.inWritingOrder()) rightPlaces.emplace(property, rightPlaces.size());
  std::unordered_map<const Element*, std::size_t> partnerPlaces;
  for (const auto& pair : pairs) {
    if (pair.left != nullptr && pair.right != nullptr) partnerPlaces.emplace(pair.left, rightPlaces.at(pair.right));
  }
  std::vector<std::size_t> places;
  for (const Element* property : left.inWritingOrder()) {
    const auto found = partnerPlaces.find(property);
    if (found != partnerPlaces.end()) places.push_back(found->second);
  }
  return places;
}

/// Where and how two values differ.
struct Finding {
  Kind kind;
  std::string left;
  std::string right;
  std::string at = {};  // the index in a collection
};

class Comparer {
 public:
  Comparer(const PartitionMetadata& left, const PartitionMetadata& right, Pairing pairing)
      : left_(left), right_(right), areNamesShared_(pairing == Pairing::kByIdentifier), pairing_(left, right, pairing) {
    for (const auto& [leftSet, rightSet] : pairing_.setPairs()) {
      if (leftSet->instanceUID() != nullptr && rightSet->instanceUID() != nullptr) {
        identifiers_.enter(*leftSet->instanceUID(), *rightSet->instanceUID());
      }
    }
  }

  PartitionComparison run() {
    std::vector<std::size_t> rightPlaces;
    const auto& partners = pairing_.partnersOfLeft();
    for (std::size_t i = 0; i < partners.size(); ++i) {
      compareEntry(EntryView(left_.entries()[i]), partners[i]);
      if (partners[i] != SetPairing::kNone) rightPlaces.push_back(partners[i]);
    }
    reportAddedSets();
    count(Insignificant::kSetOrder, countOutOfOrder(rightPlaces));
    return std::move(result_);
  }

 private:
  void count(Insignificant kind, uint64 number) { result_.insignificant[static_cast<std::size_t>(kind)] += number; }

  void compareEntry(const EntryView& left, std::size_t partner) {
    ++result_.sets;
    const std::size_t before = result_.differences.size();
    if (partner == SetPairing::kNone) {
      reportSet(Kind::kMissingSet, left);
    } else {
      compareEntries(left, EntryView(right_.entries()[partner]));
    }
    if (result_.differences.size() != before) ++result_.differingSets;
  }

  void compareEntries(const EntryView& left, const EntryView& right) {
    count(Insignificant::kKeyOctets, *left.key != *right.key ? 1 : 0);
    count(Insignificant::kBEROctets, left.berLength != right.berLength ? 1 : 0);
    count(Insignificant::kDarkKinds, (left.set == nullptr) != (right.set == nullptr) ? 1 : 0);
    if (left.isDark() && right.isDark()) {
      compareDark(left, right);
    } else {
      compareSets(*left.set, *right.set);
    }
  }

  void compareDark(const EntryView& left, const EntryView& right) {
    if (left.octets == right.octets) return countLabels(left);
    if (KLV::isOfObjectDirectory(*left.key)) return count(Insignificant::kObjectDirectories, 1);
    Finding finding{Kind::kValue, octetsText(octetsOf(left), left.octets.size()),
                    octetsText(octetsOf(right), right.octets.size())};
    if (finding.left == finding.right) {
      showFirstOctet(octetsOf(left), left.octets.size(), octetsOf(right), right.octets.size(), finding);
    }
    report(*left.set, "octets", std::move(finding));
  }

  void countLabels(const EntryView& dark) {
    if (!KLV::isLocalSet(*dark.key)) return;
    try {
      for (const auto& item : KLV::readLocalSet(KLV::localSetCoding(*dark.key), octetsOf(dark), dark.octets.size())) {
        const auto* leftLabel = meaningOf(item.tag, left_.partitionDictionary());
        const auto* rightLabel = meaningOf(item.tag, right_.partitionDictionary());
        count(Insignificant::kDarkLabels, isSameLabel(leftLabel, rightLabel) ? 0 : 1);
      }
    } catch (const Exceptions::ParseError&) {
      // Its key says local set; its value is not one.
    }
  }

  void reportAddedSets() {
    const auto& partners = pairing_.partnersOfRight();
    for (std::size_t i = 0; i < partners.size(); ++i) {
      if (partners[i] != SetPairing::kNone) continue;
      ++result_.sets;
      ++result_.differingSets;
      reportSet(Kind::kAddedSet, EntryView(right_.entries()[i]));
    }
  }

  void reportSet(Kind kind, const EntryView& entry) {
    const auto* instanceUID = entry.set == nullptr ? nullptr : entry.set->instanceUID();
    result_.differences.push_back({kind, entry.name(), instanceUID == nullptr ? "" : textOf(*instanceUID), "", "", "",
                                   entry.set == nullptr ? "" : std::string(entry.set->otherNameOf("")), entry.set});
  }

  void report(const MetadataSet& set, const std::string& property, Finding finding, Property left = {},
              Property right = {}) {
    const auto* instanceUID = set.instanceUID();
    result_.differences.push_back({finding.kind, set.name(), instanceUID == nullptr ? "" : textOf(*instanceUID),
                                   property + finding.at, std::move(finding.left), std::move(finding.right),
                                   std::string(set.otherNameOf(property)), &set, left, right});
  }

  void compareSets(const MetadataSet& left, const MetadataSet& right) {
    auto pairs = pairProperties(left, left_.partitionDictionary(), right, right_.partitionDictionary());
    joinUnread(pairs, left, right);
    const bool haveBERLengths = KLV::hasBERLengths(left.key()) && KLV::hasBERLengths(right.key());
    for (const auto& pair : pairs) {
      ++result_.properties;
      if (pair.left == nullptr || pair.right == nullptr) {
        compareWithNone(left, right, pair);
        continue;
      }
      count(Insignificant::kBEROctets, haveBERLengths && lengthOctets(*pair.left) != lengthOctets(*pair.right) ? 1 : 0);
      compareProperties(left, right, *pair.left, *pair.right);
    }
    const auto places = placesInWritingOrder(left, right, pairs);
    count(Insignificant::kPropertyOrder, std::is_sorted(places.begin(), places.end()) ? 0 : 1);
  }

  void compareWithNone(const MetadataSet& leftSet, const MetadataSet& rightSet, const PropertyPair& pair) {
    const Element& property = pair.left != nullptr ? *pair.left : *pair.right;
    if (isEmptyOptional(property)) return count(Insignificant::kEmptyCollections, 1);
    ++result_.differingProperties;
    const Side side = {pair.left != nullptr ? &leftSet : &rightSet, &property};
    const std::string text = side.textOf(property.wireValue());
    if (pair.left != nullptr) {
      report(leftSet, propertyName(property, left_.partitionDictionary()), {Kind::kMissingProperty, text, ""},
             {&leftSet, &property});
    } else {
      report(leftSet, propertyName(property, right_.partitionDictionary()), {Kind::kAddedProperty, "", text}, {},
             {&rightSet, &property});
    }
  }

  void compareProperties(const MetadataSet& leftSet, const MetadataSet& rightSet, const Element& left,
                         const Element& right) {
    const auto leftTag = localTagOf(left, left_.partitionDictionary());
    count(Insignificant::kLocalTags, leftTag != localTagOf(right, right_.partitionDictionary()) ? 1 : 0);
    count(Insignificant::kPrimerLabels, haveSameLabel(left, right) ? 0 : 1);
    leftSide_ = {&leftSet, &left};
    rightSide_ = {&rightSet, &right};
    auto finding = holdsInstanceUID(left, leftSet) && holdsInstanceUID(right, rightSet)
                       ? compareInstanceUIDs(*leftSet.instanceUID(), *rightSet.instanceUID())
                       : compareValues(left.wireValue(), right.wireValue());
    if (!finding) return;
    ++result_.differingProperties;
    report(leftSet, propertyName(left, left_.partitionDictionary()), std::move(*finding), {&leftSet, &left},
           {&rightSet, &right});
  }

  bool haveSameLabel(const Element& left, const Element& right) const {
    return isSameLabel(unknownLabelOf(left, left_.partitionDictionary()),
                       unknownLabelOf(right, right_.partitionDictionary()));
  }

  std::optional<Finding> compareInstanceUIDs(const Types::UUID& left, const Types::UUID& right) const {
    if (identifiers_.maps(left, right)) return std::nullopt;
    return Finding{Kind::kMapping, textOf(left), textOf(right)};
  }

  std::optional<Finding> compareValues(const SimpleDataType* left, const SimpleDataType* right) {
    if (left == nullptr && right == nullptr) return std::nullopt;
    if (left == nullptr || right == nullptr)
      return Finding{Kind::kValue, leftSide_.textOf(left), rightSide_.textOf(right)};
    if (left->identifier() != right->identifier()) {
      const auto typed = [](const Side& side, const SimpleDataType& value) {
        return std::string(Types::Identifiers::name(value.identifier())) + " " + side.textOf(&value);
      };
      Finding finding{Kind::kValue, leftSide_.textOf(left), rightSide_.textOf(right)};
      if (leftSide_.isUnread() != rightSide_.isUnread() && finding.left != finding.right) return finding;
      return Finding{Kind::kValue, typed(leftSide_, *left), typed(rightSide_, *right)};
    }
    if (const auto* collection = dynamic_cast<const Types::Collection*>(left)) {
      return compareCollections(*collection, dynamic_cast<const Types::Collection&>(*right));
    }
    if (const auto* reference = dynamic_cast<const Types::Reference*>(left)) {
      return compareReferences(reference->target(), dynamic_cast<const Types::Reference&>(*right).target());
    }
    return compareOctets(*left, *right);
  }

  std::optional<Finding> compareCollections(const Types::Collection& left, const Types::Collection& right) {
    if (left.size() != right.size()) {
      const auto kind = holdsReferences(left) || holdsReferences(right) ? Kind::kReference : Kind::kValue;
      return Finding{kind, leftSide_.textOf(&left), rightSide_.textOf(&right)};
    }
    if (left.size() == 0) count(Insignificant::kEmptyItemSizes, left.itemSize() != right.itemSize() ? 1 : 0);
    for (uint32 i = 0; i < left.size(); ++i) {
      auto finding = compareValues(&left.at(i), &right.at(i));
      if (!finding) continue;
      if (finding->kind == Kind::kValue) return wholeOr(*finding, i, left, right);
      finding->at.insert(0, "[" + std::to_string(i) + "]");
      return finding;
    }
    return std::nullopt;
  }

  /// Whole lists can be pasted back; the item is for those whose shortened texts are equal.
  Finding wholeOr(Finding item, uint32 index, const Types::Collection& left, const Types::Collection& right) const {
    Finding whole{Kind::kValue, leftSide_.textOf(&left), rightSide_.textOf(&right)};
    if (whole.left != whole.right) return whole;
    item.at.insert(0, "[" + std::to_string(index) + "]");
    return item;
  }

  std::optional<Finding> compareOctets(const SimpleDataType& left, const SimpleDataType& right) {
    if (hasSameOctets(left, right)) return std::nullopt;
    const auto* definition = leftSide_.property->metaAttribute().metaElement();
    const bool isExact = definition != nullptr && definition->isInChosenNamespace();
    if (!isExact && left.equals(right)) {
      count(Insignificant::kTrailingNULs, 1);
      return std::nullopt;
    }
    Finding finding{Kind::kValue, leftSide_.textOf(&left), rightSide_.textOf(&right)};
    if (finding.left == finding.right) {
      showFirstOctet(left.rawBuffer(), left.encodedSize(), right.rawBuffer(), right.encodedSize(), finding);
    }
    return finding;
  }

  /// For values whose shortened texts are equal.
  static void showFirstOctet(const uint8* left, std::size_t leftSize, const uint8* right, std::size_t rightSize,
                             Finding& finding) {
    const auto differing = std::mismatch(left, left + leftSize, right, right + rightSize);
    const auto at = static_cast<std::size_t>(differing.first - left);
    finding.left += octetText(left, leftSize, at);
    finding.right += octetText(right, rightSize, at);
  }

  std::optional<Finding> compareReferences(const Types::UUID& left, const Types::UUID& right) {
    const auto& leftTargets = left_.findByInstanceUID(left);
    const auto& rightTargets = right_.findByInstanceUID(right);
    // Two references to nothing only show that their identifiers correspond; both may occur again.
    const bool areDangling = leftTargets.empty() && rightTargets.empty();
    const bool correspond = areDangling ? areDanglingEqual(left, right) : identifiers_.maps(left, right);
    if (correspond) return std::nullopt;
    const auto text = [](const Types::UUID& target, const PartitionMetadata::Sets& sets) {
      return textOf(target) + " (" + (sets.empty() ? "no set" : sets.front()->name()) + ")";
    };
    return Finding{areDangling ? Kind::kMapping : Kind::kReference, text(left, leftTargets), text(right, rightTargets)};
  }

  bool areDanglingEqual(const Types::UUID& left, const Types::UUID& right) {
    if (areNamesShared_) return left == right;
    // Only all zeros mean that there is no set.
    const bool areOneKind = (left == Types::UUID()) == (right == Types::UUID());
    return areOneKind && identifiers_.enter(left, right);
  }

  const PartitionMetadata& left_;
  const PartitionMetadata& right_;
  bool areNamesShared_;
  SetPairing pairing_;
  IdentifierMap identifiers_;
  Side leftSide_;  // of the pair that is compared
  Side rightSide_;
  PartitionComparison result_;
};

}  // namespace

const char* name(PartitionDifference::Kind kind) {
  switch (kind) {
    case Kind::kMissingSet:
      return "missing set";
    case Kind::kAddedSet:
      return "added set";
    case Kind::kMissingProperty:
      return "missing property";
    case Kind::kAddedProperty:
      return "added property";
    case Kind::kValue:
      return "value";
    case Kind::kReference:
      return "reference";
    case Kind::kMapping:
      return "mapping";
  }
  return "";
}

const char* name(InsignificantDifference kind) {
  static constexpr std::array<const char*, PartitionComparison::kInsignificantKinds> kNames = {
#define VANTOR_NAME(symbol, text) text,
      VANTOR_FOR_EACH_INSIGNIFICANT_DIFFERENCE(VANTOR_NAME)
#undef VANTOR_NAME
  };
  return kNames[static_cast<std::size_t>(kind)];
}

PartitionComparison comparePartitions(const PartitionMetadata& left, const PartitionMetadata& right, Pairing pairing) {
  return Comparer(left, right, pairing).run();
}

}  // namespace Vantor
