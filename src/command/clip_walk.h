// The clip walk: steps a space from event to event in record-time order over
// the searched channels. An event is the earliest clip start at or after the
// cursor, together with every clip on another searched channel that starts
// at the same frame with the same source (length, source in and out, name).
//
// The walk has no state of its own: everything it keeps between calls is in
// the caller's TCSCMD (position, inPoint, outPoint, the channel marks in
// videoMask/audioMask). A record with position 0xFFFFFFFF has ended.
//
// Thread safety: FindNextClip holds the space's (recursive) lock for the
// whole step, so edits from other threads fall between steps, never inside
// one. The record belongs to the caller.
//
// Every searched channel holds at most one clip per start, so a channel is
// reported at most once at a cursor position; a channel marked on entry is
// passed over until the cursor moves on by a restart, which clears the marks.
//
// CAVEATS: a sweep that finds an event past the cursor but before the end
// of the event last reported moves the cursor without a restart, so the
// marks of the earlier position are carried along. A carried channel is
// still passed over, and a clip of its own that starts before the next
// restart is never reported. With X [0, 10) and X2 [10, 20) on channel 0,
// Y [5, 100) on channel 1 and Z [10, 30) on channel 2, the walk reports X
// at 0, Y at 5 (channel 0 carried), Z at 10 (channel 0 carried: X2 is
// passed over), then restarts at 11, where X2 lies behind the cursor, and
// ends.
// A timeline on which no clip starts inside another searched channel's clip
// never moves the cursor that way, and its walk reports every clip.
#ifndef TCS_COMMAND_CLIP_WALK_H_
#define TCS_COMMAND_CLIP_WALK_H_

#include <cstdint>

#include "command/tcs_cmd.h"

class CClip;
class CTimeCodeSpace;

namespace tcs {

// One step of the walk: the start of the event found, or kNotFound at the
// end. `clip`, when not null, receives a copy of the event's record. With
// fresh_marks the marks returned hold exactly the event's channels.
uint32_t FindNextClip(CTimeCodeSpace& space, TCSCMD& record, bool fresh_marks, CClip* clip);

// The end of the walk: cursor, in and out 0xFFFFFFFF, marks cleared.
// flags, selector and text keep what they held. Returns kNotFound.
uint32_t EndWalk(TCSCMD& record);

}  // namespace tcs

#endif  // TCS_COMMAND_CLIP_WALK_H_
