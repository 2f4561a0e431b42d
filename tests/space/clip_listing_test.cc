// The listing entry points against the lookups they read: after every step
// of random edit sequences on many channels (moves among them, which leave
// clips overlapping), each channel listed in random batches gives every play
// clip once, in start order, with its record's fields; a listing of a random
// window gives what the window's rule picks; counts and channel masks agree.
// And a clip that the event walk passes over is listed. TCS_LISTING_SEED and
// TCS_LISTING_RUNS override the seeds.
#include <gtest/gtest.h>

#include <set>
#include <utility>
#include <vector>

#include "support/command_record.h"
#include "support/log_capture.h"
#include "support/random_channel.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::Dice;
using tcs_test::OpenedSpace;

struct Expected {
  uint32_t start, length, source_in, source_out;
  const CClip* clip;
  friend bool operator==(const Expected&, const Expected&) = default;
  friend void PrintTo(const Expected& e, std::ostream* os) {
    *os << "[" << e.start << ", +" << e.length << ") src " << e.source_in << ".." << e.source_out;
  }
};

// The channel as its lookup holds it.
std::vector<Expected> Reference(const CTimeCodeSpace& space, uint32_t channel) {
  std::vector<Expected> out;
  if (const CTCLookup* lookup = space.lookups[channel]) {
    for (const auto& pc : *lookup) {
      out.push_back({pc.start, pc.length, pc.clip ? pc.clip->sourceIn : 0,
                     pc.clip ? pc.clip->sourceOut : 0, pc.clip});
    }
  }
  return out;
}

Expected Of(const TCSCLIP& row) {
  return {row.start, row.length, row.sourceIn, row.sourceOut, row.clip};
}

// [from, to) in batches of `batch`, following the cursor; checks each row's
// own consistency on the way.
std::vector<Expected> List(CTimeCodeSpace* space, uint32_t channel, uint32_t from, uint32_t to,
                           uint32_t batch) {
  std::vector<Expected> out;
  std::vector<TCSCLIP> rows(batch);
  uint32_t count = 0;
  for (int calls = 0; calls < 100000; ++calls) {
    EXPECT_EQ(tcsGetClips(space, channel, from, to, rows.data(), batch, &count, &from), 0u);
    EXPECT_LE(count, batch);
    for (uint32_t i = 0; i < count; ++i) {
      const TCSCLIP& row = rows[i];
      EXPECT_EQ(row.channel, channel);
      EXPECT_NE(row.effectText, nullptr);
      if (row.clip != nullptr) {
        EXPECT_EQ(row.info, static_cast<const CLIPINFO*>(row.clip));
        EXPECT_EQ(row.effectCode, row.clip->effectCode);
        TCSCLIP described;
        EXPECT_EQ(tcsDescribeClip(row.clip, &described), 0u);
        EXPECT_EQ(Of(described), Of(row));  // a play clip's range is its record's
        EXPECT_EQ(described.channel, channel);
        EXPECT_EQ(described.info, row.info);
      }
      out.push_back(Of(row));
    }
    if (from == TCS_NO_TIMECODE) return out;
    EXPECT_GT(count, 0u) << "a batch that goes on must make progress";
  }
  ADD_FAILURE() << "the cursor never ended";
  return out;
}

// The window's rule on the reference: the play clip with the greatest start
// at or before `from` when it starts or plays there, then each that starts
// after `from` and before `to`.
std::vector<Expected> Window(const std::vector<Expected>& all, uint32_t from, uint32_t to) {
  std::vector<Expected> out;
  if (from == to) return out;
  const Expected* at = nullptr;
  for (const Expected& e : all) {
    if (e.start <= from) at = &e;
  }
  if (at != nullptr && (at->start == from || from - at->start < at->length) && at->start < to) {
    out.push_back(*at);
  }
  for (const Expected& e : all) {
    if (e.start > from && e.start < to) out.push_back(e);
  }
  return out;
}

constexpr uint32_t kEditChannels[] = {0, 1, 2, 3, 32, 33, 34, 47};

