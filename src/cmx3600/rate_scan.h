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

#include "cmx3600/line.h"
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

// Folds the lines of a list, in file order, into its RateScan: ScanRate's
// work for a reader that classifies and parses each line itself.
class RateScanner {
 public:
  // `parsed`: the fields of an event line that parsed; null for any other
  // line and for an event line that did not.
  void Add(const LineClass& line, const EventFields* parsed);
  RateScan Result() const;

 private:
  RateScan scan_;
  uint32_t ownFps_ = 0;
  bool listDrop_ = false;  // the FCM: line above the first event and the rate note
  bool afterRateNote_ = false;
  bool semicolon_ = false;
};

// Why: "its * TCS FRAME RATE: note", "FCM: DROP FRAME", "frame fields up to 24".
std::string RateReason(const RateScan& scan);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_RATE_SCAN_H_
