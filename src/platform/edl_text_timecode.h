// Timecode text of an EDL: frame counts to "hh:mm:ss:ff" and back at a whole
// frame rate, with drop-frame counting at 30 and 60 frames per second
// (29.97 and 59.94 material). Pure functions; safe from any thread.
#ifndef TCS_PLATFORM_EDL_TEXT_TIMECODE_H_
#define TCS_PLATFORM_EDL_TEXT_TIMECODE_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tcs::translator {

struct TimecodeRate {
  uint32_t fps = 30;       // nominal frames per second, 1..99
  bool dropFrame = false;  // set only at 30 and 60
  friend bool operator==(const TimecodeRate&, const TimecodeRate&) = default;
};

// The rate a settings block asks for: 0 (and anything above 99, which a
// two-digit frame field cannot count) means 30; 29 and 59 are the nominal 30
// and 60. Drop-frame is kept only where it exists, at 30 and 60.
TimecodeRate MakeRate(uint32_t fps, bool drop_frame);

// Longest text FormatTimecode writes: hours of a 32-bit count at 1 frame/s.
inline constexpr size_t kMaxTimecodeText = 16;

// Writes the timecode of `frames` into `out` (kMaxTimecodeText bytes, no
// NUL) and returns its length. Hours take two digits, more past 99 hours.
// Drop-frame timecode separates seconds and frames with ';'.
size_t FormatTimecode(uint32_t frames, TimecodeRate rate, char* out);

// One timecode as written: hours of any width, then three two-digit fields.
struct TimecodeText {
  uint64_t hours = 0;
  uint32_t minutes = 0;
  uint32_t seconds = 0;
  uint32_t frames = 0;
  bool semicolon = false;  // a ';' separator: drop-frame counting
};

// Reads one timecode at text[pos] and moves pos past it. Separators may be
// ':', ';' or '.'. The frame field is exactly two digits, so timecodes that
// run together ("01:00:00:0001:00:05:00") read one after the other.
bool ScanTimecode(std::string_view text, size_t& pos, TimecodeText& out);

// The frame count of a timecode; false when minutes, seconds or frames are
// out of range for the rate or the count passes 32 bits. Drop-frame counting
// applies when the rate asks for it or the text used ';' (at 30 and 60
// frames per second only). Numbers that drop-frame counting skips read as
// the frames just before them, as the counting formula gives.
bool TimecodeToFrames(const TimecodeText& tc, TimecodeRate rate, uint32_t& frames);

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_TEXT_TIMECODE_H_
