#include "cmx3600/title_scan.h"

#include "cmx3600/line.h"

namespace tcs::cmx3600 {

std::optional<std::string_view> ScanTitle(std::string_view text) {
  std::optional<std::string_view> title;
  ForEachLine(text, [&](std::string_view line) {
    const LineClass kind = ClassifyLine(line);
    if (kind.kind == LineKind::kTitle) title = kind.body;
    return !title && kind.kind != LineKind::kEvent;
  });
  return title;
}

}  // namespace tcs::cmx3600
