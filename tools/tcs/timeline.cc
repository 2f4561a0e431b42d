// Reading an EDL through the translator, from the file's bytes in memory, at
// the rate its text gives (or --fps), with its warnings as data; and writing
// one back, with the error log captured so that a failure becomes one line
// naming the file.
#include "timeline.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <tuple>

#include "channels.h"
#include "cli.h"
#include "clips.h"
#include "each_clip.h"
#include "formats.h"
#include "edl_writer.h"
#ifdef TCS_TOOL_OTIO
#include "otio/otio.h"
#endif

namespace tcs::cli {
namespace {

// Files of at least this many bytes (some 40,000 events) show progress
// while they are read.
constexpr uint64_t kProgressBytes = 4 << 20;
constexpr uint64_t kProgressEvery = 4096;  // clips added between updates

// The file's name without its directory and extension.
std::string FileStem(const std::string& path) {
  std::string name = path.substr(path.find_last_of('/') + 1);
  const size_t dot = name.find_last_of('.');
  if (dot != std::string::npos && dot > 0) name.resize(dot);
  return name;
}

}  // namespace

ErrorLogCapture::ErrorLogCapture() { ErrSetSink(&Collect, this); }
ErrorLogCapture::~ErrorLogCapture() { ErrSetSink(nullptr, nullptr); }

void ErrorLogCapture::Collect(void* self, const char* line) {
  std::string text = line != nullptr ? line : "";
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  static_cast<ErrorLogCapture*>(self)->lines_.push_back(text);
}

std::string ErrorLogCapture::Joined() const {
  std::string joined;
  for (const std::string& line : lines_) {
    if (!joined.empty()) joined += "; ";
    joined += line;
  }
  return joined;
}

Timeline::Timeline(const std::string& path, std::optional<FrameRate> rate,
                   const ReadOptions& options)
    : path_(path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) Fail(path + ": " + std::strerror(errno));
  if (S_ISDIR(info.st_mode)) Fail(path + ": is a directory, not a timeline file");
  const Format& format = FormatOf(path, options.from, "--from", &EdlFormat());
  CheckReadable(format, path);
  if (std::string_view(format.name) == "otio") {
    ReadOtio(path, rate, options);
    return;
  }
  std::string text;
  if (!host::LoadFile(path, text)) Fail(path + ": " + std::strerror(errno));
  read_ = host::ScanEdlText(text, rate, "--fps");
  title_ = read_.title ? *read_.title : FileStem(path);
  showProgress_ = isatty(2) && text.size() >= kProgressBytes;

  space_ = tcsOpen(nullptr, nullptr, nullptr);
  if (space_ == nullptr) Fail(path + ": no space could be opened");
  tcsSetAddCallback(space_, this, &OnAdd);
  std::vector<std::string> log;
  {
    ErrorLogCapture capture;
    host::ReadEdlText(space_, text, options.strict, read_);
    log = capture.lines();
  }
  if (showProgress_) std::fprintf(stderr, "\r%60s\r", "");
  if (read_.status != 0) {
    tcsClose(space_);
    space_ = nullptr;
    PrintWarnings(options.shownWarnings);
    if (read_.failure) {
      Fail(path + ": line " + std::to_string(read_.failure->line) + ": " + read_.failure->text);
    }
    char code[32];
    std::snprintf(code, sizeof code, "0x%X", read_.status);
    Fail(path + ": not a readable EDL (status " + code + ")" +
         (log.empty() ? std::string() : ": " + log.front()));
  }
  PrintWarnings(options.shownWarnings);
}

