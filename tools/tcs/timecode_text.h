// Timecodes as people read and type them: HH:MM:SS:FF at a frame rate, with
// ';' before the frames for drop-frame, or a bare frame count. Record
// timecodes are frame counts from 0; at 30 frames per second 01:00:00:00 is
// frame 108000. Pure functions, callable from anywhere.
#ifndef TCS_TOOLS_TCS_TIMECODE_TEXT_H_
#define TCS_TOOLS_TCS_TIMECODE_TEXT_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tcs::cli {

struct FrameRate {
  uint32_t fps = 30;       // nominal frames per second
  bool dropFrame = false;  // 29.97 (or 59.94) drop-frame counting; fps is 30 (or 60)
};

// Accepts "24", "25", "30", "29.97" (30 drop-frame), "59.94", "30df", ...
// Empty on a rate that is not a whole number of frames from 1 to 120.
std::optional<FrameRate> ParseFrameRate(std::string_view text);
std::string FrameRateText(FrameRate rate);  // "30 fps", "29.97 fps drop-frame"

// Drop-frame counting exists for 30 and 60 nominal frames per second only.
bool CanDropFrame(uint32_t fps);

// HH:MM:SS:FF (HH:MM:SS;FF when the rate is drop-frame). Frame counts past
// 99 hours print with more hour digits.
std::string FormatTimecode(uint32_t frames, FrameRate rate);

// Parses "HH:MM:SS:FF", "HH:MM:SS;FF" (drop-frame, whatever the rate says) or
// a frame count. On failure returns empty and says why in *error.
std::optional<uint32_t> ParseTimecode(std::string_view text, FrameRate rate, std::string* error);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_TIMECODE_TEXT_H_