// One random edit through the command record, as a host's control layer
// sends it; or a clip laid straight on an aux channel.
void RandomEdit(CTimeCodeSpace* space, Dice& u) {
  const uint32_t window = 2000;
  const uint32_t kind = u(0, 6);
  if (kind == 6) {
    auto clip = tcs_test::MakeClip(u(0, window), u(0, 3) == 0 ? 0 : u(1, 300), u(0, 50000), "aux");
    tcsAddClip(space, clip.get(), 64 + u(0, 2));
    return;
  }
  static constexpr uint32_t kCommands[] = {TCSCMD_INSERT, TCSCMD_INSERT, TCSCMD_CLEAR,
                                           TCSCMD_DELETE, TCSCMD_TRIM, TCSCMD_TRIM};
  auto cmd = tcs_test::NewCommand(kCommands[kind]);
  for (int n = int(u(1, 3)); n > 0; --n) {
    const uint32_t c = kEditChannels[u(0, std::size(kEditChannels) - 1)];
    (c < 32 ? cmd->videoMask : cmd->audioMask) |= 1u << (c % 32);
  }
  const uint32_t a = u(0, window);
  const uint32_t b = a + u(1, 400);
  switch (kind) {
    case 0:  // overwrite
      cmd->flags = TCSF_TEXT | TCSF_POS | TCSF_IN | TCSF_OUT;
      cmd->position = a;
      cmd->inPoint = u(0, 90000);
      cmd->outPoint = cmd->inPoint + (b - a);
      std::snprintf(cmd->longText, sizeof cmd->longText, "clip %u", cmd->inPoint);
      break;
    case 1:  // ripple insert
      cmd->flags = TCSF_MARKS | TCSF_RIPPLE;
      cmd->position = cmd->inPoint = a;
      cmd->outPoint = b;
      break;
    case 2:  // blank
    case 3:  // ripple delete
      cmd->flags = TCSF_MARKS | (kind == 3 ? TCSF_RIPPLE : 0);
      cmd->position = cmd->inPoint = a;
      cmd->outPoint = b;
      break;
    default: {  // trim or move the clip starting at a listed start: overlaps follow
      TCSCLIP row;
      uint32_t count = 0, next = 0;
      const uint32_t c = cmd->videoMask ? uint32_t(__builtin_ctz(cmd->videoMask))
                                        : 32 + uint32_t(__builtin_ctz(cmd->audioMask));
      tcsGetClips(space, c, a, TCS_NO_TIMECODE, &row, 1, &count, &next);
      cmd->position = count == 1 ? row.start : a;
      if (kind == 4) {
        cmd->flags = TCSF_POS | TCSF_IN | TCSF_OUT;
        cmd->inPoint = count == 1 ? row.sourceIn + u(0, 20) : 0;
        cmd->outPoint = cmd->inPoint + u(1, 300);
      } else {
        cmd->flags = TCSF_POS | TCSF_AT;
        cmd->inPoint = u(0, window);
      }
    }
  }
  tcs_test::LogCapture quiet;  // refused ranges log; they are part of the game
  tcsSetMode(space, cmd.get());
}

void CheckListing(CTimeCodeSpace* space, Dice& u) {
  uint32_t video = 0, audio = 0, aux = 0;
  ASSERT_EQ(tcsGetChannels(space, &video, &audio, &aux), 0u);
  const uint32_t words[3] = {video, audio, aux};
  for (uint32_t c = 0; c < 96; ++c) {
    SCOPED_TRACE(c);
    const std::vector<Expected> all = Reference(*space, c);
    EXPECT_EQ((words[c / 32] >> (c % 32) & 1) != 0, !all.empty());
    uint32_t count = 0;
    ASSERT_EQ(tcsGetClipCount(space, c, &count), 0u);
    EXPECT_EQ(count, all.size());
    if (all.empty()) continue;
    EXPECT_EQ(List(space, c, 0, TCS_NO_TIMECODE, u(1, 5)), all);
    const uint32_t from = u(0, 2400);
    const uint32_t to = from + u(0, 600);
    const std::vector<Expected> window = List(space, c, from, to, u(1, 4));
    EXPECT_EQ(window, Window(all, from, to)) << "window " << from << ".." << to;
    // The first row is what plays at `from`, as tcsTranslate answers it.
    CClip* playing = nullptr;
    if (tcsTranslate(space, 0, from, &playing, c) != TCS_NOT_FOUND && from < to) {
      ASSERT_FALSE(window.empty());
      EXPECT_EQ(window.front().clip, playing);
    }
  }
}

