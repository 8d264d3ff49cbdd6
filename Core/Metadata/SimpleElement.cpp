#include "Core/Metadata/SimpleElement.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

namespace {

constexpr const char* kSource = "Core/Metadata/SimpleElement";

void checkType(const MetaMetadata::AbstractMetaAttribute& attribute, const Types::SimpleDataType& value) {
  const auto* definition = attribute.metaElement();
  if (definition == nullptr || definition->dataType() == value.identifier()) return;
  throw Exceptions::InvalidFormat("property " + definition->symbol() + " takes " +
                                      Types::Identifiers::name(definition->dataType()) + ", not " +
                                      Types::Identifiers::name(value.identifier()),
                                  kSource, __LINE__);
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
