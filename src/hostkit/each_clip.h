// EachClip and ClipAt: every clip of one channel in start order, and the
// clip at a frame, read through the listing entry points as a host reads a
// space. Header
// only, so that the interchange libraries use it without linking the host
// kit. The caller holds no lock: a host's edit between two batches is seen
// from the frame the listing resumes at.
#ifndef TCS_HOSTKIT_EACH_CLIP_H_
#define TCS_HOSTKIT_EACH_CLIP_H_

#include <cstdint>

#include "tcs.h"

namespace tcs::host {

inline constexpr unsigned int kClipBatch = 256;  // rows asked for at a time

// Calls each(const TCSCLIP&) for every clip of `channel`. Returns TCS_OK, or
// the status of the listing call that failed (the clips before it handed
// over).
template <typename Each>
uint32_t EachClip(CTimeCodeSpace* space, uint32_t channel, Each&& each) {
  TCSCLIP rows[kClipBatch];
  unsigned int from = 0;
  unsigned int count = 0;
  do {
    const uint32_t status =
        tcsGetClips(space, channel, from, TCS_NO_TIMECODE, rows, kClipBatch, &count, &from);
    if (status != TCS_OK) return status;
    for (unsigned int i = 0; i < count; ++i) each(rows[i]);
  } while (from != TCS_NO_TIMECODE);
  return TCS_OK;
}

// The row of the clip that starts or plays at `at` (the first a listing
// from `at` gives: where several start there together, the first listed).
// False when there is none, or the call fails.
inline bool ClipAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at, TCSCLIP& row) {
  unsigned int count = 0;
  unsigned int next = 0;
  return tcsGetClips(space, channel, at, at + 1, &row, 1, &count, &next) == TCS_OK && count == 1;
}

}  // namespace tcs::host

#endif  // TCS_HOSTKIT_EACH_CLIP_H_
