// Timeline: one EDL file read into a space of its own, for one subcommand.
// Owns the space (closed on destruction) and the rate the file's timecodes
// are shown at. Reading answers an unreadable or malformed file with a
// CliError naming the file (and the line, as the translator reports it).
// Single-threaded.
#ifndef TCS_TOOLS_TCS_TIMELINE_H_
#define TCS_TOOLS_TCS_TIMELINE_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli.h"
#include "clips.h"
#include "edl_file.h"
#include "tcs.h"
#include "timecode/timecode.h"

namespace tcs::cli {

// Collects every line of the host's error log while it lives, instead of
// letting them reach stderr.
class ErrorLogCapture {
 public:
  ErrorLogCapture();
  ~ErrorLogCapture();
  ErrorLogCapture(const ErrorLogCapture&) = delete;
  ErrorLogCapture& operator=(const ErrorLogCapture&) = delete;

  const std::vector<std::string>& lines() const { return lines_; }
  // The lines joined by "; ", without line ends.
  std::string Joined() const;

 private:
  static void Collect(void* self, const char* line);
  std::vector<std::string> lines_;
};

class Timeline {
 public:
  // Reads `path` and prints its warnings to stderr as `options` says; `rate`
  // overrides the rate the file's own text gives (see cmx3600::ScanRate).
  Timeline(const std::string& path, std::optional<FrameRate> rate, const ReadOptions& options);
  ~Timeline();
  Timeline(const Timeline&) = delete;
  Timeline& operator=(const Timeline&) = delete;

  CTimeCodeSpace* space() const { return space_; }
  FrameRate rate() const { return read_.rate; }
  // Why the rate: "--fps", or what in the file gave it.
  const std::string& rateReason() const { return read_.rateReason; }
  size_t warnings() const { return read_.warnings.size(); }
  const std::string& path() const { return path_; }
  std::string Tc(uint32_t frames) const { return timecode::TimecodeString(frames, read_.rate); }
  // A source timecode of `clip`, counted as the list counted it (its FCM:
  // line) where that differs from the record timecodes.
  std::string SourceTc(const ClipView& clip, uint32_t frames) const;

  // The title the file gives itself (its TITLE: line), else its name
  // without directory and extension.
  const std::string& title() const { return title_; }

  // The space as the text of a CMX 3600 list at the file's rate, every clip
  // of every channel, checked by reading it back: a CliError naming `out`
  // when a clip would not come back as it is.
  std::string EdlText(std::string_view title, const std::string& out) const;

 private:
  static unsigned int OnAdd(void* self, CTimeCodeSpace* space, CClip* clip);
  void PrintWarnings(size_t shown) const;
  void ReadOtio(const std::string& path, std::optional<FrameRate> rate, const ReadOptions& options);

  std::string path_;
  std::string title_;
  host::EdlRead read_;  // the rate, why, and what the read could not carry
  CTimeCodeSpace* space_ = nullptr;
  uint64_t added_ = 0;
  bool showProgress_ = false;
};

// Runs write(temporary path) and, when it returns true, renames the
// temporary file over `out`. On any failure the temporary file is removed,
// `out` is left untouched, and a CliError names `out`.
void WriteAtomically(const std::string& out, const std::function<bool(const std::string&)>& write);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_TIMELINE_H_
