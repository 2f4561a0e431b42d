#include "timecode/timecode.h"

#include <charconv>
#include <initializer_list>

namespace tcs::timecode {
namespace {

constexpr uint64_t DroppedPerMinute(uint32_t fps) { return fps / 15; }  // 2 at 30, 4 at 60

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSeparator(char c) { return c == ':' || c == ';' || c == '.'; }

char* PutTwoDigits(uint64_t value, char* out) {
  out[0] = char('0' + value / 10);
  out[1] = char('0' + value % 10);
  return out + 2;
}

// Reads exactly `width` digits.
bool Digits(std::string_view text, size_t pos, size_t width, uint32_t& value) {
  if (pos + width > text.size()) return false;
  value = 0;
  for (size_t i = pos; i < pos + width; ++i) {
    if (!IsDigit(text[i])) return false;
    value = value * 10 + uint32_t(text[i] - '0');
  }
  return true;
}

std::optional<uint32_t> Number(std::string_view text) {
  uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

char* PutDigits(uint64_t value, size_t min_width, char* out) {
  char digits[24];
  size_t n = 0;
  do {
    digits[n++] = char('0' + value % 10);
    value /= 10;
  } while (value > 0);
  while (n < min_width) digits[n++] = '0';
  while (n > 0) *out++ = digits[--n];
  return out;
}

size_t FormatTimecode(uint32_t frames, FrameRate rate, char* out) {
  const uint64_t fps = rate.fps;
  uint64_t number = frames;
  if (rate.dropFrame && CanDropFrame(rate.fps)) {
    // Count the frame numbers skipped before this frame: `drop` per minute,
    // none in every tenth minute.
    const uint64_t drop = DroppedPerMinute(rate.fps);
    const uint64_t per_minute = fps * 60 - drop;
    const uint64_t per_ten_minutes = fps * 600 - 9 * drop;
    const uint64_t tens = number / per_ten_minutes;
    const uint64_t rest = number % per_ten_minutes;
    number += 9 * drop * tens;
    if (rest > drop) number += drop * ((rest - drop) / per_minute);
  }
  const uint64_t total_seconds = number / fps;
  const uint64_t hours = total_seconds / 3600;
  char* p = hours < 100 ? PutTwoDigits(hours, out) : PutDigits(hours, 2, out);
  *p++ = ':';
  p = PutTwoDigits(total_seconds / 60 % 60, p);
  *p++ = ':';
  p = PutTwoDigits(total_seconds % 60, p);
  *p++ = rate.dropFrame && CanDropFrame(rate.fps) ? ';' : ':';
  p = fps > 100 ? PutDigits(number % fps, 3, p) : PutTwoDigits(number % fps, p);
  return size_t(p - out);
}

std::string TimecodeString(uint32_t frames, FrameRate rate) {
  char text[kMaxTimecodeText];
  return std::string(text, FormatTimecode(frames, rate, text));
}

bool ScanTimecode(std::string_view text, size_t& pos, TimecodeText& out) {
  size_t p = pos;
  uint64_t hours = 0;
  size_t hour_digits = 0;
  while (p < text.size() && IsDigit(text[p])) {
    if (++hour_digits > 9) return false;
    hours = hours * 10 + uint64_t(text[p++] - '0');
  }
  if (hour_digits == 0) return false;
  TimecodeText tc;
  tc.hours = hours;
  uint32_t* const fields[3] = {&tc.minutes, &tc.seconds, &tc.frames};
  for (uint32_t* field : fields) {
    if (p >= text.size() || !IsSeparator(text[p])) return false;
    tc.semicolon |= text[p] == ';';
    size_t width = 2;
    const bool three = field == &tc.frames && p + 4 <= text.size() && IsDigit(text[p + 3]) &&
                       (p + 4 == text.size() || text[p + 4] == ' ' || text[p + 4] == '\t');
    if (three) width = 3;
    if (!Digits(text, p + 1, width, *field)) return false;
    p += 1 + width;
  }
  out = tc;
  pos = p;
  return true;
}

Count TimecodeToFrames(const TimecodeText& tc, FrameRate rate, uint32_t& frames) {
  const uint64_t fps = rate.fps;
  if (tc.minutes > 59 || tc.seconds > 59) return Count::kOutOfRange;
  const uint64_t total_minutes = tc.hours * 60 + tc.minutes;
  uint64_t count = (total_minutes * 60 + tc.seconds) * fps + tc.frames;
  if ((rate.dropFrame || tc.semicolon) && CanDropFrame(rate.fps)) {
    const uint64_t dropped = DroppedPerMinute(rate.fps) * (total_minutes - total_minutes / 10);
    count = count >= dropped ? count - dropped : 0;
  }
  if (count > UINT32_MAX) return Count::kOutOfRange;
  frames = uint32_t(count);
  return tc.frames >= fps ? Count::kFramePastRate : Count::kOk;
}

std::optional<uint32_t> ParseTimecode(std::string_view text, FrameRate rate, uint32_t last,
                                      std::string* error) {
  // Built by appending: GCC 12 warns falsely (-Wrestrict) on chains of +.
  const auto fail = [&](std::initializer_list<std::string_view> parts) {
    error->assign(1, '\'');
    error->append(text);
    error->push_back('\'');
    for (std::string_view part : parts) error->append(part);
    return std::nullopt;
  };
  if (text.find_first_of(":;") == std::string_view::npos) {
    const std::optional<uint32_t> frames = Number(text);
    if (!frames || *frames > last) {
      return fail({" is not a timecode (HH:MM:SS:FF) or a frame count up to ",
                   std::to_string(last)});
    }
    return frames;
  }
  // Four fields of digits; a ';' may stand only before the frames.
  uint32_t field[4];
  bool semicolon = false;
  size_t at = 0;
  for (int i = 0; i < 4; ++i) {
    const size_t end = i < 3 ? text.find_first_of(":;", at) : text.size();
    const std::optional<uint32_t> value =
        end == std::string_view::npos ? std::nullopt : Number(text.substr(at, end - at));
    if (!value || (i < 3 && text[end] == ';' && i != 2)) {
      return fail({" is not a timecode (HH:MM:SS:FF, or HH:MM:SS;FF for drop-frame)"});
    }
    if (i == 2) semicolon = text[end] == ';';
    field[i] = *value;
    at = end + 1;
  }
  const uint32_t fps = rate.fps;
  if (semicolon && !CanDropFrame(fps)) {
    return fail({": drop-frame timecode needs 30 or 60 frames per second, not ",
                 std::to_string(fps)});
  }
  const bool drop = semicolon || rate.dropFrame;
  const uint32_t minutes = field[0] * 60 + field[1];
  const bool skipped =
      drop && field[2] == 0 && minutes % 10 != 0 && field[3] < DroppedPerMinute(fps);
  if (field[0] > 999 || field[1] > 59 || field[2] > 59 || field[3] >= fps || skipped) {
    return fail({" is not a valid timecode at ",
                 FrameRateText(MakeFrameRate(fps, drop, rate.fractional))});
  }
  uint64_t frames = (uint64_t{minutes} * 60 + field[2]) * fps + field[3];
  if (drop) frames -= DroppedPerMinute(fps) * (minutes - minutes / 10);
  if (frames > last) {
    return fail({" lies past the end of the timeline"});
  }
  return static_cast<uint32_t>(frames);
}

}  // namespace tcs::timecode
