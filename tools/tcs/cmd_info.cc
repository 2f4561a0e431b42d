// tcs info: the clips of an EDL, one table per channel, and totals.
#include <algorithm>
#include <iostream>

#include "channels.h"
#include "cli.h"
#include "clips.h"
#include "json_writer.h"
#include "table.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

// Summed channel by channel, as the channels are read.
struct Totals {
  void Add(const ChannelView& channel) {
    ++channels;
    for (const ClipView& clip : channel.clips) {
      first = clips == 0 ? clip.recordIn : std::min(first, clip.recordIn);
      end = std::max(end, clip.recordOut);
      ++clips;
    }
  }
  size_t channels = 0;
  size_t clips = 0;
  uint32_t first = 0;  // first record frame, 0 when there are no clips
  uint32_t end = 0;    // one past the last
};

void PrintText(const Timeline& timeline) {
  std::cout << timeline.path() << "  (" << timecode::FrameRateText(timeline.rate()) << ", from "
            << timeline.rateReason() << ")\n";
  Totals totals;
  ForEachChannel(timeline.space(), [&](const ChannelView& channel) {
    totals.Add(channel);
    std::cout << "\nchannel " << ChannelName(channel.channel) << " (" << channel.channel
              << "): " << Counted(channel.clips.size(), "clip")
              << '\n';
    // A speed column only where a clip of the channel has a speed (M2).
    const bool speeds = std::any_of(channel.clips.begin(), channel.clips.end(),
                                    [](const ClipView& clip) { return !clip.speed.empty(); });
    Table table;
    table.Reserve(channel.clips.size() + 1, speeds ? 8 : 7);
    if (speeds) {
      table.Row("record in", "record out", "source in", "source out", "transition", "speed", "reel",
                "name");
    } else {
      table.Row("record in", "record out", "source in", "source out", "transition", "reel", "name");
    }
    for (const ClipView& clip : channel.clips) {
      const std::string_view reel = clip.reel.empty() ? std::string_view("-") : clip.reel;
      if (speeds) {
        table.Row(timeline.Tc(clip.recordIn), timeline.Tc(clip.recordOut),
                  timeline.SourceTc(clip, clip.sourceIn), timeline.SourceTc(clip, clip.sourceOut),
                  TransitionText(clip),
                  clip.speed.empty() ? "-" : clip.speed, reel, clip.name);
      } else {
        table.Row(timeline.Tc(clip.recordIn), timeline.Tc(clip.recordOut),
                  timeline.SourceTc(clip, clip.sourceIn), timeline.SourceTc(clip, clip.sourceOut),
                  TransitionText(clip),
                  reel, clip.name);
      }
    }
    table.Print(std::cout, "  ");
  });
  std::cout << "\ntotal: " << Counted(totals.clips, "clip") << " on "
            << Counted(totals.channels, "channel") << ", "
            << timeline.Tc(totals.end - totals.first) << " from " << timeline.Tc(totals.first)
            << " to " << timeline.Tc(totals.end) << '\n';
}

// "key": the timecode, and "keyFrame" (or `frameKey`): the frame count.
void TimecodeMember(JsonWriter& json, const std::string& timecode, const char* key,
                    uint32_t frames, const char* frameKey = nullptr) {
  json.Key(key).String(timecode);
  json.Key(frameKey != nullptr ? std::string(frameKey) : std::string(key) + "Frame").Number(frames);
}

void PrintJson(const Timeline& timeline) {
  JsonWriter json(std::cout);
  json.BeginObject();
  json.Key("file").String(timeline.path());
  json.Key("fps").Number(timeline.rate().fps);
  json.Key("dropFrame").Bool(timeline.rate().dropFrame);
  json.Key("rate").String(timecode::FrameRateText(timeline.rate()));
  json.Key("rateFrom").String(timeline.rateReason());
  json.Key("warnings").Number(timeline.warnings());
  json.Key("channels").BeginArray();
  Totals totals;
  ForEachChannel(timeline.space(), [&](const ChannelView& channel) {
    totals.Add(channel);
    json.BeginObject();
    json.Key("channel").Number(channel.channel);
    json.Key("name").String(ChannelName(channel.channel));
    json.Key("clips").BeginArray();
    for (const ClipView& clip : channel.clips) {
      json.BeginObject();
      TimecodeMember(json, timeline.Tc(clip.recordIn), "recordIn", clip.recordIn);
      TimecodeMember(json, timeline.Tc(clip.recordOut), "recordOut", clip.recordOut);
      TimecodeMember(json, timeline.SourceTc(clip, clip.sourceIn), "sourceIn", clip.sourceIn);
      TimecodeMember(json, timeline.SourceTc(clip, clip.sourceOut), "sourceOut", clip.sourceOut);
      json.Key("name").String(clip.name);
      json.Key("reel").String(clip.reel);
      json.Key("comment").String(clip.comment);
      json.Key("transition").String(clip.transition.empty() ? "cut" : clip.transition);
      json.Key("transitionFrames").Number(clip.transitionFrames);
      if (!clip.speed.empty()) json.Key("speed").String(clip.speed);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  });
  json.EndArray();
  json.Key("totals").BeginObject();
  json.Key("clips").Number(totals.clips);
  json.Key("channels").Number(totals.channels);
  TimecodeMember(json, timeline.Tc(totals.first), "start", totals.first);
  TimecodeMember(json, timeline.Tc(totals.end), "end", totals.end);
  TimecodeMember(json, timeline.Tc(totals.end - totals.first), "duration",
                 totals.end - totals.first, "durationFrames");
  json.EndObject();
  json.EndObject();
}

}  // namespace

int RunInfo(const Args& args) {
  const Timeline timeline(args.positional()[0], args.FpsOverride(), args.ReadOptions());
  if (args.Has("--json")) {
    PrintJson(timeline);
  } else {
    PrintText(timeline);
  }
  return 0;
}

}  // namespace tcs::cli
