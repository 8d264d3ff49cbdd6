#include "Core/Metadata/SimpleElement.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

void SimpleElement::set(auto_ptr<Types::SimpleDataType> value, bool checkType) {
  const auto* definition = metaAttribute().metaElement();
  if (checkType && value != nullptr && definition != nullptr && definition->dataType() != value->identifier()) {
    Exceptions::raise<Exceptions::InvalidFormat>("property {} takes {}, not {}", definition->symbol(),
                                                 Types::Identifiers::name(definition->dataType()),
                                                 Types::Identifiers::name(value->identifier()));
  }
  value_ = std::move(value);
  markPresent();
  if (owner_ != nullptr) owner_->valueChanged(*this);
}

void SimpleElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const { visitor.visit(*this); }

void SimpleElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }

}  // namespace Vantor
