#include "timecode/frame_rate.h"

#include <charconv>

namespace tcs::timecode {

bool CanDropFrame(uint32_t fps) { return fps == 30 || fps == 60; }

FrameRate MakeFrameRate(uint32_t fps, bool drop_frame, bool fractional) {
  if (fps == 0 || fps > kMaxFps) fps = 30;
  const bool drop = drop_frame && CanDropFrame(fps);
  return {fps, drop, fractional || drop};
}

std::optional<FrameRate> ParseFrameRate(std::string_view text) {
  struct Named {
    std::string_view text;
    FrameRate rate;
  };
  static constexpr Named kNamed[] = {
      {"23.976", {24, false, true}}, {"23.98", {24, false, true}},  {"29.97", {30, true, true}},
      {"29.97df", {30, true, true}}, {"59.94", {60, true, true}},   {"59.94df", {60, true, true}},
  };
  for (const Named& named : kNamed) {
    if (text == named.text) return named.rate;
  }
  const bool drop = text.ends_with("df");
  if (drop) text.remove_suffix(2);
  uint32_t fps = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), fps);
  if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (fps == 0 || fps > kMaxFps || (drop && !CanDropFrame(fps))) return std::nullopt;
  return MakeFrameRate(fps, drop);
}

std::string FrameRateText(FrameRate rate) {
  if (!rate.fractional) return std::to_string(rate.fps) + " fps";
  std::string text = rate.fps == 24   ? "23.976"
                     : rate.fps == 30 ? "29.97"
                     : rate.fps == 60 ? "59.94"
                                      : std::to_string(rate.fps) + "/1.001";
  text += rate.dropFrame ? " fps drop-frame" : " fps";
  return text;
}

}  // namespace tcs::timecode
