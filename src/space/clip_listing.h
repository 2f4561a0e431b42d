// Reading a whole space: which channels hold play clips, how many, and the
// play clips of a channel in record order, as TCSCLIP rows. Unlike the clip
// walk, which follows its marks and can pass over a clip, the listing goes
// through the channel's lookup in start order, so every play clip comes out
// once.
//
// Each function takes the space's lock for the whole call and runs no host
// code, so nothing can edit the space part-way through a batch of rows.
// REQUIRES: channel < 96 (the entry points refuse others).
#ifndef TCS_SPACE_CLIP_LISTING_H_
#define TCS_SPACE_CLIP_LISTING_H_

#include <cstdint>

#include "record/channel_set.h"
#include "record/tcs_clip.h"

class CTimeCodeSpace;

namespace tcs {

// The channels whose lookup holds at least one play clip.
ChannelSet ChannelsWithClips(CTimeCodeSpace& space);
uint32_t ClipCount(CTimeCodeSpace& space, uint32_t channel);

struct ListedClips {
  uint32_t count;  // rows written
  uint32_t next;   // the start to list from next, or kNoTimecode: done
};

// Fills up to `capacity` rows with the play clips of `channel` that play in
// [from, to): first the one starting or playing at `from` (the play clip
// tcsTranslate finds there), then every play clip starting after `from` and
// before `to`, in start order; `to` of kNoTimecode lists to the end, a play
// clip starting at 0xFFFFFFFF included. `next` is the start of the first play
// clip left unlisted (call again with it as `from`), or kNoTimecode when none
// is left. A play clip starting at 0xFFFFFFFF is never named by `next`: the
// batch before it ends a row early, so it needs a capacity of at least 2.
// REQUIRES: from <= to; capacity == 0 or rows != null.
ListedClips ListClips(CTimeCodeSpace& space, uint32_t channel, uint32_t from, uint32_t to,
                      TCSCLIP* rows, uint32_t capacity);

// The row of a record as it stands (its own range and transition).
void DescribeRecord(CClip& record, TCSCLIP& row);

}  // namespace tcs

#endif  // TCS_SPACE_CLIP_LISTING_H_
