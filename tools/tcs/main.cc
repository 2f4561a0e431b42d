// tcs: reads, asks, edits and draws EDL timelines through the tcspace
// library, as a host would drive it.
#include <cstdio>
#include <cstring>
#include <iostream>

#include "cli.h"

namespace tcs::cli {
namespace {

constexpr char kTimes[] =
    "Timecodes are HH:MM:SS:FF or frame counts, counted as the file counts them\n"
    "(drop-frame where it says FCM: DROP FRAME, whichever separator is typed).\n"
    "The rate is the file's own: its * TCS FRAME RATE: note; else 29.97 drop-frame\n"
    "for FCM: DROP FRAME (59.94 where frames pass 29); else the highest frame\n"
    "field bounds it (up to 23: 24, 24: 25, up to 29: 30, up to 59: 60). --fps RATE\n"
    "says otherwise (24, 25, 30 ... 120, 23.976, 23.98, 29.97, 29.97df, 59.94).\n"
    "A line that cannot be read is skipped with a warning (the first 5 are shown;\n"
    "--warnings all or N shows more, --quiet none); --strict stops at it.\n"
    "FILE is an EDL, or OpenTimelineIO where its name ends in .otio (--from edl or\n"
    "--from otio says which for another name); an .otio file counts at its\n"
    "timeline's own rate.\n";

const std::vector<OptionSpec> kFileOptions = {{"--fps", true},     {"--strict", false},
                                              {"--quiet", false},  {"--warnings", true},
                                              {"--from", true}};
const std::vector<OptionSpec> kReadOptions = {{"--fps", true},    {"--json", false},
                                              {"--strict", false}, {"--quiet", false},
                                              {"--warnings", true}, {"--from", true}};

std::vector<OptionSpec> ReadOptionsAnd(std::vector<OptionSpec> more,
                                       const std::vector<OptionSpec>& base = kReadOptions) {
  std::vector<OptionSpec> options = base;
  options.insert(options.end(), more.begin(), more.end());
  return options;
}

}  // namespace

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"info", "the clips of an EDL, a table per channel",
       "usage: tcs info FILE.edl [--fps RATE] [--json]\n\n"
       "Reads FILE.edl and prints the rate it is counted at and why, then, per\n"
       "channel, every clip's record in and out, source in and out, transition,\n"
       "reel and name, then the totals.\n",
       &RunInfo, kReadOptions, 1, 1},
      {"at", "what plays at a record timecode",
       "usage: tcs at FILE.edl TIMECODE [--channel CH] [--fps RATE] [--json]\n\n"
       "For every channel (or CH alone: V1..V32, A1..A32, X1..X32 or 0..95), the\n"
       "clip that plays at TIMECODE and the source timecode it plays there.\n",
       &RunAt, ReadOptionsAnd({{"--channel", true}}), 2, 2},
      {"edit", "apply edit operations and write the result",
       "usage: tcs edit FILE.edl OP... -o OUT.edl [--fps RATE]\n\n"
       "Applies each OP in turn, then writes OUT.edl (only when every OP succeeds):\n"
       "every clip of every channel, read back before it is written. -o FILE.edl\n"
       "keeps the old file as a numbered backup (FILE.000.edl, see tcs backups);\n"
       "-o - writes to standard output.\n"
       "CH is a channel (V1..V32, A1..A32 or 0..63), several joined by '+'.\n\n"
       "  overwrite=CH,AT,IN,OUT,NAME  lay source IN..OUT of NAME over CH from AT\n"
       "  insert=CH,AT,DURATION        open a gap of DURATION at a cut; later clips move on\n"
       "  blank=CH,FROM,TO             clear FROM..TO, leaving a gap\n"
       "  delete=CH,FROM,TO            remove FROM..TO; later clips move back\n"
       "  trim=CH,AT,IN,OUT            the clip that starts at AT plays source IN..OUT\n"
       "  move=CH,AT,TO                the clip that starts at AT moves to start at TO\n",
       &RunEdit, ReadOptionsAnd({{"-o", true}}, kFileOptions), 1, ~size_t{0}},
      {"convert", "write a file's clips in another file",
       "usage: tcs convert IN OUT [--from FORMAT] [--to FORMAT] [--title TEXT] [--fps RATE]\n\n"
       "Reads IN and writes every clip of every channel to OUT (an EDL is read\n"
       "back before it is written). Formats go by extension (.edl: CMX 3600;\n"
       ".otio: OpenTimelineIO, where the tool is built with it), or --from /\n"
       "--to (edl, otio); IN of another name is read as an EDL. The\n"
       "title is IN's own unless --title gives one; timecodes are\n"
       "written at the rate IN is counted at (--fps says which). OUT - writes to\n"
       "standard output; OUT the same file as IN keeps the old one as a numbered\n"
       "backup (IN.000.edl, see tcs backups).\n",
       &RunConvert,
       ReadOptionsAnd({{"--to", true}, {"--title", true}}, kFileOptions), 2, 2},
      {"walk", "the event walk, one event a line",
       "usage: tcs walk FILE.edl [--fps RATE] [--json]\n\n"
       "Steps through the timeline event by event, as the EDL export does: an event\n"
       "is a clip start with the clips of the same source that start with it on\n"
       "other channels. The walk visits V1..V4 and A1..A16.\n",
       &RunWalk, kReadOptions, 1, 1},
      {"draw", "draw the timeline as an SVG picture",
       "usage: tcs draw FILE.edl -o PICTURE.svg [--fps RATE]\n\n"
       "One lane per channel, each clip a box at its record position with its name,\n"
       "transitions marked at the start of their clip, and a timecode ruler.\n",
       &RunDraw, ReadOptionsAnd({{"-o", true}}, kFileOptions), 1, 1},
      {"backups", "count or restore the numbered backups of a file",
       "usage: tcs backups FILE [--restore N]\n\n"
       "Counts the backups NAME.000.EXT, NAME.001.EXT, ... beside FILE (an unbroken\n"
       "run from 000). --restore N puts backup N (1 is NAME.000.EXT) in FILE's place,\n"
       "deletes backups 1..N-1 and moves the later ones down by one number.\n",
       &RunBackups, {{"--restore", true}}, 1, 1},
  };
  return commands;
}

