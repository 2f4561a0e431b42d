// What the writer writes, read as JSON: one Timeline.1 whose tracks are a
// Stack.1 of Track.1s named and kinded as the channels, gaps for the blank
// frames, Clip.2s with their media references and EDL metadata, transitions
// before their clips with no clip moved, and every RationalTime at the
// timeline's rate, fractional rates as their exact ratios.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "otio/otio.h"
#include "otio/otio_space.h"
#include "support/random_channel.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using Json = nlohmann::json;
using tcs_test::OpenedSpace;

// Every RationalTime in the document, wherever it is.
void CollectTimes(const Json& value, std::vector<const Json*>& out) {
  if (value.is_object()) {
    if (value.value("OTIO_SCHEMA", "") == "RationalTime.1") out.push_back(&value);
    for (const auto& [key, child] : value.items()) CollectTimes(child, out);
  } else if (value.is_array()) {
    for (const Json& child : value) CollectTimes(child, out);
  }
}

double Frames(const Json& range, const char* key) { return range.at(key).at("value").get<double>(); }

TEST(OtioWriter, TheDocumentHasTheSchemasTheChannelsAndExactRates) {
  OpenedSpace space;
  tcs_test::LayClip(space.get(), {0, 1000, 48, 100, 0, 0, "first", "A001",
                                  "SOURCE FILE: /m/a.mov\nsecond line", "SHORTNM"});
  tcs_test::LayClip(space.get(), {0, 1060, 24, 7, 0, 12, "dissolved", "", "", ""});
  tcs_test::LayClip(space.get(), {0, 1084, 10, 0, 3, 5, "wiped", "", "", ""});
  tcs_test::LayClip(space.get(), {33, 1010, 20, 0, 0, 0, "sound", "", "", ""});

  for (const tcs::otio::FrameRate rate :
       {tcs::otio::FrameRate{24, false, true}, tcs::otio::FrameRate{30, true, true},
        tcs::otio::FrameRate{25, false, false}}) {
    std::string text;
    const tcs::otio::WriteResult written = tcs::otio::WriteOtioText(space.get(), {rate, "cut"}, &text);
    ASSERT_EQ(written.status, tcs::otio::Status::kOk);
    EXPECT_EQ(written.clips, 4u);
    EXPECT_EQ(written.tracks, 2u);
    const Json doc = Json::parse(text);
    EXPECT_EQ(doc["OTIO_SCHEMA"], "Timeline.1");
    EXPECT_EQ(doc["name"], "cut");
    EXPECT_EQ(doc["metadata"]["tcspace"]["drop_frame"], rate.dropFrame);
    EXPECT_EQ(Frames(doc, "global_start_time"), 1000);

    const double exact = rate.fractional ? rate.fps * 1000.0 / 1001.0 : rate.fps;
    std::vector<const Json*> times;
    CollectTimes(doc, times);
    // The start, two per clip, two per gap (one on each track), two per transition.
    EXPECT_EQ(times.size(), 1u + 4 * 2 + 2 * 2 + 2 * 2);
    for (const Json* time : times) {
      EXPECT_EQ(time->at("rate").get<double>(), exact);  // 24000/1001, not 23.976
      const double value = time->at("value").get<double>();
      EXPECT_EQ(value, static_cast<double>(static_cast<int64_t>(value)));
    }

    const Json& stack = doc["tracks"];
    EXPECT_EQ(stack["OTIO_SCHEMA"], "Stack.1");
    ASSERT_EQ(stack["children"].size(), 2u);
    const Json& v1 = stack["children"][0];
    const Json& a2 = stack["children"][1];
    EXPECT_EQ(v1["OTIO_SCHEMA"], "Track.1");
    EXPECT_EQ(v1["name"], "V1");
    EXPECT_EQ(v1["kind"], "Video");
    EXPECT_EQ(a2["name"], "A2");
    EXPECT_EQ(a2["kind"], "Audio");

    // V1: first [1000, 1048), a gap to 1060, a dissolve then its clip to
    // 1084, a wipe then its clip. The offsets start every transition at the
    // cut, so the clips keep their frames.
    const Json& items = v1["children"];
    std::vector<std::string> schemas;
    for (const Json& item : items) schemas.push_back(item["OTIO_SCHEMA"]);
    EXPECT_EQ(schemas, (std::vector<std::string>{"Clip.2", "Gap.1", "Transition.1", "Clip.2",
                                                 "Transition.1", "Clip.2"}));
    const Json& first = items[0];
    EXPECT_EQ(first["name"], "first");
    EXPECT_EQ(Frames(first["source_range"], "start_time"), 100);
    EXPECT_EQ(Frames(first["source_range"], "duration"), 48);
    EXPECT_EQ(first["metadata"]["cmx_3600"]["reel"], "A001");
    EXPECT_EQ(first["metadata"]["cmx_3600"]["comments"],
              Json::array({"SOURCE FILE: /m/a.mov", "second line"}));
    EXPECT_EQ(first["metadata"]["tcspace"]["clip_name"], "SHORTNM");
    EXPECT_EQ(first["active_media_reference_key"], "DEFAULT_MEDIA");
    const Json& reference = first["media_references"]["DEFAULT_MEDIA"];
    EXPECT_EQ(reference["OTIO_SCHEMA"], "ExternalReference.1");
    EXPECT_EQ(reference["target_url"], "/m/a.mov");
    EXPECT_EQ(Frames(items[1]["source_range"], "duration"), 12);
    EXPECT_EQ(items[2]["transition_type"], "SMPTE_Dissolve");
    EXPECT_EQ(items[2]["metadata"]["cmx_3600"]["transition"], "D");
    EXPECT_EQ(Frames(items[2], "in_offset"), 0);
    EXPECT_EQ(Frames(items[2], "out_offset"), 12);
    EXPECT_EQ(items[3]["media_references"]["DEFAULT_MEDIA"]["OTIO_SCHEMA"], "MissingReference.1");
    EXPECT_FALSE(items[3]["metadata"].contains("cmx_3600"));
    EXPECT_EQ(items[4]["transition_type"], "SMPTE_Wipe");
    EXPECT_EQ(items[4]["metadata"]["cmx_3600"]["transition"], "W003");
    EXPECT_EQ(Frames(items[4], "out_offset"), 5);
    // A2 starts 10 frames after the timeline: a gap first.
    EXPECT_EQ(a2["children"][0]["OTIO_SCHEMA"], "Gap.1");
    EXPECT_EQ(Frames(a2["children"][0]["source_range"], "duration"), 10);
  }
}

