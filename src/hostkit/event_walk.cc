#include "event_walk.h"

#include <cstring>

#include "each_clip.h"

namespace tcs::host {

std::vector<WalkEvent> WalkEvents(CTimeCodeSpace* space) {
  std::vector<WalkEvent> events;
  TCSCMD walk;
  std::memset(&walk, 0, sizeof walk);
  walk.command = TCSCMD_GET;
  walk.subCommand = TCSSUB_NEXT;
  walk.outPoint = TCS_NO_TIMECODE;
  do {
    TCSCMD probe = walk;
    if (tcsFindNextClip(space, &probe, 1, nullptr) != TCS_NOT_FOUND) {
      WalkEvent event{probe.position, probe.inPoint, probe.outPoint, probe.videoMask,
                      probe.audioMask, reinterpret_cast<const char*>(&probe) + TCSCMD_TEXT_OFFSET,
                      ""};
      const uint32_t masks[2] = {probe.videoMask, probe.audioMask};
      for (uint32_t c = 0; c < 64; ++c) {
        if ((masks[c / 32] >> (c % 32) & 1) == 0) continue;
        if (TCSCLIP row; ClipAt(space, c, probe.position, row)) event.transition = row.effectText;
        break;
      }
      events.push_back(std::move(event));
    }
    tcsFindNextClip(space, &walk, 0, nullptr);
  } while (walk.position != TCS_NO_TIMECODE);
  return events;
}

}  // namespace tcs::host
