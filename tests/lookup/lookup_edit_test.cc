// Range and single play-clip edits, table-driven: the play clips and record
// source points after each edit, and what the host was told.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "lookup/channel_fixture.h"
#include "lookup/timecode.h"
#include "space/space_lock.h"

namespace {

using tcs::kLastStart;
using tcs_test::Channel;

struct Placed {
  uint32_t start, length, source_in;
};
struct Played {  // a play clip and its record's source points
  uint32_t start, length, source_in, source_out;
  friend bool operator==(const Played&, const Played&) = default;
};
std::ostream& operator<<(std::ostream& os, const Played& p) {
  return os << "[" << p.start << "+" << p.length << " src " << p.source_in << ".." << p.source_out
            << "]";
}

CTCRange Range(uint32_t start, uint32_t length) {
  CTCRange r;
  r.start = start;
  r.length = length;
  return r;
}

std::vector<Played> PlayedOf(const CTCLookup& lookup) {
  std::vector<Played> out;
  for (const CPlayClip& pc : lookup.playClips) {
    const CClip* r = pc.clip;
    out.push_back({pc.start, pc.length, r ? r->sourceIn : 0, r ? r->sourceOut : 0});
  }
  return out;
}

constexpr uint32_t kInsert = TCS_EDIT_INSERT | TCS_EDIT_RIPPLE;

TEST(LookupEdit, EditsTable) {
  struct Row {
    const char* what;
    std::vector<Placed> before;
    std::function<void(Channel&)> edit;
    std::vector<Played> after;
    int added, deleted, listed;
  };
  const Row rows[] = {
      // A split: the new record copies the cut one, sourceIn moved on by RE - XS.
      {"split", {{0, 30, 1000}}, [](Channel& c) { c.lookup().BlankRange(Range(10, 10)); },
       {{0, 10, 1000, 1010}, {20, 10, 1020, 1030}}, 1, 0, 2},
      {"tail, inside and head", {{0, 12, 100}, {12, 3, 200}, {15, 10, 300}},
       [](Channel& c) { c.lookup().BlankRange(Range(10, 10)); },
       {{0, 10, 100, 110}, {20, 5, 305, 310}}, 0, 1, 2},
      {"empty left piece: its record stays listed", {{0, 30, 0}},
       [](Channel& c) { c.lookup().BlankRange(Range(0, 10)); }, {{10, 20, 10, 30}}, 1, 0, 2},
      {"zero-length cut inside splits", {{0, 30, 0}},
       [](Channel& c) { c.lookup().ModifyRange(15, 15, TCS_EDIT_DELETE); },
       {{0, 15, 0, 15}, {15, 15, 15, 30}}, 1, 0, 2},
      {"zero-length cut at a start leaves the clip", {{10, 20, 0}},
       [](Channel& c) { c.lookup().ModifyRange(10, 10, TCS_EDIT_BLANK | TCS_EDIT_RIPPLE); },
       {{10, 20, 0, 20}}, 0, 0, 1},
      {"refused split drops the right-hand material", {{0, 30, 1000}},
       [](Channel& c) {
         c.host.refuse_splits = true;
         c.lookup().BlankRange(Range(10, 10));
       },
       {{0, 10, 1000, 1010}}, 0, 0, 1},
      {"refused split, empty left piece", {{0, 30, 0}},
       [](Channel& c) {
         c.host.refuse_splits = true;
         c.lookup().BlankRange(Range(0, 10));
       },
       {}, 0, 0, 1},
      // A play clip without a record is cut with a cleared copy: source from 0.
      {"split without a record", {},
       [](Channel& c) {
         CPlayClip bare;
         bare.start = 10;
         bare.length = 20;
         c.lookup().playClips.insert(bare);
         c.lookup().BlankRange(Range(15, 5));
       },
       {{10, 5, 0, 0}, {20, 10, 10, 0}}, 1, 0, 1},
      {"inserts pushed past the end collide", {{kLastStart - 20, 5, 0}, {kLastStart - 10, 5, 50}},
       [](Channel& c) { c.lookup().ModifyRange(kLastStart - 200, kLastStart - 100, kInsert); },
       {{kLastStart, 5, 50, 55}}, 0, 0, 2},
      {"ripple add inside a clip overlaps it", {{0, 30, 0}},
       [](Channel& c) { c.Add(10, 5, 70, 0, TCS_EDIT_RIPPLE); },
       {{0, 30, 0, 30}, {10, 5, 70, 75}}, 1, 0, 2},
      // Without the stop, the walk would come back and move [100, 200) too.
      {"delete stops where an end wraps", {{100, 0xFFFFFFF0u, 0}},
       [](Channel& c) { c.lookup().DeleteRange(Range(200, 10)); },
       {{100, 100, 0, 100}, {200, 0xFFFFFFF0u - 110, 110, 0xFFFFFFF0u}}, 1, 0, 2},
      {"trim reversed", {{100, 50, 300}}, [](Channel& c) { c.lookup().TrimRange(100, 350, 300); },
       {{150, 50, 350, 300}}, 0, 0, 1},
      {"shift past the end", {{100, 50, 300}},
       [](Channel& c) { c.lookup().TrimRange(100, 20000000, 0, 1); },
       {{kLastStart, 50, 300, 350}}, 0, 0, 1},
      {"remove at or before", {{100, 50, 0}, {150, 50, 80}},
       [](Channel& c) {
         CPlayClip pc;
         pc.start = 50;
         EXPECT_EQ(c.lookup().RemoveClip(pc), nullptr);
         pc.start = 120;
         EXPECT_EQ(c.lookup().RemoveClip(pc), &pc);
       },
       {{150, 50, 80, 130}}, 0, 0, 2},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Channel channel;
    tcs::SpaceLock guard(channel.space);
    for (const Placed& p : row.before) channel.Add(p.start, p.length, p.source_in);
    channel.host.added = channel.host.deleted = 0;
    row.edit(channel);
    EXPECT_EQ(PlayedOf(channel.lookup()), row.after);
    EXPECT_EQ(channel.host.added, row.added);
    EXPECT_EQ(channel.host.deleted, row.deleted);
    EXPECT_EQ(channel.ListLength(), row.listed);
    channel.space.CheckInvariants();
  }
}

// The host's notifications may edit the same channel while an edit is under
// way; the edit finds its play clip again instead of using a stale position.
TEST(LookupEdit, NotificationsMayEditTheSameChannel) {
  struct Reentry {
    CTCLookup* lookup;
    bool armed = true;
    static unsigned int Reenter(void* context, CTimeCodeSpace*, CClip*) {
      auto* self = static_cast<Reentry*>(context);
      if (!self->armed) return 0;
      self->armed = false;
      self->lookup->BlankRange(Range(0, 1000));
      return 0;
    }
  };
  for (bool on_delete : {true, false}) {
    SCOPED_TRACE(on_delete ? "delete notification" : "add notification");
    Channel channel;
    channel.Add(0, 10, 0);
    channel.Add(10, 30, 0);
    channel.Add(40, 10, 0);
    Reentry reentry{&channel.lookup()};
    if (on_delete) {
      channel.space.delClipCallback = &Reentry::Reenter;
      channel.space.delClipContext = &reentry;
    } else {
      channel.space.addClipCallback = &Reentry::Reenter;
      channel.space.addClipContext = &reentry;
    }
    // Swallows [0, 10), a deletion; or splits [10, 40), an addition.
    channel.lookup().BlankRange(on_delete ? Range(0, 20) : Range(20, 5));
    EXPECT_FALSE(reentry.armed);
    channel.space.CheckInvariants();
    EXPECT_EQ(channel.lookup().find(30), channel.lookup().end());
  }
}

}  // namespace