namespace {

void PrintOverview(std::FILE* out) {
  std::fprintf(out, "usage: tcs COMMAND [ARGS...]   (tcs COMMAND --help for more)\n\n");
  for (const Command& command : Commands()) {
    std::fprintf(out, "  %-8s %s\n", command.name, command.summary);
  }
  std::fprintf(out, "\n%s", kTimes);
}

int Main(int argc, char** argv) {
  if (argc < 2) {
    PrintOverview(stderr);
    return kExitUsage;
  }
  const std::string name = argv[1];
  if (name == "--help" || name == "-h" || name == "help") {
    if (argc > 2) {
      for (const Command& command : Commands()) {
        if (argv[2] == std::string(command.name)) {
          std::printf("%s\n%s", command.usage, kTimes);
          return 0;
        }
      }
    }
    PrintOverview(stdout);
    return 0;
  }
  for (const Command& command : Commands()) {
    if (name != command.name) continue;
    try {
      const Args args(std::vector<std::string>(argv + 2, argv + argc), command.options,
                      command.minPositional, command.maxPositional);
      if (args.help()) {
        std::printf("%s\n%s", command.usage, kTimes);
        return 0;
      }
      const int status = command.run(args);
      std::cout.flush();
      if (!std::cout) {
        std::fprintf(stderr, "tcs %s: cannot write the output\n", command.name);
        return kExitFailure;
      }
      return status;
    } catch (const CliError& error) {
      std::cout.flush();
      std::fprintf(stderr, "tcs %s: %s\n", command.name, error.what());
      if (error.status() == kExitUsage) {
        std::fprintf(stderr, "(tcs %s --help shows the usage)\n", command.name);
      }
      return error.status();
    }
  }
  std::fprintf(stderr, "tcs: unknown command '%s'\n", name.c_str());
  PrintOverview(stderr);
  return kExitUsage;
}

}  // namespace
}  // namespace tcs::cli

int main(int argc, char** argv) {
  // Every command writes its output through std::cout alone: unsynchronised
  // with stdio, it is buffered as a file stream (the help, written with
  // printf, never shares a run with it).
  std::ios::sync_with_stdio(false);
  try {
    return tcs::cli::Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tcs: %s\n", error.what());
    return tcs::cli::kExitFailure;
  }
}
