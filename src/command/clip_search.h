// The clip search: one channel of a space asked for the play clip at or near a
// record timecode. The space's scratch play clip (currentPlayClip) receives
// what was found, and clipActive says whether it names a record.
//
// Thread safety: the query and the writes of the scratch play clip and
// clipActive run under the space's lock. The record handed back stays valid
// only while the caller holds that lock or no other thread edits the space.
#ifndef TCS_COMMAND_CLIP_SEARCH_H_
#define TCS_COMMAND_CLIP_SEARCH_H_

#include <cstdint>

class CClip;
class CTimeCodeSpace;

namespace tcs {

// Bit 0 of a search mode: when the lookup reports not found, search again
// from timecode 0 (on top of what the bit means to the lookup itself).
inline constexpr uint32_t kSearchRetryFromStart = 0x1;

// The value `mode` selects for the play clip found on `channel` (96 and
// above: 0), or kNotFound. `found` receives the play clip's record, null when
// nothing was found or the play clip has none.
uint32_t FindClip(CTimeCodeSpace& space, uint32_t mode, uint32_t timecode, CClip*& found,
                  uint32_t channel);

}  // namespace tcs

#endif  // TCS_COMMAND_CLIP_SEARCH_H_
