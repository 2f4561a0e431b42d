// Writer then reader over random spaces: every clip of every video and audio
// channel comes back on its channel, frame for frame, with its name, reel,
// comment, short name and transition, at each rate a file may carry; and a
// second write gives the same text. Clips on aux channels, which no host can
// lay, come back on free video channels with a warning naming the track.
// TCS_OTIO_SEED and TCS_OTIO_RUNS override the seeds.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "otio/otio.h"
#include "otio/otio_space.h"
#include "support/log_capture.h"
#include "support/random_channel.h"
#include "support/temp_dir.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs::otio::FrameRate;
using tcs_test::ClipRow;
using tcs_test::Dice;
using tcs_test::OpenedSpace;

const char* const kTexts[] = {"", "interview", "Straße über", "a \"quoted\" name", "tab\there",
                              "SOURCE FILE: /media/a.mov", "line one\nline two", "日本語",
                              "bell\x07 and \\ back", "source file:   /lower/case.mov",
                              "\nafter a blank line", "before a blank line\n\n"};

std::string Pick(Dice& dice) { return kTexts[dice(0, std::size(kTexts) - 1)]; }

// Random clips on random video and audio channels, laid in random order so
// that later ones overwrite parts of earlier ones.
void LayRandom(CTimeCodeSpace* space, Dice& dice) {
  const uint32_t clips = dice(1, 120);
  for (uint32_t i = 0; i < clips; ++i) {
    ClipRow clip;
    clip.channel = dice(0, 63);
    clip.start = dice(0, 3) == 0 ? dice(10600000, 10691990) : dice(0, 20000);
    clip.length = dice(1, 600);
    clip.sourceIn = dice(0, 3000000);
    if (dice(0, 2) == 0) {
      clip.effectCode = dice(0, 1) ? 0 : dice(1, 246);
      clip.effectDuration = dice(1, 60);
    }
    clip.name = Pick(dice);
    clip.reel = dice(0, 1) ? "REEL" + std::to_string(dice(1, 99)) : "";
    clip.comment = Pick(dice);
    clip.clipName = dice(0, 3) == 0 ? "SHORT" : "";
    if (dice(0, 3) == 0) {
      // Forward, reverse, a freeze; from the source in or another frame.
      clip.speed = true;
      const int32_t speeds[] = {0, -24000, 48000, 12500, int32_t(dice(0, 480000)) - 240000};
      clip.milliFps = speeds[dice(0, 4)];
      clip.speedEntry = dice(0, 1) ? clip.sourceIn : dice(0, 3000000);
    }
    tcs_test::LayClip(space, clip);
  }
}

TEST(OtioRoundTrip, RandomSpacesComeBackClipForClipAtEveryRate) {
  const FrameRate rates[] = {{24, false, false}, {25, false, false}, {30, false, false},
                             {24, false, true},  {30, true, true},  {60, true, true},
                             {30, false, true},  {50, false, false}, {120, false, false}};
  tcs_test::ForEachSeed("TCS_OTIO", 1, 40, [&](uint64_t seed) {
    Dice dice(seed);
    OpenedSpace original;
    LayRandom(original.get(), dice);
    const std::vector<ClipRow> before = tcs_test::AllClips(original.get());
    const FrameRate rate = rates[seed % std::size(rates)];

    std::string text;
    const tcs::otio::WriteResult written =
        tcs::otio::WriteOtioText(original.get(), {rate, "random"}, &text);
    ASSERT_EQ(written.status, tcs::otio::Status::kOk) << written.error;
    EXPECT_EQ(written.clips, before.size());
    EXPECT_TRUE(written.warnings.empty());

    OpenedSpace copy;
    const tcs::otio::ReadResult read = tcs::otio::ReadOtioText(copy.get(), text);
    ASSERT_EQ(read.status, tcs::otio::Status::kOk) << read.error;
    EXPECT_EQ(read.rate, rate) << "seed " << seed;
    EXPECT_EQ(read.name, "random");
    EXPECT_EQ(read.clips, before.size());
    for (const tcs::otio::Warning& w : read.warnings) ADD_FAILURE() << w.item << ": " << w.text;
    for (const tcs::otio::TrackPlacement& track : read.tracks) EXPECT_TRUE(track.byName);
    EXPECT_EQ(tcs_test::AllClips(copy.get()), before) << "seed " << seed;

    std::string again;
    tcs::otio::WriteOtioText(copy.get(), {rate, "random"}, &again);
    EXPECT_EQ(again, text) << "seed " << seed;
  });
}

