// FrameRate: how a list counts its frames, the one rate type of the EDL
// codecs and the tcs tool. A timecode's frame field counts to the nominal
// rate (24, 25, 30, 48, 50, 60, or any whole rate up to 120); 23.976, 29.97
// and 59.94 material counts as 24, 30 and 60, at 29.97 and 59.94 usually with
// drop-frame labels. Plain data; the functions are pure and safe from any
// thread.
#ifndef TCS_TIMECODE_FRAME_RATE_H_
#define TCS_TIMECODE_FRAME_RATE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tcs::timecode {

inline constexpr uint32_t kMaxFps = 120;

struct FrameRate {
  uint32_t fps = 30;        // nominal frames per second, 1..kMaxFps
  bool dropFrame = false;   // drop-frame labels; only where CanDropFrame(fps)
  bool fractional = false;  // the picture runs at fps * 1000 / 1001; set with dropFrame
  friend bool operator==(const FrameRate&, const FrameRate&) = default;
};

// Drop-frame counting exists at 30 and 60 nominal frames per second only.
bool CanDropFrame(uint32_t fps);

// A rate with its flags made consistent: fps 0 or past kMaxFps is 30;
// drop-frame is kept only where it exists and implies a fractional rate.
FrameRate MakeFrameRate(uint32_t fps, bool drop_frame, bool fractional = false);

// The spellings a user types: whole rates "24" ... "120", "30df" and "60df";
// "23.976" and "23.98" (24, fractional); "29.97", "29.97df", "59.94",
// "59.94df" (30 and 60 drop-frame). Empty on anything else.
std::optional<FrameRate> ParseFrameRate(std::string_view text);

// "25 fps", "23.976 fps", "29.97 fps drop-frame".
std::string FrameRateText(FrameRate rate);

}  // namespace tcs::timecode

#endif  // TCS_TIMECODE_FRAME_RATE_H_
