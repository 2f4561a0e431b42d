// CTCLookup range edits: blank (overwrite), ripple delete, ripple insert, the
// flag-driven ModifyRange and AddClip. They keep each moved or cut play
// clip's record range equal to the play clip's; a play clip swallowed whole
// takes its record off the space's list, and a play clip cut in two gives its
// right-hand piece a new record.
//
// Below, r = [RS, RE) with RL = RE - RS, and x = [XS, XE) a play clip; all
// arithmetic is mod 2^32, every comparison unsigned.
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

CTCRange RangeOf(Span span) {
  CTCRange r;
  r.start = span.start;
  r.length = span.length;
  return r;
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
void CTCLookup::BlankRange(const CTCRange& r) {
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
  CPlayClip right;
  if (added != nullptr) right.Construct(added);

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
  if (added != nullptr && right.length != 0) Insert(right);
}

// Ripple delete: blank r, then pull everything from RE on RL frames earlier.
//   before  |--A--|  [==r==)  |--B--|--C--|
//   after   |--A--|--B--|--C--|
// A start that would fall below 0 or past 10692000 becomes 10692000.
void CTCLookup::DeleteRange(const CTCRange& r) {
  const uint32_t rl = r.length;
  uint32_t key = r.start + rl;
  BlankRange(r);
  for (;;) {
    const Position x = findge(key);
    if (x == end()) return;
    const uint32_t xe = x->start + x->length;
    const uint32_t moved = x->start - rl;
    Rekey(x, moved > tcs::kLastStart ? tcs::kLastStart : moved);
    if (xe <= key) return;
    key = xe;
  }
}

// Ripple insert: every play clip starting at or after RS moves RL + 1 frames
// later, one frame past the gap; nothing is cut.
//   before  |--A--|--B--|--C--|          (RS = B's start)
//   after   |--A--|  [==r==) |--B--|--C--|
// The walk runs from the last play clip back, so a moved play clip never
// lands on one that has not moved yet. A play clip starting before RS stays,
// even when it reaches into r.
void CTCLookup::InsertRange(const CTCRange& r) {
  if (empty()) return;
  uint32_t key = tcs::kNoTimecode;
  for (;;) {
    const Position x = findle(key);
    if (x == end() || x->start < r.start) return;
    const uint32_t xs = x->start;
    const bool was_first = x == begin();
    const uint32_t moved = xs + r.length + 1;
    Rekey(x, moved > tcs::kLastStart ? tcs::kLastStart : moved);
    if (was_first) return;
    key = xs - 1;
  }
}

void CTCLookup::ModifyRange(uint32_t a, uint32_t b, uint32_t flags) {
  const CTCRange r = RangeOf(TwoPointRule(a, b));
  const bool ripple = (flags & TCS_EDIT_RIPPLE) != 0;
  switch (flags & TCS_EDIT_OPERATION_MASK) {
    case TCS_EDIT_INSERT:
      if (ripple) {
        InsertRange(r);
      } else {
        BlankRange(r);
      }
      break;
    case TCS_EDIT_BLANK:
      // The delete blanks the now empty range once more, then closes it.
      BlankRange(r);
      if (ripple) DeleteRange(r);
      break;
    case TCS_EDIT_DELETE:
      if (ripple) {
        DeleteRange(r);
      } else {
        BlankRange(r);
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
  const CTCRange r = RangeOf({start, tcs::LengthRule(start, clip->length)});
  if ((flags & TCS_EDIT_RIPPLE) != 0) {
    InsertRange(r);
  } else {
    BlankRange(r);
  }
  CPlayClip pc;
  pc.Construct(clip);
  Insert(pc);
}
