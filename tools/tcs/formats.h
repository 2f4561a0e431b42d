// The file formats the tool reads and writes, chosen in one place: by
// --from / --to when given, else by the file's extension. Each format names
// how a file of it becomes a Timeline and how a Timeline becomes its text.
#ifndef TCS_TOOLS_TCS_FORMATS_H_
#define TCS_TOOLS_TCS_FORMATS_H_

#include <optional>
#include <string>
#include <string_view>

#include "cli.h"
#include "timeline.h"

namespace tcs::cli {

struct Format {
  const char* name;        // as --from and --to take it
  const char* extensions;  // lower case, joined by '|': "edl"
  // The text of `timeline` in this format, titled `title`; `out` names the
  // destination in a failure.
  std::string (*write)(const Timeline& timeline, std::string_view title, const std::string& out);
  bool reads;  // a Timeline can be read from it
};

// The format of `path`: `named` when given (a usage error when no format is
// called that), else by extension, else `otherwise` (standard output, "-",
// has no extension); `option` ("--from", "--to") names what to give in a
// usage error when none of these tells.
const Format& FormatOf(const std::string& path, const std::optional<std::string>& named,
                       const char* option, const Format* otherwise = nullptr);

// CMX 3600, what a file whose name says no format is read as.
const Format& EdlFormat();

// Reads `path` in `format` (a usage error for a format the tool only writes).
// Every format is read into a space through a Timeline.
void CheckReadable(const Format& format, const std::string& path);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_FORMATS_H_
