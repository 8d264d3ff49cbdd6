#include "Core/Metadata/SimpleElement.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

namespace {

void checkType(const MetaMetadata::AbstractMetaAttribute& attribute, const Types::SimpleDataType& value) {
  const auto* definition = attribute.metaElement();
  if (definition == nullptr || definition->dataType() == value.identifier()) return;
  Exceptions::raise<Exceptions::InvalidFormat>("property {} takes {}, not {}", definition->symbol(),
                                               Types::Identifiers::name(definition->dataType()),
                                               Types::Identifiers::name(value.identifier()));
}

}  // namespace

void SimpleElement::set(auto_ptr<Types::SimpleDataType> value, bool checkType) {
  if (checkType && value != nullptr) Vantor::checkType(metaAttribute(), *value);
  value_ = std::move(value);
  markPresent();
  if (owner_ != nullptr) owner_->valueChanged(*this);
}

void SimpleElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const { visitor.visit(*this); }

void SimpleElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }

}  // namespace Vantor
