// Helpers of the interchange tests: a space's clips as plain values, listed
// through the C entry points, and clips laid as an EDL import lays them.
#ifndef TCS_TESTS_OTIO_OTIO_SPACE_H_
#define TCS_TESTS_OTIO_OTIO_SPACE_H_

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tcs.h"

namespace tcs_test {

struct ClipRow {
  uint32_t channel = 0;
  uint32_t start = 0;
  uint32_t length = 0;
  uint32_t sourceIn = 0;
  uint32_t effectCode = 0;      // 0 unless there is a transition
  uint32_t effectDuration = 0;  // 0 for a cut
  std::string name, reel, comment, clipName;
  bool speed = false;  // the clip library's speed (clsSetClipSpeed)
  int32_t milliFps = 0;
  uint32_t speedEntry = 0;
  friend bool operator==(const ClipRow&, const ClipRow&) = default;
  friend void PrintTo(const ClipRow& c, std::ostream* os) {
    *os << "ch" << c.channel << " [" << c.start << ", +" << c.length << ") src " << c.sourceIn
        << " fx " << c.effectCode << "/" << c.effectDuration << " \"" << c.name << "\" reel \""
        << c.reel << "\" comment \"" << c.comment << "\" short \"" << c.clipName << "\"";
    if (c.speed) *os << " speed " << c.milliFps << " from " << c.speedEntry;
  }
};

// Every clip of every channel, by channel and start.
std::vector<ClipRow> AllClips(CTimeCodeSpace* space);

// Lays one clip on one video or audio channel through _tcsAddEdlLine.
void LayClip(CTimeCodeSpace* space, const ClipRow& clip);

}  // namespace tcs_test

#endif  // TCS_TESTS_OTIO_OTIO_SPACE_H_
