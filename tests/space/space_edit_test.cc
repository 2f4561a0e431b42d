// The space's edits and queries over channels and masks.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>

#include "support/log_capture.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::FakeClock;
using tcs_test::ListedClips;
using tcs_test::LogCapture;
using tcs_test::MakeClip;
using tcs_test::NotificationLog;

using tcs_test::PlaySpans;
using Spans = std::vector<tcs_test::PlaySpan>;

// An added record with an over-long length or a wrapped source end is
// corrected in the caller's record and listed so.
TEST(SpaceEdit, AddedRecordsAreCorrectedInPlace) {
  struct Row {
    uint32_t start, length, origin, end, in, out;
    uint32_t want_start, want_length, want_end;
  };
  const Row rows[] = {
      // A negative length stands for its negation, cut at the timeline's end.
      {1000, 0xFFFFFF00u, 0, 0, 0, 0, 1000, 256, 0},
      {1000, 20000000, 0, 0, 0, 0, 1000, 10691001, 0},
      {20000000, 30000000, 0, 0, 0, 0, 10692000, 1, 0},
      {5000000, 0xFF5CDA60u, 0, 0, 0, 0, 5000000, 10692000, 0},
      // Lengths up to the full timeline, and 0xFFFFFFFF, stay.
      {1000, 0xFFFFFFFFu, 0, 0, 0, 0, 1000, 0xFFFFFFFFu, 0},
      {1000, 10692000, 0, 0, 0, 0, 1000, 10692000, 0},
      // A source end past the timeline from its origin is rebuilt.
      {0, 10, 1000, 30000000, 100, 600, 0, 10, 500},
      {0, 10, 5000, 4000, 100, 600, 0, 10, 4500},
      {0, 10, 1000, 2000, 100, 600, 0, 10, 2000},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::Message() << "start " << row.start << " length " << row.length);
    tcs_test::OpenedSpace space;
    auto clip = MakeClip(row.start, row.length, row.in);
    clip->sourceOut = row.out;
    clip->sourceOrigin = row.origin;
    clip->sourceEnd = row.end;
    ASSERT_EQ(tcsAddClip(space.get(), clip.get(), 0), TCS_OK);
    EXPECT_EQ(std::make_tuple(clip->start, clip->length, clip->sourceEnd),
              std::make_tuple(row.want_start, row.want_length, row.want_end));
    EXPECT_EQ(space->firstClip->length, row.want_length);
  }
}

// Reversed and over-long ranges through the command record are in the
// bad-input table; here: an empty one too, none of them stamps, and the full
// timeline is not over-long.
TEST(SpaceEdit, RefusedRangesDoNotStampAndMasksNameChannels) {
  FakeClock clock(100);
  LogCapture log;
  tcs_test::OpenedSpace space;
  for (uint32_t channel : {0u, 1u, 32u, 33u}) {
    ASSERT_EQ(tcsAddClip(space.get(), MakeClip(0, 50).get(), channel), TCS_OK);
  }
  clock.Set(200);
  for (auto [a, b] : {std::pair{100u, 100u}, {200u, 100u}, {5u, 0xFFFFFFFFu}}) {
    EXPECT_EQ(space->ModifyRange(a, b, 1, 0, TCS_EDIT_DELETE), TCS_ERR_BAD_RANGE);
  }
  EXPECT_EQ(space->changeStamp.load(), 100u);
  EXPECT_EQ(log.Lines(), std::vector<std::string>(3, "TCSpace(0xA808F013)"));
  // A masked channel without a lookup (video 31, audio 31) is passed over.
  EXPECT_EQ(space->ModifyRange(0, 10692000, 0x80000001u, 0x80000000u, TCS_EDIT_DELETE), TCS_OK);
  EXPECT_EQ(space->lookups[31], nullptr);
  EXPECT_EQ(space->changeStamp.load(), 200u);
  EXPECT_EQ(PlaySpans(*space, 1), (Spans{{0, 50, 0}}));
  EXPECT_TRUE(PlaySpans(*space, 0).empty());
  // Channel numbers from 96 up mean channel 0.
  EXPECT_EQ(space->AddClip(0, MakeClip(30, 10).get(), 96)->channel, 0u);
  EXPECT_EQ(space->AddClip(0, MakeClip(50, 10).get(), 200)->channel, 0u);
  CPlayClip out;
  EXPECT_EQ(space->FindPlayClip(0x10, 55, out, 1000), 50u);
  space->CheckInvariants();
}

// Filling the masked channels is seen through the insert command; here: a
// host that does not listen to additions gets nothing, not even a stamp.
TEST(SpaceEdit, InsertFileNeedsAListeningHost) {
  LogCapture log;
  tcs_test::OpenedSpace space;
  EXPECT_EQ(space->InsertFile(0, MakeClip(100, 50, 7).get()), TCS_ERR_NO_ADD_CALLBACK);
  EXPECT_EQ(space->firstClip, nullptr);
  EXPECT_EQ(space->changeStamp.load(), 0u);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA808F005)"});
}

// DeleteClip blanks the record's range unless the insert or blank bit is
// given, ignores a null record and never ripples.
TEST(SpaceEdit, DeleteClipBlanksOnlyItsRangeAndOnlyWithoutInsertOrBlankBits) {
  NotificationLog notes;
  tcs_test::OpenedSpace space;
  notes.Install(space.get());
  CClip* first = space->AddClip(0, MakeClip(0, 10).get(), 3);
  space->AddClip(0, MakeClip(10, 10).get(), 3);
  EXPECT_EQ(space->DeleteClip(first, TCS_EDIT_INSERT), TCS_OK);
  EXPECT_EQ(PlaySpans(*space, 3).size(), 2u);
  EXPECT_EQ(space->DeleteClip(nullptr, 0), TCS_OK);
  // Ripple is never passed on: the gap stays.
  EXPECT_EQ(space->DeleteClip(first, TCS_EDIT_RIPPLE), TCS_OK);
  EXPECT_EQ(PlaySpans(*space, 3), (Spans{{10, 10, 0}}));
  EXPECT_EQ(notes.deleted, std::vector<CClip*>{first});
  space->CheckInvariants();
}

