// Arbitrary bytes as an EDL, read from memory into a space through the
// translator's reader, tolerantly or strictly. Whatever the reader made of
// them is then exported, the export read back into a second space and
// exported again: what the library writes must read back without a
// complaint, and, where no clip lies over the next, the second export must
// give the same events as the first. The host kit's writer of the whole
// space must read back, warning of nothing, into the same clips on every
// channel. The checks of FuzzHost run on the spaces after every call.
//
// The spaces are bound to no file (every change of a bound space reads its
// file's time: a tenth of the harness's time); the two exports are the only
// files written, as the export writes only files.
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>

#include "cmx3600/reader.h"
#include "fuzz/fuzz_host.h"
#include "hostkit/each_clip.h"
#include "hostkit/edl_writer.h"
#include "tcs.h"

namespace {

using tcs_fuzz::FuzzHost;

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The export with its texts left out: notes ("* ..." lines) and the reel
// column of event lines. Texts are cleaned on the way out (control
// characters, trailing blanks), so only the timing, tracks and transitions
// must survive a round trip byte for byte.
std::string WithoutTexts(const std::string& text) {
  std::string kept;
  size_t from = 0;
  while (from < text.size()) {
    size_t end = text.find('\n', from);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(from, end - from);
    from = end + 1;
    if (!line.empty() && line[0] == '*') continue;
    if (line.size() > 13 && std::isdigit(static_cast<unsigned char>(line[0]))) {
      line.replace(5, 8, 8, ' ');
    }
    kept += line;
    kept += '\n';
  }
  return kept;
}

void IgnoreWarning(void*, const EDLWARNING* warning) {
  if (warning->text == nullptr) FuzzHost::Broken("a warning without its text");
}

void NoWarning(void*, const EDLWARNING*) {
  FuzzHost::Broken("the host kit's writer wrote a list its reader warns of");
}

// Every clip of every channel with what a list carries of it byte for byte
// (comments and reels lose control characters and edge blanks on the way
// out, and are left out here), each with the frames it plays: up to the
// next clip's start on its channel. Even a space read from a list can hold
// a clip over the next (one that ends at the timeline's end, under one at
// its last start); a list can only say what plays.
// Where a clip starts in its source is the frame it plays first and, for a
// clip with a speed (at `fps`), the part of a source frame past it that a
// cut head left: the writer moves a speed clip's source in and entry
// together to its first frame where that part is none.
using Carried = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, int64_t, std::string, bool,
                           uint32_t, uint32_t>;

Carried CarriedOf(uint32_t channel, const TCSCLIP& r, uint32_t fps) {
  const char* name = r.info != nullptr ? r.info->name : nullptr;
  uint32_t first = r.sourceIn;
  int64_t part = 0;
  int32_t milli = 0;
  uint32_t entry = 0;
  if (r.info != nullptr && clsGetClipSpeed(r.info, &milli, &entry) != 0) {
    const int64_t scaled = (int64_t(r.sourceIn) - entry) * milli;
    const int64_t per = int64_t(fps) * 1000;
    part = ((scaled % per) + per) % per;
    first = clsPlayedSource(r.info, r.sourceIn, fps);
  }
  return {channel, r.start, r.length, first, part, name != nullptr ? name : "",
          r.effectText[0] != '\0', r.effectCode, r.effectDuration};
}

// `overlapping`, when given, tells whether some clip lies over the next.
std::vector<Carried> Clips(CTimeCodeSpace* space, uint32_t fps, bool* overlapping = nullptr) {
  std::vector<Carried> clips;
  if (overlapping != nullptr) *overlapping = false;
  unsigned int masks[3];
  if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != 0) {
    FuzzHost::Broken("the channels could not be read");
  }
  for (uint32_t channel = 0; channel < 96; ++channel) {
    if (((masks[channel / 32] >> (channel % 32)) & 1) == 0) continue;
    std::vector<Carried> listed;
    const uint32_t status = tcs::host::EachClip(
        space, channel, [&](const TCSCLIP& r) { listed.push_back(CarriedOf(channel, r, fps)); });
    if (status != 0) FuzzHost::Broken("a channel could not be listed");
    for (size_t i = 0; i < listed.size(); ++i) {
      uint32_t& length = std::get<2>(listed[i]);
      if (i + 1 < listed.size()) {
        const uint64_t room = uint64_t(std::get<1>(listed[i + 1])) - std::get<1>(listed[i]);
        if (room < length) {
          length = uint32_t(room);
          if (overlapping != nullptr) *overlapping = true;
        }
      }
      if (length != 0) clips.push_back(listed[i]);
    }
  }
  return clips;
}

