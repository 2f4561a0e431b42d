// Edits the random model tests do not reach: a ripple delete and a shift
// bring starts past the last one back to it, and RemoveClip takes the play
// clip at or before the start it is given, leaving its record listed. Also
// edits made from inside the host's notifications.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "support/test_clips.h"

namespace {

using tcs::kLastStart;
using Spans = std::vector<tcs_test::PlaySpan>;

std::function<void(CTCLookup&)> RemoveAt(uint32_t t, bool found) {
  return [=](CTCLookup& lookup) {
    CPlayClip pc;
    pc.start = t;
    EXPECT_EQ(lookup.RemoveClip(pc) == &pc, found);
  };
}

// The play clips after each edit; no record leaves the list.
TEST(LookupEdit, ClampsAtTheLastStartAndRemovesAtOrBefore) {
  const Spans two = {{100, 50, 0}, {150, 50, 80}};
  const struct {
    Spans before;
    std::function<void(CTCLookup&)> edit;
    Spans after;
  } rows[] = {
      {{{20000000, 100, 0}},
       [](CTCLookup& l) { l.ModifyRange(0, 50, TCS_EDIT_DELETE | TCS_EDIT_RIPPLE); },
       {{kLastStart, 100, 0}}},
      {{{100, 50, 300}}, [](CTCLookup& l) { l.ShiftRange(100, 20000000); },
       {{kLastStart, 50, 300}}},
      {two, RemoveAt(50, false), two},
      {two, RemoveAt(120, true), {{150, 50, 80}}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << "row " << &row - rows);
    tcs_test::OpenedSpace space;
    tcs::SpaceLock guard(*space);
    for (const auto& p : row.before) {
      space->AddClip(0, tcs_test::MakeClip(p.start, p.length, p.source_in).get(), 0);
    }
    row.edit(*space->lookups[0]);
    EXPECT_EQ(tcs_test::PlaySpans(*space, 0), row.after);
    EXPECT_EQ(tcs_test::ListedClips(*space).size(), row.before.size());
    space->CheckInvariants();
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

// A channel of more play clips than the ripple delete's read-ahead starts
// at: the same pull as on a short channel. A delete of the empty gap
// [10, 20) moves every later play clip, and its record, exactly 10 earlier;
// nothing before it moves.
TEST(LookupEdit, RippleDeleteOnAChannelOfManyPlayClips) {
  constexpr uint32_t kClips = 16384 + 40;  // past the read-ahead's threshold
  tcs_test::OpenedSpace space;
  tcs::SpaceLock guard(*space);
  // |A|   |B|   |C| ...  each 10 long, every 20 frames
  for (uint32_t k = 0; k < kClips; ++k) {
    space->AddClip(0, tcs_test::MakeClip(20 * k, 10, k).get(), 0);
  }
  space->lookups[0]->ModifyRange(10, 20, TCS_EDIT_DELETE | TCS_EDIT_RIPPLE);
  const Spans spans = tcs_test::PlaySpans(*space, 0);
  ASSERT_EQ(spans.size(), kClips);
  for (uint32_t k = 0; k < kClips; ++k) {
    const tcs_test::PlaySpan want{k == 0 ? 0 : 20 * k - 10, 10, k};
    if (spans[k] != want) {
      ADD_FAILURE() << "play clip " << k << ": " << testing::PrintToString(spans[k]);
      break;
    }
  }
  space->CheckInvariants();
}

// A lookup a host made and deletes itself hands each record it plays back
// to the space, in start order, once: off the list and through the delete
// notification. A record it does not play stays listed.
TEST(LookupEdit, ALookupDeletedOnItsOwnHandsBackItsRecords) {
  tcs_test::NotificationLog log;  // outlives the space, which reports the kept record
  tcs_test::OpenedSpace space;
  log.Install(space.get());
  tcs::SpaceLock guard(*space);
  auto lookup = std::make_unique<CTCLookup>(space.get());
  std::vector<CClip*> played;
  for (uint32_t start : {300u, 0u, 100u}) {
    CClip* record = space->__AddClipToList(0, tcs_test::MakeClip(start, 50).get(), 5);
    ASSERT_NE(record, nullptr);
    CPlayClip pc;
    pc.Construct(record);
    ASSERT_TRUE(lookup->Insert(pc));
    played.push_back(record);
  }
  CClip* kept = space->__AddClipToList(0, tcs_test::MakeClip(500, 50).get(), 5);
  lookup.reset();
  EXPECT_EQ(log.deleted, (std::vector<CClip*>{played[1], played[2], played[0]}));
  EXPECT_EQ(tcs_test::ListedClips(*space), std::vector<CClip*>{kept});
  space->CheckInvariants();
}

}  // namespace
