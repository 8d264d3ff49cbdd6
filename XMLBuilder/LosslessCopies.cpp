#include "XMLBuilder/LosslessCopies.h"

#include <xercesc/dom/DOMCharacterData.hpp>

#include "Core/Metadata/ElementFactory.h"
#include "Core/Platform/DocumentLine.h"
#include "Core/Platform/Raise.h"
#include "XMLBuilder/FromXMLMetadataSetVisitor.h"
#include "XMLBuilder/LosslessForms.h"
#include "XMLBuilder/LosslessSet.h"
#include "XMLBuilder/NodeText.h"
#include "XMLBuilder/Vocabulary.h"
#include "XMLUtils/ChildLookup.h"
#include "XMLUtils/Strings.h"

namespace Vantor::XML2Partition::LosslessCopies {

using xercesc::DOMElement;
using xercesc::DOMNode;
using XMLUtils::viewOf;

namespace {

bool isSameName(const DOMElement& left, const DOMElement& right) {
  return viewOf(left.getLocalName()) == viewOf(right.getLocalName()) &&
         viewOf(left.getNamespaceURI()) == viewOf(right.getNamespaceURI());
}

/// The marks are what distinguishes unknown properties, whose elements have one name.
bool hasSameMarks(const DOMElement& left, const DOMElement& right) {
  const auto isSame = [&](std::u16string_view mark) {
    return LosslessForms::groupsText(left, mark) == LosslessForms::groupsText(right, mark);
  };
  return isSame(XMLBuilder::Vocabulary::kStaticLocalTag) && isSame(XMLBuilder::Vocabulary::kUniversalLabel);
}

/// Whether an element without children has this text. Reads no more of the element than the text is long, because long
/// texts may have many copies.
bool hasText(const DOMElement& element, std::u16string_view text) {
  for (const DOMNode* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (child->getNodeType() != DOMNode::TEXT_NODE && child->getNodeType() != DOMNode::CDATA_SECTION_NODE) continue;
    const auto& data = static_cast<const xercesc::DOMCharacterData&>(*child);
    if (data.getLength() > text.size()) return false;
    if (text.compare(0, data.getLength(), data.getData(), data.getLength()) != 0) return false;
    text.remove_prefix(data.getLength());
  }
  return text.empty();
}

/// Compares the children of two elements one by one; stops at the first difference.
template <class Same>
bool hasSameChildren(const DOMElement& left, const DOMElement& right, Same&& isSame) {
  const auto *leftItem = left.getFirstElementChild(), *rightItem = right.getFirstElementChild();
  while (leftItem != nullptr && rightItem != nullptr && isSame(*leftItem, *rightItem)) {
    leftItem = leftItem->getNextElementSibling();
    rightItem = rightItem->getNextElementSibling();
  }
  return leftItem == nullptr && rightItem == nullptr;
}

bool isSame(const DOMElement& left, const DOMElement& right);

bool hasSameContent(const DOMElement& left, const DOMElement& right) {
  if (left.getFirstElementChild() == nullptr && right.getFirstElementChild() == nullptr) {
    return hasText(left, textContent(right, BlankText::kKeep));
  }
  return hasSameChildren(left, right, isSame) &&
         LosslessForms::strayText(left).empty() == LosslessForms::strayText(right).empty();
}

bool isSame(const DOMElement& left, const DOMElement& right) {
  return isSameName(left, right) && hasSameMarks(left, right) && hasSameContent(left, right);
}

/// The InstanceUID that an element inside a reference leads to, as text; empty for a set without one, which is no copy.
wstring targetOf(const DOMElement& item) {
  const auto* target = LosslessForms::targetAttribute(item);
  if (target == nullptr) target = LosslessForms::identifierAttribute(item, u"InstanceUID");
  return target == nullptr ? wstring() : nodeText(*target);
}

/// Whether two elements lead to the same sets, one by one.
bool hasSameTargets(const DOMElement& left, const DOMElement& right) {
  // A set that was written before is left out of the references to it.
  if (left.getFirstElementChild() == nullptr || right.getFirstElementChild() == nullptr) return true;
  return hasSameChildren(left, right, [](const DOMElement& leftItem, const DOMElement& rightItem) {
    const wstring target = targetOf(rightItem);
    return !target.empty() && target == targetOf(leftItem);
  });
}

/// Compares one copy of a set with the first.
class Comparison {
 public:
  Comparison(const DOMElement& copy, LosslessReport::Source& first, LosslessRules& rules)
      : copy_(copy), copyChildren_(copy), first_(first), rules_(rules) {
    if (!first.children) first.children.emplace(*first.element);
  }

  void run(const MetaMetadata::MetaMetadataSet& definition) {
    for (const auto& attribute : definition.attributes()) compareProperty(*attribute.metaElement());
    compareExtensions();
    reportUnread(copy_, copyChildren_, definition, rules_);
  }

