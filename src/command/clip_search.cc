#include "command/clip_search.h"

#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {

uint32_t FindClip(CTimeCodeSpace& space, uint32_t mode, uint32_t timecode, CClip*& found,
                  uint32_t channel) {
  SpaceLock guard(space);  // the scratch play clip and the flag are the space's
  uint32_t result = space.FindPlayClip(mode, timecode, space.currentPlayClip, channel);
  if ((mode & kSearchRetryFromStart) != 0 && result == kNotFound) {
    result = space.FindPlayClip(mode, 0, space.currentPlayClip, channel);
  }
  if (result == kNotFound) {
    found = nullptr;
    space.clipActive = 0;
    return kNotFound;
  }
  found = space.currentPlayClip.clip;
  // Nothing else in the library marks the current clip active, so a search
  // that finds a record does: tcsGetCurClip and tcsSetCurClip then work on
  // it. A play clip without a record leaves nothing to get or replace, so
  // the flag is cleared then, as for not found.
  space.clipActive = found != nullptr ? 1 : 0;
  return result;
}

}  // namespace tcs
