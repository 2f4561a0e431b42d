// The frame rate a translator settings block asks for: none, 0 and anything
// above 120 (the highest rate the codec counts, three-digit frame fields
// from 100 on) mean 30; 29 and 59 are the nominal 30 and 60. Drop-frame is
// kept only where it exists.
#ifndef TCS_PLATFORM_EDL_RATE_H_
#define TCS_PLATFORM_EDL_RATE_H_

#include "platform/edl_translator.h"
#include "timecode/frame_rate.h"

namespace tcs::translator {

inline timecode::FrameRate RateOf(const EDLSETTINGS* settings) {
  uint32_t fps = settings == nullptr ? 30 : settings->framesPerSecond;
  if (fps == 0 || fps > timecode::kMaxFps) fps = 30;
  if (fps == 29 || fps == 59) ++fps;
  return timecode::MakeFrameRate(fps, settings != nullptr && settings->dropFrame != 0);
}

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_RATE_H_
