// Timecode text at a FrameRate: frame counts to "hh:mm:ss:ff" and back, with
// drop-frame counting at 30 and 60 frames per second. Drop-frame labels skip
// frame numbers 0 and 1 (0 to 3 at 60) at the start of every minute except
// each tenth, so that the label keeps step with the wall clock at 29.97 and
// 59.94. Pure functions; safe from any thread.
#ifndef TCS_TIMECODE_TIMECODE_H_
#define TCS_TIMECODE_TIMECODE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "timecode/frame_rate.h"

namespace tcs::timecode {

// Longest text FormatTimecode writes: hours of a 32-bit count at 1 frame/s.
inline constexpr size_t kMaxTimecodeText = 18;

// Writes value in decimal, zero-padded to min_width (at most 20) digits, at
// out (room for 20 characters); returns the end.
char* PutDigits(uint64_t value, size_t min_width, char* out);

// Writes the timecode of `frames` into `out` (kMaxTimecodeText bytes, no
// NUL) and returns its length. Hours take two digits, more past 99 hours;
// frames take two digits, three from 100 frames per second. Drop-frame
// timecode separates seconds and frames with ';'.
size_t FormatTimecode(uint32_t frames, FrameRate rate, char* out);
std::string TimecodeString(uint32_t frames, FrameRate rate);

// One timecode as an EDL writes it: hours of any width, then three fields.
struct TimecodeText {
  uint64_t hours = 0;
  uint32_t minutes = 0;
  uint32_t seconds = 0;
  uint32_t frames = 0;
  bool semicolon = false;  // a ';' separator: drop-frame counting
};

// Reads one timecode at text[pos] and moves pos past it. Separators may be
// ':', ';' or '.'. Minutes and seconds are two digits; the frame field is
// two digits, or three where exactly three end the text or precede a blank,
// so that timecodes run together ("01:00:00:0001:00:05:00") read one after
// the other.
bool ScanTimecode(std::string_view text, size_t& pos, TimecodeText& out);

enum class Count {
  kOk,
  kFramePastRate,  // the frame field is the rate or more: counted on into the next second
  kOutOfRange,     // minutes or seconds past 59, or a count past 32 bits
};

// The frame count of a timecode. Drop-frame counting applies when the rate
// asks for it or the text used ';' (at 30 and 60 frames per second only).
// Numbers that drop-frame counting skips read as the frames just before
// them, as the counting formula gives.
Count TimecodeToFrames(const TimecodeText& tc, FrameRate rate, uint32_t& frames);

// What a person types: "HH:MM:SS:FF" (hours up to 999) or a bare frame
// count. Drop-frame labels are read where the rate counts drop-frame or the
// last separator is ';', whichever separator the rate itself would print;
// a label drop-frame counting skips is refused. Counts past `last` are
// refused. On failure returns empty and says why in *error.
std::optional<uint32_t> ParseTimecode(std::string_view text, FrameRate rate, uint32_t last,
                                      std::string* error);

}  // namespace tcs::timecode

#endif  // TCS_TIMECODE_TIMECODE_H_
