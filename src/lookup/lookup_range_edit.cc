// CTCLookup range edits: blank (overwrite), ripple delete, ripple insert, the
// flag-driven ModifyRange and AddClip. They keep each moved or cut play
// clip's record range equal to the play clip's; a play clip swallowed whole
// takes its record off the space's list, and a play clip cut in two gives its
// right-hand piece a new record.
//
// Below, r = [RS, RE) with RL = RE - RS, and x = [XS, XE) a play clip; all
// arithmetic is mod 2^32, every comparison unsigned.
#include <algorithm>
#include <iterator>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "platform/clip.h"
#include "space/space.h"

using tcs::Contains;
using tcs::Span;
using tcs::TwoPointRule;

namespace {

enum class Overlap { kUntouched, kInside, kHead, kTail, kSplit };

// How r meets x. With RL > 0:
//   inside     x within r                    r:  |--------|      x goes
//                                            x:    |--|
//   head       x starts in r, ends past RE   r:  |----|          x keeps [RE, XE)
//                                            x:     |-----|
//   tail       x starts before RS, ends in   r:     |-----|      x keeps [XS, RS)
//              r before RE                   x:  |----|
//   split      XS <= RS and XE >= RE, not    r:    |--|          x keeps [XS, RS),
//              exactly r                     x:  |--------|      new record [RE, XE)
//   untouched  no frame in common
Overlap Classify(uint32_t rs, uint32_t rl, uint32_t xs, uint32_t xl) {
  // A zero-length range at a play clip's very start would come out as a tail
  // and shrink the play clip to nothing, taking it off the air: it is left
  // alone. Strictly inside a play clip such a range still cuts it in two.
  if (rl == 0 && xs == rs) return Overlap::kUntouched;
  const uint32_t re = rs + rl;
  const uint32_t xe = xs + xl;
  const bool starts_in_r = Contains(rs, rl, xs);
  const bool ends_in_r = Contains(rs, rl, xe - 1);
  const bool holds_rs = Contains(xs, xl, rs);
  const bool holds_last_of_r = Contains(xs, xl, re - 1);
  // The tests in their fixed order; with wrapped ends (mod 2^32) they are
  // the definition, the pictures above only their ordinary reading.
  if (starts_in_r && ends_in_r) return Overlap::kInside;
  if (holds_rs) return holds_last_of_r ? Overlap::kSplit : Overlap::kTail;
  // Otherwise a head, if x holds RE; with neither end of x in r, only when x
  // also holds r's last frame.
  if (!starts_in_r && !ends_in_r && !holds_last_of_r) return Overlap::kUntouched;
  return Contains(xs, xl, re) ? Overlap::kHead : Overlap::kUntouched;
}

// A ripple rewrites the start of every moved play clip's record. Records lie
// 4 KB apart and are reached through their vtable pointer, so on a long
// channel each is a cache and TLB miss. The insert's walk is short enough
// for the processor to run many of them at once; the delete's tests make its
// rounds longer, so it asks for the head of a record (vtable pointer and
// range) this many play clips before it writes it. On a short channel the
// records stay cached and the second iterator would only cost.
constexpr int kRecordsAhead = 8;
constexpr size_t kPrefetchFrom = 16384;  // play clips: 64 MB of records

// Moves `ahead` one play clip on and prefetches the record there.
template <typename Position>
void StepAhead(Position& ahead, Position end) {
  if (ahead == end) return;
  const char* head = reinterpret_cast<const char*>(ahead->clip);
  __builtin_prefetch(head, 1);
  __builtin_prefetch(head + 64, 1);
  ++ahead;
}

// The iterator the walk from `from` prefetches with, or `end` on a channel
// of fewer than kPrefetchFrom play clips.
template <typename Position>
Position StartAhead(Position from, Position end, size_t clips) {
  if (clips < kPrefetchFrom) return end;
  for (int i = 0; i < kRecordsAhead; ++i) StepAhead(from, end);
  return from;
}

}  // namespace

// Overwrite: nothing plays in r afterwards.
//   before  |--A--|--B--|--C--|   |--D--|
//   r           [=========)
//   after   |-A-|         |-C-|   |--D--|
// A keeps its head (tail case), B goes with its record (inside), C keeps its
// tail (head case); the walk stops at D, untouched.
// A walk from RS: each round takes findge(key) and moves key to its end. It
// stops at the first play clip it leaves untouched, after a split, or when
// the next key would not move forward (an end wrapped past 2^32).
void CTCLookup::BlankRange(const CTCRange& r) { BlankSpan({r.start, r.length}); }

