/* How a clip's source timecodes were counted in the EDL it came from, where
 * a list's FCM: lines count them otherwise than its record timecodes: as
 * the list (0, also every clip not read from a list), drop-frame (1) or
 * non-drop (2). The whole-space EDL writer writes them so again. Kept in the
 * clip library's own bytes of CLIPINFO (libTrailer[1]), copied with the
 * record through every edit. Plain C; each call touches only the record it
 * is given. */
#ifndef TCS_PLATFORM_CLIP_COUNTING_H_
#define TCS_PLATFORM_CLIP_COUNTING_H_

#include <stdint.h>

#include "record/clip_info.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CLS_SOURCE_AS_LIST 0u
#define CLS_SOURCE_DROP_FRAME 1u
#define CLS_SOURCE_NON_DROP 2u

/* A counting past CLS_SOURCE_NON_DROP, or a null clip, changes nothing. */
TCS_EXPORT void clsSetSourceCounting(CLIPINFO* clip, uint32_t counting);
/* CLS_SOURCE_AS_LIST for a null clip. */
TCS_EXPORT uint32_t clsGetSourceCounting(const CLIPINFO* clip);

#ifdef __cplusplus
}  /* extern "C" */
#endif

#endif  /* TCS_PLATFORM_CLIP_COUNTING_H_ */
