// tcs convert: reads a file into a space and writes every clip of it in
// another file, in the format --to or the name's extension says.
#include <iostream>

#include "cli.h"
#include "clips.h"
#include "formats.h"
#include "output.h"
#include "timeline.h"

namespace tcs::cli {

int RunConvert(const Args& args) {
  const std::string& in = args.positional()[0];
  const std::string& out = args.positional()[1];
  const Format& from = FormatOf(in, args.Value("--from"), "--from", &EdlFormat());
  CheckReadable(from, in);
  // Standard output has no extension: the input's format, unless --to.
  const Format& to = FormatOf(out, args.Value("--to"), "--to", out == "-" ? &from : nullptr);
  const Timeline timeline(in, args.FpsOverride(), args.ReadOptions());
  const std::optional<std::string> title = args.Value("--title");
  const std::string text = to.write(timeline, title ? *title : timeline.title(), out);
  const std::optional<std::string> backup = Deliver(out, in, text);
  if (out == "-") return 0;
  size_t clips = 0;
  const std::vector<ChannelView> channels = ChannelsOf(timeline.space());
  for (const ChannelView& channel : channels) clips += channel.clips.size();
  std::cout << "wrote " << out << " (" << to.name << ", " << Counted(clips, "clip") << " on "
            << Counted(channels.size(), "channel");
  if (backup) std::cout << "; the old file kept as " << *backup;
  std::cout << ")\n";
  return 0;
}

}  // namespace tcs::cli
