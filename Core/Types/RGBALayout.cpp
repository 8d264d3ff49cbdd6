#include "Core/Types/RGBALayout.h"

#include <string>

#include "Core/Platform/Exceptions.h"

namespace Vantor::Types {

namespace {

void requireComponent(uint32 index) {
  if (index < RGBALayout::kComponents) return;
  throw Exceptions::InvalidLength("An RGBA layout has 8 components, none at index " + std::to_string(index),
                                  "Core/Types/RGBALayout", __LINE__);
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
