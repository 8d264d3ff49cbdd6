#include <utility>
#include <vector>

#include "Core/KLV/BERLength.h"
#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/ElementFactory.h"
#include "Core/Metadata/NameSuggestions.h"
#include "Core/Metadata/SetReader.h"
#include "Core/Metadata/UnknownTags.h"
#include "Core/Platform/HexDigits.h"
#include "Core/Platform/Strings.h"
#include "Core/Types/Text/TypeText.h"
#include "JSON/PropertyValue.h"
#include "JSON/Refusal.h"
#include "JSON/SetValue.h"

namespace Vantor::JSON {

namespace {

using MetaMetadata::MetaElement;
using MetaMetadata::MetaMetadataSet;

/// The identifier in a member.
template <class Type>
Type identifierIn(const Value& json, std::string_view name) {
  const auto& value = requiredMember(json, name);
  return readingAt(name, value, [&] {
    const auto parsed = Types::parseValue(Type::kIdentifier, Utils::stringToWstring(textOf(value)));
    return static_cast<const Type&>(*parsed);
  });
}

KLV::Key keyIn(const Value& json) { return identifierIn<Types::UniversalLabel>(json, "key").key(); }

Bytes octetsMember(const Value& json) {
  const auto& value = requiredMember(json, "octets");
  return readingAt("octets", value, [&] {
    auto octets = Platform::bytesFromHex(Utils::stringToWstring(textOf(value)));
    if (!octets) throw Refusal("octets are hexadecimal digits, two to an octet");
    return std::move(*octets);
  });
}

/// The mark of an unknown property.
UnknownMark markIn(const Value& json, const MetaMetadata::Dictionary& dictionary) {
  std::optional<Types::UniversalLabel> label;
  if (json.find("key") != nullptr) label = identifierIn<Types::UniversalLabel>(json, "key");
  const auto* given = label ? &*label : nullptr;
  if (json.find("tag") == nullptr) return {std::nullopt, label};
  return markOf(identifierIn<Types::LocalTag>(json, "tag"), given, dictionary);
}

// Dark sets.

uint8 lengthOctetsIn(const Value& json) {
  const auto* value = json.find("lengthOctets");
  if (value == nullptr) return 0;  // the writer's choice
  return static_cast<uint8>(readingAt("lengthOctets", *value, [&] { return numberOf(*value, 0, KLV::kMaxBEROctets); }));
}

/// The InstanceUID of a dark group is part of its octets.
void requireInstanceUID(const Value& json, const Types::UUID* instanceUID) {
  const auto* member = json.find("instanceUID");
  if (member == nullptr) return;
  const auto given = identifierIn<Types::UUID>(json, "instanceUID");
  if (instanceUID != nullptr && *instanceUID == given) return;
  throw Refusal("\"instanceUID\" is " + given.dottedText() + ", but the octets have " +
                (instanceUID == nullptr ? "none" : instanceUID->dottedText()));
}

void addDark(const Value& json, PartitionMetadata& partition) {
  requireMembers(json, {"key", "instanceUID", "lengthOctets", "octets"});
  const auto key = keyIn(json);
  if (!KLV::canBeSet(key))
    throw Refusal("the key " + Utils::wstringToString(key.toString()) + " is of another part of MXF");
  const auto octets = octetsMember(json);
  const auto before = partition.sets().size();
  partition.addKLV(key, lengthOctetsIn(json), octets.data(), octets.size(), 0);
  const bool isSet = partition.sets().size() != before;
  requireInstanceUID(json, isSet ? partition.sets().back()->instanceUID() : nullptr);
}

// Known sets.

const MetaMetadataSet& definitionBySymbol(const std::string& symbol, const PartitionMetadata& partition) {
  const auto& dictionary = *partition.partitionDictionary().dictionary();
  if (const auto* definition = dictionary.findSetBySymbol(symbol)) return *definition;
  const auto named = dictionary.findSetsByName(symbol);
  if (named.size() == 1) return *named.front();
  throw UnknownName("the dictionary has no set '" + symbol + "'" + suggestSet(partition, symbol));
}

const MetaMetadataSet& definitionByKey(const KLV::Key& key, const std::string& symbol,
                                       const MetaMetadata::Dictionary& dictionary) {
  const auto* definition = dictionary.findSet(key);
  if (definition == nullptr) throw UnknownName("the dictionary has no set with this key");
  if (definition->isNamed(symbol)) return *definition;
  throw Refusal("the key is that of the set '" + definition->symbol() + "', not of '" + symbol + "'");
}

const MetaMetadataSet& definitionOf(const Value& json, const PartitionMetadata& partition) {
  const auto& symbol = requiredText(json, "set");
  if (json.find("key") != nullptr)
    return definitionByKey(keyIn(json), symbol, *partition.partitionDictionary().dictionary());
  return *readingAt("set", *json.find("set"),
                    [&]() -> const MetaMetadataSet* { return &definitionBySymbol(symbol, partition); });
}

/// Reads the properties of one set.
class SetMaker {
 public:
  SetMaker(const Value& json, const MetaMetadataSet& definition, PartitionDictionary& tags,
           std::vector<UnknownName>* unknownNames, Diagnostics& diagnostics)
      : json_(json),
        set_(std::make_unique<MetadataSet>(definition.key(), &definition)),
        reader_(*set_, tags),
        unknown_(definition, tags),
        tags_(tags),
        unknownNames_(unknownNames),
        diagnostics_(diagnostics) {}