 private:
  void compareProperty(const MetaMetadata::MetaElement& property) {
    const auto& tag = property.extensionAttribute(MetaMetadata::kTagName);
    if (MetaMetadata::isIdentifierName(tag)) return compareIdentifier(property, tag);
    const auto& uri = property.extensionAttribute(MetaMetadata::kNamespaceURI);
    const DOMElement* right = copyChildren_.take(uri, tag);
    if (right != nullptr) {
      const LosslessReport::Reading reading(rules_.report(), &property);
      rules_.reportValueAttributes(*right, &property);
    }
    compare(first_.children->find(uri, tag), right, &property);
    if (right != nullptr && isReference(property)) readNestedSets(*right);
  }

  void compareExtensions() {
    const auto name = XMLBuilder::Vocabulary::localName(XMLBuilder::Vocabulary::kExtensionElements);
    compare(first_.children->find(XMLBuilder::Vocabulary::kGroupsURI, name),
            copyChildren_.take(XMLBuilder::Vocabulary::kGroupsURI, name), nullptr);
  }

  /// @param property  null for extension elements.
  void compare(const DOMElement* left, const DOMElement* right, const MetaMetadata::MetaElement* property) {
    if (left == nullptr && right == nullptr) return;
    const bool areReferences = property != nullptr && isReference(*property);
    const bool isInBoth = left != nullptr && right != nullptr;
    if (isInBoth && (areReferences ? hasSameTargets(*left, *right) : hasSameContent(*left, *right))) return;
    report(left == nullptr ? *first_.element : *left, right == nullptr ? copy_ : *right, property);
  }

  /// InstanceUIDs need no comparison: copies share theirs.
  void compareIdentifier(const MetaMetadata::MetaElement& property, const wstring& tag) {
    if (tag == u"InstanceUID") return;
    const auto* left = LosslessForms::identifierAttribute(*first_.element, tag);
    const auto* right = LosslessForms::identifierAttribute(copy_, tag);
    const bool isInBoth = left != nullptr && right != nullptr;
    const bool isSame = isInBoth ? nodeText(*left) == nodeText(*right) : left == right;
    if (!isSame) report(*first_.element, copy_, &property);
  }

  void report(const DOMElement& first, const DOMElement& copy, const MetaMetadata::MetaElement* property) {
    auto& report = rules_.report();
    if (report.base().hasSeveral(*first_.set->instanceUID())) return;
    const LosslessReport::Reading reading(report, property);
    const auto line = report.lineOf(first);
    report.add(Diagnostic::Kind::kDifferentCopy, copy,
               {line == report.lineOf(copy) ? std::string() : std::to_string(line)});
  }

  /// Makes the sets nested in this copy only. Sets without an InstanceUID are left out, since nothing would refer to
  /// them.
  void readNestedSets(const DOMElement& property) {
    for (const DOMElement* item : XMLUtils::childElements(property)) {
      if (LosslessForms::targetAttribute(*item) != nullptr || (!instanceUIDOf(*item) && !newNameOf(*item))) continue;
      if (const auto* definition = rules_.findSet(*item)) {
        importSet(*item, *definition, rules_);
      }
    }
  }

  const DOMElement& copy_;
  SetChildren copyChildren_;
  LosslessReport::Source& first_;
  LosslessRules& rules_;
};

}  // namespace

void requireUnused(const Types::UUID& instanceUID, const DOMElement& element, const std::string& name,
                   LosslessRules& rules, const MetadataSet* own) {
  const auto line = rules.report().lineOf(element);
  if (const auto* known = rules.report().find(instanceUID)) {
    Exceptions::raiseAt<Clash>(line,
                               "line {}: the {} has the InstanceUID of the {} at line {}; give one of them another",
                               line, name, known->set->fullName(), rules.report().lineOf(*known->element));
  }
  const auto& all = rules.partition().findByInstanceUID(instanceUID);
  if (all.empty() || all.front() == own) return;
  Exceptions::raiseAt<Clash>(
      line,
      "line {}: the {} has the InstanceUID of the {} that the partition has already; give one of them another, or "
      "import into a new partition",
      line, name, all.front()->fullName());
}

MetadataSet* read(const DOMElement& element, const MetaMetadata::MetaMetadataSet& definition, LosslessRules& rules) {
  const auto instanceUID = instanceUIDOf(element);
  if (!instanceUID) return nullptr;
  auto* known = rules.report().find(*instanceUID);
  if (known == nullptr || known->set->definition() != &definition) {
    requireUnused(*instanceUID, element, definition.symbol(), rules);
    return nullptr;
  }
  const LosslessReport::Reading reading(rules.report(), *known->set, true);
  Comparison(element, *known, rules).run(definition);
  return known->set;
}

}  // namespace Vantor::XML2Partition::LosslessCopies
