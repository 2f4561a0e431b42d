// The reader over hand-written files, one per group of schemas: nested
// stacks and trimmed tracks flattened as they show, gaps, every media
// reference, Clip.1 and Clip.2, transitions of each kind with their
// offsets, markers, items at other rates than the timeline's, collections
// and the old schema names, speed effects and what else the space cannot
// hold. Every expectation below was worked out by hand from the file.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "otio/otio.h"
#include "otio/otio_space.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs::otio::ReadResult;
using tcs::otio::Status;
using tcs_test::ClipRow;
using tcs_test::OpenedSpace;

std::string DataFile(const char* name) { return std::string(TCS_OTIO_TEST_DATA) + "/" + name; }

std::vector<std::pair<std::string, std::string>> Warnings(const ReadResult& result) {
  std::vector<std::pair<std::string, std::string>> out;
  for (const tcs::otio::Warning& w : result.warnings) out.emplace_back(w.item, w.text);
  return out;
}

ClipRow Row(uint32_t channel, uint32_t start, uint32_t end, uint32_t source, const char* name) {
  ClipRow row;
  row.channel = channel;
  row.start = start;
  row.length = end - start;
  row.sourceIn = source;
  row.name = name;
  return row;
}

TEST(OtioReader, NestedStacksTrimmedTracksGapsAndMediaReferences) {
  OpenedSpace space;
  const ReadResult read = tcs::otio::ReadOtioFile(space.get(), DataFile("nested_and_gaps.otio"));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  EXPECT_EQ(read.name, "nested");
  EXPECT_EQ(read.rate, (tcs::otio::FrameRate{24, false, false}));
  EXPECT_TRUE(read.warnings.empty());
  ClipRow a = Row(0, 86400, 86410, 100, "A");
  a.comment = "SOURCE FILE: file:///a.mov";
  // The nested stack: B under D where D plays, C after the low track's gap;
  // the trimmed track shows frames 2..4 of E then F.
  ClipRow g = Row(0, 86428, 86434, 10, "G");
  g.comment = "SOURCE FILE: hi.mov";
  ClipRow music = Row(32, 86400, 86434, 0, "music");
  music.reel = "MUSIC";
  music.comment = "needs mix\nsecond";
  const std::vector<ClipRow> expected = {
      a,
      Row(0, 86415, 86418, 0, "B"),
      Row(0, 86418, 86420, 200, "D"),
      Row(0, 86421, 86425, 50, "C"),
      Row(0, 86425, 86427, 1002, "E"),
      Row(0, 86427, 86428, 2000, "F"),
      g,
      music};
  EXPECT_EQ(tcs_test::AllClips(space.get()), expected);
  EXPECT_EQ(read.clips, expected.size());
}

TEST(OtioReader, TransitionsOfEachKindAndMarkersInTheComment) {
  OpenedSpace space;
  const ReadResult read =
      tcs::otio::ReadOtioFile(space.get(), DataFile("transitions_markers.otio"));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  EXPECT_EQ(read.rate.fps, 25u);  // the first clip's rate: no global_start_time
  ClipRow b = Row(0, 50, 100, 500, "B");
  b.effectDuration = 10;
  b.comment =
      "MARKER: fix at source frame 510 RED: soft focus\n"
      "MARKER: old at source frame 600 for 5 (outside the clip) GREEN";
  ClipRow c = Row(0, 100, 120, 0, "C");
  c.effectCode = 5;
  c.effectDuration = 8;
  ClipRow d = Row(0, 120, 150, 0, "D");
  d.effectDuration = 10;  // 4 before the cut and 6 after, started at the cut
  EXPECT_EQ(tcs_test::AllClips(space.get()),
            (std::vector<ClipRow>{Row(0, 0, 50, 0, "A"), b, c, d}));
  const std::vector<std::pair<std::string, std::string>> expected = {
      {"centred", "starts 4 frames before the cut; the space starts it at the cut"},
      {"fade out", "transition type \"Custom_Transition\" read as a dissolve"},
      {"fade out", "transition into Gap, not into a clip: not kept"},
      {"tail", "starts 5 frames before the cut; the space starts it at the cut"},
      {"tail", "transition at the end of a track: not kept"}};
  EXPECT_EQ(Warnings(read), expected);
}

