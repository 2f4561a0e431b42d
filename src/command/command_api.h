// Entry points of the command interface: the clip search, the clip walk and
// the generic command entry point. Plain C.
#ifndef TCS_COMMAND_COMMAND_API_H_
#define TCS_COMMAND_COMMAND_API_H_

#include "command/tcs_cmd.h"
#include "space/clip_callback.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// The play clip at or near `timecode` on `channel` (96 and above: 0), as the
// search `mode` says; bit 0 of mode also searches again from timecode 0 when
// nothing is found. *clipOut receives its record, or null. Returns the value
// the mode selects, or 0x80000001. Sets the space's current clip.
TCS_EXPORT unsigned int tcsFindClip(CTimeCodeSpace* space, unsigned int mode,
                                    unsigned int timecode, CClip** clipOut,
                                    unsigned int channel);
// Steps the clip walk kept in `record`: the next event (clips of one start and
// one source over the searched channels). Returns its record start, or
// 0x80000001 at the end of the walk. `clip`, when not null, receives a copy of
// the event's clip record.
TCS_EXPORT unsigned int tcsFindNextClip(CTimeCodeSpace* space, TCSCMD* record,
                                        int freshMarks, CClip* clip);
// The generic entry point of the host's control layer.
TCS_EXPORT unsigned int tcsSetMode(CTimeCodeSpace* space, TCSCMD* record);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_COMMAND_COMMAND_API_H_