  auto_ptr<MetadataSet> make() {
    requireMembers(json_, {"set", "key", "names", "instanceUID", "properties", "others"});
    readNames();
    readInstanceUID();
    readListed();
    readOthers();
    for (const auto& late : late_) readValue(late);
    for (const auto& one : read_) check(one);
    requireIdentity();
    return std::move(set_);
  }

 private:
  /// A property and where its value stands.
  struct Property {
    Element* element;
    const Value* json;
    std::string place;  // in the set, in two steps
    std::string name;
  };

  const MetaMetadataSet& definition() const { return *set_->definition(); }
  static const MetaElement& definitionOf(const Property& property) {
    return *property.element->metaAttribute().metaElement();
  }

  /// Names are for people.
  void readNames() const {
    const auto* names = json_.find("names");
    if (names != nullptr && names->members() == nullptr) throw Refusal("\"names\" is no object", names->line());
  }

  void readInstanceUID() {
    if (json_.find("instanceUID") == nullptr) return;
    const auto* attribute = definition().instanceUIDAttribute();
    if (attribute == nullptr) throw Refusal("sets of this kind have no InstanceUID");
    auto value = std::make_unique<Types::UUID>(identifierIn<Types::UUID>(json_, "instanceUID"));
    setDecodedValue(set_->createElement(*attribute), std::move(value));
  }

  void readListed() {
    const auto& listed = requiredMember(json_, "properties");
    if (listed.members() == nullptr) throw Refusal("\"properties\" is no object", listed.line());
    for (const auto& [name, value] : *listed.members()) {
      const Property property{nullptr, &value, "properties", name};
      known([&] { within(property, [&] { add(&elementNamed(property.name), property); }); });
    }
  }

  Element& elementNamed(const std::string& name) {
    const auto* attribute = definition().findAttribute(name);
    if (attribute != nullptr) return elementOf(*attribute);
    throw UnknownName("the set has no property '" + name + "'" + suggestProperty({&definition()}, name));
  }

  Element& elementOf(const MetaMetadata::MetaAttribute& attribute) {
    if (&attribute == definition().instanceUIDAttribute()) {
      const bool isGiven = set_->instanceUID() != nullptr;
      if (isGiven) throw Refusal("\"instanceUID\" of the set is its InstanceUID already");
    }
    const auto* present = set_->find(attribute.metaElement()->key());
    if (present != nullptr && present->isPresent()) throw Refusal("the property is there twice");
    return set_->createElement(attribute);
  }

  void readOthers() {
    const auto* others = json_.find("others");
    if (others == nullptr) return;
    if (others->items() == nullptr) throw Refusal("\"others\" is no array", others->line());
    std::size_t number = 0;
    for (const auto& other : *others->items()) {
      const Property property{nullptr, &other, "others", std::to_string(number++)};
      known([&] { within(property, [&] { readOther(property); }); });
    }
  }

  void readOther(const Property& property) {
    const auto& json = *property.json;
    if (json.find("octets") != nullptr) return readUnknown(json);
    requireMembers(json, {"property", "key", "value"});
    const auto label = identifierIn<Types::UniversalLabel>(json, "key");
    requiredMember(json, "value");
    const auto* attribute = definition().findAttribute(label);
    add(attribute != nullptr ? &elementOf(*attribute) : &misplaced(label, json), property);
  }