TEST(OtioReader, ItemsAtOtherRatesConvertToTheTimelinesRoundingHalvesUp) {
  OpenedSpace space;
  const ReadResult read = tcs::otio::ReadOtioFile(space.get(), DataFile("mixed_rates.otio"));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  EXPECT_TRUE(read.warnings.empty());
  // 48 fps: start 7 -> 3.5 -> 4, 20 frames -> 10. 25 fps: 25 -> 24 frames.
  // A 1.5-frame gap puts the next clip at 35.5; each end rounds on its own.
  // 23.976 is not 24: 10 frames there are 10.01 here.
  const std::vector<ClipRow> expected = {
      Row(0, 0, 10, 4, "h48"),   Row(0, 10, 34, 24, "p25"), Row(0, 36, 44, 0, "n30"),
      Row(0, 44, 54, 100, "ntsc"), Row(32, 0, 24, 48, "tone")};
  EXPECT_EQ(tcs_test::AllClips(space.get()), expected);

  // The same file read at 48 frames per second: every count doubles.
  OpenedSpace at48;
  tcs::otio::ReadOptions options;
  options.rate = tcs::otio::FrameRate{48, false, false};
  ASSERT_EQ(tcs::otio::ReadOtioFile(at48.get(), DataFile("mixed_rates.otio"), options).status,
            Status::kOk);
  EXPECT_EQ(tcs_test::AllClips(at48.get()).front(), Row(0, 0, 20, 7, "h48"));
}

TEST(OtioReader, FirstTimelineOfACollectionAndTheOldSchemaNames) {
  OpenedSpace space;
  const ReadResult read =
      tcs::otio::ReadOtioFile(space.get(), DataFile("collection_old_names.otio"));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  EXPECT_EQ(read.name, "first");
  EXPECT_EQ(read.rate.fps, 30u);
  ASSERT_EQ(read.tracks.size(), 1u);
  EXPECT_EQ(read.tracks[0].channel, 1u);  // named V2
  EXPECT_EQ(tcs_test::AllClips(space.get()), (std::vector<ClipRow>{Row(1, 15, 60, 3, "old style")}));
}

TEST(OtioReader, SpeedsKeptWithTheirClipsAndWhatTheSpaceCannotHoldWarnedByName) {
  OpenedSpace space;
  const ReadResult read = tcs::otio::ReadOtioFile(space.get(), DataFile("speed_effects.otio"));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  // Drop-frame is kept only where it exists: at 29.97 and 59.94.
  EXPECT_EQ(read.rate, (tcs::otio::FrameRate{30, false, false}));
  // The clip library keeps thousandths of a source frame a second at 30:
  // twice the speed is 60000, a freeze 0, reverse -30000, each from the
  // clip's source in.
  ClipRow fast = Row(0, 0, 20, 0, "fast"), held = Row(0, 20, 30, 40, "held");
  ClipRow last = Row(0, 45, 47, 0, "last");
  fast.speed = held.speed = last.speed = true;
  fast.milliFps = 60000;
  held.speedEntry = 40;
  last.milliFps = -30000;
  const std::vector<ClipRow> expected = {fast, held, Row(0, 35, 41, 9, "blurred"), last};
  EXPECT_EQ(tcs_test::AllClips(space.get()), expected);
  const std::vector<std::pair<std::string, std::string>> warnings = {
      {"V1", "disabled track read as enabled"},
      {"muted", "disabled clip read as a gap"},
      {"blurred", "effect \"Blur\" not kept"},
      {"widget", "FancyWidget not read"},
      {"last", "freeze frame not kept: the clip keeps its first time effect"},
      {"V1", "marker \"chapter\" not kept: only clips keep markers"}};
  EXPECT_EQ(Warnings(read), warnings);
}

