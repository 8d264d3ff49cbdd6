#pragma once

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "XMLBuilder/NamespaceMap.h"

/// Names of sets and properties in XML: the extension attributes of their definitions, unchecked.
namespace Vantor::XMLBuilder {

/// A qualified name and the namespace that it belongs to.
struct QualifiedName {
  wstring name;
  wstring uri;
};

/// The name of a property.
struct PropertyName {
  wstring localName;
  wstring prefix;
  wstring uri;

  /// prefix, ":" and local name.
  wstring qualified() const;
  /// Whether the property is an attribute of its set's element: its qualified name is "rp210:InstanceUID" or
  /// "rp210:GenerationUID".
  bool isAttribute() const;
};

/// Joins prefix, ":" and local name.
wstring qualify(std::u16string_view prefix, std::u16string_view localName);

/// The name of a set's element; registers its namespace.
QualifiedName setName(const MetaMetadata::MetaMetadataSet& definition, NamespaceMap& namespaces);

/// The name of a property; registers its namespace.
/// @param definition  null for an unknown property: "groups:DarkElement".
PropertyName propertyName(const MetaMetadata::MetaElement* definition, NamespaceMap& namespaces);

/// The qualified name of a set, "groups:DarkMetadata" for one without definition; registers nothing.
wstring qualifiedSetName(const MetadataSet& set);

/// The name of an element that points at a set, followed by "_REF".
/// @param targets  how many sets carry the InstanceUID; only a single one is referred to by its name.
wstring referenceName(const MetadataSet& target, std::size_t targets);

}  // namespace Vantor::XMLBuilder
