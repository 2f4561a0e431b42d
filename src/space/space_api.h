// Entry points of the time code space. Plain C: handles are opaque.
//
// Conventions: every entry point returns an unsigned 32-bit value, 0 for
// success or a status of tcs_status.h, logged through the error log just
// before it is returned; query results (timecodes, 0x80000001) are not
// statuses and are never logged. The host calls tcsOpen before anything else
// on a space and tcsClose once for every tcsOpen, and serialises the two with
// every other call on that space.
#ifndef TCS_SPACE_SPACE_API_H_
#define TCS_SPACE_SPACE_API_H_

#include "platform/qvos.h"
#include "space/clip_callback.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// The registry of open spaces. The library guards it with a lock of its own
// that the host cannot take: a host may read the count only while it is
// neither opening nor closing a space itself on another thread.
TCS_EXPORT extern QVLIST dlTCS;

// Shares the registered space `handle` (its count goes up, `path` is ignored),
// or opens a new space bound to `path` (null: no file). `reserved` is ignored.
// A path of 4096 characters or more does not fit: the result is null and
// nothing is opened, rather than a space bound to a cut, wrong file name.
TCS_EXPORT CTimeCodeSpace* tcsOpen(CTimeCodeSpace* handle, void* reserved, const char* path);
// The last close empties the space (one delete notification per record) and
// deletes it. 0, or TCS_ERR_BAD_HANDLE for a handle that is not open.
TCS_EXPORT unsigned int tcsClose(CTimeCodeSpace* handle);

TCS_EXPORT unsigned int tcsSetAddCallback(CTimeCodeSpace* space, void* context,
                                          TcsClipCallback callback);
TCS_EXPORT unsigned int tcsSetDelCallback(CTimeCodeSpace* space, void* context,
                                          TcsClipCallback callback);
// Registers nothing: no operation issues a change notification. Always 0.
TCS_EXPORT unsigned int tcsSetChangeCallback(CTimeCodeSpace* space, void* context,
                                             TcsClipCallback callback);

// Adds a copy of `clip` on `channel`, overwriting what lies in its range. The
// caller's record is corrected in place first (an over-long length, a wrapped
// source end).
TCS_EXPORT unsigned int tcsAddClip(CTimeCodeSpace* space, CClip* clip, unsigned int channel);
// Replaces the clip of the last successful search by `clip` (same channel).
TCS_EXPORT unsigned int tcsSetCurClip(CTimeCodeSpace* space, CClip* clip);
// Copies the record of the last successful search into `clip`.
TCS_EXPORT unsigned int tcsGetCurClip(CTimeCodeSpace* space, CClip* clip);
TCS_EXPORT unsigned int tcsClipActive(CTimeCodeSpace* space);
// The source position playing at `timecode`, or 0x80000001; with bit 0 of
// mode set, a gap falls back to the search of `mode`. *clipOut receives the
// record found, or null.
TCS_EXPORT unsigned int tcsTranslate(CTimeCodeSpace* space, unsigned int mode,
                                     unsigned int timecode, CClip** clipOut,
                                     unsigned int channel);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_SPACE_SPACE_API_H_
