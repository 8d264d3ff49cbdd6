#include "Core/KLV/Keys.h"
#include "Core/MetaMetadata/Dictionary.h"
#include "Core/Metadata/EntryView.h"
#include "Core/Metadata/UnreadValue.h"
#include "Core/Platform/Strings.h"
#include "JSON/PropertyValue.h"
#include "JSON/SetValue.h"

namespace Vantor::JSON {

namespace {

using MetaMetadata::MetaElement;

template <class Identifier>
std::string textOf(const Identifier& identifier) {
  return Utils::wstringToString(identifier.toString(kDottedForm));
}

std::string textOf(const KLV::Key& key) { return textOf(Types::UniversalLabel(key)); }

Value darkValue(const EntryView& entry) {
  auto json = Value::object().add("key", textOf(*entry.key));
  const auto* instanceUID = entry.set == nullptr ? nullptr : entry.set->instanceUID();
  if (instanceUID != nullptr) json.add("instanceUID", textOf(*instanceUID));
  json.add("lengthOctets", int64{entry.berLength});
  const auto octets = octetsOf(reinterpret_cast<const uint8*>(entry.octets.data()), entry.octets.size());
  return json.add("octets", *octets.find("octets"));
}

/// The properties of one set.
class Properties {
 public:
  Properties(const MetadataSet& set, const PartitionDictionary& tags) : set_(set), tags_(tags) {
    addName(set.definition()->symbol(), set.definition()->commonName());
    for (const Element* element : set.inDefinitionOrder()) add(*element);
  }

  void addTo(Value& json) {
    if (!names_.members()->empty()) json.add("names", std::move(names_));
    if (set_.instanceUID() != nullptr) json.add("instanceUID", textOf(*set_.instanceUID()));
    json.add("properties", std::move(listed_));
    if (!others_.items()->empty()) json.add("others", std::move(others_));
  }

 private:
  void addName(const std::string& symbol, std::string_view commonName) {
    if (!commonName.empty() && commonName != symbol) names_.add(symbol, commonName);
  }

  void add(const Element& element) {
    const auto* definition = element.metaAttribute().metaElement();
    if (definition == nullptr) {
      addUnknown(element);
    } else if (!set_.isInstanceUID(element) || element.wireValue() == nullptr) {
      addKnown(element, *definition);
    }
  }

  /// Whether the symbol alone leads to the property.
  bool isListed(const Element& element, const MetaElement& definition) const {
    const auto* attribute = set_.definition()->findAttribute(definition.symbol());
    return attribute != nullptr && attribute == &element.metaAttribute();
  }

  void addKnown(const Element& element, const MetaElement& definition) {
    auto value = valueOf({&set_, &definition}, element.wireValue());
    if (isListed(element, definition)) {
      addName(definition.symbol(), set_.definition()->commonNameOf(definition));
      listed_.add(definition.symbol(), std::move(value));
    } else {
      others_.append(Value::object()
                         .add("property", definition.symbol())
                         .add("key", textOf(definition.key()))
                         .add("value", std::move(value)));
    }
  }

  void addUnknown(const Element& element) {
    const auto& tag = element.metaAttribute().asUnknown()->localTag();
    const auto* label = tags_.tryFind(tag.value());
    auto json = Value::object().add("tag", textOf(tag));
    if (label != nullptr) json.add("key", textOf(*label));
    const auto* value = element.wireValue();
    const auto octets = value == nullptr ? octetsOf(nullptr, 0) : octetsOf(value->rawBuffer(), value->encodedSize());
    json.add("octets", *octets.find("octets"));
    addReading(unreadValueOf(set_, element), json);
    others_.append(std::move(json));
  }

  /// What people want to know about the octets.
  void addReading(const UnreadValue& unread, Value& json) const {
    if (unread.definition != nullptr) json.add("property", unread.definition->symbol());
    if (unread.value != nullptr) {
      json.add("text", Utils::wstringToString(printProperty({&set_, unread.definition}, *unread.value)));
    }
    json.add("reason", unread.reason);
  }

  const MetadataSet& set_;
  const PartitionDictionary& tags_;
  Value names_ = Value::object();
  Value listed_ = Value::object();
  Value others_ = Value::array();
};

}  // namespace

Value valueOf(const PartitionMetadata::Entry& entry, const PartitionDictionary& tags) {
  const EntryView view(entry);
  if (view.isDark() || view.set->definition() == nullptr) return darkValue(view);
  const auto& definition = *view.set->definition();
  auto json = Value::object().add("set", definition.symbol());
  if (definition.dictionary().findSetBySymbol(definition.symbol()) != &definition) {
    json.add("key", textOf(definition.key()));
  }
  Properties(*view.set, tags).addTo(json);
  return json;
}

}  // namespace Vantor::JSON
