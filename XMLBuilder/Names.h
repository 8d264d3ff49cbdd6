#pragma once

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/MetaMetadata/MetaMetadataSet.h"
#include "XMLBuilder/NamespaceMap.h"

/// Names of sets and properties in XML: the extension attributes of their definitions, unchecked.
namespace Vantor::XMLBuilder {

/// The name of a set or a property.
struct Name {
  wstring localName;
  wstring prefix;
  wstring uri;

  /// prefix, ":" and local name.
  wstring qualified() const;
  /// Whether a property is an attribute of its set's element: its qualified name is "rp210:InstanceUID" or
  /// "rp210:GenerationUID".
  bool isAttribute() const;
};

/// Joins prefix, ":" and local name.
wstring qualify(std::u16string_view prefix, std::u16string_view localName);

/// The name of a set's element, whose namespace is entered.
Name enteredName(const MetaMetadata::MetaMetadataSet& definition, NamespaceMap& namespaces);
/// The same of a property. @param definition  null for an unknown property: "groups:DarkElement".
Name enteredName(const MetaMetadata::MetaElement* definition, NamespaceMap& namespaces);

}  // namespace Vantor::XMLBuilder
