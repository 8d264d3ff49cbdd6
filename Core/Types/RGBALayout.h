#pragma once

#include <array>

#include "Core/Types/RecordType.h"

namespace Vantor::Types {

/// One component of a pixel: an ISO/IEC 646 letter such as 'R' (0 ends the layout) and the count of its bits, where the
/// highest numbers stand for floating-point formats (ST 377-1).
struct RGBAComponent {
  uint8 code = 0;
  uint8 depth = 0;

  friend bool operator==(const RGBAComponent& left, const RGBAComponent& right) {
    return left.code == right.code && left.depth == right.depth;
  }
  friend bool operator!=(const RGBAComponent& left, const RGBAComponent& right) { return !(left == right); }
};

/// The order and depth of a pixel's components: always eight of them, 16 octets on the wire (ST 377-1).
class RGBALayout final : public RecordType<RGBALayout> {
 public:
  static constexpr uint32 kComponents = 8;

  /// Names each field once, in wire order; reading and writing walk this list.
  template <class Self, class Fn>
  static void forEachField(Self& self, Fn&& fn) {
    for (auto& component : self.components_) {
      fn(component.code);
      fn(component.depth);
    }
  }

  /// @throws InvalidLength when `index` is 8 or more.
  RGBAComponent get(uint32 index) const;
  /// @throws InvalidLength when `index` is 8 or more; the layout stays as it was.
  void set(uint32 index, RGBAComponent component);

 private:
  std::array<RGBAComponent, kComponents> components_;
};

}  // namespace Vantor::Types