  /// A property that the dictionary has, but not the set.
  Element& misplaced(const Types::UniversalLabel& label, const Value& json) {
    const auto* definition = tags_.dictionary()->findElement(label);
    if (definition == nullptr) throw UnknownName("the dictionary has no property with this key");
    const auto* name = json.find("property");
    if (name != nullptr && textOf(*name) != definition->symbol()) {
      throw Refusal("the key is that of '" + definition->symbol() + "', not of '" + textOf(*name) + "'");
    }
    return set_->createInvalidElement(std::make_unique<MetaMetadata::MisplacedAttribute>(definition));
  }

  void readUnknown(const Value& json) {
    requireMembers(json, {"tag", "key", "octets", "property", "text", "reason"});
    const auto octets = octetsMember(json);
    const auto tag = unknown_.tagFor(markIn(json, *tags_.dictionary())).value();
    const bool hadInstanceUID = set_->instanceUID() != nullptr;
    reader_.place({tag, octets.data(), octets.size()});
    if (!hadInstanceUID && set_->instanceUID() != nullptr) throw Refusal("the InstanceUID stands in \"instanceUID\"");
  }

  void add(Element* element, Property property) {
    property.element = element;
    if (property.place == "others") {
      property.json = property.json->find("value");
    }
    read_.push_back(property);
    if (dependsOnSet({set_.get(), &definitionOf(property)}, *property.json)) {
      late_.push_back(std::move(property));
    } else {
      setValue(property);
    }
  }

  void setValue(const Property& property) {
    auto value = valueFrom({set_.get(), &definitionOf(property)}, *property.json);
    if (value != nullptr) setDecodedValue(*property.element, std::move(value));
  }

  void readValue(const Property& property) {
    within(property, [&] { setValue(property); });
  }

  void check(const Property& property) {
    const auto* value = property.element->wireValue();
    if (value == nullptr) return;
    within(property, [&] {
      requireAgreement({set_.get(), &definitionOf(property)}, *property.json, *value, diagnostics_);
    });
  }

  void requireIdentity() {
    const bool isMissing = definition().instanceUIDAttribute() != nullptr && set_->instanceUID() == nullptr;
    if (isMissing) diagnostics_.push_back({Diagnostic::Kind::kMissingInstanceUID});
  }

  /// Leaves out what the dictionary lacks, where that is asked for.
  template <class Action>
  void known(Action&& action) {
    try {
      action();
    } catch (const UnknownName& unknown) {
      if (unknownNames_ == nullptr) throw;
      unknownNames_->push_back(unknown);
    }
  }

  template <class Action>
  void within(const Property& property, Action&& action) {
    readingAt(property.place, json_, diagnostics_,
              [&] { readingAt(property.name, *property.json, diagnostics_, action); });
  }

  const Value& json_;
  auto_ptr<MetadataSet> set_;
  SetReader reader_;
  UnknownTags unknown_;
  PartitionDictionary& tags_;
  std::vector<UnknownName>* unknownNames_;
  Diagnostics& diagnostics_;
  std::vector<Property> read_;
  std::vector<Property> late_;
};

}  // namespace

Types::UUID instanceUIDIn(const Value& json, std::string_view name) { return identifierIn<Types::UUID>(json, name); }

bool isDark(const Value& json) { return json.find("set") == nullptr && json.find("key") != nullptr; }

void reserveTags(const Value& darkSet, PartitionDictionary& tags) {
  const auto octets = octetsMember(darkSet);
  reserveDarkTags(keyIn(darkSet), octets.data(), octets.size(), tags);
}

void appendUnknownMarks(const Value& set, const MetaMetadata::Dictionary& dictionary, std::vector<UnknownMark>& marks) {
  const auto* others = set.find("others");
  if (others == nullptr || others->items() == nullptr) return;
  for (const auto& other : *others->items()) {
    if (other.find("octets") == nullptr) continue;
    try {
      marks.push_back(markIn(other, dictionary));
    } catch (const Refusal&) {
      // It is refused when the property is read.
    }
  }
}

void addSet(const Value& json, PartitionMetadata& partition, std::vector<UnknownName>* unknown,
            Diagnostics& diagnostics) {
  if (isDark(json)) return addDark(json, partition);
  auto& tags = partition.partitionDictionary();
  try {
    partition.addMetadataSet(SetMaker(json, definitionOf(json, partition), tags, unknown, diagnostics).make());
  } catch (const UnknownName& set) {
    if (unknown == nullptr) throw;
    unknown->push_back(set);
  }
}

}  // namespace Vantor::JSON
