// CTCLookup single play-clip edits, addressed by a play clip's exact start:
// move, trim, remove. They do not look at the neighbours: a moved or trimmed
// play clip may overlap them, and one landing on a taken start is dropped
// (its record stays listed).
#include <iterator>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "platform/clip.h"

//   before  |--x--|     |--y--|
//   after         |--y--|  |--x--|     (from = XS, to = new start)
// The length stays; a target past 10692000 becomes 10692000.
void CTCLookup::ShiftRange(uint32_t from, uint32_t to) {
  const Position x = findle(from);
  if (x == end() || x->start != from) return;
  Rekey(x, tcs::ClampStart(to));
}

// The play clip at `at` plays source [in, out) (either order): every source
// frame that stays keeps its record timecode, so a new in-point moves the
// head and a new out-point the tail.
//   source   300        350              310      350
//   before   |----x-----|       after       |---x---|
//   record   100        150                 110     150
// A play clip without a record counts its old in-point as 0.
void CTCLookup::TrimRange(uint32_t at, uint32_t in, uint32_t out) {
  const Position x = findle(at);
  if (x == end() || x->start != at) return;
  CClip* record = x->clip;
  const uint32_t old_in = record != nullptr ? record->sourceIn : 0;
  const uint32_t start = tcs::ClampStart(at + (in - old_in));
  const uint32_t length = tcs::TwoPointRule(in, out).length;
  if (record != nullptr) {
    record->sourceIn = in;
    record->sourceOut = out;
  }
  Reshape(x, start, length);
}

void CTCLookup::TrimRange(uint32_t at, uint32_t in, uint32_t out, int shift) {
  if (shift != 0) {
    ShiftRange(at, in);
  } else {
    TrimRange(at, in, out);
  }
}

// Removes the play clip with the greatest start at or before pc.start
// (unclamped), whether or not it starts exactly there. The record stays on
// the space's list.
CPlayClip* CTCLookup::RemoveClip(CPlayClip& pc) {
  const Position after = playClips.upper_bound(pc.start);
  if (after == begin()) return nullptr;
  Erase(std::prev(after));
  return &pc;
}
