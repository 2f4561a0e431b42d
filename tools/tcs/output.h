// Where a subcommand's text goes: standard output for "-", else a file
// written whole or not at all. A file that is the input being rewritten is
// first kept as a numbered backup beside it, under the library's backup
// names (NAME.000.EXT the newest; older ones move up a number), which
// `tcs backups` counts and restores.
#ifndef TCS_TOOLS_TCS_OUTPUT_H_
#define TCS_TOOLS_TCS_OUTPUT_H_

#include <optional>
#include <string>

namespace tcs::cli {

// Writes `text` to `out`. Returns the backup's name when `out` is the file
// `input` names (the same file, by any path) and it was kept as one.
std::optional<std::string> Deliver(const std::string& out, const std::string& input,
                                   const std::string& text);

// The name of backup `number` (0 the newest) of `path`: "NAME.000.EXT".
std::string BackupName(const std::string& path, unsigned number);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_OUTPUT_H_
