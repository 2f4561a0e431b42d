// tcs draw: the timeline of an EDL as an SVG picture.
#include <fstream>
#include <iostream>

#include "cli.h"
#include "clips.h"
#include "svg_timeline.h"
#include "timeline.h"

namespace tcs::cli {

int RunDraw(const Args& args) {
  const std::optional<std::string> out = args.Value("-o");
  if (!out || out->empty()) UsageFail("give the picture to write with -o timeline.svg");
  const Timeline timeline(args.positional()[0], args.FpsOverride(), args.ReadOptions());
  const std::vector<ChannelView> channels = ChannelsOf(timeline.space());
  const std::string svg = TimelineSvg(channels, timeline.rate(), timeline.path());
  WriteAtomically(*out, [&](const std::string& temporary) {
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    file << svg;
    file.close();
    return static_cast<bool>(file);
  });
  size_t clips = 0;
  for (const ChannelView& channel : channels) clips += channel.clips.size();
  std::cout << "wrote " << *out << " (" << Counted(clips, "clip") << " on "
            << Counted(channels.size(), "channel") << ")\n";
  return 0;
}

}  // namespace tcs::cli
