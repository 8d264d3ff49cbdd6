#include "Core/Metadata/ReferenceElement.h"

#include "Core/MetaMetadata/MetaElement.h"
#include "Core/Metadata/MetadataSet.h"
#include "Core/Platform/Exceptions.h"

namespace Vantor {

namespace {

constexpr const char* kSource = "Core/Metadata/ReferenceElement";

}  // namespace

auto_ptr<Types::Reference> makeReference(Types::Identifiers::Identifier kind, const MetadataSet* target) {
  if (target == nullptr) throw Exceptions::InvalidFormat("there is no set to refer to", kSource, __LINE__);
  const Types::UUID* instanceUID = target->instanceUID();
  if (instanceUID == nullptr) {
    throw Exceptions::InvalidFormat("set " + target->name() + " has no InstanceUID to refer to", kSource, __LINE__);
  }
  if (kind == Types::Identifiers::kStrongReference) return std::make_unique<Types::StrongReference>(*instanceUID);
  if (kind == Types::Identifiers::kWeakReference) return std::make_unique<Types::WeakReference>(*instanceUID);
  throw Exceptions::InvalidFormat(std::string(Types::Identifiers::name(kind)) + " is no kind of reference", kSource,
                                  __LINE__);
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