// Each clip's channel, start, length and source in: what a list says of it
// but its texts and transition. For spaces read from the export, which
// writes no speed (so any rate does for Clips).
std::vector<std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>> Timing(CTimeCodeSpace* space) {
  std::vector<std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>> timing;
  for (const Carried& clip : Clips(space, 30)) {
    timing.emplace_back(std::get<0>(clip), std::get<1>(clip), std::get<2>(clip), std::get<3>(clip));
  }
  return timing;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string dir = tcs_fuzz::FuzzDir();
  const std::string first = dir + "/first.edl";
  // The same name in another directory: the export titles a file by its name.
  const std::string second = dir + "/again/first.edl";
  static const bool made = std::filesystem::create_directories(dir + "/again");
  (void)made;
  // The last byte picks the rate and the mode, so most mutations keep them.
  EDLSETTINGS settings;
  static const uint32_t kRates[] = {30, 24, 25, 30};
  const uint8_t pick = size != 0 ? data[size - 1] : 0;
  edlInitSettings(&settings, kRates[pick & 3], (pick & 3) == 3);
  settings.strict = (pick & 8) != 0;
  const EDLSETTINGS* rate = (pick & 4) != 0 ? &settings : nullptr;

  FuzzHost read(nullptr);
  if ((pick & 0x14) == 0x14) {
    // The rate found in the reader's one parse is the rate scan's.
    settings.findRate = 1;
    EDLREADRATE found{};
    edlReadTextRate(read.space, reinterpret_cast<const char*>(data), size, rate, &IgnoreWarning,
                    nullptr, &found);
    const tcs::cmx3600::RateScan scan =
        tcs::cmx3600::ScanRate(std::string_view(reinterpret_cast<const char*>(data), size));
    if (found.framesPerSecond != scan.rate.fps || (found.dropFrame != 0) != scan.rate.dropFrame ||
        found.highestFrame != scan.highestFrame || found.eventLines != scan.eventLines) {
      FuzzHost::Broken("the rate the reader found is not the rate scan's");
    }
    settings.framesPerSecond = found.framesPerSecond;
    settings.dropFrame = found.dropFrame;
    settings.findRate = 0;
  } else {
    edlReadText(read.space, reinterpret_cast<const char*>(data), size, rate, &IgnoreWarning,
                nullptr);
  }
  read.Check();
  if (tcsWriteEdl(read.space, first.c_str(), 0, rate) != 0) {
    FuzzHost::Broken("the export could not write its file");
  }
  read.Check();

  // The whole space, written by the host kit and read back at the same rate.
  const tcs::timecode::FrameRate counted =
      (pick & 4) != 0 ? tcs::timecode::MakeFrameRate(settings.framesPerSecond, settings.dropFrame != 0)
                      : tcs::timecode::MakeFrameRate(30, false);
  std::string whole;
  if (tcs::host::AppendSpaceEdl(read.space, {"fuzz", counted}, whole) != 0) {
    FuzzHost::Broken("the host kit's writer could not list the space");
  }
  EDLSETTINGS same;
  edlInitSettings(&same, counted.fps, counted.dropFrame ? 1 : 0);
  same.keepRate = 1;
  FuzzHost kit(nullptr);
  edlReadText(kit.space, whole.data(), whole.size(), &same, &NoWarning, nullptr);
  kit.Check();
  bool overlapping = false;
  if (Clips(read.space, counted.fps, &overlapping) != Clips(kit.space, counted.fps)) {
    FuzzHost::Broken("the host kit's writer, read back, changed the clips");
  }

  FuzzHost back(nullptr);
  if (edlReadFile(back.space, first.c_str(), rate) != 0) {
    FuzzHost::Broken("the library's own export does not read back");
  }
  back.Check();
  if (tcsWriteEdl(back.space, second.c_str(), 0, rate) != 0) {
    FuzzHost::Broken("the second export could not write its file");
  }
  back.Check();
  // The export writes every clip whole, and a reader lays a list's events
  // one over the other as overwrites: a space holding a clip over the next
  // cannot come back through it as it was. The edits leave such spaces, as
  // an overwrite inside a clip of the exempt length (10692000 frames, which
  // may run past the timeline's end) keeps a piece at the last start.
  if (overlapping || WithoutTexts(Slurp(first)) == WithoutTexts(Slurp(second))) return 0;
  // The export joins into one event the clips that start together with the
  // same length, source points and name (or none), whatever their reels and
  // transitions. A record cut short by a later event is longer than what it
  // plays, which keeps it apart from its neighbours in the first export but
  // not after the round trip, where every record is as long as it plays. So
  // the events may be grouped otherwise the second time; each channel must
  // still play the same frames of the same sources.
  FuzzHost again(nullptr);
  if (edlReadFile(again.space, second.c_str(), rate) != 0) {
    FuzzHost::Broken("the second export does not read back");
  }
  again.Check();
  if (Timing(back.space) != Timing(again.space)) {
    FuzzHost::Broken("export, read, export changed the events");
  }
  return 0;
}
