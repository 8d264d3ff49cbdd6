#include "XMLBuilder/ExtensionElements.h"

#include "Core/Comparison/PropertyIdentity.h"
#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/UnknownTags.h"
#include "XMLBuilder/ToXMLMetaAttributeVisitor.h"
#include "XMLBuilder/Vocabulary.h"

namespace Vantor::XMLBuilder {

namespace {

using xercesc::DOMElement;

void mark(DOMElement& property, std::u16string_view name, const wstring& text, const ExportPass& pass) {
  setAttribute(property, groupsURI(pass), name, text);
}

}  // namespace

DOMElement& lastExtensionElements(ExportDocument& document, DOMElement& set) {
  DOMElement* container = findChildNamed(set, Vocabulary::kExtensionElements);
  if (container == nullptr) {
    // Readers look for the container only where the prefix is declared.
    document.namespaces().insertIfUnbound(Vocabulary::kGroupsURI, Vocabulary::kGroupsPrefix);
    container =
        document.document().createElementNS(Vocabulary::kGroupsURI.data(), Vocabulary::kExtensionElements.data());
  }
  set.appendChild(container);
  return *container;
}

wstring groupsURI(const ExportPass& pass) {
  const auto& bound = pass.document.namespaces().uriOf(Vocabulary::kGroupsPrefix);
  return pass.rules.isLossless || bound.empty() ? wstring(Vocabulary::kGroupsURI) : bound;
}

void markUnknown(DOMElement& property, const Element& element, const ExportPass& pass) {
  const auto& tags = pass.partition.partitionDictionary();
  const auto& tag = element.metaAttribute().asUnknown()->localTag();
  auto marks = markOf(tag, tags.tryFind(tag.value()), *tags.dictionary());
  if (marks.tag) mark(property, Vocabulary::kStaticLocalTag, marks.tag->toString(kDottedForm), pass);
  if (marks.tag && !pass.rules.isLossless) marks.label.reset();
  if (marks.label) mark(property, Vocabulary::kUniversalLabel, marks.label->toString(kDottedForm), pass);
}

void markKnown(DOMElement& property, const Element& element, const ExportPass& pass) {
  const auto* listing = ToXMLMetaAttributeVisitor(element.metaAttribute()).listing();
  const Types::LocalTag tag(localTagOf(element, pass.partition.partitionDictionary()));
  const bool isStatic =
      listing != nullptr && listing->staticLocalTag() != 0 && tag.value() == listing->staticLocalTag();
  if (isStatic) return mark(property, Vocabulary::kStaticLocalTag, tag.toString(kDottedForm), pass);
  mark(property, Vocabulary::kUniversalLabel, element.metaAttribute().metaElement()->key().toString(kDottedForm), pass);
}

}  // namespace Vantor::XMLBuilder
