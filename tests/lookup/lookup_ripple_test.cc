// Ripple inserts and deletes against the plain round-by-round walk they are
// defined by, on channels that overlap, hold empty play clips and sit near 0,
// the end of the timeline and 2^32, where starts clamp and wrap. The walk
// runs on a std::map of starts; a twin space takes the same blank first (a
// delete blanks its range before it pulls), so the map starts from the same
// state. Play clips and every listed record must agree. TCS_RIPPLE_SEED and
// TCS_RIPPLE_RUNS move the seeds.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <tuple>
#include <vector>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "support/random_channel.h"
#include "support/test_clips.h"

namespace {

using tcs::kLastStart;

// start -> the record the play clip plays (its length is the record's).
using Walk = std::map<uint32_t, CClip*>;

Walk::iterator Findle(Walk& w, uint32_t t) {
  if (w.empty()) return w.end();
  if (w.size() == 1) return w.begin();
  const auto after = w.upper_bound(t < kLastStart ? t : kLastStart);
  if (after == w.begin()) return after;
  return std::prev(after);
}

Walk::iterator Findge(Walk& w, uint32_t t) {
  const auto x = Findle(w, t);
  if (x == w.end()) return x;
  const uint32_t xs = x->first, xl = x->second->length;
  if (t - xs < xl || t < xs + xl) return x;
  return std::next(x);
}

void Move(Walk& w, Walk::iterator x, uint32_t start) {
  CClip* record = x->second;
  w.erase(x);
  record->start = start;
  w.emplace(start, record);  // a taken start drops the newcomer
}

// From the last play clip back to the first at or after rs, each rl + 1 later.
void InsertWalk(Walk& w, uint32_t rs, uint32_t rl) {
  uint32_t key = tcs::kNoTimecode;
  for (;;) {
    const auto x = Findle(w, key);
    if (x == w.end() || x->first < rs) return;
    const uint32_t xs = x->first;
    const bool first = x == w.begin();
    const uint32_t moved = xs + rl + 1;
    Move(w, x, moved > kLastStart ? kLastStart : moved);
    if (first) return;
    key = xs - 1;
  }
}

// From the play clip at or after re on, each rl earlier; the walk also stops
// when an end wraps back to or below the key.
void PullWalk(Walk& w, uint32_t re, uint32_t rl) {
  uint32_t key = re;
  for (;;) {
    const auto x = Findge(w, key);
    if (x == w.end()) return;
    const uint32_t xs = x->first, xe = xs + x->second->length;
    const uint32_t moved = xs - rl;
    Move(w, x, moved > kLastStart ? kLastStart : moved);
    if (xe <= key) return;
    key = xe;
  }
}

struct Channel {
  tcs_test::OpenedSpace space;
  CTCLookup* lookup = space->lookups[0] = new CTCLookup(space.get());
};

using Listed = std::vector<std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>>;
Listed ListedRecords(const CTimeCodeSpace& space) {
  Listed out;
  for (const CClip* c : tcs_test::ListedClips(space)) {
    out.emplace_back(c->start, c->length, c->sourceIn, c->sourceOut);
  }
  return out;
}

void Play(uint64_t seed) {
  tcs_test::Dice u(seed);
  const auto near = [&](uint32_t k) {
    return k < 5 ? u(0, 80) : k < 8 ? kLastStart - 60 + u(0, 100) : 0xFFFFFF80u + u(0, 0x7F);
  };
  Channel tested, twin;
  tcs::SpaceLock hold_tested(*tested.space), hold_twin(*twin.space);
  // Loose clips anywhere, sometimes a run laid back to back.
  for (int i = 0, n = int(u(1, 14)); i < n; ++i) {
    const bool run = u(0, 2) == 0;
    const uint32_t start = run ? 100 + 7 * uint32_t(i) : near(u(0, 9));
    const uint32_t length = run ? 7 : u(0, 3) == 0 ? 0 : u(0, 9) == 0 ? 0x80000000u : u(1, 40);
    for (Channel* c : {&tested, &twin}) {
      tcs_test::LayPlayClip(*c->space, 0, *tcs_test::MakeClip(start, length, i));
    }
  }
  for (int step = 0; step < 12 && !::testing::Test::HasFailure(); ++step) {
    SCOPED_TRACE(::testing::Message() << "step " << step);
    CTCRange r;
    r.start = u(0, 3) == 0 ? u(95, 160) : near(u(0, 9));
    const bool insert = u(0, 1) == 0;
    // A delete of near 2^32 frames moves play clips one frame later per
    // round, all the way to the end of the timeline: edits never ask that.
    r.length = u(0, 7) == 0 ? (u(0, 1) || !insert ? kLastStart : tcs::kNoTimecode) : u(0, 30);
    if (!insert) twin.lookup->BlankRange(r);
    Walk walk;
    for (const auto& pc : *twin.lookup) walk.emplace(pc.start, pc.clip);
    if (insert) {
      InsertWalk(walk, r.start, r.length);
      tested.lookup->InsertRange(r);
    } else {
      PullWalk(walk, r.start + r.length, r.length);
      tested.lookup->DeleteRange(r);
    }
    tested.lookup->CheckInvariants();
    ASSERT_EQ(tested.lookup->size(), walk.size()) << (insert ? "insert" : "delete");
    auto w = walk.begin();
    for (const auto& pc : *tested.lookup) {
      ASSERT_EQ(pc.start, w->first);
      ASSERT_EQ(pc.clip->sourceIn, w->second->sourceIn);
      ++w;
    }
    // The records of dropped play clips keep the start they were given.
    ASSERT_EQ(ListedRecords(*tested.space), ListedRecords(*twin.space));
    twin.lookup->Clear();
    for (const auto& [start, record] : walk) {
      CPlayClip pc;
      pc.Construct(record);
      twin.lookup->Insert(pc);
    }
  }
}

TEST(LookupRipple, MovesMatchTheRoundByRoundWalk) {
  tcs_test::ForEachSeed("TCS_RIPPLE", 301, 3000, Play);
}

}  // namespace
