#include "otio/source_file.h"

#include <strings.h>

namespace tcs::otio {

std::string SourceFileOf(std::string_view comment) {
  static constexpr std::string_view kLabel = "SOURCE FILE:";
  size_t from = 0;
  while (from <= comment.size()) {
    size_t end = comment.find('\n', from);
    if (end == std::string_view::npos) end = comment.size();
    const std::string_view line = comment.substr(from, end - from);
    if (line.size() > kLabel.size() &&
        strncasecmp(line.data(), kLabel.data(), kLabel.size()) == 0) {
      const size_t first = line.find_first_not_of(' ', kLabel.size());
      if (first != std::string_view::npos) return std::string(line.substr(first));
    }
    from = end + 1;
  }
  return "";
}

}  // namespace tcs::otio
