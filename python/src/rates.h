// FrameRate and Timecode as Python sees them: thin values over the library's
// one frame-rate and timecode type, so that Python prints and reads
// timecodes exactly as the tcs tool and the EDL codec do, drop-frame
// included.
#ifndef TCS_PYTHON_RATES_H_
#define TCS_PYTHON_RATES_H_

#include <pybind11/pybind11.h>

#include <cstdint>
#include <string>

#include "timecode/frame_rate.h"

namespace tcs::py_module {

using timecode::FrameRate;

// One past the last frame a timecode argument may name: the end of the
// timeline.
inline constexpr uint32_t kLastFrame = 10692001;

// A frame count at a rate. Immutable.
struct Timecode {
  uint32_t frames;
  FrameRate rate;
  std::string Text() const;
};

// The spelling ParseFrameRate reads back: "25", "29.97df", "23.976".
std::string RateSpelling(FrameRate rate);
// A rate given as text ("29.97df"), a number (25, 29.97) or a FrameRate;
// ValueError otherwise.
FrameRate RateArg(const pybind11::handle& value);
// A timecode given as a frame count, a Timecode or text read at `rate`
// ("01:00:00:00", "01:00:00;02", "1800"); ValueError naming `what` otherwise.
uint32_t FramesArg(const pybind11::handle& value, FrameRate rate, const char* what);

void BindRates(pybind11::module_& m);

}  // namespace tcs::py_module

#endif  // TCS_PYTHON_RATES_H_
