// tcspace: time code spaces for playout and editing hosts. The one header a
// host or a test includes.
#ifndef TCS_H_
#define TCS_H_

#include "tcs_export.h"
#include "tcs_results.h"
#include "tcs_status.h"

#include "platform/errlog.h"
#include "platform/qvos.h"
#include "platform/vsync.h"
#include "record/clip_info.h"
#include "platform/clip_speed.h"
#include "platform/clip_slab.h"
#include "platform/clip_counting.h"
#include "platform/clip_notes.h"
#include "space/clip_callback.h"
#include "space/space_api.h"
#include "record/tcs_clip.h"
#include "space/listing_api.h"
#include "command/tcs_cmd.h"
#include "command/command_api.h"
#include "backup/backup_api.h"
#include "record/edl_line.h"
#include "platform/edl_translator.h"
#include "edl/edl_api.h"

// The library's C++ classes, for hosts that link its C++ interface. A host
// that keeps to the C entry points (as the tcs tool and the examples do)
// defines TCS_C_API_ONLY and sees none of them.
#if defined(__cplusplus) && !defined(TCS_C_API_ONLY)
#include "lookup/lookup.h"
#include "record/play_clip.h"
#include "record/tc_range.h"
#include "record/timecode.h"
#include "platform/clip.h"
#include "space/space.h"
#endif

#endif  // TCS_H_
