#pragma once

#include <string_view>

/// The names and namespaces of the document that no dictionary decides. All of them end in a NUL, so that `data()` may
/// be handed to the DOM.
namespace Vantor::XMLBuilder::Vocabulary {

inline constexpr std::u16string_view kRootPrefix = u"s377m";
inline constexpr std::u16string_view kRootURI = u"urn:SMPTE:S377M";
inline constexpr std::u16string_view kRoot = u"s377m:MetadataSets";
inline constexpr std::u16string_view kDangling = u"s377m:Dangling_REF";

inline constexpr std::u16string_view kGroupsPrefix = u"groups";
inline constexpr std::u16string_view kGroupsURI = u"urn:SMPTE:Groups:MXF";
inline constexpr std::u16string_view kFloatingContainer = u"groups:FloatingDarkMetadata";
inline constexpr std::u16string_view kExtensionElements = u"groups:ExtensionElements";
inline constexpr std::u16string_view kStaticLocalTag = u"groups:StaticLocalTag";
inline constexpr std::u16string_view kUniversalLabel = u"groups:UniversalLabel";
inline constexpr std::u16string_view kDarkElement = u"DarkElement";
inline constexpr std::u16string_view kDarkMetadata = u"DarkMetadata";
inline constexpr std::u16string_view kKey = u"groups:Key";
inline constexpr std::u16string_view kBEROctetCount = u"groups:BEROctetCount";

inline constexpr std::u16string_view kTypesPrefix = u"types";
inline constexpr std::u16string_view kTypesURI = u"urn:SMPTE:Types:MXF";
inline constexpr std::u16string_view kTargetInstance = u"types:TargetInstance";

inline constexpr std::u16string_view kS422MTypesPrefix = u"s422mTypes";
inline constexpr std::u16string_view kS422MTypesURI = u"urn:SMPTE:S422MTypes:MXF";

/// These two properties, recognised by their qualified names, are attributes of their set's element.
inline constexpr std::u16string_view kInstanceUID = u"rp210:InstanceUID";
inline constexpr std::u16string_view kGenerationUID = u"rp210:GenerationUID";

inline constexpr std::u16string_view kReferenceSuffix = u"_REF";
inline constexpr std::u16string_view kMultipleTargets = u"MULTIPLE_METADATASETS";
/// Follows a property's prefix in the names of its items.
inline constexpr std::u16string_view kItem = u"Element";

/// The part of a qualified name that is not its prefix.
constexpr std::u16string_view localName(std::u16string_view qualifiedName) {
  return qualifiedName.substr(qualifiedName.find(u':') + 1);
}

/// Namespaces in XML: the namespace of `xmlns` attributes themselves.
inline constexpr std::u16string_view kXmlnsURI = u"http://www.w3.org/2000/xmlns/";

}  // namespace Vantor::XMLBuilder::Vocabulary
