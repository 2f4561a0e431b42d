// tcs at: what plays at a record timecode, channel by channel, as
// tcsTranslate answers it.
#include <iostream>

#include "channels.h"
#include "clips.h"
#include "each_clip.h"
#include "cli.h"
#include "json_writer.h"
#include "table.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

struct Answer {
  uint32_t channel;
  std::optional<ClipView> clip;  // empty: nothing plays
  uint32_t source;
};

}  // namespace

int RunAt(const Args& args) {
  const Timeline timeline(args.positional()[0], args.FpsOverride(), args.ReadOptions());
  const uint32_t at = TimecodeArg(args.positional()[1], timeline.rate(), "timecode");
  std::vector<uint32_t> channels;
  if (const std::optional<std::string> text = args.Value("--channel")) {
    const std::optional<uint32_t> channel = ParseChannel(*text);
    if (!channel) UsageFail("--channel " + *text + ": give V1..V32, A1..A32, X1..X32 or 0..95");
    channels.push_back(*channel);
  } else {
    ChannelMasks masks;
    tcsGetChannels(timeline.space(), &masks.video, &masks.audio, &masks.aux);
    channels = MaskChannels(masks);
  }

  std::vector<Answer> answers;
  for (const uint32_t channel : channels) {
    TCSCLIP row;
    uint32_t source = tcsTranslate(timeline.space(), 0, at, nullptr, channel);
    if (source != TCS_NOT_FOUND && host::ClipAt(timeline.space(), channel, at, row)) {
      // Where the clip plays its source at a speed of its own, the frame it plays.
      source = clsPlayedSource(row.info, source, timeline.rate().fps);
      answers.push_back({channel, ViewOf(row), source});
    } else {
      answers.push_back({channel, std::nullopt, source});
    }
  }

  if (args.Has("--json")) {
    JsonWriter json(std::cout);
    json.BeginObject();
    json.Key("at").String(timeline.Tc(at));
    json.Key("atFrame").Number(at);
    json.Key("channels").BeginArray();
    for (const Answer& a : answers) {
      json.BeginObject();
      json.Key("channel").Number(a.channel);
      json.Key("name").String(ChannelName(a.channel));
      if (!a.clip) {
        json.Key("clip").Null();
      } else {
        json.Key("clip").BeginObject();
        json.Key("name").String(a.clip->name);
        json.Key("reel").String(a.clip->reel);
        json.Key("recordIn").String(timeline.Tc(a.clip->recordIn));
        json.Key("recordOut").String(timeline.Tc(a.clip->recordOut));
        json.Key("source").String(timeline.SourceTc(*a.clip, a.source));
        json.Key("sourceFrame").Number(a.source);
        json.EndObject();
      }
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    return 0;
  }
  std::cout << "at " << timeline.Tc(at) << ":\n";
  Table table;
  for (const Answer& a : answers) {
    if (!a.clip) {
      table.Row(ChannelName(a.channel), "nothing plays");
    } else {
      table.Row(ChannelName(a.channel), "source " + timeline.SourceTc(*a.clip, a.source),
                "reel " + (a.clip->reel.empty() ? std::string("-") : a.clip->reel), a.clip->name);
    }
  }
  if (table.empty()) table.Row("the timeline is empty");
  table.Print(std::cout, "  ");
  return 0;
}

}  // namespace tcs::cli