TEST(OtioReader, WhatTheSpacesTimelineCannotHoldIsCutOrLeftOutWithAWarning) {
  // At 25 frames per second the space's last start, frame 10692000, is
  // 118:48:00:00; the timeline starts 5 frames before frame 0.
  const std::string text = R"({"OTIO_SCHEMA": "Timeline.1",
    "global_start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": -5},
    "tracks": {"OTIO_SCHEMA": "Stack.1", "children": [{"OTIO_SCHEMA": "Track.1", "name": "V1",
      "children": [
        {"OTIO_SCHEMA": "Clip.2", "name": "early", "source_range": {"OTIO_SCHEMA": "TimeRange.1",
          "start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 100},
          "duration": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 12}}},
        {"OTIO_SCHEMA": "Clip.2", "name": "thin", "source_range": {"OTIO_SCHEMA": "TimeRange.1",
          "start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 100, "value": 0},
          "duration": {"OTIO_SCHEMA": "RationalTime.1", "rate": 100, "value": 1}}},
        {"OTIO_SCHEMA": "Gap.1", "source_range": {"OTIO_SCHEMA": "TimeRange.1",
          "start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 0},
          "duration": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 10691990}}},
        {"OTIO_SCHEMA": "Clip.2", "name": "late", "source_range": {"OTIO_SCHEMA": "TimeRange.1",
          "start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": -3},
          "duration": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 20}}},
        {"OTIO_SCHEMA": "Clip.2", "name": "beyond", "source_range": {"OTIO_SCHEMA": "TimeRange.1",
          "start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 0},
          "duration": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 5}}}]}]}})";
  OpenedSpace space;
  const ReadResult read = tcs::otio::ReadOtioText(space.get(), text);
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  // early: frames -5..6 -> 0..6, its source moved on by 5. thin: 0.25 of a
  // frame at 7 -> nothing. late: 10691997..10692016, cut to end at
  // 10692001; its source from -3 -> 0. beyond starts past the last start.
  EXPECT_EQ(tcs_test::AllClips(space.get()),
            (std::vector<ClipRow>{Row(0, 0, 7, 105, "early"), Row(0, 10691997, 10692001, 0, "late")}));
  const std::vector<std::pair<std::string, std::string>> warnings = {
      {"early", "starts before frame 0: cut"},
      {"thin", "shorter than a frame at the timeline's rate: not read"},
      {"late", "runs past the end of the space's timeline: cut"},
      {"late", "source starts before frame 0: read from frame 0"},
      {"beyond", "outside the space's timeline (frames 0 to 10692000): not read"}};
  EXPECT_EQ(Warnings(read), warnings);
}

// A timeline of one-clip tracks with these names and kinds, built here
// because 33 tracks by hand say nothing more.
std::string TracksFile(const std::vector<std::pair<std::string, std::string>>& tracks,
                       double rate = 24, const char* drop = nullptr) {
  using Json = nlohmann::json;
  const auto time = [&](double v) {
    return Json{{"OTIO_SCHEMA", "RationalTime.1"}, {"rate", rate}, {"value", v}};
  };
  Json children = Json::array();
  for (size_t i = 0; i < tracks.size(); ++i) {
    Json clip{{"OTIO_SCHEMA", "Clip.2"},
              {"name", "clip " + std::to_string(i)},
              {"source_range",
               {{"OTIO_SCHEMA", "TimeRange.1"}, {"start_time", time(0)}, {"duration", time(10 + i)}}}};
    children.push_back({{"OTIO_SCHEMA", "Track.1"},
                        {"name", tracks[i].first},
                        {"kind", tracks[i].second},
                        {"children", Json::array({clip})}});
  }
  Json timeline{{"OTIO_SCHEMA", "Timeline.1"},
                {"global_start_time", time(0)},
                {"tracks", {{"OTIO_SCHEMA", "Stack.1"}, {"children", children}}}};
  if (drop != nullptr) {
    timeline["metadata"] = {{"tcspace", {{"drop_frame", drop == std::string("yes")}}}};
  }
  return timeline.dump();
}

