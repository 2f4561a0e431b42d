#include "cmx3600/rate_scan.h"

#include <algorithm>

#include "cmx3600/line.h"

namespace tcs::cmx3600 {

RateScan ScanRate(std::string_view text) {
  RateScanner scanner;
  ForEachLine(text, [&](std::string_view raw) {
    const LineClass line = ClassifyLine(raw);
    EventFields fields;
    const bool parsed = line.kind == LineKind::kEvent && ParseEventLine(line.body, fields) == nullptr;
    scanner.Add(line, parsed ? &fields : nullptr);
    return true;
  });
  return scanner.Result();
}

void RateScanner::Add(const LineClass& line, const EventFields* parsed) {
  if (line.kind == LineKind::kFrameCode && scan_.eventLines == 0 && !afterRateNote_) {
    listDrop_ = StartsWithUpper(line.body, "DROP");
  } else if (line.kind == LineKind::kNote) {
    std::string_view value;
    if (LabelOf(line.body, value) == NoteLabel::kOwnRate) {
      // FCM: lines after it count the source timecodes only.
      afterRateNote_ = true;
      uint32_t fps = 0;
      for (char c : value) {
        if (c < '0' || c > '9' || fps > timecode::kMaxFps) break;
        fps = fps * 10 + uint32_t(c - '0');
      }
      if (fps != 0 && fps <= timecode::kMaxFps) ownFps_ = fps;
    }
  } else if (parsed != nullptr && !parsed->frameCounts) {
    ++scan_.eventLines;
    for (int i = 0; i < 4; ++i) scan_.highestFrame = std::max(scan_.highestFrame, parsed->times[i].frames);
    semicolon_ |= parsed->times[2].semicolon || parsed->times[3].semicolon;
  }
}

RateScan RateScanner::Result() const {
  RateScan scan = scan_;
  if (ownFps_ != 0) {
    scan.source = RateSource::kOwnNote;
    scan.rate = timecode::MakeFrameRate(ownFps_, listDrop_);
  } else if (listDrop_ || semicolon_) {
    scan.source = RateSource::kDropFrame;
    scan.rate = timecode::MakeFrameRate(scan.highestFrame > 29 ? 60 : 30, true);
  } else if (scan.eventLines != 0) {
    scan.source = RateSource::kFrameFields;
    const uint32_t f = scan.highestFrame;
    const uint32_t fps = f <= 23 ? 24 : f == 24 ? 25 : f <= 29 ? 30 : f <= 59 ? 60 : f + 1;
    scan.rate = timecode::MakeFrameRate(std::min(fps, timecode::kMaxFps), false);
  }
  return scan;
}

std::string RateReason(const RateScan& scan) {
  switch (scan.source) {
    case RateSource::kOwnNote:
      return "its * TCS FRAME RATE: note";
    case RateSource::kDropFrame:
      return scan.rate.fps == 60 ? "FCM: DROP FRAME, frame fields past 29" : "FCM: DROP FRAME";
    case RateSource::kFrameFields:
      return "frame fields up to " + std::to_string(scan.highestFrame);
    case RateSource::kNoEvents:
      break;
  }
  return "no event line to go by";
}

}  // namespace tcs::cmx3600
