// TCSSUB_CHANGESTAMP: the host's poll of the space's change stamp, and its
// acknowledgement.
//
// Both hold the space's lock around their reads and writes of the stamps, so
// a poll's look-then-store is not interleaved with a property set, or with an
// edit that stamps under the lock. (The stamps are atomic; some edits stamp
// before they take the lock, and a poll may then see either value.)
#ifndef TCS_COMMAND_CHANGE_STAMP_H_
#define TCS_COMMAND_CHANGE_STAMP_H_

#include <cstdint>

#include "command/tcs_cmd.h"

class CTimeCodeSpace;

namespace tcs {

// Returns changeStamp. Looks at the space's file at most once per 10000 ms of
// checkStamp; when the file's time differs from the one the space recorded,
// moves changeStamp to the time of this look and sets inPoint to 1 (else 0).
// The recorded file time is left alone, so later looks report it again.
uint32_t PollChangeStamp(CTimeCodeSpace& space, TCSCMD& record);
// Sets both stamps to `position` and records the file's current time;
// returns the new changeStamp.
uint32_t SetChangeStamp(CTimeCodeSpace& space, const TCSCMD& record);

}  // namespace tcs

#endif  // TCS_COMMAND_CHANGE_STAMP_H_