void CTCLookup::BlankSpan(Span r) {
  const uint32_t rs = r.start;
  const uint32_t rl = r.length;
  const uint32_t re = rs + rl;
  uint32_t key = rs;
  for (;;) {
    const Position x = findge(key);
    if (x == end()) return;
    const uint32_t xs = x->start;
    const uint32_t xe = xs + x->length;
    CClip* record = x->clip;
    switch (Classify(rs, rl, xs, x->length)) {
      case Overlap::kUntouched:
        return;
      case Overlap::kSplit:
        Split(x, rs, re);
        return;
      case Overlap::kInside:
        DropWithRecord(x);
        break;
      case Overlap::kHead: {
        // The frames that stay keep their source frames: sourceIn advances by
        // the frames cut off the head.
        const Span kept = TwoPointRule(re, xe);
        Reshape(x, kept.start, kept.length);
        if (record != nullptr) record->sourceIn += kept.start - xs;
        break;
      }
      case Overlap::kTail: {
        const Span kept = TwoPointRule(xs, rs);
        Reshape(x, kept.start, kept.length);
        if (record != nullptr) record->sourceOut = record->sourceIn + kept.length;
        break;
      }
    }
    if (xe <= key) return;
    key = xe;
  }
}

// The delete notification runs between the two steps, with x still in the
// set but its record already off the list.
void CTCLookup::DropWithRecord(Position x) {
  const uint32_t xs = x->start;
  CClip* record = x->clip;
  space->__DelClipFromList(record);
  const Position again = Refind(xs, record);
  if (again != end()) Erase(again);
}

//   before  |--------x--------|
//   r             [===)
//   after   |--x--|   |-new---|   new: a copy of x's record, sourceIn + (RE - XS)
// x's record keeps the left-hand piece, its sourceOut cut to match. An empty
// left-hand piece (XS = RS) leaves x's record listed with length 0; an empty
// right-hand piece (XE = RE) leaves the new record listed with length 0.
void CTCLookup::Split(Position x, uint32_t rs, uint32_t re) {
  const uint32_t xs = x->start;
  const uint32_t xe = xs + x->length;
  CClip* record = x->clip;

  // Without a record (never so for a play clip the space made) the copy stays
  // cleared and its source frames count from 0.
  CClip temporary;
  temporary.ClearClip();
  temporary.SetClip(record);
  temporary.start = tcs::ClampStart(re);
  temporary.length = tcs::LengthRule(temporary.start, xe - re);
  temporary.sourceIn = (re - xs) + (record != nullptr ? record->sourceIn : 0);
  CClip* added = space->__AddClipToList(0, &temporary, temporary.channel);
  // When the host refuses the new record the right-hand material leaves the
  // timeline: no play clip without a record, and none that would play the
  // wrong source frames. The range is still blanked and the left cut.

  // A host that edited this channel from its notification and took x away
  // has rewritten this stretch: its edit stands, the new record stays listed
  // without a play clip.
  const Position again = Refind(xs, record);
  if (again == end()) return;
  const Span left = TwoPointRule(xs, rs);
  if (record != nullptr) record->sourceOut = record->sourceIn + (rs - xs);
  if (left.length != 0) {
    Reshape(again, left.start, left.length);
  } else {
    if (record != nullptr) {
      record->start = left.start;
      record->length = 0;
    }
    Erase(again);
  }
  // Nothing changes the new record after it was listed, so the right-hand
  // play clip is made from it now.
  if (added != nullptr && added->length != 0) InsertFrom(added);
}

// Ripple delete: blank r, then pull everything from RE on RL frames earlier.
//   before  |--A--|  [==r==)  |--B--|--C--|
//   after   |--A--|--B--|--C--|
// A start that would fall below 0 or past 10692000 becomes 10692000.
// Each round is findge(key) with key the old end of the play clip moved last.
void CTCLookup::DeleteRange(const CTCRange& r) { DeleteSpan({r.start, r.length}); }

void CTCLookup::DeleteSpan(Span r) {
  const uint32_t rl = r.length;
  uint32_t key = r.start + rl;
  BlankSpan(r);
  Position x = PullRun(findge(key), rl, key);
  while (x != end()) {
    const uint32_t xs = x->start;
    const uint32_t xe = xs + x->length;
    const uint32_t moved = xs - rl;
    x = Rekey(x, moved > tcs::kLastStart ? tcs::kLastStart : moved);
    if (xe <= key) return;
    key = xe;
    x = x != end() ? FindgeAfter(x, key) : findge(key);
  }
}

// The rounds of a ripple delete while each is the plain case: the new start
// stays above the previous play clip's (already moved) start and needs no
// clamp, so it is written in place (the next start lies above the old one),
// and the next round's findge is the next node by FindgeAfter's tests, made
// here on values at hand. One step per play clip. Returns the position of
// the first round it leaves to the general loop, with key updated, or end()
// when the walk is over.
CTCLookup::Position CTCLookup::PullRun(Position x, uint32_t rl, uint32_t& key) {
  if (x == end()) return x;
  bool bounded = x != begin();
  uint32_t below = bounded ? std::prev(x)->start : 0;
  Position ahead = StartAhead(x, end(), playClips.size());
  for (;;) {
    StepAhead(ahead, end());
    const uint32_t xs = x->start;
    const uint32_t xl = x->length;
    const uint32_t xe = xs + xl;
    const uint32_t target = xs - rl;
    if (xs < rl || target > tcs::kLastStart || (bounded && target <= below)) return x;
    const Position next = std::next(x);
    // Above `below` by the test just made; below the following start, which
    // lies past x's old start.
    Node& node = WriteStartInPlace(x, target, Following::kStays);
    if (CClip* record = node.clip) record->start = target;
    if (xe <= key) return end();
    key = xe;
    const bool next_at_key = next != end() && next->start == key && next->length != 0;
    const bool x_is_findle = target <= key && (next == end() || key < next->start);
    const bool x_is_behind = !Contains(target, xl, key) && !(key < target + xl);
    if (key > tcs::kLastStart || !(next_at_key || (x_is_findle && x_is_behind))) {
      return findge(key);
    }
    if (next == end()) return next;
    x = next;
    bounded = true;
    below = target;
  }
}

