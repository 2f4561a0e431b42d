// Reading an EDL through the translator and writing one back, with the error
// log captured so that a failure becomes one line naming the file.
#include "timeline.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
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
constexpr size_t kMaxWarnings = 5;

struct FileScan {
  bool dropFrame = false;
  uint64_t events = 0;  // lines that start with an event number
};

// One pass over the file before the translator reads it: whether its FCM
// line asks for drop-frame, and how many event lines it holds.
FileScan Scan(const std::string& path) {
  FileScan scan;
  std::ifstream in(path);
  std::string line;
  while (std::getline(in, line)) {
    const size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos) continue;
    if (line[first] >= '0' && line[first] <= '9') {
      ++scan.events;
    } else if (line.compare(first, 4, "FCM:") == 0) {
      scan.dropFrame = line.find("DROP") != std::string::npos &&
                       line.find("NON") == std::string::npos;
    }
  }
  return scan;
}

// The first error of a failed read, put as "FILE: line N: what" when the
// translator wrote it as "function(FILE) line N: what".
std::string ReadFailure(const std::vector<std::string>& log, const std::string& path,
                        uint32_t status) {
  std::string message;
  for (const std::string& line : log) {
    if (line.rfind("WARNING", 0) != 0) {
      message = line;
      break;
    }
  }
  const size_t open = message.find('(');
  const bool named = open != std::string::npos && open > 0 &&
                     std::all_of(message.begin(), message.begin() + open, [](char c) {
                       return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
                     });
  if (named) {
    size_t close = message.find(") line ", open);
    if (close == std::string::npos) close = message.find("): ", open);
    if (close != std::string::npos) {
      message = message.substr(open + 1, close - open - 1) + ": " +
                message.substr(close + (message[close + 1] == ':' ? 3 : 2));
    }
  }
  if (message.empty()) {
    char code[32];
    std::snprintf(code, sizeof code, "0x%X", status);
    return path + ": not a readable EDL (status " + code + ")";
  }
  if (message.find(path) == std::string::npos) message = path + ": " + message;
  return message;
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

Timeline::Timeline(const std::string& path, std::optional<FrameRate> rate) : path_(path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) Fail(path + ": " + std::strerror(errno));
  if (S_ISDIR(info.st_mode)) Fail(path + ": is a directory, not an EDL file");
  if (FILE* probe = std::fopen(path.c_str(), "rb")) {
    std::fclose(probe);
  } else {
    Fail(path + ": " + std::strerror(errno));
  }
  const FileScan scan = Scan(path);
  rate_ = rate.value_or(FrameRate{30, scan.dropFrame});
  showProgress_ = isatty(2) && scan.events >= kProgressEvents;

  EDLSETTINGS settings;
  edlInitSettings(&settings, rate_.fps, rate_.dropFrame ? 1 : 0);
  space_ = tcsOpen(nullptr, nullptr, nullptr);
  if (space_ == nullptr) Fail(path + ": no space could be opened");
  tcsSetAddCallback(space_, this, &OnAdd);
  uint32_t status = 0;
  std::vector<std::string> log;
  {
    ErrorLogCapture capture;
    status = edlReadFile(space_, path.c_str(), &settings);
    log = capture.lines();
  }
  if (showProgress_) std::fprintf(stderr, "\r%60s\r", "");
  if (status != 0) {
    tcsClose(space_);
    space_ = nullptr;
    Fail(ReadFailure(log, path, status));
  }
  for (size_t i = 0; i < log.size() && i < kMaxWarnings; ++i) {
    std::fprintf(stderr, "tcs: warning: %s: %s\n", path.c_str(), log[i].c_str());
  }
  if (log.size() > kMaxWarnings) {
    std::fprintf(stderr, "tcs: warning: %s: %zu more\n", path.c_str(), log.size() - kMaxWarnings);
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
       " " + FormatTimecode(first.recordIn, rate) + "-" + FormatTimecode(first.recordOut, rate) +
       " " + first.name + " (the export writes V1..V4 and A1..A16, event by event)");
}

}  // namespace

void Timeline::WriteEdl(const std::string& out) const {
  EDLSETTINGS settings;
  edlInitSettings(&settings, rate_.fps, rate_.dropFrame ? 1 : 0);
  WriteAtomically(out, [&](const std::string& temporary) {
    {
      ErrorLogCapture capture;
      if (tcsWriteEdl(space_, temporary.c_str(), 0, &settings) != 0 || !capture.lines().empty()) {
        return false;
      }
    }
    CheckNothingLost(space_, temporary, settings, out, rate_);
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