TEST(OtioWriter, TextsThatAreNotUtf8AreWrittenWithTheReplacementCharacter) {
  OpenedSpace space;
  // Latin-1 from an old list, a cut-off sequence, an overlong slash, a surrogate.
  tcs_test::LayClip(space.get(),
                    {0, 0, 10, 0, 0, 0, "caf\xE9", "\xE2\x82", "a\xC0\xAF" "b", "\xED\xA0\x80"});
  std::string text;
  ASSERT_EQ(tcs::otio::WriteOtioText(space.get(), {}, &text).status, tcs::otio::Status::kOk);
  const Json clip = Json::parse(text)["tracks"]["children"][0]["children"][0];
  EXPECT_EQ(clip["name"], "caf\uFFFD");
  EXPECT_EQ(clip["metadata"]["cmx_3600"]["reel"], "\uFFFD\uFFFD");
  EXPECT_EQ(clip["metadata"]["cmx_3600"]["comments"][0], "a\uFFFD\uFFFDb");
  EXPECT_EQ(clip["metadata"]["tcspace"]["clip_name"], "\uFFFD\uFFFD\uFFFD");
}

TEST(OtioWriter, SpeedsAreTimeEffectsOfTheirClips) {
  OpenedSpace space;
  tcs_test::ClipRow reverse{0, 0, 10, 500, 0, 0, "reverse", "", "", ""};
  reverse.speed = true;
  reverse.milliFps = -25000;
  reverse.speedEntry = 500;
  tcs_test::ClipRow freeze{0, 10, 10, 70, 0, 0, "freeze", "", "", ""};
  freeze.speed = true;
  freeze.speedEntry = 75;
  tcs_test::LayClip(space.get(), reverse);
  tcs_test::LayClip(space.get(), freeze);
  std::string text;
  ASSERT_EQ(tcs::otio::WriteOtioText(space.get(), {{25, false, false}, ""}, &text).status,
            tcs::otio::Status::kOk);
  const Json items = Json::parse(text)["tracks"]["children"][0]["children"];
  EXPECT_EQ(items[0]["effects"].size(), 1u);
  EXPECT_EQ(items[0]["effects"][0]["OTIO_SCHEMA"], "LinearTimeWarp.1");
  EXPECT_EQ(items[0]["effects"][0]["time_scalar"], -1.0);  // -25 frames a second at 25
  EXPECT_FALSE(items[0]["metadata"].contains("tcspace"));  // it runs from its source in
  EXPECT_EQ(items[1]["effects"][0]["OTIO_SCHEMA"], "FreezeFrame.1");
  EXPECT_EQ(items[1]["effects"][0]["time_scalar"], 0.0);
  EXPECT_EQ(items[1]["metadata"]["tcspace"]["speed_entry"], 75);
}

TEST(OtioWriter, ClipsThatOverlapOnAChannelAreCutWhereTheNextStarts) {
  OpenedSpace space;
  auto longer = tcs_test::MakeClip(0, 100, 0, "long");
  auto inner = tcs_test::MakeClip(40, 10, 500, "inner");
  ASSERT_EQ(tcsAddClip(space.get(), longer.get(), 0), 0u);
  // Laid straight onto the channel, as a moved clip may lie.
  tcs_test::LayPlayClip(*space, 0, *inner);
  std::string text;
  const tcs::otio::WriteResult written = tcs::otio::WriteOtioText(space.get(), {}, &text);
  ASSERT_EQ(written.warnings.size(), 1u);
  EXPECT_EQ(written.warnings[0].item, "long");
  EXPECT_EQ(written.warnings[0].text, "V1: cut at frame 40 where the next clip starts");
  const Json items = Json::parse(text)["tracks"]["children"][0]["children"];
  ASSERT_EQ(items.size(), 2u);
  EXPECT_EQ(Frames(items[0]["source_range"], "duration"), 40);
  EXPECT_EQ(Frames(items[1]["source_range"], "start_time"), 500);
}

}  // namespace
