#include "otio/rate.h"

#include <cmath>

namespace tcs::otio {
namespace {

constexpr uint32_t kMaxFps = 120;
constexpr double kTolerance = 0.001;            // a whole rate
constexpr double kFractionalTolerance = 0.005;  // 23.98 names 23.976
constexpr uint32_t kFractional[] = {24, 30, 48, 60, 120};

double Fractional(uint32_t fps) { return fps * 1000.0 / 1001.0; }

}  // namespace

double RateValue(FrameRate rate) {
  return rate.fractional ? Fractional(rate.fps) : static_cast<double>(rate.fps);
}

std::optional<FrameRate> RateFromValue(double value) {
  if (!std::isfinite(value) || value < 1.0 - kTolerance || value > kMaxFps + kTolerance) {
    return std::nullopt;
  }
  const double whole = std::round(value);
  if (std::fabs(value - whole) <= kTolerance) {
    return FrameRate{static_cast<uint32_t>(whole), false, false};
  }
  for (const uint32_t fps : kFractional) {
    if (std::fabs(value - Fractional(fps)) <= kFractionalTolerance) {
      return FrameRate{fps, fps == 30 || fps == 60, true};
    }
  }
  return std::nullopt;
}

double CanonicalRate(double value) {
  const std::optional<FrameRate> rate = RateFromValue(value);
  return rate ? RateValue(*rate) : value;
}

}  // namespace tcs::otio