// An OpenTimelineIO file: its tracks on the channels their names give, or
// the next free ones (said on stderr), its warnings printed as an EDL's are.
void Timeline::ReadOtio(const std::string& path, std::optional<FrameRate> rate,
                        const ReadOptions& options) {
#ifdef TCS_TOOL_OTIO
  space_ = tcsOpen(nullptr, nullptr, nullptr);
  if (space_ == nullptr) Fail(path + ": no space could be opened");
  tcsSetAddCallback(space_, this, &OnAdd);
  otio::ReadOptions how;
  how.rate = rate;
  const otio::ReadResult result = otio::ReadOtioFile(space_, path, how);
  if (result.status != otio::Status::kOk) Fail(result.error);
  read_.rate = result.rate;
  read_.rateGiven = rate.has_value();
  read_.rateReason = rate ? "--fps" : "the timeline's own rate";
  title_ = result.name.empty() ? FileStem(path) : result.name;
  for (const otio::TrackPlacement& track : result.tracks) {
    if (track.byName || options.shownWarnings == 0) continue;
    char name[8];
    tcsChannelName(track.channel, name, sizeof name);
    std::fprintf(stderr, "tcs: %s: track '%s' read onto %s\n", path.c_str(), track.track.c_str(),
                 name);
  }
  for (const otio::Warning& warning : result.warnings) {
    read_.warnings.push_back({0, warning.item + ": " + warning.text});
  }
  PrintWarnings(options.shownWarnings);
#else
  (void)rate, (void)options;
  Fail(path + ": this tcs was built without .otio support");
#endif
}

// Each warning once, the path said once above them.
void Timeline::PrintWarnings(size_t shown) const {
  const std::vector<host::EdlWarning>& warnings = read_.warnings;
  if (warnings.empty() || shown == 0) return;
  const size_t count = warnings.size();
  std::fprintf(stderr, "tcs: warning: %s: %zu %s\n", path_.c_str(), count,
               warnings.front().line == 0 ? (count == 1 ? "item not read as written"
                                                        : "items not read as written")
               : count == 1                ? "line not read as written"
                                           : "lines not read as written");
  for (size_t i = 0; i < count && i < shown; ++i) {
    if (warnings[i].line == 0) {  // an item of a file without lines
      std::fprintf(stderr, "  %s\n", warnings[i].text.c_str());
    } else {
      std::fprintf(stderr, "  line %u: %s\n", warnings[i].line, warnings[i].text.c_str());
    }
  }
  if (count > shown) {
    std::fprintf(stderr, "  ... and %zu more (--warnings all shows them)\n", count - shown);
  }
}

Timeline::~Timeline() {
  if (space_ != nullptr) tcsClose(space_);
}

std::string Timeline::SourceTc(const ClipView& clip, uint32_t frames) const {
  FrameRate rate = read_.rate;
  if (clip.sourceCounting != CLS_SOURCE_AS_LIST && timecode::CanDropFrame(rate.fps)) {
    rate = timecode::MakeFrameRate(rate.fps, clip.sourceCounting == CLS_SOURCE_DROP_FRAME);
  }
  return timecode::TimecodeString(frames, rate);
}

unsigned int Timeline::OnAdd(void* self, CTimeCodeSpace*, CClip*) {
  Timeline& timeline = *static_cast<Timeline*>(self);
  ++timeline.added_;
  if (timeline.showProgress_ && timeline.added_ % kProgressEvery == 0) {
    std::fprintf(stderr, "\rtcs: reading %s: %llu clips", timeline.path_.c_str(),
                 static_cast<unsigned long long>(timeline.added_));
  }
  return 0;  // accept every clip
}

