#include "Core/Comparison/PropertyIdentity.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Platform/SeededHash.h"
#include "Core/Platform/Strings.h"

namespace Vantor {

namespace {

using MetaMetadata::MetaAttribute;
using MetaMetadata::MisplacedAttribute;
using MetaMetadata::UnknownAttribute;

class IdentityVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  IdentityVisitor(PropertyIdentity& identity, const PartitionDictionary& tags) : identity_(identity), tags_(tags) {}

  void visit(const UnknownAttribute& attribute) override {
    const auto& tag = attribute.localTag();
    const auto* label = tags_.tryFind(tag.value());
    if (label != nullptr && (!tag.isStaticLocalTag() || isOfAnother(tag, *label))) {
      set(PropertyIdentity::Kind::kUnknownLabel, *label);
    } else if (tag.isStaticLocalTag()) {
      identity_.kind = PropertyIdentity::Kind::kUnknownTag;
      identity_.tag = tag.value();
    } else {
      identity_.kind = PropertyIdentity::Kind::kUnlisted;
    }
  }
  void visit(const MisplacedAttribute& attribute) override {
    set(PropertyIdentity::Kind::kMisplaced, attribute.metaElement()->key());
  }
  void visit(const MetaAttribute& attribute) override {
    set(PropertyIdentity::Kind::kValid, attribute.metaElement()->key());
  }

 private:
  /// Whether the dictionary knows a static tag as that of something else.
  bool isOfAnother(const Types::LocalTag& tag, const Types::UniversalLabel& label) const {
    const auto* definition = tags_.dictionary()->findElementByStaticTag(tag.value());
    return definition != nullptr && !(MetaMetadata::elementIdentity(definition->key().rawBuffer()) ==
                                      MetaMetadata::elementIdentity(label.rawBuffer()));
  }
  void set(PropertyIdentity::Kind kind, const Types::UniversalLabel& label) {
    identity_.kind = kind;
    identity_.label = MetaMetadata::elementIdentity(label.rawBuffer());
  }

  PropertyIdentity& identity_;
  const PartitionDictionary& tags_;
};

class NameVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  explicit NameVisitor(const PartitionDictionary& tags) : tags_(tags) {}

  void visit(const UnknownAttribute& attribute) override {
    const auto& tag = attribute.localTag();
    name = "unknown property " + Utils::wstringToString(tag.toString(kDottedForm));
    if (const auto* label = tags_.tryFind(tag.value())) {
      name += " (" + Utils::wstringToString(label->toString(kDottedForm)) + ")";
    }
  }
  void visit(const MisplacedAttribute& attribute) override { name = attribute.metaElement()->symbol(); }
  void visit(const MetaAttribute& attribute) override { name = attribute.metaElement()->symbol(); }

  std::string name;

 private:
  const PartitionDictionary& tags_;
};

/// The tag of a property that was not read from a file.
class TagVisitor : public MetaMetadata::AbstractMetaAttributeVisitor {
 public:
  explicit TagVisitor(const PartitionDictionary& tags) : tags_(tags) {}

  void visit(const UnknownAttribute& attribute) override { tag = attribute.localTag().value(); }
  void visit(const MisplacedAttribute& attribute) override { tag = tags_.tryFindTag(attribute.metaElement()->key()); }
  void visit(const MetaAttribute& attribute) override {
    tag = tags_.tryFindTag(attribute.metaElement()->key(), attribute.staticLocalTag());
  }

  uint16 tag = 0;

 private:
  const PartitionDictionary& tags_;
};

}  // namespace

PropertyIdentity::PropertyIdentity(const Element& property, const PartitionDictionary& tags) {
  IdentityVisitor visitor(*this, tags);
  property.metaAttribute().accept(visitor);
}

std::size_t PropertyIdentityHash::operator()(const PropertyIdentity& identity) const noexcept {
  // The primer of a file chooses the labels.
  const auto label = Platform::seededHash(identity.label.head, identity.label.tail);
  const auto kindAndTag = static_cast<uint64>(identity.kind) << 16 | identity.tag;
  return static_cast<std::size_t>(Platform::seededHash(label, kindAndTag));
}

std::string propertyName(const Element& property, const PartitionDictionary& tags) {
  NameVisitor visitor(tags);
  property.metaAttribute().accept(visitor);
  return std::move(visitor.name);
}

const Types::UniversalLabel* unknownLabelOf(const Element& property, const PartitionDictionary& tags) {
  const auto* attribute = dynamic_cast<const MetaMetadata::UnknownAttribute*>(&property.metaAttribute());
  return attribute == nullptr ? nullptr : tags.tryFind(attribute->localTag().value());
}

uint16 localTagOf(const Element& property, const PartitionDictionary& tags) {
  if (property.localTag() != 0) return property.localTag();
  TagVisitor visitor(tags);
  property.metaAttribute().accept(visitor);
  return visitor.tag;
}

}  // namespace Vantor
