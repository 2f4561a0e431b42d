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
// one. The other functions REQUIRE that lock. The record belongs to the
// caller.
//
// Every searched channel holds at most one clip per start, so a channel is
// reported at most once at a cursor position; a channel marked on entry is
// passed over until the cursor moves on by a restart, which clears the marks.
//
// CAVEATS: a sweep that finds an event past the cursor but before the limit
// moves the cursor without a restart, so the marks of the earlier position
// are carried along. A carried channel is still passed over, and a clip of
// its own that starts before the next restart is never reported. With X
// [0, 10) and X2 [10, 20) on channel 0, Y [5, 100) on channel 1 and Z
// [10, 30) on channel 2, the walk reports X at 0, Y at 5 (channel 0
// carried), Z at 10 (channel 0 carried: X2 is passed over), then restarts
// at 11, where X2 lies behind the cursor, and ends.
// A timeline on which no clip starts inside another searched channel's clip
// never moves the cursor that way, and its walk reports every clip.
#ifndef TCS_COMMAND_CLIP_WALK_H_
#define TCS_COMMAND_CLIP_WALK_H_

#include <array>
#include <cstdint>

#include "command/tcs_cmd.h"

class CClip;
class CTimeCodeSpace;

namespace tcs {

// The searched channels in scan order: video 0..3, then audio 32..47.
inline constexpr std::array<uint32_t, 20> kWalkChannels = {
    0, 1, 2, 3, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47};

// The walk's search mode unless the record names one: the start of the play
// clip covering the cursor, else of the first one after it.
inline constexpr uint32_t kWalkMode = 24;

// Flags ORed into the record when an event's fields are filled in:
// TCSF_TEXT | TCSF_OUT | TCSF_IN | TCSF_AT | TCSF_POS.
inline constexpr uint32_t kEventFlags = 0x2560;
static_assert(kEventFlags == (TCSF_TEXT | TCSF_OUT | TCSF_IN | TCSF_AT | TCSF_POS));

// TCSF_AT alone among TCSF_AT, TCSF_IN, TCSF_OUT asks for the cover search.
inline constexpr uint32_t kCoverFlagsMask = TCSF_AT | TCSF_IN | TCSF_OUT;

inline constexpr uint32_t kNoChannel = 0xFFFFFFFFu;

// What one call reads from the record on entry; a restart updates it.
struct WalkSetUp {
  uint32_t mode;
  uint32_t cursor;       // P
  uint32_t video_marks;  // V: channels 0..3 already reported at the cursor
  uint32_t audio_marks;  // A: bit k, channel 32 + k
  uint32_t limit;        // L: a candidate at or past it means a restart
  bool cover;
};

// The outcome of a sweep: the best candidate value and its channel.
struct WalkChoice {
  uint32_t best = 0xFFFFFFFFu;
  uint32_t channel = kNoChannel;
};

WalkSetUp SetUpWalk(const TCSCMD& record);
// Asks every searched channel for its candidate; no record field changes.
WalkChoice Sweep(CTimeCodeSpace& space, const WalkSetUp& walk);
// Moves the cursor one frame on and clears the marks, in record and walk.
void RestartWalk(TCSCMD& record, WalkSetUp& walk);
// Fetches the event chosen by a sweep, marks its channel, runs the event
// pass. Returns the event's start, or kNotFound (having ended the walk).
uint32_t FoundEvent(CTimeCodeSpace& space, TCSCMD& record, const WalkSetUp& walk,
                    const WalkChoice& choice, bool fresh_marks, CClip* clip);
// Adds every unmarked channel whose clip at the event's start shares the
// found clip's source, filling the event's fields for each.
void EventPass(CTimeCodeSpace& space, TCSCMD& record, const WalkSetUp& walk,
               const CClip& found);
// The end of the walk: cursor, in and out 0xFFFFFFFF, marks cleared.
// flags, selector and text keep what they held. Returns kNotFound.
uint32_t EndWalk(TCSCMD& record);

// One step of the walk: the start of the event found, or kNotFound at the
// end. `clip`, when not null, receives a copy of the event's record. With
// fresh_marks the marks returned hold exactly the event's channels.
uint32_t FindNextClip(CTimeCodeSpace& space, TCSCMD& record, bool fresh_marks, CClip* clip);

}  // namespace tcs

#endif  // TCS_COMMAND_CLIP_WALK_H_
