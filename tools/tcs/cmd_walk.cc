// tcs walk: the event walk of tcsFindNextClip, one event a line. An event is
// a clip start together with the clips on other channels that start with it
// and carry the same source. The walk searches V1..V4 and A1..A16.
#include <iostream>

#include "channels.h"
#include "event_walk.h"
#include "cli.h"
#include "json_writer.h"
#include "table.h"
#include "timeline.h"

namespace tcs::cli {

int RunWalk(const Args& args) {
  const Timeline timeline(args.positional()[0], args.FpsOverride(), args.ReadOptions());
  const std::vector<host::WalkEvent> events = host::WalkEvents(timeline.space());
  if (args.Has("--json")) {
    JsonWriter json(std::cout);
    json.BeginArray();
    for (const host::WalkEvent& e : events) {
      const uint32_t recordOut = e.recordOut();
      json.BeginObject();
      json.Key("recordIn").String(timeline.Tc(e.recordIn));
      json.Key("recordInFrame").Number(e.recordIn);
      json.Key("recordOut").String(timeline.Tc(recordOut));
      json.Key("recordOutFrame").Number(recordOut);
      json.Key("sourceIn").String(timeline.Tc(e.sourceIn));
      json.Key("sourceOut").String(timeline.Tc(e.sourceOut));
      json.Key("channels").BeginArray();
      for (const uint32_t c : MaskChannels({e.videoMask, e.audioMask, 0})) json.String(ChannelName(c));
      json.EndArray();
      json.Key("name").String(e.name);
      json.Key("transition").String(e.transition.empty() ? "cut" : e.transition);
      json.EndObject();
    }
    json.EndArray();
    return 0;
  }
  Table table;
  table.Reserve(events.size() + 1, 8);
  table.Row("event", "record in", "record out", "source in", "source out", "channels", "transition",
            "name");
  for (size_t i = 0; i < events.size(); ++i) {
    const host::WalkEvent& e = events[i];
    char number[24];
    std::snprintf(number, sizeof number, "%03zu", i + 1);
    table.Row(number, timeline.Tc(e.recordIn), timeline.Tc(e.recordOut()), timeline.Tc(e.sourceIn),
              timeline.Tc(e.sourceOut), MaskNames({e.videoMask, e.audioMask, 0}),
              e.transition.empty() ? "cut" : e.transition, e.name);
  }
  table.Print(std::cout, "");
  return 0;
}

}  // namespace tcs::cli
