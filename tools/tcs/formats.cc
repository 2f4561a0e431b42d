#include "formats.h"

#include <cctype>
#include <cstdio>

#ifdef TCS_TOOL_OTIO
#include "otio/otio.h"
#endif

namespace tcs::cli {
namespace {

std::string WriteEdl(const Timeline& timeline, std::string_view title, const std::string& out) {
  return timeline.EdlText(title, out);
}

#ifdef TCS_TOOL_OTIO
// The space as one OpenTimelineIO timeline, every RationalTime at the rate
// the input was counted at. Where clips overlap on a channel the library
// cuts them as they play, and says so.
std::string WriteOtio(const Timeline& timeline, std::string_view title, const std::string& out) {
  otio::WriteOptions options;
  options.rate = timeline.rate();
  options.name = std::string(title);
  std::string text;
  const otio::WriteResult result = otio::WriteOtioText(timeline.space(), options, &text);
  if (result.status != otio::Status::kOk) Fail(out + " not written: " + result.error);
  for (const otio::Warning& warning : result.warnings) {
    std::fprintf(stderr, "tcs: warning: %s: %s: %s\n", out.c_str(), warning.item.c_str(),
                 warning.text.c_str());
  }
  return text;
}
#endif

constexpr Format kFormats[] = {
    {"edl", "edl", &WriteEdl, true},
#ifdef TCS_TOOL_OTIO
    {"otio", "otio", &WriteOtio, true},
#endif
};

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = char(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

bool Listed(std::string_view list, std::string_view word) {
  size_t at = 0;
  while (true) {
    const size_t bar = list.find('|', at);
    if (list.substr(at, bar - at) == word) return true;
    if (bar == std::string_view::npos) return false;
    at = bar + 1;
  }
}

std::string Names() {
  std::string names;
  for (const Format& format : kFormats) {
    if (!names.empty()) names += ", ";
    names += format.name;
  }
  return names;
}

}  // namespace

const Format& FormatOf(const std::string& path, const std::optional<std::string>& named,
                       const char* option, const Format* otherwise) {
  if (named) {
    for (const Format& format : kFormats) {
      if (Lower(*named) == format.name) return format;
    }
    UsageFail(std::string(option) + " " + *named + ": not a format the tool knows (" + Names() + ")");
  }
  const std::string name = path.substr(path.find_last_of('/') + 1);
  const size_t dot = name.find_last_of('.');
  if (dot != std::string::npos && dot > 0) {
    const std::string extension = Lower(name.substr(dot + 1));
    for (const Format& format : kFormats) {
      if (Listed(format.extensions, extension)) return format;
    }
  }
  if (otherwise != nullptr) return *otherwise;
  UsageFail(path + ": the format cannot be told from its name; give " + option + " (" + Names() +
            ")");
}

const Format& EdlFormat() { return kFormats[0]; }

void CheckReadable(const Format& format, const std::string& path) {
  if (!format.reads) UsageFail(path + ": " + format.name + " files are written, not read");
}

}  // namespace tcs::cli
