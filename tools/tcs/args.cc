// Option parsing shared by the subcommands.
#include <algorithm>
#include <charconv>

#include "cli.h"
#include "tcs.h"
#include "timecode/timecode.h"

namespace tcs::cli {

void Fail(const std::string& message) { throw CliError(kExitFailure, message); }
void UsageFail(const std::string& message) { throw CliError(kExitUsage, message); }

Args::Args(const std::vector<std::string>& argv, const std::vector<OptionSpec>& options,
           size_t minPositional, size_t maxPositional) {
  std::string unknown;
  for (size_t i = 0; i < argv.size(); ++i) {
    const std::string& arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      help_ = true;
      continue;
    }
    if (arg.size() < 2 || arg[0] != '-' || arg == "--") {
      positional_.push_back(arg);
      continue;
    }
    const size_t equals = arg.find('=');
    const std::string name = arg.substr(0, equals);
    const auto known = std::find_if(options.begin(), options.end(),
                                   [&](const OptionSpec& o) { return name == o.name; });
    if (known == options.end()) {
      if (unknown.empty()) unknown = arg;
      continue;
    }
    std::string value;
    if (known->takesValue) {
      if (equals != std::string::npos) {
        value = arg.substr(equals + 1);
      } else if (i + 1 < argv.size()) {
        value = argv[++i];
      } else if (!help_) {
        UsageFail(name + " needs a value");
      }
    } else if (equals != std::string::npos) {
      UsageFail(name + " takes no value");
    }
    given_.emplace_back(name, value);
  }
  if (help_) return;
  if (!unknown.empty()) UsageFail("unknown option " + unknown);
  if (positional_.size() < minPositional) UsageFail("missing arguments");
  if (positional_.size() > maxPositional) UsageFail("unexpected argument '" + positional_[maxPositional] + "'");
}

bool Args::Has(std::string_view name) const {
  return std::any_of(given_.begin(), given_.end(), [&](const auto& g) { return g.first == name; });
}

std::optional<std::string> Args::Value(std::string_view name) const {
  std::optional<std::string> value;  // the last one given wins
  for (const auto& [n, v] : given_) {
    if (n == name) value = v;
  }
  return value;
}

std::optional<FrameRate> Args::FpsOverride() const {
  const std::optional<std::string> text = Value("--fps");
  if (!text) return std::nullopt;
  const std::optional<FrameRate> rate = timecode::ParseFrameRate(*text);
  if (!rate) {
    UsageFail("--fps " + *text +
              ": give frames per second (24, 25, 30 ... 120, 23.976, 29.97, 29.97df, 59.94)");
  }
  return rate;
}

ReadOptions Args::ReadOptions() const {
  struct ReadOptions options;
  options.strict = Has("--strict");
  options.from = Value("--from");
  if (Has("--quiet")) options.shownWarnings = 0;
  if (const std::optional<std::string> shown = Value("--warnings")) {
    size_t count = 0;
    const auto [end, error] = std::from_chars(shown->data(), shown->data() + shown->size(), count);
    if (*shown == "all") {
      options.shownWarnings = SIZE_MAX;
    } else if (!shown->empty() && error == std::errc() && end == shown->data() + shown->size()) {
      options.shownWarnings = count;
    } else {
      UsageFail("--warnings " + *shown + ": give a number or all");
    }
  }
  return options;
}

uint32_t TimecodeArg(const std::string& text, FrameRate rate, const std::string& what) {
  std::string error;
  const std::optional<uint32_t> frames =
      timecode::ParseTimecode(text, rate, TCS_TIMELINE_END, &error);
  if (!frames) UsageFail(what + ": " + error);
  return *frames;
}

}  // namespace tcs::cli
