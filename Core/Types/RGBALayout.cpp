#include "Core/Types/RGBALayout.h"

#include "Core/Platform/Raise.h"

namespace Vantor::Types {

namespace {

void requireComponent(uint32 index) {
  if (index < RGBALayout::kComponents) return;
  Exceptions::raise<Exceptions::InvalidLength>("An RGBA layout has 8 components, none at index {}", index);
}

}  // namespace

RGBAComponent RGBALayout::get(uint32 index) const {
  requireComponent(index);
  return components_[index];
}

void RGBALayout::set(uint32 index, RGBAComponent component) {
  requireComponent(index);
  components_[index] = component;
  writeFields();
}

}  // namespace Vantor::Types
