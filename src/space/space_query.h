// The translation behind tcsTranslate: the source position at a record
// timecode, with the search of a mode word as the fallback in a gap.
#ifndef TCS_SPACE_SPACE_QUERY_H_
#define TCS_SPACE_SPACE_QUERY_H_

#include <cstdint>

class CClip;
class CTimeCodeSpace;

namespace tcs {

// The source position playing at `t` on `channel`, or kNotFound. With bit 0
// of `mode` set, a gap falls back to FindPlayClip(mode), whose value is then
// the answer. `found` receives the record of the play clip answered, or null.
// Both lookups run under one hold of the space's lock.
uint32_t TranslateOrFind(CTimeCodeSpace& space, uint32_t mode, uint32_t t, uint32_t channel,
                         CClip*& found);

}  // namespace tcs

#endif  // TCS_SPACE_SPACE_QUERY_H_
