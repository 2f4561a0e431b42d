// tcs walk: the event walk of tcsFindNextClip, one event a line. An event is
// a clip start together with the clips on other channels that start with it
// and carry the same source. The walk searches V1..V4 and A1..A16.
#include <iostream>

#include "channels.h"
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
// record itself then steps past it.
std::vector<Event> Walk(CTimeCodeSpace* space) {
  std::vector<Event> events;
  TCSCMD walk{};
  walk.command = TCSCMD_GET;
  walk.subCommand = TCSSUB_NEXT;
  walk.outPoint = kNoTimecode;
  CClip clip;
  do {
    TCSCMD probe = walk;
    if (tcsFindNextClip(space, &probe, 1, &clip) != kNotFound) {
      events.push_back({probe.position, probe.inPoint, probe.outPoint,
                        {probe.videoMask, probe.audioMask}, TcsCmdReplyText(probe),
                        clip.effectText});
    }
    tcsFindNextClip(space, &walk, 0, nullptr);
  } while (walk.position != kNoTimecode);
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
      for (uint32_t c = 0; c < 64; ++c) {
        if (((c < 32 ? e.channels.video : e.channels.audio) >> (c % 32) & 1) != 0) {
          json.String(ChannelName(c));
        }
      }
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
