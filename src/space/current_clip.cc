#include "space/current_clip.h"

#include "record/timecode.h"
#include "platform/clip.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "space/status_log.h"
#include "tcs_status.h"

namespace tcs {
namespace {

// Lengths and source spans in this band are negative numbers in disguise.
bool IsNegativeSpan(uint32_t span) { return span >= kTimelineEnd && span <= 0xFFFFFFFEu; }

}  // namespace

void CorrectAddedClip(CClip& record) {
  if (IsNegativeSpan(record.length)) {
    record.start = ClampStart(record.start);
    record.length = LengthRule(record.start, 0u - record.length);
  }
  if (IsNegativeSpan(record.sourceEnd - record.sourceOrigin)) {
    record.sourceEnd = record.sourceOrigin + record.sourceIn - record.sourceOut;
  }
}

uint32_t SetCurrentClip(CTimeCodeSpace& space, CClip& replacement) {
  // Held across the exchange so that no other thread's edit can take the
  // current record away between the steps.
  SpaceLock guard(space);
  if (space.clipActive == 0 || space.currentPlayClip.clip == nullptr) {
    return LogStatus(TCS_ERR_NO_CURRENT_CLIP);
  }
  CClip* current = space.currentPlayClip.clip;
  const uint64_t end = uint64_t{replacement.start} + replacement.length;
  if (end > 0xFFFFFFFFu || replacement.sourceOut < replacement.sourceIn ||
      replacement.channel != current->channel) {
    return LogStatus(TCS_ERR_BAD_ARGUMENTS);
  }
  // The current record stays listed (without a play clip) and
  // currentPlayClip still names it.
  space.RemoveClip(space.currentPlayClip);
  if (space.AddClip(0, &replacement, replacement.channel) == nullptr) {
    // Put the current clip back, as a further listed copy of its record,
    // unless a notification re-entering the space has deleted it meanwhile.
    if (space.currentPlayClip.clip == current) space.AddClip(0, current, current->channel);
    return LogStatus(TCS_ERR_ADD_REFUSED);
  }
  return TCS_OK;
}

uint32_t GetCurrentClip(CTimeCodeSpace& space, CClip& out) {
  SpaceLock guard(space);
  if (space.clipActive == 0 || space.currentPlayClip.clip == nullptr) {
    return LogStatus(TCS_ERR_NO_CURRENT_CLIP);
  }
  out.SetClip(space.currentPlayClip.clip);
  return TCS_OK;
}

}  // namespace tcs
