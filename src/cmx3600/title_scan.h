// The title a CMX 3600 list gives itself: the text of its TITLE: line above
// the first event. Pure; safe from any thread.
#ifndef TCS_CMX3600_TITLE_SCAN_H_
#define TCS_CMX3600_TITLE_SCAN_H_

#include <optional>
#include <string_view>

namespace tcs::cmx3600 {

// A view into `text`; nothing when no TITLE: line comes before the first
// event line.
std::optional<std::string_view> ScanTitle(std::string_view text);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_TITLE_SCAN_H_
