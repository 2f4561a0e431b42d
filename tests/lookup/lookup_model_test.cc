// Random edit sequences on one channel against a brute-force model: the play
// clips as plain runs of frames, edited the obvious way and painted frame by
// frame. While the channel stays free of overlaps and clear of the end of the
// timeline the model is exact and every frame is compared; the invariants are
// checked after every step whatever happens. Seeds: TCS_LOOKUP_SEED (base)
// and TCS_LOOKUP_RUNS (sequences per run) override the defaults.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <vector>

#include "lookup/channel_fixture.h"
#include "lookup/timecode.h"
#include "space/space_lock.h"

namespace {

using tcs::kLastStart;
using tcs::kNotFound;

struct Run {
  int64_t start;
  int64_t length;
  uint64_t tag;
  uint32_t source_in;
  int64_t end() const { return start + length; }
};

// Any edit whose outcome plain runs cannot express (an overlap, a play clip of
// length 0, a clamp at the end of the timeline, a wrap below 0) leaves the
// model inexact for the rest of the sequence.
struct Model {
  bool exact = true;
  std::vector<Run> runs;

  void Blank(int64_t s, int64_t e, bool refuse_split) {
    std::vector<Run> kept;
    for (const Run& run : runs) {
      const bool split = s == e ? run.start < s && s < run.end()
                                : run.start <= s && e <= run.end() &&
                                      !(run.start == s && run.end() == e);
      const bool apart = s == e ? !split : run.end() <= s || run.start >= e;
      if (apart) {
        kept.push_back(run);
        continue;
      }
      if (run.start < s) kept.push_back({run.start, s - run.start, run.tag, run.source_in});
      if (run.end() > e && !(split && refuse_split)) {
        kept.push_back({e, run.end() - e, run.tag, run.source_in + uint32_t(e - run.start)});
      }
    }
    runs = kept;
  }
  void MoveFrom(int64_t from, int64_t delta) {
    for (Run& run : runs) {
      if (run.start >= from) run.start += delta;
    }
  }
  Run* At(int64_t start) {
    for (Run& run : runs) {
      if (run.start == start) return &run;
    }
    return nullptr;
  }
  // A play clip re-keyed onto a taken start is dropped.
  void Replace(Run* run, const Run& moved) {
    if (moved.start != run->start && At(moved.start) != nullptr) {
      runs.erase(runs.begin() + (run - runs.data()));
    } else {
      *run = moved;
    }
  }
  void Check() {
    std::sort(runs.begin(), runs.end(),
              [](const Run& a, const Run& b) { return a.start < b.start; });
    for (size_t i = 0; i < runs.size(); ++i) {
      const bool fits = runs[i].length > 0 && runs[i].start >= 0 && runs[i].end() <= kLastStart;
      if (!fits || (i > 0 && runs[i].start < runs[i - 1].end())) exact = false;
    }
  }
};

uint64_t EnvOr(const char* name, uint64_t fallback) {
  const char* value = std::getenv(name);
  return value != nullptr ? std::strtoull(value, nullptr, 0) : fallback;
}

class Sequence {
 public:
  Sequence(uint64_t seed, bool sparse) : rng_(seed), sparse_(sparse) {}

  void Play(int steps) {
    for (int step = 0; step < steps && !::testing::Test::HasFailure(); ++step) {
      SCOPED_TRACE(::testing::Message() << "step " << step);
      {
        tcs::SpaceLock guard(channel_.space);
        channel_.host.refuse_splits = U(0, 5) == 0;
        channel_.host.refuse_own = U(0, 19) == 0;
        Step();
      }
      model_.Check();
      channel_.lookup().CheckInvariants();
      channel_.space.CheckInvariants();
      ASSERT_EQ(channel_.ListLength(), channel_.host.added - channel_.host.deleted);
      if (model_.exact) Compare();
    }
  }

 private:
  uint32_t U(uint32_t lo, uint32_t hi) {
    return std::uniform_int_distribution<uint32_t>(lo, hi)(rng_);
  }

  // Near play clip edges often; in a sparse run near 0, near the end of the
  // timeline and anywhere in 32 bits.
  uint32_t Point() {
    const CTCLookup& lookup = channel_.lookup();
    const uint32_t k = U(0, 9);
    if (k < 3 && !lookup.empty()) {
      const auto x = std::next(lookup.begin(), U(0, uint32_t(lookup.size() - 1)));
      return (U(0, 1) ? x->start : x->start + x->length) + U(0, 2) - 1;
    }
    if (!sparse_) return U(0, 2000);
    if (k < 6) return U(0, 60);
    if (k < 9) return kLastStart - 150 + U(0, 160);
    return uint32_t(rng_());
  }
  uint32_t Length() {
    if (!sparse_) return U(1, 200);
    return U(0, 9) == 0 ? uint32_t(rng_()) : U(1, 40);
  }

