#include "Core/Types/Text/DateText.h"

#include <array>
#include <cstdio>
#include <optional>

#include "Core/Platform/Strings.h"
#include "Core/Types/Text/OctetText.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/Timestamp.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

constexpr int kMinutesOfDay = 24 * 60;

/// As it is written; `offset` in minutes east of UTC.
struct CivilTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, milliSecond = 0, offset = 0;
};

int daysOfMonth(int year, int month) {
  constexpr std::array kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeapYear = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return kDays[static_cast<std::size_t>(month - 1)] + (isLeapYear && month == 2 ? 1 : 0);
}

/// All zeros stand for an unknown time (ST 377-1).
bool isUnknown(const CivilTime& time) {
  return (time.year | time.month | time.day | time.hour | time.minute | time.second | time.milliSecond) == 0;
}

/// What is wrong with it; empty for a time that there is, or that is unknown.
std::string faultOf(const CivilTime& time) {
  if (isUnknown(time)) return time.offset != 0 ? "an unknown time has no time zone" : "";
  if (time.month < 1 || time.month > 12) return "there is no month " + std::to_string(time.month);
  if (time.day < 1 || time.day > daysOfMonth(time.year, time.month)) {
    return "that month has no day " + std::to_string(time.day);
  }
  if (time.hour > 23) return "there is no hour " + std::to_string(time.hour);
  if (time.minute > 59) return "there is no minute " + std::to_string(time.minute);
  if (time.second > 60) return "there is no second " + std::to_string(time.second);
  return "";
}

bool takeNumber(TextScanner& scanner, std::size_t digits, int& number) {
  const auto taken = scanner.digits(digits);
  return taken.size() == digits && readWholeNumber(taken, number);
}

/// Takes "-" or ":" where the extended format has it, nothing where the basic one goes on with a digit.
void takeMark(TextScanner& scanner, std::u16string_view mark, bool& isExtended) {
  isExtended = scanner.mark(mark) != 0;
}

bool takeDate(TextScanner& scanner, CivilTime& time) {
  bool isExtended = false;
  if (!takeNumber(scanner, 4, time.year)) return false;
  takeMark(scanner, u"-", isExtended);
  if (!takeNumber(scanner, 2, time.month) || (isExtended && scanner.mark(u"-") == 0)) return false;
  return takeNumber(scanner, 2, time.day);
}

/// Cuts the fraction to milliseconds.
bool takeFraction(TextScanner& scanner, CivilTime& time) {
  if (scanner.mark(u".,") == 0) return true;
  const auto digits = scanner.digits();
  int scale = 100;
  for (const char16_t digit : digits) {
    time.milliSecond += (digit - u'0') * scale;
    scale /= 10;
  }
  return !digits.empty();
}

bool takeTime(TextScanner& scanner, CivilTime& time) {
  bool isExtended = false;
  if (!takeNumber(scanner, 2, time.hour)) return false;
  takeMark(scanner, u":", isExtended);
  if (!takeNumber(scanner, 2, time.minute)) return false;
  const bool hasSeconds =
      isExtended ? scanner.mark(u":") != 0 : !scanner.isAtEnd() && isDecimalDigit(scanner.rest()[0]);
  return !hasSeconds || (takeNumber(scanner, 2, time.second) && takeFraction(scanner, time));
}

bool takeOffset(TextScanner& scanner, CivilTime& time) {
  if (scanner.isAtEnd() || scanner.mark(u"Zz") != 0) return true;
  const char16_t sign = scanner.mark(u"+-\u2212");
  int hours = 0, minutes = 0;
  if (sign == 0 || !takeNumber(scanner, 2, hours)) return false;
  const bool hasMinutes = scanner.mark(u":") != 0 || !scanner.isAtEnd();
  if (hasMinutes && !takeNumber(scanner, 2, minutes)) return false;
  time.offset = (hours * 60 + minutes) * (sign == u'+' ? 1 : -1);
  return hours < 24 && minutes < 60;
}

std::optional<CivilTime> civilTimeIn(std::u16string_view text) {
  TextScanner scanner(text);
  CivilTime time;
  if (!takeDate(scanner, time)) return std::nullopt;
  if (scanner.isAtEnd()) return time;
  if (scanner.mark(u"Tt ") == 0 || !takeTime(scanner, time)) return std::nullopt;
  scanner.skipSpaces();
  return takeOffset(scanner, time) && scanner.isAtEnd() ? std::optional(time) : std::nullopt;
}

void toNextDay(CivilTime& time) {
  if (++time.day <= daysOfMonth(time.year, time.month)) return;
  time.day = 1;
  if (++time.month <= 12) return;
  time.month = 1;
  ++time.year;
}

void toPreviousDay(CivilTime& time) {
  if (--time.day >= 1) return;
  if (--time.month < 1) {
    time.month = 12;
    --time.year;
  }
  time.day = daysOfMonth(time.year, time.month);
}

/// Offsets are less than a day.
void toUTC(CivilTime& time) {
  const int minutes = time.hour * 60 + time.minute - time.offset;
  if (minutes < 0) toPreviousDay(time);
  if (minutes >= kMinutesOfDay) toNextDay(time);
  const int ofDay = (minutes + kMinutesOfDay) % kMinutesOfDay;
  time.hour = ofDay / 60;
  time.minute = ofDay % 60;
}

bool isPrintable(const Timestamp& time) {
  const CivilTime civil = {time.year(),   time.month(),  time.day(),         time.hour(),
                           time.minute(), time.second(), time.milliSecond(), 0};
  return time.year() <= 9999 && time.milliSecond() < 1000 && faultOf(civil).empty();
}

}  // namespace

wstring printTimestamp(const SimpleDataType& value) {
  const auto& time = static_cast<const Timestamp&>(value);
  const unsigned milliSecond = time.milliSecond() / 4u * 4u;  // as on the wire
  if (!isPrintable(time)) return u"0x" + printOctets(value);
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02u.%03u", unsigned{time.year()},
                unsigned{time.month()}, unsigned{time.day()}, unsigned{time.hour()}, unsigned{time.minute()},
                unsigned{time.second()}, milliSecond);
  return Platform::stringToWstring(text.data());
}

ParsedValue parseTimestamp(std::u16string_view text) {
  const auto word = trimmed(text);
  if (hasHexPrefix(word)) return parseOctets<Timestamp>(word);
  auto time = civilTimeIn(word);
  if (!time) return ParsedValue();
  if (auto fault = faultOf(*time); !fault.empty()) return ParsedValue(std::move(fault));
  if (time->offset != 0) toUTC(*time);
  if (time->year < 0 || time->year > 9999) return ParsedValue("in UTC, its year is beyond 0 to 9999");
  const auto octet = [](int number) { return static_cast<uint8>(number); };
  return std::make_unique<Timestamp>(static_cast<uint16>(time->year), octet(time->month), octet(time->day),
                                     octet(time->hour), octet(time->minute), octet(time->second),
                                     static_cast<uint16>(time->milliSecond / 4 * 4));
}

}  // namespace Vantor::Types