TEST(OtioReader, TracksNamedLikeChannelsGoThereOthersTakeTheNextFreeOne) {
  OpenedSpace space;
  const ReadResult read = tcs::otio::ReadOtioText(
      space.get(), TracksFile({{"A2", "Audio"}, {"Dialog", "Audio"}, {"V1", "Video"},
                               {"Graphics", "Video"}, {"x3", "Video"}, {"v1", "Video"},
                               {"Subtitles", "Text"}, {"a2", "Video"}}));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  std::vector<std::pair<std::string, uint32_t>> placed;
  for (const tcs::otio::TrackPlacement& t : read.tracks) placed.emplace_back(t.track, t.channel);
  const std::vector<std::pair<std::string, uint32_t>> expected = {
      {"A2", 33}, {"Dialog", 32}, {"V1", 0}, {"Graphics", 1}, {"x3", 2},
      {"v1", 3},  {"Subtitles", 4}, {"a2", 5}};
  EXPECT_EQ(placed, expected);
  EXPECT_TRUE(read.tracks[0].byName);
  EXPECT_FALSE(read.tracks[1].byName);
  const std::vector<std::pair<std::string, std::string>> warnings = {
      {"x3", "aux channels cannot be laid by a host: placed as a video track"},
      {"v1", "a track before it took that channel"},
      {"Subtitles", "kind \"Text\" read as video"},
      {"a2", "a track before it took that channel"}};
  EXPECT_EQ(Warnings(read), warnings);
  // The clip of track i is 10 + i frames long: each sits where it was placed.
  for (const ClipRow& clip : tcs_test::AllClips(space.get())) {
    const size_t track = std::stoul(clip.name.substr(5));
    EXPECT_EQ(clip.channel, read.tracks[track].channel);
    EXPECT_EQ(clip.length, 10 + track);
  }
}

TEST(OtioReader, ATrackPastTheThirtySecondOfItsKindIsLeftOutWithAWarning) {
  std::vector<std::pair<std::string, std::string>> tracks;
  for (int i = 0; i < 33; ++i) tracks.emplace_back("cam " + std::to_string(i), "Video");
  tracks.emplace_back("mix", "Audio");
  OpenedSpace space;
  const ReadResult read = tcs::otio::ReadOtioText(space.get(), TracksFile(tracks));
  ASSERT_EQ(read.status, Status::kOk) << read.error;
  EXPECT_EQ(read.tracks.size(), 33u);
  EXPECT_EQ(read.tracks.back().channel, 32u);  // "mix" on A1
  EXPECT_EQ(Warnings(read), (std::vector<std::pair<std::string, std::string>>{
                                {"cam 32", "no free video channel: the track is not read"}}));
  EXPECT_EQ(read.clips, 33u);
}

TEST(OtioReader, TheTimelineRateNamesTheSpacesRate) {
  struct Case {
    double rate;
    const char* drop;
    tcs::otio::FrameRate expected;
  };
  const Case cases[] = {{24000.0 / 1001.0, nullptr, {24, false, true}},
                        {23.976, nullptr, {24, false, true}},
                        {23.98, nullptr, {24, false, true}},
                        {30000.0 / 1001.0, nullptr, {30, true, true}},
                        {29.97, "no", {30, false, true}},
                        {59.94, "yes", {60, true, true}},
                        {25, "yes", {25, false, false}},
                        {120, nullptr, {120, false, false}}};
  for (const Case& c : cases) {
    OpenedSpace space;
    const ReadResult read =
        tcs::otio::ReadOtioText(space.get(), TracksFile({{"V1", "Video"}}, c.rate, c.drop));
    ASSERT_EQ(read.status, Status::kOk) << c.rate;
    EXPECT_EQ(read.rate, c.expected) << c.rate;
    // The clip is 10 frames at the timeline's own rate, whatever it is.
    EXPECT_EQ(tcs_test::AllClips(space.get()).at(0).length, 10u) << c.rate;
  }
  for (const double rate : {12.5, 240.0, 0.5}) {
    OpenedSpace space;
    const ReadResult read = tcs::otio::ReadOtioText(space.get(), TracksFile({{"V1", "Video"}}, rate));
    EXPECT_EQ(read.status, Status::kBadValue) << rate;
    EXPECT_NE(read.error.find("is not one a space counts"), std::string::npos) << read.error;
  }
}

}  // namespace
