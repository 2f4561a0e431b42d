// Entry points that read a whole space: which channels hold clips, how many
// a channel holds, and its clips in record order, every one once. Plus the
// channel names editors read (V1..V32, A1..A32, X1..X32). Plain C.
//
// Each takes the space's lock for the whole call, like every operation, and
// calls no host code, so nothing edits the space part-way through a call.
// Between calls the host may edit freely: a listing resumed after an edit
// lists what plays then, from the frame it is resumed at.
//
// Unlike the space operations, which read a channel of 96 or more as
// channel 0, these refuse such a channel (TCS_ERR_BAD_ARGUMENTS): a host
// that lists channel 96 has a bug, and channel 0's clips would hide it.
#ifndef TCS_SPACE_LISTING_API_H_
#define TCS_SPACE_LISTING_API_H_

#include "record/tcs_clip.h"
#include "space/clip_callback.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// The channels whose timeline holds at least one clip, as the three mask
// words of CLIPINFO (bit n of *videoMask: channel n; of *audioMask: 32 + n;
// of *auxMask: 64 + n). Statuses: TCS_ERR_BAD_HANDLE for a space that is
// not open, TCS_ERR_BAD_ARGUMENTS for a null output; outputs are written
// only on success.
TCS_EXPORT unsigned int tcsGetChannels(CTimeCodeSpace* space, unsigned int* videoMask,
                                       unsigned int* audioMask, unsigned int* auxMask);

// *count receives the number of clips on `channel`.
TCS_EXPORT unsigned int tcsGetClipCount(CTimeCodeSpace* space, unsigned int channel,
                                        unsigned int* count);

// A cursor over the clips of `channel` that play in [from, to), in record
// order: first the clip that starts at `from` or plays there (the one
// tcsTranslate finds), then each clip that starts after `from` and before
// `to`. Up to `capacity`
// of them are copied to `clips`; *count receives how many. *next receives
// the start of the first clip left out, or 0xFFFFFFFF when none is: call
// again with it as `from` to go on. So
//
//   unsigned int from = 0, n, i;
//   do {
//     if (tcsGetClips(space, ch, from, 0xFFFFFFFF, rows, 64, &n, &from)) break;
//     for (i = 0; i < n; ++i) use(&rows[i]);
//   } while (from != 0xFFFFFFFF);
//
// lists every clip of a channel once, also where clips overlap (a moved clip
// may overlap its neighbours) and where the event walk of tcsFindNextClip
// would pass one over. from == to lists nothing; `to` of 0xFFFFFFFF lists to
// the end. Starts wrap like every timecode sum, so a clip may start at
// 0xFFFFFFFF itself: it is listed once a batch has room for two rows (with a
// capacity of 1, `next` would have to name it and so end the listing).
// The rows borrow: see TCSCLIP. Statuses: TCS_ERR_BAD_HANDLE; TCS_ERR_BAD_ARGUMENTS for a channel
// of 96 or more, a null count or next, or null clips with a capacity;
// TCS_ERR_BAD_RANGE when to is before from. Outputs are written only on
// success.
TCS_EXPORT unsigned int tcsGetClips(CTimeCodeSpace* space, unsigned int channel,
                                    unsigned int from, unsigned int to, TCSCLIP* clips,
                                    unsigned int capacity, unsigned int* count,
                                    unsigned int* next);

// Describes a clip record the library handed out (a notification's record,
// tcsTranslate's, a row's `clip`) as a row: its own range, source points,
// transition, channel and CLIPINFO. The record must be one the library
// handed out and has not yet deleted: the library cannot check that. For
// hosts that cannot read CClip. TCS_ERR_BAD_ARGUMENTS for a null record or
// row.
TCS_EXPORT unsigned int tcsDescribeClip(CClip* clip, TCSCLIP* row);

// Writes the name of `channel` ("V1".."V32" for 0..31, "A1".."A32" for
// 32..63, "X1".."X32" for 64..95) into text, NUL included. Statuses:
// TCS_ERR_BAD_ARGUMENTS for a channel of 96 or more, a null text or a size
// under 4; nothing is written then.
TCS_EXPORT unsigned int tcsChannelName(unsigned int channel, char* text, unsigned int size);

// Reads channel names joined by '+' ("V1+A1+A2"; any case; or channel
// numbers 0..95) into the three mask words. TCS_ERR_BAD_ARGUMENTS for null
// pointers, an empty text or a part that names no channel; the masks are
// written only on success.
TCS_EXPORT unsigned int tcsParseChannels(const char* text, unsigned int* videoMask,
                                         unsigned int* audioMask, unsigned int* auxMask);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_SPACE_LISTING_API_H_
