#include "XMLBuilder/Names.h"

#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

using MetaMetadata::kXMLDefaultPrefix;
using MetaMetadata::kXMLNamespaceURI;
using MetaMetadata::kXMLTagName;

wstring qualify(std::u16string_view prefix, std::u16string_view localName) {
  wstring name;
  name.reserve(prefix.size() + 1 + localName.size());
  name.append(prefix).append(1, u':').append(localName);
  return name;
}

wstring PropertyName::qualified() const { return qualify(prefix, localName); }

bool PropertyName::isAttribute() const {
  const wstring name = qualified();
  return name == Vocabulary::kInstanceUID || name == Vocabulary::kGenerationUID;
}

QualifiedName setName(const MetaMetadata::MetaMetadataSet& definition, NamespaceMap& namespaces) {
  const auto& prefix = definition.extensionAttribute(kXMLDefaultPrefix);
  const auto& uri = definition.extensionAttribute(kXMLNamespaceURI);
  namespaces.insert(uri, prefix);
  return {qualify(prefix, definition.extensionAttribute(kXMLTagName)), uri};
}

PropertyName propertyName(const MetaMetadata::MetaElement* definition, NamespaceMap& namespaces) {
  PropertyName name;
  if (definition != nullptr) {
    name = {definition->extensionAttribute(kXMLTagName), definition->extensionAttribute(kXMLDefaultPrefix),
            definition->extensionAttribute(kXMLNamespaceURI)};
  } else {
    name = {wstring(Vocabulary::kDarkElement), wstring(Vocabulary::kGroupsPrefix), wstring(Vocabulary::kGroupsURI)};
  }
  namespaces.insert(name.uri, name.prefix);
  return name;
}

wstring qualifiedSetName(const MetadataSet& set) {
  const auto* definition = set.definition();
  if (definition == nullptr) return qualify(Vocabulary::kGroupsPrefix, Vocabulary::kDarkMetadata);
  return qualify(definition->extensionAttribute(kXMLDefaultPrefix), definition->extensionAttribute(kXMLTagName));
}

wstring referenceName(const MetadataSet& target, std::size_t targets) {
  wstring name = targets == 1 ? qualifiedSetName(target) : wstring(Vocabulary::kMultipleTargets);
  return name.append(Vocabulary::kReferenceSuffix);
}

}  // namespace Vantor::XMLBuilder
