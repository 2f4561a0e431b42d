// The pull side of the line exchange: the translator asks for one EDL line at
// a time, each describing one play clip on one channel (one channel bit set).
// The cursor lives in the space (edlLineTime, edlLineChannel and the first
// line's key edlFirstLineTime/edlFirstLineChannel).
//
// The first line after a reset (a nonzero `first`, a cursor holding the
// not-found value, or a space that has never given a line) comes from the
// cursor scan: of the channels from the cursor's channel up whose play clip
// covers the cursor's frame, the one that started earliest, on equal starts
// the higher channel; when none covers it, the cursor's own channel's play
// clip at or after that frame. When even that finds nothing, the first line
// is the first play clip in line order (below) instead; the scratch play
// clip, which then still holds an earlier search's result, is never read.
//
// Every later call gives the next play clip in line order: by start, and on
// equal starts by channel upwards, over all 96 channels, starting from the
// top of the timeline and passing over the first line, which was given
// already (the scan's choice need not be the first in that order: with clips
// starting together on channels 0 and 32 it is channel 32's). While the space
// is not edited every play clip is given exactly once.
//
// When no play clip is left the line is cleared, with recordIn and recordOut
// both 0x80000001 and no channel bit: the end. The cursor then holds the
// not-found value, so the call after the end starts over.
//
// Thread safety: each call holds the space's lock throughout, so the cursor
// and the space's scratch play clip (currentPlayClip) are read and written
// under it. The scratch play clip is shared with the clip search, which may
// overwrite it between two calls: the host asks for lines of one space from
// one thread, as it searches.
#ifndef TCS_EDL_EDL_LINE_CURSOR_H_
#define TCS_EDL_EDL_LINE_CURSOR_H_

#include <cstdint>

#include "record/edl_line.h"

class CTimeCodeSpace;

namespace tcs {

// recordIn and recordOut of the line that says no play clip is left.
inline constexpr uint32_t kNoMoreLines = 0x80000001u;

// Fills `line` as above. Every field is cleared first except the five text
// pointers; the clipName buffer receives at most 9 bytes, the name buffer at
// most 4096, and the other three buffers are left alone.
void GetEdlLine(CTimeCodeSpace& space, EDLLINE& line, uint32_t first);

}  // namespace tcs

#endif  // TCS_EDL_EDL_LINE_CURSOR_H_
