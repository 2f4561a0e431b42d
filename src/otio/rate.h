// Frame rates as OpenTimelineIO files carry them: a RationalTime's `rate` is
// the exact frames per second (24000/1001 for 23.976, 30000/1001 for 29.97,
// 60000/1001 for 59.94), where the project's FrameRate keeps the nominal
// rate and its flags. Pure functions; safe from any thread.
#ifndef TCS_OTIO_RATE_H_
#define TCS_OTIO_RATE_H_

#include <optional>

#include "timecode/frame_rate.h"

namespace tcs::otio {

using FrameRate = tcs::timecode::FrameRate;

// The frames per second a RationalTime of this rate carries: fps, or
// fps * 1000 / 1001 computed in double (the exact ratio, not 23.976).
double RateValue(FrameRate rate);

// The rate a RationalTime's `rate` names: whole rates 1..120, and the
// fractional 23.976, 29.97, 47.952, 59.94 and 119.88 (whole rates within
// 0.001, fractional ones within 0.005: 23.976, 23.98 and 24000/1001 all name
// 23.976). Fractional 30 and 60 count drop-frame. Empty for anything else.
std::optional<FrameRate> RateFromValue(double value);

// A rate as written in a file, snapped to the exact value of the rate it
// names when it names one (23.976 -> 24000/1001), else the value itself.
// Items whose rates name the same rate then convert by a factor of exactly 1.
double CanonicalRate(double value);

}  // namespace tcs::otio

#endif  // TCS_OTIO_RATE_H_
