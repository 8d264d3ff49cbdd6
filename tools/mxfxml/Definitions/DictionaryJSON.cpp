#include "Definitions/DictionaryJSON.h"

#include "Core/Dictionary/PropertyTypeText.h"
#include "Core/MetaMetadata/RegisterKey.h"
#include "Report/JSONOutput.h"

namespace Vantor::Tool {

namespace {

using JSON::Value;

std::string keyText(const Types::UniversalLabel& key) { return key.dottedText(); }
std::string keyText(const KLV::Key& key) { return keyText(Types::UniversalLabel(key)); }

void addText(const char* name, std::string_view text, Value& object) {
  if (!text.empty()) object.add(name, text);
}

void addExplanation(const Explanation& explanation, Value& object) {
  addText("definition", explanation.definition, object);
  addText("document", explanation.document, object);
}

void addUse(const PropertyUse& use, Value& object) {
  if (use.staticLocalTag != 0) object.add("tag", Types::LocalTag(use.staticLocalTag).dottedText());
  object.add("status", statusName(use.requiredStatus));
}

/// What lists of sets have, too.
Value outlineOf(const SetDefinition& set, std::string_view commonName) {
  auto json = Value::object().add("set", set.symbol).add("key", keyText(set.key));
  addText("commonName", commonName, json);
  addText("parent", set.parent, json);
  return json.add("concrete", set.isConcrete);
}

Value entryJSON(const Definitions& definitions, const ListedProperty& listed, const PropertyNames& commonNames) {
  const auto& property = definitions.properties()[listed.use->property];
  auto json = Value::object().add("property", property.symbol).add("key", keyText(property.key));
  const auto common = commonNames.find(listed.use->property);
  if (common != commonNames.end()) json.add("commonName", common->second);
  json.add("type", textOf(property.type));
  addUse(*listed.use, json);
  return json.add("of", listed.set->symbol);
}

Value entryJSON(const Definitions& definitions, const SetDefinition& set) {
  auto json = outlineOf(set, commonNameOf(definitions, set));
  json.add("tagName", set.tagName);
  addExplanation(set.explanation, json);
  const auto commonNames = commonNamesIn(definitions, set);
  auto properties = Value::array();
  for (const auto& listed : propertiesOf(definitions, set))
    properties.append(entryJSON(definitions, listed, commonNames));
  return json.add("properties", std::move(properties));
}

Value usesOf(const Definitions& definitions, const PropertyDefinition& property) {
  const auto place = placeOf(definitions, property);
  auto uses = Value::array();
  for (const auto& set : definitions.sets()) {
    for (const auto& use : set.properties) {
      if (use.property != place) continue;
      auto json = Value::object().add("set", set.symbol);
      addUse(use, json);
      uses.append(std::move(json));
    }
  }
  return uses;
}

Value entryJSON(const Definitions& definitions, const PropertyDefinition& property) {
  auto json = Value::object().add("property", property.symbol).add("key", keyText(property.key));
  auto names = Value::array();
  for (const auto& [name, set] : commonNamesOf(definitions, property)) {
    names.append(Value::object().add("name", name).add("set", set->symbol));
  }
  if (!names.items()->empty()) json.add("commonNames", std::move(names));
  json.add("type", textOf(property.type)).add("tagName", property.tagName);
  addExplanation(property.explanation, json);
  return json.add("uses", usesOf(definitions, property));
}

Value entryJSON(const Definitions&, const EnumerationDefinition& enumeration) {
  auto values = Value::array();
  for (const auto& value : enumeration.values) {
    values.append(Value::object().add("value", value.number).add("name", value.name));
  }
  return Value::object()
      .add("enumeration", enumeration.name)
      .add("base", Types::Identifiers::name(enumeration.base))
      .add("values", std::move(values));
}

Value entryJSON(const Definitions&, const LabelDefinition& label) {
  return Value::object().add("label", label.symbol).add("key", keyText(label.key)).add("name", label.name);
}

}  // namespace

Value jsonOfSets(const Definitions& definitions) {
  std::map<uint32, std::string_view> commonNames;
  for (const auto& common : definitions.commonNames()) {
    if (!common.property) commonNames.emplace(common.set, common.name);
  }
  auto sets = Value::array();
  for (uint32 place = 0; place < definitions.sets().size(); ++place) {
    const auto common = commonNames.find(place);
    sets.append(outlineOf(definitions.sets()[place], common == commonNames.end() ? "" : common->second));
  }
  return formatted("dictionary").add("sets", std::move(sets));
}

Value jsonOfEntries(const Definitions& definitions, const std::vector<DictionaryEntry>& entries) {
  auto list = Value::array();
  for (const auto& entry : entries) {
    list.append(std::visit([&definitions](const auto* one) { return entryJSON(definitions, *one); }, entry));
  }
  return formatted("dictionary").add("entries", std::move(list));
}

Value jsonOfMatches(const std::vector<DictionarySearch::Match>& matches) {
  auto list = Value::array();
  for (const auto& match : matches) {
    auto json = Value::object().add("kind", match.kind).add("name", match.name);
    if (match.kind != "enumeration") json.add("key", keyText(*MetaMetadata::parseRegisterKey(match.key)));
    if (match.kind != "enumeration") addText(match.kind == "label" ? "label" : "commonName", match.remark, json);
    list.append(std::move(json));
  }
  return formatted("dictionary").add("matches", std::move(list));
}

}  // namespace Vantor::Tool
