// The space's locked queries.
#include "space/space_query.h"

#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"

uint32_t CTimeCodeSpace::Translate(uint32_t t, CPlayClip& out, uint32_t channel) {
  tcs::SpaceLock guard(*this);  // also guards the lookup's creation
  CTCLookup* lookup = LookupOf(channel);
  return lookup != nullptr ? lookup->Translate(t, out) : tcs::kNotFound;
}

uint32_t CTimeCodeSpace::FindPlayClip(uint32_t mode, uint32_t t, CPlayClip& out,
                                      uint32_t channel) {
  tcs::SpaceLock guard(*this);
  CTCLookup* lookup = LookupOf(channel);
  return lookup != nullptr ? lookup->FindPlayClip(mode, t, out) : tcs::kNotFound;
}

namespace tcs {

uint32_t TranslateOrFind(CTimeCodeSpace& space, uint32_t mode, uint32_t t, uint32_t channel,
                         CClip*& found) {
  SpaceLock guard(space);
  // Every query that finds a play clip overwrites all of pc; only then is
  // its record read.
  CPlayClip pc{CTCRange::TextUnset{}};
  uint32_t result = space.Translate(t, pc, channel);
  if ((mode & 1u) != 0 && result == kNotFound) result = space.FindPlayClip(mode, t, pc, channel);
  found = result == kNotFound ? nullptr : pc.clip;
  return result;
}

}  // namespace tcs
