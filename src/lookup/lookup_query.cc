// CTCLookup point queries: findle, findge, find and Translate. Each is one
// descent of the tree plus at most one step to a neighbour.
#include <iterator>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "platform/clip.h"

using tcs::Contains;

// The search is limited to 10692000, so every t past the last start gives
// what 10692000 gives. Before every start the first play clip still comes
// back: the callers test containment themselves.
CTCLookup::Position CTCLookup::findle(uint32_t t) const {
  if (playClips.empty()) return playClips.end();
  const uint32_t clamped = tcs::ClampStart(t);
  // At or past the last start (every append asks this): no descent.
  const Position last = std::prev(playClips.end());
  if (last->start <= clamped) return last;
  const Position after = playClips.upper_bound(clamped);
  if (after == playClips.begin()) return after;
  return std::prev(after);
}

// A walk asks about frames at or just past its last answer, so the hint,
// the next two play clips and the one before settle most searches; anything
// else falls back to the descent. Either way the answer is the greatest
// start at or before the clamped t, or the first play clip.
CTCLookup::Position CTCLookup::findle(uint32_t t, Position hint) const {
  if (hint == playClips.end()) return findle(t);
  const uint32_t clamped = tcs::ClampStart(t);
  if (hint->start <= clamped) {
    for (int step = 0; step < 2; ++step) {
      const Position next = std::next(hint);
      if (next == playClips.end() || clamped < next->start) return hint;
      hint = next;
    }
  } else {
    if (hint == playClips.begin()) return hint;
    const Position before = std::prev(hint);
    if (before->start <= clamped) return before;
  }
  return findle(t);
}

CTCLookup::Position CTCLookup::WalkHint() const {
  return arena_.changes() == walk_hint_changes_ ? walk_hint_ : playClips.end();
}

void CTCLookup::KeepWalkHint(Position x) const {
  walk_hint_ = x;
  walk_hint_changes_ = x == playClips.end() ? UINT64_MAX : arena_.changes();
}

// t itself, unclamped, is tested against the play clip findle picks.
CTCLookup::Position CTCLookup::GeFrom(Position le, uint32_t t) const {
  if (le == playClips.end()) return le;
  if (Contains(le->start, le->length, t)) return le;
  // Only a t before the first play clip gets here with le still ahead of it.
  if (t < le->start + le->length) return le;
  return std::next(le);
}

// Where play clips overlap, only the one with the greatest start at or
// before t is examined.
CTCLookup::Position CTCLookup::AtFrom(Position le, uint32_t t) const {
  if (le == playClips.end() || !Contains(le->start, le->length, t)) return playClips.end();
  return le;
}

CTCLookup::Position CTCLookup::findge(uint32_t t) const { return GeFrom(findle(t), t); }

CTCLookup::Position CTCLookup::find(uint32_t t) const { return AtFrom(findle(t), t); }

namespace {

// Where a record's two bases sit. They are virtual bases, so reaching one
// reads the record's vtable pointer first; every listed record is a CClip
// made by the space, so the offsets of a complete CClip hold for all.
struct RecordLayout {
  ptrdiff_t range;
  ptrdiff_t info;
  RecordLayout() {
    const CClip probe;
    const char* base = reinterpret_cast<const char*>(&probe);
    range = reinterpret_cast<const char*>(static_cast<const CTCRange*>(&probe)) - base;
    info = reinterpret_cast<const char*>(static_cast<const CLIPINFO*>(&probe)) - base;
  }
};

}  // namespace

// Asks for the lines Translate reads from the record (the vtable pointer,
// the range and the source points, which lie a page apart) all at once, so
// their misses overlap with each other (and with the copy of the play clip,
// when one is made) instead of following one another. A prefetch never
// faults.
void CTCLookup::PrefetchRecord(const CClip* record) {
  static const RecordLayout layout;
  if (record == nullptr) return;
  const char* at = reinterpret_cast<const char*>(record);
  __builtin_prefetch(at);
  __builtin_prefetch(at + layout.range);
  __builtin_prefetch(at + layout.info);
}

namespace {

// The offset is measured in the record's own range, which the edits keep
// equal to the play clip's. The source position counts from sourceOrigin in
// whichever direction sourceIn lies.
uint32_t SourceAt(const CClip* record, uint32_t t) {
  if (record == nullptr) return tcs::kNotFound;
  const uint32_t offset = t - record->start;
  if (offset >= record->length) return tcs::kNotFound;
  if (record->sourceIn >= record->sourceOrigin) {
    return record->sourceIn - record->sourceOrigin + offset;
  }
  return record->sourceOrigin - record->sourceIn + offset;
}

}  // namespace

uint32_t CTCLookup::Translate(uint32_t t, CPlayClip& out) const {
  const Position x = find(t);
  if (x == playClips.end()) return tcs::kNotFound;
  PrefetchRecord(x->clip);
  x->CopyTo(out);
  return SourceAt(x->clip, t);
}

uint32_t CTCLookup::Translate(uint32_t t, Position& at) const {
  at = find(t);
  if (at == playClips.end()) return tcs::kNotFound;
  PrefetchRecord(at->clip);
  return SourceAt(at->clip, t);
}
