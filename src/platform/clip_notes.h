/* How the notes of a clip's comment were written in the EDL it came from:
 * for each of the comment's first 32 lines (lines joined by '\n'), a bit
 * set where the line stood as a bare note ("* text") rather than under the
 * COMMENT: label ("* COMMENT: text"). The whole-space EDL writer gives each
 * line back in its own form, where a bare note reads back as the same line.
 * Kept in the clip library's own bytes of CLIPINFO (libTrailer[4..7]),
 * copied with the record through every edit; a record whose comment a host
 * sets again (CClip::SetComment) has all its notes under the label. Plain
 * C; each call touches only the record it is given. */
#ifndef TCS_PLATFORM_CLIP_NOTES_H_
#define TCS_PLATFORM_CLIP_NOTES_H_

#include <stdint.h>

#include "record/clip_info.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bit n for line n of the comment (from 0). A null clip is left alone. */
TCS_EXPORT void clsSetBareNotes(CLIPINFO* clip, uint32_t lines);
/* 0 for a null clip. */
TCS_EXPORT uint32_t clsGetBareNotes(const CLIPINFO* clip);

#ifdef __cplusplus
}  /* extern "C" */
#endif

#endif  /* TCS_PLATFORM_CLIP_NOTES_H_ */
