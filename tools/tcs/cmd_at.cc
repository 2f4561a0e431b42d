// tcs at: what plays at a record timecode, channel by channel, as
// tcsTranslate answers it.
#include <iostream>

#include "channels.h"
#include "cli.h"
#include "json_writer.h"
#include "table.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

struct Answer {
  uint32_t channel;
  const CClip* clip;  // null: nothing plays
  uint32_t source;
};

std::string Text(const char* text) { return text != nullptr ? text : ""; }

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
    for (uint32_t c = 0; c < CTimeCodeSpace::kChannels; ++c) {
      if (timeline.space()->lookups[c] != nullptr) channels.push_back(c);
    }
  }

  std::vector<Answer> answers;
  for (const uint32_t channel : channels) {
    CClip* clip = nullptr;
    uint32_t source = tcsTranslate(timeline.space(), 0, at, &clip, channel);
    if (source != kNotFound) source = clsPlayedSource(clip, source, timeline.rate().fps);
    answers.push_back({channel, source == kNotFound ? nullptr : clip, source});
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
      if (a.clip == nullptr) {
        json.Key("clip").Null();
      } else {
        json.Key("clip").BeginObject();
        json.Key("name").String(Text(a.clip->name));
        json.Key("reel").String(Text(a.clip->reel));
        json.Key("recordIn").String(timeline.Tc(a.clip->start));
        json.Key("recordOut").String(timeline.Tc(a.clip->start + a.clip->length));
        json.Key("source").String(timeline.Tc(a.source));
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
  std::vector<TableRow> rows;
  for (const Answer& a : answers) {
    if (a.clip == nullptr) {
      rows.push_back({ChannelName(a.channel), "nothing plays"});
    } else {
      rows.push_back({ChannelName(a.channel), "source " + timeline.Tc(a.source),
                      "reel " + (a.clip->reel != nullptr && a.clip->reel[0] != '\0'
                                     ? std::string(a.clip->reel) : std::string("-")),
                      Text(a.clip->name)});
    }
  }
  if (rows.empty()) rows.push_back({"the timeline is empty"});
  PrintTable(std::cout, rows, "  ");
  return 0;
}

}  // namespace tcs::cli
