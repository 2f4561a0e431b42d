// Timecode text: drop-frame counting skips frame numbers 0 and 1 (0 to 3 at
// 60) at the start of every minute except each tenth minute, so that the
// timecode keeps step with the wall clock at 29.97 frames per second.
#include "timecode_text.h"

#include <charconv>
#include <cstdio>

#include "record/timecode.h"

namespace tcs::cli {
namespace {

uint32_t DroppedPerMinute(uint32_t fps) { return fps / 15; }  // 2 at 30, 4 at 60

std::optional<uint32_t> ParseNumber(std::string_view text) {
  uint32_t value = 0;
  if (text.empty()) return std::nullopt;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

bool CanDropFrame(uint32_t fps) { return fps == 30 || fps == 60; }

std::optional<FrameRate> ParseFrameRate(std::string_view text) {
  FrameRate rate;
  if (text == "29.97" || text == "59.94") {
    return FrameRate{text == "29.97" ? 30u : 60u, true};
  }
  if (text.size() > 2 && text.substr(text.size() - 2) == "df") {
    rate.dropFrame = true;
    text.remove_suffix(2);
  }
  const std::optional<uint32_t> fps = ParseNumber(text);
  if (!fps || *fps == 0 || *fps > 120) return std::nullopt;
  if (rate.dropFrame && !CanDropFrame(*fps)) return std::nullopt;
  rate.fps = *fps;
  return rate;
}

std::string FrameRateText(FrameRate rate) {
  if (!rate.dropFrame) return std::to_string(rate.fps) + " fps";
  return std::string(rate.fps == 30 ? "29.97" : "59.94") + " fps drop-frame";
}

std::string FormatTimecode(uint32_t frames, FrameRate rate) {
  uint64_t f = frames;
  const uint64_t fps = rate.fps;
  const bool drop = rate.dropFrame && CanDropFrame(rate.fps);
  if (drop) {
    const uint64_t drop = DroppedPerMinute(rate.fps);
    const uint64_t per_minute = fps * 60 - drop;
    const uint64_t per_ten = fps * 600 - drop * 9;
    const uint64_t tens = f / per_ten;
    const uint64_t rest = f % per_ten;
    f += drop * 9 * tens;
    if (rest > drop) f += drop * ((rest - drop) / per_minute);
  }
  char text[96];
  std::snprintf(text, sizeof text, "%02llu:%02llu:%02llu%c%02llu",
                static_cast<unsigned long long>(f / (fps * 3600)),
                static_cast<unsigned long long>(f / (fps * 60) % 60),
                static_cast<unsigned long long>(f / fps % 60), drop ? ';' : ':',
                static_cast<unsigned long long>(f % fps));
  return text;
}

std::optional<uint32_t> ParseTimecode(std::string_view text, FrameRate rate, std::string* error) {
  if (text.find_first_of(":;") == std::string_view::npos) {
    const std::optional<uint32_t> frames = ParseNumber(text);
    if (!frames || *frames > kTimelineEnd) {
      *error = "'" + std::string(text) + "' is not a timecode (HH:MM:SS:FF) or a frame count up to " +
               std::to_string(kTimelineEnd);
      return std::nullopt;
    }
    return frames;
  }
  // Four fields of digits; the last separator ';' asks for drop-frame.
  uint32_t field[4];
  bool drop = false;
  size_t at = 0;
  for (int i = 0; i < 4; ++i) {
    const size_t end = i < 3 ? text.find_first_of(":;", at) : text.size();
    const std::optional<uint32_t> value =
        end == std::string_view::npos ? std::nullopt : ParseNumber(text.substr(at, end - at));
    if (!value || (i < 3 && text[end] == ';' && i != 2)) {
      *error = "'" + std::string(text) + "' is not a timecode (HH:MM:SS:FF, or HH:MM:SS;FF for drop-frame)";
      return std::nullopt;
    }
    if (i == 2) drop = text[end] == ';';
    field[i] = *value;
    at = end + 1;
  }
  const uint32_t fps = rate.fps;
  if (drop && !CanDropFrame(fps)) {
    *error = "'" + std::string(text) + "': drop-frame timecode needs 30 frames per second, not " +
             std::to_string(fps);
    return std::nullopt;
  }
  const uint32_t minutes = field[0] * 60 + field[1];
  if (field[0] > 999 || field[1] > 59 || field[2] > 59 || field[3] >= fps ||
      (drop && field[2] == 0 && minutes % 10 != 0 && field[3] < DroppedPerMinute(fps))) {
    *error = "'" + std::string(text) + "' is not a valid timecode at " +
             FrameRateText({fps, drop});
    return std::nullopt;
  }
  uint64_t frames = (uint64_t{minutes} * 60 + field[2]) * fps + field[3];
  if (drop) frames -= uint64_t{DroppedPerMinute(fps)} * (minutes - minutes / 10);
  if (frames > kTimelineEnd) {
    *error = "'" + std::string(text) + "' lies past the end of the timeline";
    return std::nullopt;
  }
  return static_cast<uint32_t>(frames);
}

}  // namespace tcs::cli
