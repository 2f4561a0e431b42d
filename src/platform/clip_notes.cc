#include "platform/clip_notes.h"

#include "platform/lib_bytes.h"

extern "C" void clsSetBareNotes(CLIPINFO* clip, uint32_t lines) {
  if (clip != nullptr) tcs::platform::PutU32(clip->libTrailer + 4, lines);
}

extern "C" uint32_t clsGetBareNotes(const CLIPINFO* clip) {
  return clip != nullptr ? tcs::platform::GetU32(clip->libTrailer + 4) : 0;
}
