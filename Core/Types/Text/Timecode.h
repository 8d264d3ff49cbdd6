#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Core/Platform/Types.h"

namespace Vantor::Types {

/// How a timecode counts frames (ST 12-1): with drop frame, the addresses of the first 2 frames of a minute at 30, of
/// the first 4 at 60, and so on, do not exist, but for every tenth minute.
struct TimecodeBase {
  uint16 framesPerSecond = 0;
  bool drops = false;

  /// Drop frame is for multiples of 30.
  bool isValid() const { return framesPerSecond != 0 && (!drops || framesPerSecond % 30 == 0); }
};

/// "10:00:00:00", with drop frame "10:00:00;00"; none for counts outside of a day, and without a valid base.
std::optional<wstring> printTimecode(int64 frames, const TimecodeBase& base);

/// What a text is as a timecode.
struct ParsedTimecode {
  bool isTimecode = false;  ///< four numbers, with ":" between them, and ":", ";" or "." before the last
  int64 frames = 0;         ///< the count since midnight
  std::string reason;       ///< why there is no such timecode; empty when there is
};
/// A ";" or "." is for drop frame. With a base that drops frames, ":" means the same.
ParsedTimecode parseTimecode(std::u16string_view text, const TimecodeBase& base);

}  // namespace Vantor::Types
