// Random edit sequences on one channel against a brute-force model: the play
// clips as plain runs of frames, edited the obvious way and compared frame by
// frame. While the channel stays free of overlaps and clear of the end of the
// timeline the model is exact; the invariants are checked after every step
// whatever happens, and so is the walk's position kept across the edits.
// TCS_LOOKUP_SEED (first seed) and TCS_LOOKUP_RUNS (sequences) override the
// defaults.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "support/random_channel.h"
#include "support/test_clips.h"

namespace {

using tcs::kLastStart;

struct Run {
  int64_t start, length;
  uint32_t in, origin;  // the source frame at start; the record's sourceOrigin
  int64_t end() const { return start + length; }
};

// Overwrites [s, e): a cut run keeps its source frames; a split whose new
// record the host refuses loses its right-hand part.
void Blank(std::vector<Run>& runs, int64_t s, int64_t e, bool refused) {
  std::vector<Run> kept;
  for (const Run& r : runs) {
    if (s == e ? s <= r.start || r.end() <= s : r.end() <= s || e <= r.start) {
      kept.push_back(r);
      continue;
    }
    const bool split = r.start <= s && e <= r.end() && (r.start != s || r.end() != e);
    if (r.start < s) kept.push_back({r.start, s - r.start, r.in, r.origin});
    if (r.end() > e && !(split && refused)) {
      kept.push_back({e, r.end() - e, r.in + uint32_t(e - r.start), r.origin});
    }
  }
  runs = kept;
}

// Sparse sequences play near 0, near the end of the timeline and anywhere in
// 32 bits, where records of any length wrap past 2^32; the model then rarely
// stays exact and the invariants are the check.
void Play(uint64_t seed, bool sparse, int steps) {
  tcs_test::Dice u(seed);
  auto& rng = u.rng;
  tcs_test::NotificationLog notes;
  tcs_test::OpenedSpace opened;
  CTimeCodeSpace& space = *opened;
  notes.Install(&space);
  CTCLookup& lookup = *(space.lookups[0] = new CTCLookup(&space));
  std::vector<Run> runs;
  bool exact = true;  // cleared for good by an overlap, a clamp or a wrap
  const auto move_from = [&runs](int64_t from, int64_t by) {
    for (Run& r : runs) r.start += r.start >= from ? by : 0;
  };
  for (int step = 0; step < steps && !::testing::Test::HasFailure(); ++step) {
    SCOPED_TRACE(::testing::Message() << "step " << step);
    tcs::SpaceLock guard(space);
    const size_t listed = tcs_test::ListedClips(space).size();
    notes.added = notes.deleted = {};
    notes.refuse = u(0, 5) == 0;
    uint32_t p[2];
    for (uint32_t& t : p) {  // near play clip edges often
      const uint32_t k = u(0, 9);
      const auto x = std::next(lookup.begin(), u(0, uint32_t(lookup.size())));  // or end()
      t = k < 3 && x != lookup.end() ? (u(0, 1) ? x->start : x->start + x->length) + u(0, 2) - 1
          : !sparse                  ? u(0, 1200)
          : k < 6                    ? u(0, 60)
          : k < 9                    ? kLastStart - 150 + u(0, 160)
                                     : uint32_t(rng());
    }
    const uint32_t k = u(0, 99), a = p[0], b = u(0, 9) == 0 ? a : p[1];
    const int64_t s = std::min(a, b), e = std::max(a, b);
    if (k < 40) {  // a record laid at a or, from 28 on, inserted there with ripple
      const Run run{a, k % 8 == 0 ? b - a : u(1, sparse ? 40 : 150), u(0, 99999), u(0, 99999)};
      const auto clip = tcs_test::MakeClip(a, uint32_t(run.length), run.in);
      clip->sourceOrigin = run.origin;
      if (CClip* record = space.__AddClipToList(0, clip.get(), 0)) {
        lookup.AddClip(record, k >= 28 ? TCS_EDIT_RIPPLE : 0);
        // An insert does not cut what reaches into it: the newcomer overlaps.
        for (const Run& r : runs) exact &= k < 28 || r.start >= a || a >= r.end();
        if (k >= 28) move_from(a, run.length + 1);
        if (k < 28) Blank(runs, a, run.end(), notes.refuse);
        runs.push_back(run);
      }
    } else if (k < 70) {  // operations 1, 2 and 4 blank or, with ripple, push or pull
      const uint32_t flags = (u(0, 7) << 24) | (uint32_t(rng()) & ~TCS_EDIT_OPERATION_MASK);
      const bool ripple = (flags & TCS_EDIT_RIPPLE) != 0, push = (flags & TCS_EDIT_INSERT) != 0;
      lookup.ModifyRange(a, b, flags);
      exact &= e <= kLastStart + 1;
      if (std::has_single_bit(flags & TCS_EDIT_OPERATION_MASK)) {
        if (!ripple || !push) Blank(runs, s, e, notes.refuse);
        if (ripple) move_from(push ? s : e, push ? e - s + 1 : s - e);
      }
    } else {  // trim or, from 88 on, shift the play clip at a
      const auto r =
          std::find_if(runs.begin(), runs.end(), [a](const Run& r) { return r.start == a; });
      const uint32_t in = r != runs.end() ? r->in : 0;
      const uint32_t new_in = k >= 88 ? b : in + u(0, 40) - 20;
      const uint32_t new_out = u(0, 1) ? new_in + u(0, 150) : new_in - u(0, 150);
      lookup.TrimRange(a, new_in, new_out, k >= 88 ? 1 : 0);
      // Landing on a taken start drops the play clip; the model sees an overlap.
      if (r != runs.end() && k >= 88) *r = {b, r->length, in, r->origin};
      if (r != runs.end() && k < 88) {
        *r = {a + int64_t(new_in) - in, std::abs(int64_t(new_out) - new_in), new_in, r->origin};
      }
    }
    lookup.CheckInvariants();
    space.CheckInvariants();
    // The walk's kept position outlives an edit only as one of the play clips.
    if (const auto kept = lookup.WalkHint(); kept != lookup.end()) {
      ASSERT_TRUE(std::any_of(lookup.begin(), lookup.end(),
                              [&kept](const auto& pc) { return &pc == &*kept; }));
    }
    lookup.KeepWalkHint(std::next(lookup.begin(), step % (lookup.size() + 1)));
    ASSERT_EQ(tcs_test::ListedClips(space).size() + notes.deleted.size(),
              listed + (notes.refuse ? 0 : notes.added.size()));
    std::ranges::sort(runs, {}, &Run::start);
    for (size_t i = 0; i < runs.size(); ++i) {
      exact &= runs[i].length > 0 && runs[i].start >= 0 && runs[i].end() <= kLastStart;
      exact &= i == 0 || runs[i].start >= runs[i - 1].end();
    }
    if (!exact) continue;
    // Every frame: the play clip found and the source frame, from sourceOrigin.
    ASSERT_EQ(lookup.size(), runs.size());
    for (int64_t f = 0, i = 0; f < (sparse ? 100 : 1400); ++f) {
      while (i < int64_t(runs.size()) && runs[i].end() <= f) ++i;
      const Run* want = i < int64_t(runs.size()) && runs[i].start <= f ? &runs[i] : nullptr;
      CPlayClip out;
      const uint32_t source = lookup.Translate(uint32_t(f), out);
      ASSERT_EQ(source == tcs::kNotFound, want == nullptr) << "frame " << f;
      if (want == nullptr) continue;
      const uint32_t from_origin =
          std::max(want->in, want->origin) - std::min(want->in, want->origin);
      ASSERT_EQ(out.start, want->start) << "frame " << f;
      ASSERT_EQ(source, from_origin + (f - want->start)) << "frame " << f;
      // A cut record's source range (unless trimmed backwards) is what plays.
      const CClip& record = *out.clip;
      if (record.sourceIn <= record.sourceOut) {
        ASSERT_EQ(record.sourceOut - record.sourceIn, want->length) << "frame " << f;
      }
    }
  }
}

TEST(LookupModel, RandomEditsMatchFrameModel) {
  tcs_test::ForEachSeed("TCS_LOOKUP", 301, 600, [](uint64_t seed) { Play(seed, false, 30); });
  // Near 0 and the end of the timeline.
  tcs_test::ForEachSeed("TCS_LOOKUP", 9001, 1500, [](uint64_t seed) { Play(seed, true, 12); });
}

}  // namespace
