#pragma once

#include "Core/Types/RecordType.h"

namespace Vantor::Types {

/// A ratio of two signed integers: 8 octets on the wire, numerator first, both big-endian (ST 377-1).
class Rational final : public RecordType<Rational> {
 public:
  /// Names each field once, in wire order; reading and writing walk this list.
  template <class Self, class Fn>
  static void forEachField(Self& self, Fn&& fn) {
    fn(self.numerator_);
    fn(self.denominator_);
  }

  Rational() = default;
  Rational(int32 numerator, int32 denominator) : numerator_(numerator), denominator_(denominator) { writeFields(); }

  int32 numerator() const { return numerator_; }
  int32 denominator() const { return denominator_; }

 private:
  int32 numerator_ = 0;
  int32 denominator_ = 0;
};

}  // namespace Vantor::Types