// findge(key) looks at findle(key) and at most the play clip after it. With
// key not clamped and x the greatest start at or before key, findle(key) is
// x, and x neither contains key nor reaches past it, so the answer is the
// next play clip; a next play clip starting exactly at key is findle(key)
// itself and the answer when it has frames. Anything else searches.
CTCLookup::Position CTCLookup::FindgeAfter(Position x, uint32_t key) const {
  const Position next = std::next(x);
  if (key <= tcs::kLastStart) {
    if (next != end() && next->start == key && next->length != 0) return next;
    const bool x_is_findle = x->start <= key && (next == end() || key < next->start);
    if (x_is_findle && !Contains(x->start, x->length, key) && !(key < x->start + x->length)) {
      return next;
    }
  }
  return findge(key);
}

// Ripple insert: every play clip starting at or after RS moves RL + 1 frames
// later, one frame past the gap; nothing is cut.
//   before  |--A--|--B--|--C--|          (RS = B's start)
//   after   |--A--|  [==r==) |--B--|--C--|
// The walk runs from the last play clip back, so a moved play clip never
// lands on one that has not moved yet. A play clip starting before RS stays,
// even when it reaches into r. Each round is findle(XS - 1); after a move
// in place to a later start, that is the play clip before x.
void CTCLookup::InsertRange(const CTCRange& r) { InsertSpan({r.start, r.length}); }

void CTCLookup::InsertSpan(Span r) {
  if (empty()) return;
  Position x = findle(tcs::kNoTimecode);
  // The plain case: the last play clip moves without a clamp, so every one
  // from RS on does, by the same amount: order holds and each start is
  // written in place, in one pass.
  const uint32_t shift = r.length + 1;
  if (x->start >= r.start && shift <= tcs::kLastStart && x->start <= tcs::kLastStart - shift) {
    const Position stop = std::next(x);
    for (Position y = playClips.lower_bound(r.start); y != stop; ++y) {
      Node& node = WriteStartInPlace(y, y->start + shift, Following::kMovesToo);
      if (CClip* record = node.clip) record->start = node.start;
    }
    return;
  }
  for (;;) {
    if (x == end() || x->start < r.start) return;
    const uint32_t xs = x->start;
    const uint32_t target = std::min(xs + shift, tcs::kLastStart);
    if (x == begin()) {
      Rekey(x, target);
      return;
    }
    const Position previous = std::prev(x);
    Rekey(x, target);
    // x moved past key (or was dropped): the starts at or before key are as
    // they were, and the greatest of them is the previous play clip.
    const uint32_t key = xs - 1;
    x = target > xs && key <= tcs::kLastStart ? previous : findle(key);
  }
}

void CTCLookup::ModifyRange(uint32_t a, uint32_t b, uint32_t flags) {
  const Span r = TwoPointRule(a, b);
  const bool ripple = (flags & TCS_EDIT_RIPPLE) != 0;
  switch (flags & TCS_EDIT_OPERATION_MASK) {
    case TCS_EDIT_INSERT:
      if (ripple) {
        InsertSpan(r);
      } else {
        BlankSpan(r);
      }
      break;
    case TCS_EDIT_BLANK:
      // The delete blanks the now empty range once more, then closes it.
      BlankSpan(r);
      if (ripple) DeleteSpan(r);
      break;
    case TCS_EDIT_DELETE:
      if (ripple) {
        DeleteSpan(r);
      } else {
        BlankSpan(r);
      }
      break;
    default:  // combinations and 0 change nothing
      break;
  }
}

// Room is made for the record's clamped range, then a play clip plays the
// record over its own range as it is. A start still taken (an insert does
// not cut what reaches into it) drops the play clip; the record stays listed.
void CTCLookup::AddClip(CClip* clip, uint32_t flags) {
  if (clip == nullptr) return;
  const uint32_t start = tcs::ClampStart(clip->start);
  const Span r{start, tcs::LengthRule(start, clip->length)};
  if ((flags & TCS_EDIT_RIPPLE) != 0) {
    InsertSpan(r);
  } else {
    BlankSpan(r);
  }
  InsertFrom(clip);
}
