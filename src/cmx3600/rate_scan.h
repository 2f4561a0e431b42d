// The frame rate a CMX 3600 list counts at, found from its own text (the
// lists say it only where they were written by this codec): this codec's own
// rate note; else FCM: DROP FRAME above the first event (or ';' in a record
// timecode) gives 29.97 drop-frame, 59.94 where a frame field passes 29; else
// the highest frame field bounds it: up to 23 gives 24, 24 gives 25, up to 29
// gives 30, up to 59 gives 60. The one scan of a list's header and frame
// fields; pure, safe from any thread.
#ifndef TCS_CMX3600_RATE_SCAN_H_
#define TCS_CMX3600_RATE_SCAN_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "timecode/frame_rate.h"

namespace tcs::cmx3600 {

enum class RateSource {
  kOwnNote,      // * TCS FRAME RATE:
  kDropFrame,    // FCM: DROP FRAME, or ';' timecodes
  kFrameFields,  // the highest frame field
  kNoEvents,     // nothing to go by: 30
};

struct RateScan {
  timecode::FrameRate rate;
  RateSource source = RateSource::kNoEvents;
  uint32_t highestFrame = 0;  // the highest frame field of the event lines
  uint64_t eventLines = 0;    // lines that read as event lines
};

RateScan ScanRate(std::string_view text);

// Why: "its * TCS FRAME RATE: note", "FCM: DROP FRAME", "frame fields up to 24".
std::string RateReason(const RateScan& scan);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_RATE_SCAN_H_
