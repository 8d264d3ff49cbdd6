#pragma once

#include "Core/Types/RecordType.h"

namespace Vantor::Types {

/// The sizing of one JPEG 2000 component, three octets: Ssiz, XRsiz and YRsiz of the SIZ marker segment
/// (ISO/IEC 15444-1, ST 422).
class J2KPictureComponent final : public RecordType<J2KPictureComponent> {
 public:
  /// Names each field once, in wire order; reading and writing walk this list.
  template <class Self, class Fn>
  static void forEachField(Self& self, Fn&& fn) {
    fn(self.sSizi_);
    fn(self.xRSizi_);
    fn(self.yRSizi_);
  }

  J2KPictureComponent() = default;
  J2KPictureComponent(uint8 sSizi, uint8 xRSizi, uint8 yRSizi) : sSizi_(sSizi), xRSizi_(xRSizi), yRSizi_(yRSizi) {
    writeFields();
  }

  uint8 sSizi() const { return sSizi_; }
  uint8 xRSizi() const { return xRSizi_; }
  uint8 yRSizi() const { return yRSizi_; }

 private:
  uint8 sSizi_ = 0;
  uint8 xRSizi_ = 0;
  uint8 yRSizi_ = 0;
};

}  // namespace Vantor::Types