  void Step() {
    CTCLookup& lookup = channel_.lookup();
    const bool refuse = channel_.host.refuse_splits;
    const uint32_t k = U(0, 99);
    const uint32_t a = Point();
    const uint32_t b = U(0, 9) == 0 ? a : Point();
    if (k < 40) {
      const bool ripple = k >= 28;
      const uint32_t length = Length();
      const uint32_t source_in = U(0, 100000);
      if (channel_.Add(a, length, source_in, ++tag_, ripple ? TCS_EDIT_RIPPLE : 0) == nullptr) {
        return;
      }
      const int64_t end = int64_t(a) + length;
      Run* holder = nullptr;
      for (Run& run : model_.runs) {
        if (run.start < a && a < run.end()) holder = &run;
      }
      // An insert does not cut what reaches into it: the newcomer overlaps.
      if (end > kLastStart || (ripple && holder != nullptr)) model_.exact = false;
      if (ripple) {
        model_.MoveFrom(a, length + 1);
      } else {
        model_.Blank(a, end, refuse);
      }
      model_.runs.push_back({a, length, tag_, source_in});
    } else if (k < 70) {
      const uint32_t flags = (U(0, 7) << 24) | (U(0, 1) ? TCS_EDIT_RIPPLE : 0) |
                             (uint32_t(rng_()) & ~(TCS_EDIT_OPERATION_MASK | TCS_EDIT_RIPPLE));
      lookup.ModifyRange(a, b, flags);
      const int64_t s = std::min(a, b);
      const int64_t e = std::max(a, b);
      if (e > kLastStart + 1) model_.exact = false;
      const uint32_t operation = flags & TCS_EDIT_OPERATION_MASK;
      const bool ripple = (flags & TCS_EDIT_RIPPLE) != 0;
      if (operation == TCS_EDIT_INSERT && ripple) {
        model_.MoveFrom(s, e - s + 1);
      } else if (operation == TCS_EDIT_INSERT || operation == TCS_EDIT_BLANK ||
                 operation == TCS_EDIT_DELETE) {
        model_.Blank(s, e, refuse);
        if (ripple) model_.MoveFrom(e, s - e);
      }
    } else if (k < 95) {
      const auto x = lookup.playClips.find(a);
      const uint32_t old_in = x != lookup.end() && x->clip != nullptr ? x->clip->sourceIn : 0;
      const bool shift = k >= 88;
      const uint32_t in = shift ? b : old_in + U(0, 40) - 20;
      const uint32_t out = U(0, 1) ? in + U(0, 150) : in - U(0, 150);
      lookup.TrimRange(a, in, out, shift ? 1 : 0);
      Run* run = model_.At(a);
      if (run == nullptr) return;
      const int64_t length = std::abs(int64_t(out) - int64_t(in));
      if (length == 0 || int64_t(in) - old_in < -int64_t(a)) model_.exact = false;
      model_.Replace(run, shift ? Run{b, run->length, run->tag, run->source_in}
                                : Run{a + (int64_t(in) - old_in), length, run->tag, in});
    } else if (sparse_) {
      CTCRange r;
      r.start = uint32_t(rng_());
      r.length = uint32_t(rng_());
      if (k == 95) lookup.BlankRange(r);
      if (k == 96) lookup.DeleteRange(r);
      if (k == 97) lookup.InsertRange(r);
      model_.exact = false;
    } else {
      lookup.ShiftRange(a, b);
      if (Run* run = model_.At(a)) model_.Replace(run, {b, run->length, run->tag, run->source_in});
    }
  }

  void Compare() {
    const CTCLookup& lookup = channel_.lookup();
    ASSERT_EQ(lookup.size(), model_.runs.size());
    int64_t last_end = 2000;
    for (const Run& run : model_.runs) {
      const auto x = lookup.playClips.find(uint32_t(run.start));
      ASSERT_NE(x, lookup.end()) << "no play clip at " << run.start;
      ASSERT_NE(x->clip, nullptr);
      EXPECT_EQ(x->length, run.length);
      EXPECT_EQ(x->clip->hostTag, run.tag);
      EXPECT_EQ(x->clip->sourceIn, run.source_in);
      last_end = std::max(last_end, run.end());
    }
    if (sparse_) {
      CompareFrames(0, 100);
      CompareFrames(kLastStart - 100, kLastStart + 2);
    } else {
      CompareFrames(0, last_end + 2);
    }
  }

  // Paints the runs over [from, to) and asks the lookup about every frame.
  void CompareFrames(int64_t from, int64_t to) {
    const CTCLookup& lookup = channel_.lookup();
    std::vector<const Run*> paint(size_t(to - from), nullptr);
    for (const Run& run : model_.runs) {
      for (int64_t f = std::max(from, run.start); f < std::min(to, run.end()); ++f) {
        paint[size_t(f - from)] = &run;
      }
    }
    CPlayClip out;
    for (int64_t f = from; f < to; ++f) {
      const Run* want = paint[size_t(f - from)];
      const uint32_t t = uint32_t(f);
      const auto x = lookup.find(t);
      if (want == nullptr) {
        ASSERT_EQ(x, lookup.end()) << "frame " << f;
        ASSERT_EQ(lookup.FindPlayClip(0x70, t, out), kNotFound) << "frame " << f;
        continue;
      }
      ASSERT_NE(x, lookup.end()) << "frame " << f;
      ASSERT_EQ(x->start, want->start) << "frame " << f;
      const uint32_t source = want->source_in + uint32_t(f - want->start);
      ASSERT_EQ(lookup.FindPlayClip(0x70, t, out), source) << "frame " << f;
      ASSERT_EQ(lookup.Translate(t, out), source) << "frame " << f;
      ASSERT_EQ(out.clip->hostTag, want->tag) << "frame " << f;
    }
  }

  std::mt19937_64 rng_;
  bool sparse_;
  uint64_t tag_ = 0;
  Model model_;
  tcs_test::Channel channel_;
};

void RunMany(uint64_t first_seed, uint64_t runs, int steps, bool sparse) {
  const uint64_t base = EnvOr("TCS_LOOKUP_SEED", first_seed);
  for (uint64_t i = 0; i < EnvOr("TCS_LOOKUP_RUNS", runs) && !::testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE(::testing::Message() << "seed " << base + i);
    Sequence(base + i, sparse).Play(steps);
  }
}

TEST(LookupModel, RandomEditsMatchFrameModel) { RunMany(301, 1500, 30, false); }

TEST(LookupModel, EditsNearZeroAndTimelineEndKeepInvariants) { RunMany(9001, 2000, 12, true); }

}  // namespace
