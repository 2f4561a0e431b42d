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
  found = nullptr;
  const CTCLookup* lookup = space.LookupOf(channel);
  if (lookup == nullptr) return kNotFound;
  // Only the record of the play clip answered leaves here, so the queries
  // hand back positions: no 4 KB play clip is copied.
  CTCLookup::Position at;
  uint32_t result = lookup->Translate(t, at);
  if ((mode & 1u) != 0 && result == kNotFound) result = lookup->FindPlayClip(mode, t, at);
  if (result != kNotFound) found = at->clip;
  return result;
}

}  // namespace tcs
