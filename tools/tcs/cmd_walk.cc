// tcs walk: the event walk of tcsFindNextClip, one event a line. An event is
// a clip start together with the clips on other channels that start with it
// and carry the same source. The walk searches V1..V4 and A1..A16.
#include <iostream>

#include "channels.h"
#include "clips.h"
#include "cli.h"
#include "json_writer.h"
#include "table.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

struct Event {
  uint32_t recordIn;
  uint32_t sourceIn;
  uint32_t sourceOut;
  ChannelMasks channels;
  std::string name;
  std::string transition;  // "" for a cut
};

// Steps the walk as the EDL export does: a probe copy of the walk record,
// stepped with fresh marks, names the channels of the next event; the walk
// record itself then steps past it. The transition is that of the event's
// clip on its first channel.
std::vector<Event> Walk(CTimeCodeSpace* space) {
  std::vector<Event> events;
  TCSCMD walk{};
  walk.command = TCSCMD_GET;
  walk.subCommand = TCSSUB_NEXT;
  walk.outPoint = TCS_NO_TIMECODE;
  do {
    TCSCMD probe = walk;
    if (tcsFindNextClip(space, &probe, 1, nullptr) != TCS_NOT_FOUND) {
      const ChannelMasks channels{probe.videoMask, probe.audioMask, 0};
      const std::vector<uint32_t> listed = MaskChannels(channels);
      const std::optional<ClipView> clip =
          listed.empty() ? std::nullopt : ClipAt(space, listed.front(), probe.position);
      events.push_back({probe.position, probe.inPoint, probe.outPoint, channels,
                        reinterpret_cast<const char*>(&probe) + TCSCMD_TEXT_OFFSET, clip ? clip->transition : ""});
    }
    tcsFindNextClip(space, &walk, 0, nullptr);
  } while (walk.position != TCS_NO_TIMECODE);
  return events;
}

}  // namespace

int RunWalk(const Args& args) {
  const Timeline timeline(args.positional()[0], args.FpsOverride(), args.ReadOptions());
  const std::vector<Event> events = Walk(timeline.space());
  if (args.Has("--json")) {
    JsonWriter json(std::cout);
    json.BeginArray();
    for (const Event& e : events) {
      const uint32_t recordOut = e.recordIn + (e.sourceOut - e.sourceIn);
      json.BeginObject();
      json.Key("recordIn").String(timeline.Tc(e.recordIn));
      json.Key("recordInFrame").Number(e.recordIn);
      json.Key("recordOut").String(timeline.Tc(recordOut));
      json.Key("recordOutFrame").Number(recordOut);
      json.Key("sourceIn").String(timeline.Tc(e.sourceIn));
      json.Key("sourceOut").String(timeline.Tc(e.sourceOut));
      json.Key("channels").BeginArray();
      for (const uint32_t c : MaskChannels(e.channels)) json.String(ChannelName(c));
      json.EndArray();
      json.Key("name").String(e.name);
      json.Key("transition").String(e.transition.empty() ? "cut" : e.transition);
      json.EndObject();
    }
    json.EndArray();
    return 0;
  }
  std::vector<TableRow> rows = {
      {"event", "record in", "record out", "source in", "source out", "channels", "transition", "name"}};
  for (size_t i = 0; i < events.size(); ++i) {
    const Event& e = events[i];
    char number[24];
    std::snprintf(number, sizeof number, "%03zu", i + 1);
    rows.push_back({number, timeline.Tc(e.recordIn), timeline.Tc(e.recordIn + (e.sourceOut - e.sourceIn)),
                    timeline.Tc(e.sourceIn), timeline.Tc(e.sourceOut), MaskNames(e.channels),
                    e.transition.empty() ? "cut" : e.transition, e.name});
  }
  PrintTable(std::cout, rows, "");
  return 0;
}

}  // namespace tcs::cli
