// The current clip: the record of the last successful clip search, read and
// replaced through tcsGetCurClip / tcsSetCurClip.
#ifndef TCS_SPACE_CURRENT_CLIP_H_
#define TCS_SPACE_CURRENT_CLIP_H_

#include <cstdint>

class CClip;
class CTimeCodeSpace;

namespace tcs {

// Corrects an added record in place: an over-long (negative) length is
// turned into the length it stands for, and a wrapped source end is rebuilt.
void CorrectAddedClip(CClip& record);
uint32_t SetCurrentClip(CTimeCodeSpace& space, CClip& replacement);
uint32_t GetCurrentClip(CTimeCodeSpace& space, CClip& out);

}  // namespace tcs

#endif  // TCS_SPACE_CURRENT_CLIP_H_
