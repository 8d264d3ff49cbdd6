#pragma once

#include "Core/Types/RecordType.h"

namespace Vantor::Types {

/// A version of the form major.minor, one octet each (ST 377-1).
class VersionType final : public RecordType<VersionType> {
 public:
  /// Names each field once, in wire order; reading and writing walk this list.
  template <class Self, class Fn>
  static void forEachField(Self& self, Fn&& fn) {
    fn(self.major_);
    fn(self.minor_);
  }

  VersionType() = default;
  VersionType(uint8 major, uint8 minor) : major_(major), minor_(minor) { writeFields(); }

  uint8 major() const { return major_; }
  uint8 minor() const { return minor_; }

 private:
  uint8 major_ = 0;
  uint8 minor_ = 0;
};

}  // namespace Vantor::Types
