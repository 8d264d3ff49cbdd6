#include "Core/Comparison/PropertyIdentity.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Platform/SeededHash.h"

namespace Vantor {

namespace {

MetaMetadata::LabelIdentity identityOf(const Types::UniversalLabel& label) {
  return MetaMetadata::elementIdentity(label.rawBuffer());
}

/// Whether the dictionary has another property with that static tag.
bool isOfAnother(uint16 tag, const Types::UniversalLabel& label, const MetaMetadata::Dictionary& dictionary) {
  const auto* definition = dictionary.findElementByStaticTag(tag);
  return definition != nullptr && !(identityOf(definition->key()) == identityOf(label));
}

}  // namespace

PropertyIdentity::PropertyIdentity(const Element& property, const PartitionDictionary& tags) {
  const auto* unknown = property.metaAttribute().asUnknown();
  if (unknown == nullptr) {
    kind = dynamic_cast<const MetaMetadata::MetaAttribute*>(&property.metaAttribute()) != nullptr ? Kind::kValid
                                                                                                  : Kind::kMisplaced;
    label = identityOf(property.metaAttribute().metaElement()->key());
    return;
  }
  const auto& localTag = unknown->localTag();
  const auto* listed = tags.tryFind(localTag.value());
  if (listed != nullptr &&
      (!localTag.isStaticLocalTag() || isOfAnother(localTag.value(), *listed, *tags.dictionary()))) {
    kind = Kind::kUnknownLabel;
    label = identityOf(*listed);
  } else if (localTag.isStaticLocalTag()) {
    kind = Kind::kUnknownTag;
    tag = localTag.value();
  } else {
    kind = Kind::kUnlisted;
  }
}

std::size_t PropertyIdentityHash::operator()(const PropertyIdentity& identity) const noexcept {
  // The labels come from the file, so the hash is seeded.
  const auto label = Platform::seededHash(identity.label.head, identity.label.tail);
  const auto kindAndTag = static_cast<uint64>(identity.kind) << 16 | identity.tag;
  return static_cast<std::size_t>(Platform::seededHash(label, kindAndTag));
}

std::string propertyName(const Element& property, const PartitionDictionary& tags) {
  const auto* unknown = property.metaAttribute().asUnknown();
  if (unknown == nullptr) return property.metaAttribute().metaElement()->symbol();
  if (const auto* definition = tags.findElement(unknown->localTag().value()))
    return definition->symbol() + " as octets";
  const std::string name = "unknown property " + unknown->localTag().dottedText();
  const auto* label = tags.tryFind(unknown->localTag().value());
  return label == nullptr ? name : name + " (" + label->dottedText() + ")";
}

const Types::UniversalLabel* unknownLabelOf(const Element& property, const PartitionDictionary& tags) {
  const auto* unknown = property.metaAttribute().asUnknown();
  return unknown == nullptr ? nullptr : tags.tryFind(unknown->localTag().value());
}

uint16 localTagOf(const Element& property, const PartitionDictionary& tags) {
  if (property.localTag() != 0) return property.localTag();
  const auto& attribute = property.metaAttribute();
  if (const auto* unknown = attribute.asUnknown()) return unknown->localTag().value();
  return tags.tryFindTag(attribute.metaElement()->key(), attribute.staticLocalTag());
}

}  // namespace Vantor
