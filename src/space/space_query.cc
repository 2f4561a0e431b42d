// The space's locked queries.
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