namespace {

unsigned int Accept(void*, CTimeCodeSpace*, CClip*) { return 0; }

// What plays at one frame of a channel, with everything a list carries of
// it: the source frame, the texts, the speed, and at the clip's first frame
// its transition.
using Playing = std::tuple<uint32_t, std::string, std::string, std::string, std::string, bool,
                           uint32_t, uint32_t, std::optional<std::pair<int32_t, uint32_t>>>;

std::string Str(const char* text) { return text != nullptr ? text : ""; }

// Asked of the space's own lookups: the last of the clips listed at `frame`
// that holds it plays there.
std::optional<Playing> PlayingAt(CTimeCodeSpace* space, uint32_t channel, uint32_t frame) {
  TCSCLIP rows[8];
  unsigned int count = 0;
  unsigned int next = 0;
  if (tcsGetClips(space, channel, frame, frame + 1, rows, 8, &count, &next) != TCS_OK) {
    return std::nullopt;
  }
  for (unsigned int i = count; i-- > 0;) {
    const TCSCLIP& row = rows[i];
    if (row.start > frame || frame - row.start >= row.length) continue;
    const CLIPINFO empty{};
    const CLIPINFO& info = row.info != nullptr ? *row.info : empty;
    const bool first = row.start == frame;
    std::optional<std::pair<int32_t, uint32_t>> speed;
    if (std::pair<int32_t, uint32_t> s; clsGetClipSpeed(&info, &s.first, &s.second) != 0) {
      speed = s;
    }
    return Playing(row.sourceIn + (frame - row.start), Str(info.name), Str(info.reel),
                   Str(info.clipName), Str(info.comment), first && row.effectText[0] != '\0',
                   first ? row.effectCode : 0, first ? row.effectDuration : 0, speed);
  }
  return std::nullopt;
}

// The first and last frame of every clip of a space, per channel.
void AddEdges(CTimeCodeSpace* space, std::vector<std::vector<uint32_t>>& edges) {
  ChannelMasks masks;
  if (tcsGetChannels(space, &masks.video, &masks.audio, &masks.aux) != TCS_OK) return;
  for (const uint32_t channel : MaskChannels(masks)) {
    host::EachClip(space, channel, [&edges, channel](const TCSCLIP& row) {
      if (row.length == 0) return;
      edges[channel].push_back(row.start);
      edges[channel].push_back(row.start + row.length - 1);
    });
  }
}

// Reads the text just written back into a space of its own and fails,
// naming the first place, when what plays there differs from what plays in
// `space`: asked at the first and last frame of every clip of either space,
// so a clip lost, cut, or joined with another into one event (coming back
// with the other's reel or name) is found.
void CheckNothingLost(CTimeCodeSpace* space, const std::string& written, FrameRate rate,
                      const std::string& out) {
  CTimeCodeSpace* reread = tcsOpen(nullptr, nullptr, nullptr);
  if (reread == nullptr) Fail(out + " not written: no space to check it in");
  tcsSetAddCallback(reread, nullptr, &Accept);
  EDLSETTINGS settings;
  edlInitSettings(&settings, rate.fps, rate.dropFrame ? 1 : 0);
  settings.keepRate = 1;
  uint32_t status;
  {
    ErrorLogCapture capture;
    status = edlReadText(reread, written.data(), written.size(), &settings, nullptr, nullptr);
  }
  std::vector<std::vector<uint32_t>> edges(96);
  AddEdges(space, edges);
  AddEdges(reread, edges);
  size_t differ = 0;
  uint32_t channel = 0;
  uint32_t frame = 0;
  for (uint32_t c = 0; c < edges.size() && status == 0; ++c) {
    std::sort(edges[c].begin(), edges[c].end());
    edges[c].erase(std::unique(edges[c].begin(), edges[c].end()), edges[c].end());
    for (const uint32_t f : edges[c]) {
      if (PlayingAt(space, c, f) == PlayingAt(reread, c, f)) continue;
      if (differ++ == 0) {
        channel = c;
        frame = f;
      }
    }
  }
  tcsClose(reread);
  if (status != 0) Fail(out + " not written: the EDL written cannot be read back");
  if (differ == 0) return;
  Fail(out + " not written: read back, it would play something else at " +
       Counted(differ, "place") + ", the first " +
       ChannelName(channel) + " " + timecode::TimecodeString(frame, rate));
}

}  // namespace

std::string Timeline::EdlText(std::string_view title, const std::string& out) const {
  std::string text;
  const uint32_t status = host::AppendSpaceEdl(space_, {title, read_.rate}, text);
  if (status != TCS_OK) Fail(out + " not written: the space could not be listed");
  CheckNothingLost(space_, text, read_.rate, out);
  return text;
}

void WriteAtomically(const std::string& out, const std::function<bool(const std::string&)>& write) {
  std::string temporary = out + ".tcs-XXXXXX";
  const int fd = mkstemp(temporary.data());
  if (fd < 0) Fail("cannot write " + out + ": " + std::strerror(errno));
  close(fd);
  bool written = false;
  try {
    written = write(temporary);
  } catch (...) {
    unlink(temporary.c_str());
    throw;
  }
  if (!written) {
    unlink(temporary.c_str());
    Fail("cannot write " + out);
  }
  const mode_t mask = umask(0);
  umask(mask);
  chmod(temporary.c_str(), 0666 & ~mask);
  if (std::rename(temporary.c_str(), out.c_str()) != 0) {
    const int error = errno;
    unlink(temporary.c_str());
    Fail("cannot write " + out + ": " + std::strerror(error));
  }
}

}  // namespace tcs::cli
