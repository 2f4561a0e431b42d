// Range and single play-clip edits the frame model leaves out (records that
// leave through the delete notification, wraps, clamps at the last start,
// source points), table-driven: the play clips and their records' source
// points after each edit, and what the host was told.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "support/test_clips.h"

namespace {

using tcs::kLastStart;
using Played = std::array<uint32_t, 4>;  // start, length, sourceIn, sourceOut
using Edit = std::function<void(CTCLookup&)>;

Edit Modify(uint32_t a, uint32_t b, uint32_t flags) {
  return [=](CTCLookup& lookup) { lookup.ModifyRange(a, b, flags); };
}

Edit RemoveAt(uint32_t t, bool found) {
  return [=](CTCLookup& lookup) {
    CPlayClip pc;
    pc.start = t;
    EXPECT_EQ(lookup.RemoveClip(pc) == &pc, found);
  };
}

constexpr uint32_t kBlank = TCS_EDIT_BLANK;
constexpr uint32_t kInsert = TCS_EDIT_INSERT | TCS_EDIT_RIPPLE;
constexpr uint32_t kDelete = TCS_EDIT_DELETE | TCS_EDIT_RIPPLE;

TEST(LookupEdit, EditsTable) {
  struct Row {
    std::vector<Played> before;  // sourceOut unused: each record plays its length
    Edit edit;
    std::vector<Played> after;
    std::array<size_t, 3> told;  // additions asked, deletions, records listed
  } const rows[] = {
      // Tail, inside (its record leaves through the delete notification), head.
      {{{0, 12, 100}, {12, 3, 200}, {15, 10, 300}}, Modify(10, 20, kBlank),
       {{0, 10, 100, 110}, {20, 5, 305, 310}}, {0, 1, 2}},
      // The walk stops where an end wraps past 2^32: [100, 200) moves once.
      {{{100, 0xFFFFFFF0u, 0}}, Modify(200, 210, kDelete),
       {{100, 100, 0, 100}, {200, 0xFFFFFFF0u - 110, 110, 0xFFFFFFF0u}}, {1, 0, 2}},
      // A start past the last one (as an added record may keep) is pulled
      // back no further than the last start.
      {{{20000000, 100, 0}}, Modify(0, 50, kDelete), {{kLastStart, 100, 0, 100}}, {0, 0, 1}},
      // Both capped at the last start: the earlier, moved second, is dropped
      // and its record stays listed.
      {{{kLastStart - 20, 5, 0}, {kLastStart - 10, 5, 50}},
       Modify(kLastStart - 200, kLastStart - 100, kInsert), {{kLastStart, 5, 50, 55}}, {0, 0, 2}},
      {{{100, 50, 300}}, [](CTCLookup& l) { l.TrimRange(100, 350, 300); }, {{150, 50, 350, 300}},
       {0, 0, 1}},
      {{{100, 50, 300}}, [](CTCLookup& l) { l.ShiftRange(100, 20000000); },
       {{kLastStart, 50, 300, 350}}, {0, 0, 1}},
      // RemoveClip takes the play clip at or before the start it is given.
      {{{100, 50, 0}, {150, 50, 80}}, RemoveAt(50, false), {{100, 50, 0, 50}, {150, 50, 80, 130}},
       {0, 0, 2}},
      {{{100, 50, 0}, {150, 50, 80}}, RemoveAt(120, true), {{150, 50, 80, 130}}, {0, 0, 2}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << "row " << &row - rows);
    tcs_test::NotificationLog notes;
    tcs_test::OpenedSpace opened;
    CTimeCodeSpace& space = *opened;
    notes.Install(&space);
    tcs::SpaceLock guard(space);
    for (const Played& p : row.before) {
      space.AddClip(0, tcs_test::MakeClip(p[0], p[1], p[2]).get(), 0);
    }
    notes.added.clear();
    row.edit(*space.lookups[0]);
    std::vector<Played> after;
    for (const auto& pc : *space.lookups[0]) {
      after.push_back({pc.start, pc.length, pc.clip->sourceIn, pc.clip->sourceOut});
    }
    EXPECT_EQ(after, row.after);
    EXPECT_EQ(row.told, (std::array<size_t, 3>{notes.added.size(), notes.deleted.size(),
                                               tcs_test::ListedClips(space).size()}));
    space.CheckInvariants();
  }
}

// The host's notifications may edit the same channel while an edit is under
// way; the edit finds its play clip again instead of using a stale position.
TEST(LookupEdit, NotificationsMayEditTheSameChannel) {
  struct Reentry {
    CTCLookup* lookup = nullptr;
    bool armed = true;
    static unsigned int Reenter(void* context, CTimeCodeSpace*, CClip*) {
      auto* self = static_cast<Reentry*>(context);
      if (!self->armed) return 0;
      self->armed = false;
      self->lookup->ModifyRange(0, 1000, TCS_EDIT_BLANK);
      return 0;
    }
  };
  for (bool on_delete : {true, false}) {
    SCOPED_TRACE(on_delete ? "delete notification" : "add notification");
    Reentry reentry;
    tcs_test::OpenedSpace space;
    for (auto [start, length] : {std::pair{0u, 10u}, {10u, 30u}, {40u, 10u}}) {
      space->AddClip(0, tcs_test::MakeClip(start, length).get(), 0);
    }
    reentry.lookup = space->lookups[0];
    (on_delete ? tcsSetDelCallback : tcsSetAddCallback)(space.get(), &reentry, &Reentry::Reenter);
    // Swallows [0, 10), a deletion; or splits [10, 40), an addition.
    const tcs::Span r = on_delete ? tcs::Span{0, 20} : tcs::Span{20, 5};
    reentry.lookup->ModifyRange(r.start, r.start + r.length, TCS_EDIT_BLANK);
    EXPECT_FALSE(reentry.armed);
    space->CheckInvariants();
    EXPECT_EQ(reentry.lookup->find(30), reentry.lookup->end());
  }
}

}  // namespace