// On random channels of non-overlapping records, a rebuild gives back the
// very play clips the lookups held.
TEST(SpaceEdit, RebuildGivesBackThePlayClipsOfNonOverlappingRecords) {
  std::mt19937 rng(301);
  for (int round = 0; round < 50; ++round) {
    SCOPED_TRACE(round);
    tcs_test::OpenedSpace space;
    for (uint32_t channel : {0u, 5u, 40u, 90u}) {
      uint32_t t = rng() % 50;
      for (int i = 0; i < 20; ++i) {
        const uint32_t length = 1 + rng() % 30;
        space->AddClip(0, MakeClip(t, length, rng() % 1000).get(), channel);
        t += length + rng() % 3;  // sometimes adjacent, never overlapping
      }
    }
    std::vector<Spans> before;
    for (uint32_t c = 0; c < 96; ++c) before.push_back(PlaySpans(*space, c));
    // A play clip taken out by RemoveClip comes back too: its record stayed.
    CPlayClip pc;
    ASSERT_NE(space->FindPlayClip(0x18, 0, pc, 40), tcs::kNotFound);
    ASSERT_EQ(space->RemoveClip(pc), &pc);
    space->DestroyLookup();
    EXPECT_TRUE(PlaySpans(*space, 5).empty());
    space->RebuildLookup();
    for (uint32_t c = 0; c < 96; ++c) EXPECT_EQ(PlaySpans(*space, c), before[c]) << c;
    space->CheckInvariants();
  }
}

// Replacing the current clip leaves its record listed without a play clip, so
// the list can hold overlapping records of one channel; a rebuild replays
// them in list order, the later over the earlier, and does not replay the
// piece that this splits off.
TEST(SpaceEdit, RebuildLaysALaterOverlappingRecordOverAnEarlierOne) {
  tcs_test::OpenedSpace space;
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(0, 100, 500).get(), 0), TCS_OK);
  CClip* early = nullptr;
  ASSERT_EQ(tcsFindClip(space.get(), 0x10, 45, &early, 0), 0u);
  ASSERT_EQ(tcsSetCurClip(space.get(), MakeClip(40, 20, 900).get()), TCS_OK);
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(200, 10, 0).get(), 0), TCS_OK);
  ASSERT_EQ(ListedClips(*space).size(), 3u);
  space->RebuildLookup();
  EXPECT_EQ(PlaySpans(*space, 0),
            (Spans{{0, 40, 500}, {40, 20, 900}, {60, 40, 560}, {200, 10, 0}}));
  EXPECT_EQ(early->length, 40u);
  EXPECT_EQ(ListedClips(*space).size(), 4u);
  space->CheckInvariants();
}

// tcsTranslate answers the source frame and the record under the position;
// only with bit 0 of the mode does a miss fall back to the clip search.
TEST(SpaceEdit, TranslateFallsBackToTheSearchOnlyWithBitZero) {
  tcs_test::OpenedSpace space;
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(0, 10, 100).get(), 2), TCS_OK);
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(20, 10, 300).get(), 2), TCS_OK);
  const uint32_t cases[][5] = {  // mode, position, channel, answer, record's source in
      {0, 5, 2, 105, 100}, {0x18, 15, 2, tcs::kNotFound, 0}, {0x19, 15, 2, 20, 300},
      {0x19, 15, 7, tcs::kNotFound, 0}};
  for (const auto& [mode, at, channel, answer, source_in] : cases) {
    CClip* found = nullptr;  // no output at all on the channel without clips
    EXPECT_EQ(tcsTranslate(space.get(), mode, at, channel == 7 ? nullptr : &found, channel),
              answer) << mode;
    EXPECT_EQ(found == nullptr ? 0 : found->sourceIn, source_in) << mode;
  }
}

// A replacement the host refuses puts the current clip back, as a further
// listed copy of its record, which stays the current clip.
TEST(SpaceEdit, ARefusedReplacementPutsTheCurrentClipBack) {
  LogCapture log;
  tcs_test::OpenedSpace space;
  int calls = 0;
  tcsSetAddCallback(space.get(), &calls, [](void* context, CTimeCodeSpace*, CClip*) {
    return (*static_cast<int*>(context))++ == 1 ? 1u : 0u;  // refuses the second addition
  });
  ASSERT_EQ(tcsAddClip(space.get(), MakeClip(100, 50, 300).get(), 4), TCS_OK);
  CClip* current = nullptr;
  ASSERT_EQ(tcsFindClip(space.get(), 0x10, 120, &current, 4), 100u);
  auto replacement = MakeClip(100, 50, 500);
  replacement->channel = 4;
  EXPECT_EQ(tcsSetCurClip(space.get(), replacement.get()), TCS_ERR_ADD_REFUSED);
  EXPECT_EQ(PlaySpans(*space, 4), (Spans{{100, 50, 300}}));
  EXPECT_EQ(ListedClips(*space).size(), 2u);
  EXPECT_EQ(ListedClips(*space).front(), current);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"TCSpace(0xA808F01A)"});
  auto copy = MakeClip(0, 0);
  EXPECT_EQ(tcsGetCurClip(space.get(), copy.get()), TCS_OK);
  EXPECT_EQ(std::make_tuple(copy->start, copy->length, copy->sourceIn, copy->channel),
            std::make_tuple(100u, 50u, 300u, 4u));
}

}  // namespace
