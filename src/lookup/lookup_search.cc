// CTCLookup::FindPlayClip: the play clip at a timecode or, in a gap, the
// previous, the next or the nearest one, with one number about it. The mode
// word's fields are in search_mode.h; the gap policy is consulted only when
// no play clip contains t.
#include "lookup/lookup.h"
#include "lookup/search_mode.h"
#include "record/timecode.h"
#include "platform/clip.h"

namespace {

enum class GapPolicy { kNone, kPrevious, kNext, kNearest };

GapPolicy DecodeGapPolicy(tcs::SearchMode mode) {
  switch (mode.gap_policy()) {
    case 0x000:
      return GapPolicy::kNone;
    case 0x004:
    case 0x005:
      return GapPolicy::kPrevious;
    case 0x008:
    case 0x009:
    case 0x100:
    case 0x101:
      return GapPolicy::kNext;
    default:
      return GapPolicy::kNearest;
  }
}

uint32_t SelectResult(tcs::SearchMode mode, uint32_t t, const tcs::PlayClipNode& k) {
  switch (mode.selector()) {
    case 0x10:
      return k.start;
    case 0x20:
      return k.start + k.length - 1;
    case 0x30:
      return k.length;
    case 0x40:
      return t;
    case 0x70:
      // Wraps when k lies after t; the source frame is still taken mod 2^32.
      return t - k.start + (k.clip != nullptr ? k.clip->sourceIn : 0);
    default:  // 0x00, 0x50, 0x60: one past the last frame
      return k.start + k.length;
  }
}

}  // namespace

uint32_t CTCLookup::FindPlayClip(uint32_t mode, uint32_t t, CPlayClip& out) const {
  Position chosen;
  const uint32_t result = FindPlayClip(mode, t, chosen);
  if (chosen != end()) chosen->CopyTo(out);
  return result;
}

uint32_t CTCLookup::FindPlayClip(uint32_t mode, uint32_t t, Position& chosen) const {
  return FindPlayClip(mode, t, chosen, end());
}

// Every candidate follows from findle(t): the play clip containing t, the
// previous one and the next one.
uint32_t CTCLookup::FindPlayClip(uint32_t word, uint32_t t, Position& chosen,
                                 Position hint) const {
  const tcs::SearchMode mode = tcs::SearchMode::FromWord(word);
  const Position le = findle(t, hint);
  chosen = AtFrom(le, t);
  if (chosen == end()) {
    const GapPolicy policy = DecodeGapPolicy(mode);
    if (policy == GapPolicy::kNone) return tcs::kNotFound;
    if (policy == GapPolicy::kPrevious) chosen = le;
    if (policy == GapPolicy::kNext) chosen = GeFrom(le, t);
  }
  if (chosen == end()) {
    // The nearest search: of the play clip before t and the one after, the
    // one whose facing edge is closer; the later one on a tie. Before the
    // first play clip both are the first one; after the last, only p exists.
    if (!mode.nearest_allowed()) return tcs::kNotFound;
    const Position p = le;
    const Position n = GeFrom(le, t);
    if (n == end()) {
      chosen = p;
    } else if (p == end()) {
      chosen = n;
    } else {
      const uint32_t after = t - (p->start + p->length);
      const uint32_t before = n->start - t;
      chosen = after >= before ? n : p;
    }
    if (chosen == end()) return tcs::kNotFound;
  }
  return SelectResult(mode, t, *chosen);
}
