#include "XMLBuilder/Names.h"

#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

template <class Definition>
Name nameOf(const Definition& definition) {
  return {definition.extensionAttribute(MetaMetadata::kTagName),
          definition.extensionAttribute(MetaMetadata::kDefaultPrefix),
          definition.extensionAttribute(MetaMetadata::kNamespaceURI)};
}

Name entered(Name name, NamespaceMap& namespaces) {
  namespaces.insert(name.uri, name.prefix);
  return name;
}

}  // namespace

wstring qualify(std::u16string_view prefix, std::u16string_view localName) {
  wstring name;
  name.reserve(prefix.size() + 1 + localName.size());
  name.append(prefix).append(1, u':').append(localName);
  return name;
}

wstring Name::qualified() const { return qualify(prefix, localName); }

bool Name::isAttribute() const {
  const wstring name = qualified();
  return name == Vocabulary::kInstanceUID || name == Vocabulary::kGenerationUID;
}

Name enteredName(const MetaMetadata::MetaMetadataSet& definition, NamespaceMap& namespaces) {
  return entered(nameOf(definition), namespaces);
}

Name enteredName(const MetaMetadata::MetaElement* definition, NamespaceMap& namespaces) {
  if (definition != nullptr) return entered(nameOf(*definition), namespaces);
  return entered(
      {wstring(Vocabulary::kDarkElement), wstring(Vocabulary::kGroupsPrefix), wstring(Vocabulary::kGroupsURI)},
      namespaces);
}

}  // namespace Vantor::XMLBuilder
