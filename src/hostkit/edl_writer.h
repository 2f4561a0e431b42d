// The CMX 3600 text of a whole space, read through the listing entry points:
// every clip of every channel once. Clips that agree in everything an event
// line and its notes carry (record start and length, source in and out,
// reel, name, clip name, comment, transition, speed) and play on different
// channels share one event; any other two clips are two events. Unlike the
// export walk of tcsWriteEdl, nothing is passed over. Where a moved clip
// lies over the next one on its channel, each is written with the frames it
// plays (up to the next start), which is what reading the list back plays.
// A speed the clip library keeps with a clip goes on an M2 line (entering at
// the source frame the clip starts on, where an M2 line can say it); aux
// channels on the codec's TCS AUX note. For hosts (C entry points only).
//
// Thread safety: each listing call takes the space's lock on its own, so no
// other thread may edit the space while the text is built (an edit between
// two calls would be half seen, and the texts the rows borrow could go).
#ifndef TCS_HOSTKIT_EDL_WRITER_H_
#define TCS_HOSTKIT_EDL_WRITER_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "tcs.h"
#include "timecode/frame_rate.h"

namespace tcs::host {

struct EdlText {
  std::string_view title;
  timecode::FrameRate rate;  // the counting of every timecode written
};

// Appends the header and every event of `space` to `out`, events in record
// order. TCS_OK, or the status of the listing call that failed (nothing is
// appended then).
uint32_t AppendSpaceEdl(CTimeCodeSpace* space, const EdlText& how, std::string& out);

}  // namespace tcs::host

#endif  // TCS_HOSTKIT_EDL_WRITER_H_
