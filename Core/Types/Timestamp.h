#pragma once

#include "Core/Types/RecordType.h"

namespace Vantor::Types {

/// A date and time of day, 8 octets on the wire: year (2), month, day, hour, minute, second, and the rest of the second
/// in units of 4 ms (ST 377-1). No field is checked against the calendar. Timestamps that write the same octets are
/// equal.
class Timestamp final : public RecordType<Timestamp> {
 public:
  /// Names each field once, in wire order; reading and writing walk this list.
  template <class Self, class Fn>
  static void forEachField(Self& self, Fn&& fn) {
    fn(self.year_);
    fn(self.month_);
    fn(self.day_);
    fn(self.hour_);
    fn(self.minute_);
    fn(self.second_);
    fn(self.fraction_);
  }

  Timestamp() = default;
  /// @param milliSecond  kept as given by this value; the wire carries its fourth, of which the low 8 bits are written.
  Timestamp(const uint16& year, const uint8& month, const uint8& day, const uint8& hour, const uint8& minute,
            const uint8& second, const uint16& milliSecond)
      : year_(year), month_(month), day_(day), hour_(hour), minute_(minute), second_(second), fraction_{milliSecond} {
    writeFields();
  }

  uint16 year() const { return year_; }
  uint8 month() const { return month_; }
  uint8 day() const { return day_; }
  uint8 hour() const { return hour_; }
  uint8 minute() const { return minute_; }
  uint8 second() const { return second_; }
  /// As given to the constructor, or a multiple of 4 when the value was read from octets.
  uint16 milliSecond() const { return fraction_.milliSecond; }

 private:
  struct Fraction {
    uint16 milliSecond = 0;

    uint8 wireValue() const { return static_cast<uint8>(milliSecond / 4); }
    void setWireValue(uint8 fours) { milliSecond = static_cast<uint16>(fours * 4); }
  };

  uint16 year_ = 0;
  uint8 month_ = 0;
  uint8 day_ = 0;
  uint8 hour_ = 0;
  uint8 minute_ = 0;
  uint8 second_ = 0;
  Fraction fraction_;
};

}  // namespace Vantor::Types
