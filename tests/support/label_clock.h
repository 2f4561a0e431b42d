// A timecode clock for tests: steps a label one frame at a time the way a
// counter does, skipping the frame numbers drop-frame counting drops (the
// first `drop` of every minute but each tenth). Plain data; any thread.
#ifndef TCS_TESTS_SUPPORT_LABEL_CLOCK_H_
#define TCS_TESTS_SUPPORT_LABEL_CLOCK_H_

#include <cstdint>
#include <cstdio>
#include <string>

namespace tcs_test {

struct LabelClock {
  uint32_t fps, drop;
  uint32_t h = 0, m = 0, s = 0, f = 0;

  void Tick() {
    if (++f < fps) return;
    f = 0;
    if (++s < 60) return;
    s = 0;
    if (++m == 60) m = 0, ++h;
    if (m % 10 != 0) f = drop;
  }
  // "hh:mm:ss:ff", with ';' before the frames when frames are dropped.
  std::string Label() const {
    char text[32];
    std::snprintf(text, sizeof text, "%02u:%02u:%02u%c%02u", h, m, s, drop ? ';' : ':', f);
    return text;
  }
};

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_LABEL_CLOCK_H_
