/* The speed a clip plays its source at, as the stand-in clip library keeps
 * it in its own bytes of CLIPINFO (libReserved: the speed in thousandths of a
 * source frame per second, then the source frame it starts from, both
 * little-endian 32-bit; libTrailer[0]: 1 while a speed is set; lib_bytes.h
 * lists every use of those bytes). The space
 * copies those bytes with the record, through every edit; a clip without a
 * speed plays its source at the timeline's rate. The EDL translator sets it
 * from an M2 line. Plain C; each call touches only the record it is given. */
#ifndef TCS_PLATFORM_CLIP_SPEED_H_
#define TCS_PLATFORM_CLIP_SPEED_H_

#include <stdint.h>

#include "record/clip_info.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* milliFps: negative plays in reverse, 0 holds one frame (a freeze). */
TCS_EXPORT void clsSetClipSpeed(CLIPINFO* clip, int32_t milliFps, uint32_t entry);
/* 1 with the speed and its first source frame when one is set, else 0 (the
 * outputs untouched). Either output may be null. */
TCS_EXPORT int clsGetClipSpeed(const CLIPINFO* clip, int32_t* milliFps, uint32_t* entry);

/* The source frame the clip plays where at its timeline's rate (`fps`
 * frames per second) it would play `source`: the speed's first source frame
 * plus the frames since it, scaled by the speed over the rate and rounded
 * down. `source` itself for a clip without a speed or a null one. */
TCS_EXPORT uint32_t clsPlayedSource(const CLIPINFO* clip, uint32_t source, uint32_t fps);

#ifdef __cplusplus
}  /* extern "C" */
#endif

#endif  /* TCS_PLATFORM_CLIP_SPEED_H_ */
