// The interchange code's view of a frame rate: the nominal rate a space's
// frames count at, drop-frame labels, and the exact rate an OpenTimelineIO
// RationalTime carries (24000/1001 for 23.976, 30000/1001 for 29.97,
// 60000/1001 for 59.94). Kept to this one header and its .cc so that the
// project's shared frame-rate type can take its place in one step. Pure
// functions; safe from any thread.
#ifndef TCS_OTIO_RATE_H_
#define TCS_OTIO_RATE_H_

#include <cstdint>
#include <optional>

namespace tcs::otio {

struct FrameRate {
  uint32_t fps = 24;        // nominal frames per second, 1..120
  bool dropFrame = false;   // drop-frame labels (fractional 30 and 60 only)
  bool fractional = false;  // the picture runs at fps * 1000 / 1001
  friend bool operator==(const FrameRate&, const FrameRate&) = default;
};

// The frames per second a RationalTime of this rate carries: fps, or
// fps * 1000 / 1001 computed in double (the exact ratio, not 23.976).
double RateValue(FrameRate rate);

// The rate a RationalTime's `rate` names: whole rates 1..120, and the
// fractional 23.976, 29.97, 47.952, 59.94 and 119.88 (whole rates within
// 0.001, fractional ones within 0.005: 23.976, 23.98 and 24000/1001 all name
// 23.976). Fractional
// 30 and 60 count drop-frame. Empty for anything else.
std::optional<FrameRate> RateFromValue(double value);

// A rate as written in a file, snapped to the exact value of the rate it
// names when it names one (23.976 -> 24000/1001), else the value itself.
// Items whose rates name the same rate then convert by a factor of exactly 1.
double CanonicalRate(double value);

}  // namespace tcs::otio

#endif  // TCS_OTIO_RATE_H_
