#include "Core/Types/Text/Timecode.h"

#include <array>
#include <cstdio>

#include "Core/Platform/Strings.h"
#include "Core/Types/Text/TextScanner.h"
#include "Core/Types/ValueText.h"

namespace Vantor::Types {

namespace {

constexpr int64 kTensOfDay = 24 * 6;

/// Hours, minutes, seconds and frames.
using Address = std::array<int64, 4>;

/// Addresses that a minute skips.
int64 droppedPerMinute(const TimecodeBase& base) { return base.drops ? base.framesPerSecond / 15 : 0; }

/// Addresses that are skipped up to the beginning of a minute, its own included.
int64 droppedBefore(int64 minute, const TimecodeBase& base) { return droppedPerMinute(base) * (minute - minute / 10); }

/// Tens of minutes all have one length.
int64 framesOfTens(int64 tens, const TimecodeBase& base) {
  return tens * 600 * base.framesPerSecond - droppedBefore(tens * 10, base);
}

/// The minute that a frame is in: the first of ten skips nothing.
int64 minuteOf(int64 frames, const TimecodeBase& base) {
  const int64 tens = frames / framesOfTens(1, base);
  const int64 rest = frames % framesOfTens(1, base);
  const int64 first = int64{60} * base.framesPerSecond;
  return tens * 10 + (rest < first ? 0 : 1 + (rest - first) / (first - droppedPerMinute(base)));
}

/// Why a base has no timecodes of that kind.
std::string faultOfBase(const TimecodeBase& base, bool isDropFrame) {
  if (base.framesPerSecond == 0) return "FramesPerSecond of the set is missing or 0";
  if (!base.isValid()) return "drop frame is for 30 frames a second and multiples";
  return isDropFrame && !base.drops ? "';' is for drop frame, and DropFrame of the set is false" : "";
}

std::string faultOfAddress(const Address& address, const TimecodeBase& base) {
  const auto [hours, minutes, seconds, frames] = address;
  if (hours > 23) return "the hours end at 23";
  if (minutes > 59) return "the minutes end at 59";
  if (seconds > 59) return "the seconds end at 59";
  if (frames >= base.framesPerSecond) return "the frames end at " + std::to_string(base.framesPerSecond - 1);
  const bool isSkipped = seconds == 0 && minutes % 10 != 0 && frames < droppedPerMinute(base);
  return isSkipped ? "drop frame skips it" : "";
}

}  // namespace

std::optional<wstring> printTimecode(int64 frames, const TimecodeBase& base) {
  if (!base.isValid() || frames < 0 || frames >= framesOfTens(kTensOfDay, base)) return std::nullopt;
  const int64 minute = minuteOf(frames, base);
  const int64 address = frames + droppedBefore(minute, base);
  const int64 seconds = address / base.framesPerSecond;
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d%c%02d", static_cast<int>(seconds / 3600),
                static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60), base.drops ? ';' : ':',
                static_cast<int>(address % base.framesPerSecond));
  return Platform::stringToWstring(text.data());
}

ParsedTimecode parseTimecode(std::u16string_view text, const TimecodeBase& base) {
  TextScanner scanner(trimmed(text));
  Address address{};
  ParsedTimecode parsed;
  char16_t mark = u':';
  for (std::size_t i = 0; i < address.size() && mark != 0; ++i) {
    if (!scanner.number(address[i])) return {};
    mark = i == 3 ? u':' : scanner.mark(i == 2 ? u":;." : u":");
    if (i == 2) parsed.isTimecode = mark != 0;
    if (i == 2) parsed.reason = faultOfBase(base, mark != u':');
  }
  parsed.isTimecode = parsed.isTimecode && scanner.isAtEnd();
  if (!parsed.isTimecode) return parsed;
  if (parsed.reason.empty()) parsed.reason = faultOfAddress(address, base);
  if (!parsed.reason.empty()) return parsed;
  const int64 minute = address[0] * 60 + address[1];
  const int64 seconds = minute * 60 + address[2];
  parsed.frames = seconds * base.framesPerSecond + address[3] - droppedBefore(minute, base);
  return parsed;
}

}  // namespace Vantor::Types
