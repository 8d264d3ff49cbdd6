#pragma once

#include <string_view>

#include "Core/MetaMetadata/ExtensionAttributes.h"
#include "Core/Types/LocalTag.h"

namespace Vantor::MetaMetadata {

class MetaElement;
class MetaAttribute;
class MisplacedAttribute;
class UnknownAttribute;

class AbstractMetaAttributeVisitor {
 public:
  virtual ~AbstractMetaAttributeVisitor();
  virtual void visit(const UnknownAttribute& attribute) = 0;
  virtual void visit(const MisplacedAttribute& attribute) = 0;
  virtual void visit(const MetaAttribute& attribute) = 0;
};

/// The definition of one property in one set. Never changes, so any thread may read it.
class AbstractMetaAttribute {
 public:
  virtual ~AbstractMetaAttribute();
  virtual void accept(AbstractMetaAttributeVisitor& visitor) const = 0;
  /// The property's definition, which belongs to the dictionary; null when the dictionary has none.
  virtual const MetaElement* metaElement() const = 0;
  /// The two-byte local tag that the register assigns in this set; 0 when a primer pack has to assign one.
  virtual uint16 staticLocalTag() const { return 0; }
  /// This as an attribute of an unknown property; null for any other.
  virtual const UnknownAttribute* asUnknown() const { return nullptr; }
};

/// A property that the definition of its set lists. Belongs to its `MetaMetadataSet`; its pointers are into the same
/// dictionary, so that a copy must not outlive the dictionary either.
class MetaAttribute final : public AbstractMetaAttribute {
 public:
  /// @param element              not null; kept, not owned.
  /// @param requiredStatus       see `requiredStatus()`.
  /// @param staticLocalTag       0 for none.
  /// @param extensionAttributes  not null; kept, not owned: the attributes of many sets share one.
  MetaAttribute(const MetaElement* element, uint32 requiredStatus, uint16 staticLocalTag,
                const ExtensionAttributes* extensionAttributes);

  void accept(AbstractMetaAttributeVisitor& visitor) const override { visitor.visit(*this); }
  /// Never null.
  const MetaElement* metaElement() const override { return element_; }
  /// 0 required, 1 required of encoders, 2 required of decoders, 3 best effort, 4 optional (ST 377-1).
  /// The SMPTE registers only distinguish required and optional: the built-in dictionary uses 0 and 4.
  uint32 requiredStatus() const { return requiredStatus_; }
  /// "SchemaIndex" is the place among the set's properties in decimal digits, inherited properties first.
  /// Empty when there is none of that name.
  const wstring& extensionAttribute(std::u16string_view name) const { return extensionAttributes_->get(name); }
  uint16 staticLocalTag() const override { return staticLocalTag_; }

 private:
  const MetaElement* element_;
  const ExtensionAttributes* extensionAttributes_;
  uint32 requiredStatus_;
  uint16 staticLocalTag_;
};

/// A property that the dictionary knows, in a set that does not list it.
class MisplacedAttribute final : public AbstractMetaAttribute {
 public:
  /// @param element  not null; kept, not owned.
  explicit MisplacedAttribute(const MetaElement* element) : element_(element) {}

  void accept(AbstractMetaAttributeVisitor& visitor) const override { visitor.visit(*this); }
  /// Never null.
  const MetaElement* metaElement() const override { return element_; }

 private:
  const MetaElement* element_;
};

/// A property that the dictionary does not know, identified by the local tag that it has in its file.
class UnknownAttribute final : public AbstractMetaAttribute {
 public:
  explicit UnknownAttribute(const Types::LocalTag& localTag) : localTag_(localTag) {}

  void accept(AbstractMetaAttributeVisitor& visitor) const override { visitor.visit(*this); }
  /// Always null.
  const MetaElement* metaElement() const override { return nullptr; }
  const UnknownAttribute* asUnknown() const override { return this; }
  const Types::LocalTag& localTag() const { return localTag_; }

 private:
  Types::LocalTag localTag_;
};

}  // namespace Vantor::MetaMetadata
