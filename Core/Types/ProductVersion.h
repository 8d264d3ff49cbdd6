#pragma once

#include "Core/Types/RecordType.h"

namespace Vantor::Types {

/// How mature a product is (ST 377-1, ProductVersion). A file may carry other numbers; they are kept.
enum class ReleaseVersion : uint16 {
  kUnknown = 0,
  kReleased = 1,
  kDebug = 2,
  kPatched = 3,
  kBeta = 4,
  kPrivateBuild = 5
};

/// The version of a product: five 16-bit numbers, 10 octets on the wire (ST 377-1).
class ProductVersion final : public RecordType<ProductVersion> {
 public:
  /// Names each field once, in wire order; reading and writing walk this list.
  template <class Self, class Fn>
  static void forEachField(Self& self, Fn&& fn) {
    fn(self.major_);
    fn(self.minor_);
    fn(self.patch_);
    fn(self.build_);
    fn(self.release_);
  }

  ProductVersion() = default;
  ProductVersion(const uint16& major, const uint16& minor, const uint16& patch, const uint16& build,
                 ReleaseVersion release)
      : major_(major), minor_(minor), patch_(patch), build_(build), release_(release) {
    writeFields();
  }

  uint16 major() const { return major_; }
  uint16 minor() const { return minor_; }
  uint16 patch() const { return patch_; }
  uint16 build() const { return build_; }
  ReleaseVersion releaseVersion() const { return release_; }

 private:
  uint16 major_ = 0;
  uint16 minor_ = 0;
  uint16 patch_ = 0;
  uint16 build_ = 0;
  ReleaseVersion release_ = ReleaseVersion::kUnknown;
};

}  // namespace Vantor::Types
