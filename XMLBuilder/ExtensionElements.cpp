#include "XMLBuilder/ExtensionElements.h"

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

using xercesc::DOMElement;

DOMElement& findOrCreate(ExportDocument& document, DOMElement& set) {
  if (DOMElement* found = findChildNamed(set, Vocabulary::kExtensionElements)) return *found;
  // Readers look for the container only where the prefix is declared.
  document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
  return *document.document().createElementNS(Vocabulary::kGroupsURI.data(), Vocabulary::kExtensionElements.data());
}

void markTag(DOMElement& property, const Types::LocalTag& tag, const ExportPass& pass) {
  setAttribute(property, groupsURI(pass), Vocabulary::kStaticLocalTag, tag.toString(kDottedForm));
}

void markLabel(DOMElement& property, const Types::UniversalLabel& label, const ExportPass& pass) {
  setAttribute(property, groupsURI(pass), Vocabulary::kUniversalLabel, label.toString(kDottedForm));
}

}  // namespace

const MetaMetadata::MetaAttribute* listingOf(const Element& property) {
  return dynamic_cast<const MetaMetadata::MetaAttribute*>(&property.metaAttribute());
}

DOMElement& lastExtensionElements(ExportDocument& document, DOMElement& set) {
  DOMElement& container = findOrCreate(document, set);
  set.appendChild(&container);
  return container;
}

wstring groupsURI(const ExportPass& pass) {
  const auto& bound = pass.document.namespaces().uriOf(Vocabulary::kGroupsPrefix);
  return pass.rules.isLossless || bound.empty() ? wstring(Vocabulary::kGroupsURI) : bound;
}

void markUnknown(DOMElement& property, const Element& element, const ExportPass& pass) {
  const auto& tags = pass.partition.partitionDictionary();
  const auto tag = static_cast<const MetaMetadata::UnknownAttribute&>(element.metaAttribute()).localTag();
  if (tag.isStaticLocalTag()) return markTag(property, tag, pass);
  // Without a label the tag means nothing outside its file, and the value alone is kept.
  if (const auto* label = tags.tryFind(tag.value())) markLabel(property, *label, pass);
}

void markKnown(DOMElement& property, const Element& element, const ExportPass& pass) {
  const auto* listing = listingOf(element);
  const Types::LocalTag tag(localTagOf(element, pass.partition.partitionDictionary()));
  const bool isStatic =
      listing != nullptr && listing->staticLocalTag() != 0 && tag.value() == listing->staticLocalTag();
  if (isStatic) return markTag(property, tag, pass);
  markLabel(property, element.metaAttribute().metaElement()->key(), pass);
}

}  // namespace Vantor::XMLBuilder
