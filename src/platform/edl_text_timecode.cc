#include "platform/edl_text_timecode.h"

namespace tcs::translator {
namespace {

// Frame numbers skipped at the start of every minute but each tenth.
constexpr uint64_t DroppedPerMinute(uint32_t fps) { return fps / 15; }

bool DropFrameRate(uint32_t fps) { return fps == 30 || fps == 60; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsSeparator(char c) { return c == ':' || c == ';' || c == '.'; }

char* PutTwoDigits(uint64_t value, char* out) {
  out[0] = char('0' + value / 10);
  out[1] = char('0' + value % 10);
  return out + 2;
}

// Reads exactly two digits.
bool TwoDigits(std::string_view text, size_t pos, uint32_t& value) {
  if (pos + 2 > text.size() || !IsDigit(text[pos]) || !IsDigit(text[pos + 1])) return false;
  value = uint32_t(text[pos] - '0') * 10 + uint32_t(text[pos + 1] - '0');
  return true;
}

}  // namespace

TimecodeRate MakeRate(uint32_t fps, bool drop_frame) {
  if (fps == 0 || fps > 99) fps = 30;
  if (fps == 29 || fps == 59) ++fps;
  return {fps, drop_frame && DropFrameRate(fps)};
}

size_t FormatTimecode(uint32_t frames, TimecodeRate rate, char* out) {
  const uint64_t fps = rate.fps;
  uint64_t number = frames;
  if (rate.dropFrame) {
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
  const uint64_t ff = number % fps;
  const uint64_t total_seconds = number / fps;
  const uint64_t hours = total_seconds / 3600;

  char hour_digits[kMaxTimecodeText];
  size_t hour_width = 0;
  for (uint64_t h = hours; h > 0 || hour_width < 2; h /= 10) hour_digits[hour_width++] = char('0' + h % 10);
  char* p = out;
  while (hour_width > 0) *p++ = hour_digits[--hour_width];
  *p++ = ':';
  p = PutTwoDigits(total_seconds / 60 % 60, p);
  *p++ = ':';
  p = PutTwoDigits(total_seconds % 60, p);
  *p++ = rate.dropFrame ? ';' : ':';
  p = PutTwoDigits(ff, p);
  return size_t(p - out);
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
    if (!TwoDigits(text, p + 1, *field)) return false;
    p += 3;
  }
  out = tc;
  pos = p;
  return true;
}

bool TimecodeToFrames(const TimecodeText& tc, TimecodeRate rate, uint32_t& frames) {
  const uint64_t fps = rate.fps;
  if (tc.minutes > 59 || tc.seconds > 59 || tc.frames >= fps) return false;
  const uint64_t total_minutes = tc.hours * 60 + tc.minutes;
  uint64_t count = (total_minutes * 60 + tc.seconds) * fps + tc.frames;
  if ((rate.dropFrame || tc.semicolon) && DropFrameRate(rate.fps)) {
    const uint64_t dropped = DroppedPerMinute(rate.fps) * (total_minutes - total_minutes / 10);
    count = count >= dropped ? count - dropped : 0;
  }
  if (count > UINT32_MAX) return false;
  frames = uint32_t(count);
  return true;
}

}  // namespace tcs::translator