TEST(OtioRoundTrip, AuxChannelsComeBackOnFreeVideoChannelsWithAWarning) {
  OpenedSpace space;
  tcs_test::LayClip(space.get(), {0, 100, 50, 0, 0, 0, "on V1", "", "", ""});
  for (const uint32_t channel : {64u, 95u}) {
    auto clip = tcs_test::MakeClip(200, 40, 7, "aux");
    ASSERT_EQ(tcsAddClip(space.get(), clip.get(), channel), 0u);
  }
  std::string text;
  ASSERT_EQ(tcs::otio::WriteOtioText(space.get(), {}, &text).status, tcs::otio::Status::kOk);
  EXPECT_NE(text.find("\"name\": \"X32\""), std::string::npos);

  OpenedSpace copy;
  const tcs::otio::ReadResult read = tcs::otio::ReadOtioText(copy.get(), text);
  ASSERT_EQ(read.status, tcs::otio::Status::kOk) << read.error;
  ASSERT_EQ(read.tracks.size(), 3u);
  EXPECT_EQ(read.tracks[1].track, "X1");
  EXPECT_EQ(read.tracks[1].channel, 1u);
  EXPECT_FALSE(read.tracks[1].byName);
  EXPECT_EQ(read.tracks[2].channel, 2u);
  ASSERT_EQ(read.warnings.size(), 2u);
  EXPECT_EQ(read.warnings[0].item, "X1");
  EXPECT_EQ(read.warnings[1].item, "X32");
  const std::vector<ClipRow> back = tcs_test::AllClips(copy.get());
  ASSERT_EQ(back.size(), 3u);
  EXPECT_EQ(back[1].channel, 1u);
  EXPECT_EQ(back[1].start, 200u);
  EXPECT_EQ(back[1].length, 40u);
  EXPECT_EQ(back[1].sourceIn, 7u);
  EXPECT_EQ(back[1].name, "aux");
}

TEST(OtioRoundTrip, ThroughAFileAndAFailedWriteLeavesTheFileAsItWas) {
  tcs_test::TempDir dir;
  const std::string path = dir.File("cut.otio");
  OpenedSpace space;
  tcs_test::LayClip(space.get(), {33, 250, 75, 1000, 0, 0, "theme", "MUSIC", "", ""});
  ASSERT_EQ(tcs::otio::WriteOtioFile(space.get(), path, {{25, false, false}, "cut"}).status,
            tcs::otio::Status::kOk);
  const std::string written = tcs_test::ReadFile(path);
  OpenedSpace copy;
  const tcs::otio::ReadResult read = tcs::otio::ReadOtioFile(copy.get(), path);
  ASSERT_EQ(read.status, tcs::otio::Status::kOk) << read.error;
  EXPECT_EQ(read.rate.fps, 25u);
  EXPECT_EQ(tcs_test::AllClips(copy.get()), tcs_test::AllClips(space.get()));

  // A write that fails (the space is gone) leaves the file and no stray
  // temporary beside it.
  CTimeCodeSpace* closed = tcsOpen(nullptr, nullptr, nullptr);
  tcsClose(closed);
  {
    tcs_test::LogCapture log;
    EXPECT_EQ(tcs::otio::WriteOtioFile(closed, path, {}).status, tcs::otio::Status::kSpaceRefused);
  }
  EXPECT_EQ(tcs_test::ReadFile(path), written);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()),
                          std::filesystem::directory_iterator()),
            1);
}

}  // namespace
