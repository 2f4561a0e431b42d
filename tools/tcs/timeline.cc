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
#include <set>
#include <tuple>

#include "channels.h"
#include "cli.h"
#include "clips.h"

namespace tcs::cli {
namespace {

// Files of at least this many events show progress while they are read.
constexpr uint64_t kProgressEvents = 100000;
constexpr uint64_t kProgressEvery = 4096;  // clips added between updates


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
  if (S_ISDIR(info.st_mode)) Fail(path + ": is a directory, not an EDL file");
  std::string text;
  if (!host::LoadFile(path, text)) Fail(path + ": " + std::strerror(errno));
  read_ = host::ScanEdlText(text, rate, "--fps");
  showProgress_ = isatty(2) && read_.eventLines >= kProgressEvents;

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

// Each warning once, the path said once above them.
void Timeline::PrintWarnings(size_t shown) const {
  const std::vector<host::EdlWarning>& warnings = read_.warnings;
  if (warnings.empty() || shown == 0) return;
  const size_t count = warnings.size();
  std::fprintf(stderr, "tcs: warning: %s: %zu %s\n", path_.c_str(), count,
               count == 1 ? "line not read as written" : "lines not read as written");
  for (size_t i = 0; i < count && i < shown; ++i) {
    std::fprintf(stderr, "  line %u: %s\n", warnings[i].line, warnings[i].text.c_str());
  }
  if (count > shown) {
    std::fprintf(stderr, "  ... and %zu more (--warnings all shows them)\n", count - shown);
  }
}

Timeline::~Timeline() {
  if (space_ != nullptr) tcsClose(space_);
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

// Reads the EDL just written back into a space of its own and fails, naming
// the first of them, when a clip of `space` did not come back: the export
// covers only the channels its event walk visits, and the walk can pass over
// a clip, so what is written is checked rather than trusted.
void CheckNothingLost(CTimeCodeSpace* space, const std::string& written,
                      const EDLSETTINGS& settings, const std::string& out, FrameRate rate) {
  CTimeCodeSpace* reread = tcsOpen(nullptr, nullptr, nullptr);
  if (reread == nullptr) Fail(out + " not written: no space to check it in");
  tcsSetAddCallback(reread, nullptr, &Accept);
  uint32_t status;
  {
    ErrorLogCapture capture;
    status = edlReadFile(reread, written.c_str(), &settings);
  }
  using Key = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, std::string>;
  std::multiset<Key> back;
  for (const ChannelView& channel : ChannelsOf(reread)) {
    for (const ClipView& c : channel.clips) {
      back.insert({c.channel, c.recordIn, c.recordOut, c.sourceIn, c.sourceOut, c.name});
    }
  }
  tcsClose(reread);
  if (status != 0) Fail(out + " not written: the EDL written cannot be read back");
  std::vector<const ClipView*> lost;
  const std::vector<ChannelView> channels = ChannelsOf(space);
  for (const ChannelView& channel : channels) {
    for (const ClipView& c : channel.clips) {
      const auto found = back.find({c.channel, c.recordIn, c.recordOut, c.sourceIn, c.sourceOut, c.name});
      if (found == back.end()) {
        lost.push_back(&c);
      } else {
        back.erase(found);
      }
    }
  }
  if (lost.empty()) return;
  const ClipView& first = *lost.front();
  Fail(out + " not written: the EDL would lose " + std::to_string(lost.size()) +
       (lost.size() == 1 ? " clip" : " clips") + ", the first " + ChannelName(first.channel) +
       " " + timecode::TimecodeString(first.recordIn, rate) + "-" +
       timecode::TimecodeString(first.recordOut, rate) +
       " " + first.name + " (the export writes V1..V4 and A1..A16, event by event)");
}

}  // namespace

void Timeline::WriteEdl(const std::string& out) const {
  EDLSETTINGS settings;
  edlInitSettings(&settings, read_.rate.fps, read_.rate.dropFrame ? 1 : 0);
  WriteAtomically(out, [&](const std::string& temporary) {
    {
      ErrorLogCapture capture;
      if (tcsWriteEdl(space_, temporary.c_str(), 0, &settings) != 0 || !capture.lines().empty()) {
        return false;
      }
    }
    CheckNothingLost(space_, temporary, settings, out, read_.rate);
    return true;
  });
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
