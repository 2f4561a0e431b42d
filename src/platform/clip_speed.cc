#include "platform/clip_speed.h"

#include "platform/lib_bytes.h"

namespace {

using tcs::platform::GetU32;
using tcs::platform::PutU32;

constexpr uint8_t kSpeedSet = 1;

}  // namespace

extern "C" void clsSetClipSpeed(CLIPINFO* clip, int32_t milliFps, uint32_t entry) {
  if (clip == nullptr) return;
  PutU32(clip->libReserved, uint32_t(milliFps));
  PutU32(clip->libReserved + 4, entry);
  clip->libTrailer[0] = kSpeedSet;
}

extern "C" uint32_t clsPlayedSource(const CLIPINFO* clip, uint32_t source, uint32_t fps) {
  int32_t milli = 0;
  uint32_t entry = 0;
  if (fps == 0 || clsGetClipSpeed(clip, &milli, &entry) == 0) return source;
  const int64_t since = int64_t(source) - int64_t(entry);
  const int64_t scaled = since * milli;
  const int64_t per = int64_t(fps) * 1000;
  // Rounded down, also for reverse play (a negative product).
  const int64_t frames = scaled >= 0 ? scaled / per : -((-scaled + per - 1) / per);
  const int64_t played = int64_t(entry) + frames;
  return played < 0 ? 0 : played > int64_t(UINT32_MAX) ? UINT32_MAX : uint32_t(played);
}

extern "C" int clsGetClipSpeed(const CLIPINFO* clip, int32_t* milliFps, uint32_t* entry) {
  if (clip == nullptr || clip->libTrailer[0] != kSpeedSet) return 0;
  if (milliFps != nullptr) *milliFps = int32_t(GetU32(clip->libReserved));
  if (entry != nullptr) *entry = GetU32(clip->libReserved + 4);
  return 1;
}
