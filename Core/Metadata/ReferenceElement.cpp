#include "Core/Metadata/ReferenceElement.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Platform/Raise.h"

namespace Vantor {

using Exceptions::InvalidFormat;
using Exceptions::raise;

auto_ptr<Types::Reference> makeReference(Types::Identifiers::Identifier kind, const MetadataSet* target) {
  if (target == nullptr) raise<InvalidFormat>("there is no set to refer to");
  const Types::UUID* instanceUID = target->instanceUID();
  if (instanceUID == nullptr) raise<InvalidFormat>("set {} has no InstanceUID to refer to", target->name());
  if (kind == Types::Identifiers::kStrongReference) return std::make_unique<Types::StrongReference>(*instanceUID);
  if (kind == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(*instanceUID);
  raise<InvalidFormat>("{} is no kind of reference", Types::Identifiers::name(kind));
}

void ReferenceElement::set(const MetadataSet* target) {
  const auto* definition = metaAttribute().metaElement();
  const auto kind = definition == nullptr ? Types::Identifiers::kStrongReference : definition->dataType();
  setUnverifiedReference(makeReference(kind, target));
}

void ReferenceElement::setUnverifiedReference(auto_ptr<Types::Reference> reference) {
  owned_ = std::move(reference);
  reference_ = owned_.get();
  markPresent();
}

void ReferenceElement::accept(Metadata::Visitors::ElementVisitor& visitor, bool, bool) const { visitor.visit(*this); }

void ReferenceElement::accept(Metadata::Visitors::NonConstElementVisitor& visitor) { visitor.visit(*this); }

void ReferenceElement::appendTargets(ReferenceKinds kinds, std::vector<Types::UUID>& targets) const {
  if (reference_ != nullptr && kinds.include(reference_->identifier())) targets.push_back(reference_->target());
}

}  // namespace Vantor
