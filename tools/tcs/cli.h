// The frame of every tcs subcommand: failures as exceptions that main turns
// into one line on stderr and an exit status, the option parser, and the
// table of subcommands. Single-threaded, like the whole tool.
#ifndef TCS_TOOLS_TCS_CLI_H_
#define TCS_TOOLS_TCS_CLI_H_

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "timecode/frame_rate.h"

namespace tcs::cli {

using timecode::FrameRate;

// Exit statuses: 0 done, 1 the work failed (unreadable or malformed input, a
// refused edit, an output that could not be written), 2 the command line is
// wrong.
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

class CliError : public std::runtime_error {
 public:
  CliError(int status, const std::string& message) : std::runtime_error(message), status_(status) {}
  int status() const { return status_; }

 private:
  int status_;
};

// "1 clip", "3 clips": a count and its noun, the noun's plural ending in s.
inline std::string Counted(size_t count, std::string_view noun) {
  std::string text = std::to_string(count) + ' ';
  text.append(noun);
  if (count != 1) text += 's';
  return text;
}

[[noreturn]] void Fail(const std::string& message);       // exit status 1
[[noreturn]] void UsageFail(const std::string& message);  // exit status 2

// How an EDL is read: strict stops at the first line that cannot be read;
// warnings shown: none (--quiet), every one (--warnings all), or the first
// few and a count (the default, --warnings N for N of them).
struct ReadOptions {
  bool strict = false;
  size_t shownWarnings = 5;
  std::optional<std::string> from;  // --from: the input's format, else its extension says
};

struct OptionSpec {
  const char* name;  // "--fps"
  bool takesValue;
};

// The arguments of one subcommand: options (given as "--name value" or
// "--name=value", anywhere on the line) and positional arguments. "--help"
// is always accepted. Unknown options and a wrong number of positional
// arguments are usage errors (not raised while help is asked for).
class Args {
 public:
  Args(const std::vector<std::string>& argv, const std::vector<OptionSpec>& options,
       size_t minPositional, size_t maxPositional);

  bool help() const { return help_; }
  bool Has(std::string_view name) const;
  std::optional<std::string> Value(std::string_view name) const;
  const std::vector<std::string>& positional() const { return positional_; }

  // --fps, when given, parsed.
  std::optional<FrameRate> FpsOverride() const;
  // How a read treats the file's problems: --strict, --quiet, --warnings.
  struct ReadOptions ReadOptions() const;

 private:
  bool help_ = false;
  std::vector<std::pair<std::string, std::string>> given_;
  std::vector<std::string> positional_;
};

struct Command {
  const char* name;
  const char* summary;
  const char* usage;  // the whole --help text
  int (*run)(const Args& args);
  std::vector<OptionSpec> options;
  size_t minPositional;
  size_t maxPositional;
};

const std::vector<Command>& Commands();

// A timecode or frame count given on the command line; a usage error naming
// `what` otherwise.
uint32_t TimecodeArg(const std::string& text, FrameRate rate, const std::string& what);

// The subcommands.
int RunInfo(const Args& args);
int RunAt(const Args& args);
int RunEdit(const Args& args);
int RunConvert(const Args& args);
int RunWalk(const Args& args);
int RunDraw(const Args& args);
int RunBackups(const Args& args);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_CLI_H_