TEST(ClipListing, RandomEditsListEveryPlayClipOnceInStartOrder) {
  tcs_test::ForEachSeed("TCS_LISTING", 401, 6, [](uint64_t seed) {
    Dice u(seed);
    tcs_test::NotificationLog notes;  // outlives the space, which reports to it
    OpenedSpace space;
    notes.Install(space.get());
    for (int step = 0; step < 150; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
      RandomEdit(space.get(), u);
      space->CheckInvariants();
      CheckListing(space.get(), u);
      if (testing::Test::HasFailure()) return;
    }
  });
}

// V1 [20,40) source 0, [40,70) source 2005; V2 [45,70) and V3 [30,55),
// source 0. The walk reports V1 at 20, V3 at 30 and V2 at 45: V1's clip at
// 40 starts while V1 is still marked as reported. The listing has it.
TEST(ClipListing, ListsTheClipTheWalkPassesOver) {
  OpenedSpace space;
  for (const auto& [channel, start, length, source] :
       {std::tuple{0u, 20u, 20u, 0u}, {0u, 40u, 30u, 2005u}, {1u, 45u, 25u, 0u}, {2u, 30u, 25u, 0u}}) {
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(start, length, source).get(), channel), 0u);
  }
  std::set<std::pair<uint32_t, uint32_t>> walked;
  auto walk = tcs_test::NewCommand(TCSCMD_GET, 0, TCSSUB_NEXT);
  walk->outPoint = TCS_NO_TIMECODE;
  for (int step = 0; step < 20 && walk->position != TCS_NO_TIMECODE; ++step) {
    TCSCMD probe = *walk;
    if (tcsFindNextClip(space.get(), &probe, 1, nullptr) != TCS_NOT_FOUND) {
      for (uint32_t c = 0; c < 32; ++c) {
        if (probe.videoMask >> c & 1) walked.insert({c, probe.position});
      }
    }
    tcsFindNextClip(space.get(), walk.get(), 0, nullptr);
  }
  EXPECT_EQ(walked, (std::set<std::pair<uint32_t, uint32_t>>{{0, 20}, {2, 30}, {1, 45}}));

  Dice u(1);
  const std::vector<Expected> v1 = List(space.get(), 0, 0, TCS_NO_TIMECODE, 8);
  ASSERT_EQ(v1.size(), 2u);
  EXPECT_EQ(v1[1].start, 40u);
  EXPECT_EQ(v1[1].source_in, 2005u);
  CheckListing(space.get(), u);
}

// Starts wrap like every timecode sum: a play clip can start at 0xFFFFFFFF,
// the value that also ends a listing. Any batch of two rows or more still
// lists it, once.
TEST(ClipListing, ListsAClipThatStartsAtTheLastFrameOfThe32Bits) {
  OpenedSpace space;
  for (const uint32_t start : {10691847u, 10692000u, 0xFFFFFFFFu}) {
    auto made = tcs_test::MakeClip(start, start == 0xFFFFFFFFu ? 0 : 1, start);
    tcs_test::LayPlayClip(*space, 0, *made);
  }
  const std::vector<Expected> all = Reference(*space, 0);
  ASSERT_EQ(all.size(), 3u);
  for (uint32_t batch = 2; batch <= 4; ++batch) {
    SCOPED_TRACE(batch);
    EXPECT_EQ(List(space.get(), 0, 0, TCS_NO_TIMECODE, batch), all);
  }
}

}  // namespace
