#include "otio/rate.h"

#include <cmath>

namespace tcs::otio {
namespace {

using tcs::timecode::kMaxFps;
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
    return tcs::timecode::MakeFrameRate(static_cast<uint32_t>(whole), false);
  }
  for (const uint32_t fps : kFractional) {
    if (std::fabs(value - Fractional(fps)) <= kFractionalTolerance) {
      return tcs::timecode::MakeFrameRate(fps, tcs::timecode::CanDropFrame(fps), true);
    }
  }
  return std::nullopt;
}

double CanonicalRate(double value) {
  const std::optional<FrameRate> rate = RateFromValue(value);
  return rate ? RateValue(*rate) : value;
}

}  // namespace tcs::otio
