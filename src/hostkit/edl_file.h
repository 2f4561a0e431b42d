// Reading an EDL's text into a space as a host does it, the one way the tcs
// tool and the Python module share: the rate from the list's own text (or
// the caller's), the translator reading the text in memory and finding the
// rate as it parses, its warnings kept as data in line order. Uses only the
// C entry points of tcs.h and the CMX 3600 codec's title scan and rate
// reasons.
#ifndef TCS_HOSTKIT_EDL_FILE_H_
#define TCS_HOSTKIT_EDL_FILE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tcs.h"
#include "timecode/frame_rate.h"

namespace tcs::host {

struct EdlWarning {
  uint32_t line;
  std::string text;
};

struct EdlRead {
  // Before the read (ScanEdlText):
  bool rateGiven = false;            // the caller's rate, not the list's
  std::optional<std::string> title;  // its TITLE: line above the first event
  // The caller's rate and reason (ScanEdlText), or, after the read, the one
  // the list's text gave and what in it gave it.
  timecode::FrameRate rate;
  std::string rateReason;
  // After it (ReadEdlText):
  uint32_t status = 0;              // edlReadTextRate's
  std::vector<EdlWarning> warnings;  // in line order
  std::optional<EdlWarning> failure;  // strict mode: the line that stopped the read
};

// The title of `text`, and the rate it is to be read at: `rate` when given
// (`given_reason` says where it came from, "--fps"), else the one the list's
// own text gives, which the read finds.
EdlRead ScanEdlText(std::string_view text, std::optional<timecode::FrameRate> rate,
                    const std::string& given_reason);
// Reads `text` into `space` (whose add notification the caller has set, if
// any) as `read` was scanned, filling in its outcome (and the rate found).
void ReadEdlText(CTimeCodeSpace* space, std::string_view text, bool strict, EdlRead& read);

// The bytes of a file; false when it cannot be read.
bool LoadFile(const std::string& path, std::string& text);

}  // namespace tcs::host

#endif  // TCS_HOSTKIT_EDL_FILE_H_
