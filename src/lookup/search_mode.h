// The mode word of the play-clip search (CTCLookup::FindPlayClip), by field:
//   mode & 0x70   which number about the chosen play clip is returned
//   mode & 0x10F  what a gap yields: nothing, the previous, the next or the
//                 nearest play clip
//   mode & 0x3    permits the nearest search
// Callers compose a mode from one selector and one gap policy.
#ifndef TCS_LOOKUP_SEARCH_MODE_H_
#define TCS_LOOKUP_SEARCH_MODE_H_

#include <cstdint>

namespace tcs {

inline constexpr uint32_t kSelectorMask = 0x70;
inline constexpr uint32_t kGapPolicyMask = 0x10F;
inline constexpr uint32_t kNearestAllowedMask = 0x3;

// Selectors.
inline constexpr uint32_t kSelectStart = 0x10;       // the play clip's start
inline constexpr uint32_t kSelectTimecode = 0x40;    // the timecode searched for
// Gap policies.
inline constexpr uint32_t kGapTakesNext = 0x08;      // the first play clip after t

}  // namespace tcs

#endif  // TCS_LOOKUP_SEARCH_MODE_H_
