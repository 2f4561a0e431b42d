// Exported entry points of the clip search and the clip walk.
#include "command/clip_search.h"
#include "command/clip_walk.h"
#include "command/command_api.h"
#include "record/timecode.h"
#include "platform/errlog.h"
#include "space/registry.h"
#include "tcs_status.h"

extern "C" TCS_EXPORT unsigned int tcsFindClip(CTimeCodeSpace* space, unsigned int mode,
                                               unsigned int timecode, CClip** clipOut,
                                               unsigned int channel) {
  if (!tcs::IsOpenSpace(space)) {  // null, or closed: never dereferenced
    ErrMsgOut("TCSpace", TCS_ERR_BAD_HANDLE, 0, 0);
    return tcs::kNotFound;
  }
  CClip* found = nullptr;
  const uint32_t result = tcs::FindClip(*space, mode, timecode, found, channel);
  // The host always passes somewhere to put the record; a null one still
  // gets the search (and the current clip), just no record back.
  if (clipOut != nullptr) *clipOut = found;
  return result;
}

// A null space or record answers the end of the walk, unlogged: an answer,
// as tcsSetMode gives for a null space, not an error. So does a space that
// is not open, which is never dereferenced.
extern "C" TCS_EXPORT unsigned int tcsFindNextClip(CTimeCodeSpace* space, TCSCMD* record,
                                                   int freshMarks, CClip* clip) {
  if (record == nullptr) return tcs::kNotFound;
  if (!tcs::IsOpenSpace(space)) return tcs::EndWalk(*record);
  // Only the low byte of the flag counts.
  const bool fresh_marks = (freshMarks & 0xFF) != 0;
  return tcs::FindNextClip(*space, *record, fresh_marks, clip);
}
