// The event walk of tcsFindNextClip stepped as the EDL export steps it: a
// probe copy of the walk record, stepped with fresh marks, names the
// channels of the next event; the walk record itself then steps past it.
// An event is a clip start with the clips of the same source that start with
// it on other channels; the walk visits V1..V4 and A1..A16 and, as its steps
// are written, can pass over a clip (the listing entry points do not).
#ifndef TCS_HOSTKIT_EVENT_WALK_H_
#define TCS_HOSTKIT_EVENT_WALK_H_

#include <cstdint>
#include <string>
#include <vector>

#include "tcs.h"

namespace tcs::host {

struct WalkEvent {
  uint32_t recordIn;
  uint32_t sourceIn;
  uint32_t sourceOut;
  uint32_t videoMask;  // the event's channels
  uint32_t audioMask;
  std::string name;
  std::string transition;  // of the clip on its first channel; "" for a cut
  uint32_t recordOut() const { return recordIn + (sourceOut - sourceIn); }
};

// Every event of the walk from the start of the timeline. REQUIRES: no other
// walk or clip search runs on the space meanwhile (the walk shares the
// space's scratch play clip).
std::vector<WalkEvent> WalkEvents(CTimeCodeSpace* space);

}  // namespace tcs::host

#endif  // TCS_HOSTKIT_EVENT_WALK_H_
