#include "platform/clip_counting.h"

extern "C" void clsSetSourceCounting(CLIPINFO* clip, uint32_t counting) {
  if (clip != nullptr && counting <= CLS_SOURCE_NON_DROP) clip->libTrailer[1] = uint8_t(counting);
}

extern "C" uint32_t clsGetSourceCounting(const CLIPINFO* clip) {
  const uint32_t counting = clip != nullptr ? clip->libTrailer[1] : CLS_SOURCE_AS_LIST;
  return counting <= CLS_SOURCE_NON_DROP ? counting : CLS_SOURCE_AS_LIST;
}
