#include "space/clip_listing.h"

#include <iterator>

#include "lookup/lookup.h"
#include "platform/clip.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {
namespace {

// How many play clips ahead the records are asked for. A row reads two
// lines of its record, a page apart; a few records in flight hide most of
// those misses, and more ahead only crowd the cache (4: 1.1x the floor of
// bench/listing_bench.cc, 8: 1.4x, 16: 1.4x).
constexpr int kPrefetchAhead = 4;

// The play clip with the greatest start at or before `from` when it starts
// there (even with no frames) or plays there, else the first one starting
// after it. findle's search stops at the
// last start an edit gives, so a start past it (a move can put one there) is
// stepped to by hand.
CTCLookup::Position FirstPlaying(const CTCLookup& lookup, uint32_t from) {
  CTCLookup::Position x = lookup.findle(from);
  if (x == lookup.end()) return x;
  for (auto after = std::next(x); after != lookup.end() && after->start <= from; ++after) x = after;
  if (x->start >= from || Contains(x->start, x->length, from)) return x;
  return std::next(x);
}

void FillRow(TCSCLIP& row, uint32_t channel, const CTCLookup::Node& pc) {
  row.channel = channel;
  row.start = pc.start;
  row.length = pc.length;
  row.effectCode = pc.effectCode;
  row.effectDuration = pc.effectDuration;
  row.reserved = 0;
  row.effectText = pc.effectText();
  row.clip = pc.clip;
  if (pc.clip != nullptr) {
    const CLIPINFO* info = pc.clip;
    row.info = info;
    row.sourceIn = info->sourceIn;
    row.sourceOut = info->sourceOut;
  } else {
    row.info = nullptr;
    row.sourceIn = 0;
    row.sourceOut = 0;
  }
}

}  // namespace

void DescribeRecord(CClip& record, TCSCLIP& row) {
  const CLIPINFO* info = &record;
  row.channel = record.channel;
  row.start = record.start;
  row.length = record.length;
  row.sourceIn = info->sourceIn;
  row.sourceOut = info->sourceOut;
  row.effectCode = record.effectCode;
  row.effectDuration = record.effectDuration;
  row.reserved = 0;
  row.effectText = record.effectText;
  row.clip = &record;
  row.info = info;
}

ChannelSet ChannelsWithClips(CTimeCodeSpace& space) {
  SpaceLock guard(space);
  ChannelSet set;
  for (uint32_t c = 0; c < CTimeCodeSpace::kChannels; ++c) {
    if (space.lookups[c] != nullptr && !space.lookups[c]->empty()) set.Add(c);
  }
  return set;
}

uint32_t ClipCount(CTimeCodeSpace& space, uint32_t channel) {
  SpaceLock guard(space);
  const CTCLookup* lookup = space.lookups[channel];
  return lookup != nullptr ? static_cast<uint32_t>(lookup->size()) : 0;
}

ListedClips ListClips(CTimeCodeSpace& space, uint32_t channel, uint32_t from, uint32_t to,
                      TCSCLIP* rows, uint32_t capacity) {
  SpaceLock guard(space);
  const CTCLookup* lookup = space.lookups[channel];
  if (lookup == nullptr || from == to) return {0, kNoTimecode};
  CTCLookup::Position x = FirstPlaying(*lookup, from);
  CTCLookup::Position ahead = x;
  for (int i = 0; i < kPrefetchAhead && ahead != lookup->end(); ++i, ++ahead) {
    CTCLookup::PrefetchRecord(ahead->clip);
  }
  // `to` of kNoTimecode has no end: a play clip can start at 0xFFFFFFFF
  // (starts wrap like all timecode sums), and it is listed too.
  const uint64_t end = to == kNoTimecode ? uint64_t{1} << 32 : to;
  uint32_t count = 0;
  for (; x != lookup->end() && x->start < end && count < capacity; ++x, ++count) {
    if (ahead != lookup->end()) CTCLookup::PrefetchRecord((ahead++)->clip);
    FillRow(rows[count], channel, *x);
  }
  if (x == lookup->end() || x->start >= end) return {count, kNoTimecode};
  // A next start of 0xFFFFFFFF would read as the end of the listing: the last
  // row goes back, and the next call, from its start, has room for both.
  if (x->start == kNoTimecode && count > 1) return {count - 1, rows[count - 1].start};
  return {count, x->start};
}

}  // namespace tcs
