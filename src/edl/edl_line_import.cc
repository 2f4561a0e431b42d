#include "edl/edl_line_import.h"

#include "platform/clip.h"
#include "record/channel_set.h"
#include "record/timecode.h"
#include "space/registry.h"
#include "space/space_api.h"
#include "space/status_log.h"
#include "tcs_status.h"

namespace tcs {
namespace {


// The record start is recordIn, clamped to the last start. The length is the
// source span, which may wrap (a source out before the source in gives a huge
// length); the length rule only cuts spans that end past the timeline without
// wrapping, so such a length is kept as it is, as the add keeps it too.
void PlaceRecord(CClip& record, const EDLLINE& line) {
  record.start = ClampStart(line.recordIn);
  record.length = LengthRule(record.start, record.sourceOut - record.sourceIn);
}

}  // namespace

uint32_t AddEdlLine(CTimeCodeSpace* space, const EDLLINE& line, uint64_t tag) {
  CClip record;
  record.ClearClip();
  record.SetClip(&line.clip);
  PlaceRecord(record, line);
  record.channel = 0;
  record.hostTag = tag;
  // No text: an imported line carries the standard name of its code, or
  // none for a cut.
  record.SetEffect(line.effectCode, nullptr, line.effectDuration);

  // The record is built before the handle is looked at, so a bad handle
  // costs the same work and leaves the same nothing behind.
  if (!IsOpenSpace(space)) return LogStatus(TCS_ERR_NULL_SPACE);

  // tcsAddClip may correct the record in place; the channels after it then
  // receive the corrected record. Its status is logged by the add itself.
  // The audio channels receive the record without its video mask. Aux
  // channels are not laid.
  ChannelSet(record.videoMask, record.audioMask).ForEach([&](uint32_t c) {
    if (c >= ChannelSet::kFirstAudio) record.videoMask = 0;
    tcsAddClip(space, &record, c);
  });
  return TCS_OK;
}

}  // namespace tcs
