#include "edl_file.h"

#include <algorithm>
#include <fstream>

#include "cmx3600/rate_scan.h"
#include "cmx3600/title_scan.h"

namespace tcs::host {
namespace {

void OnWarning(void* context, const EDLWARNING* warning) {
  EdlRead& read = *static_cast<EdlRead*>(context);
  EdlWarning kept{warning->line, warning->text != nullptr ? warning->text : ""};
  if (warning->fatal != 0) {
    read.failure = std::move(kept);
  } else {
    read.warnings.push_back(std::move(kept));
  }
}

}  // namespace

EdlRead ScanEdlText(std::string_view text, std::optional<timecode::FrameRate> rate,
                    const std::string& given_reason) {
  EdlRead read;
  const cmx3600::RateScan scan = cmx3600::ScanRate(text);
  read.rate = rate.value_or(scan.rate);
  read.rateGiven = rate.has_value();
  read.rateReason = rate ? given_reason : cmx3600::RateReason(scan);
  read.eventLines = scan.eventLines;
  if (const std::optional<std::string_view> title = cmx3600::ScanTitle(text)) read.title = *title;
  return read;
}

void ReadEdlText(CTimeCodeSpace* space, std::string_view text, bool strict, EdlRead& read) {
  EDLSETTINGS settings;
  edlInitSettings(&settings, read.rate.fps, read.rate.dropFrame ? 1 : 0);
  settings.strict = strict ? 1 : 0;
  settings.keepRate = read.rateGiven ? 1 : 0;
  read.status = edlReadText(space, text.data(), text.size(), &settings, &OnWarning, &read);
  // In line order: some are found only when the event they belong to ends.
  std::stable_sort(read.warnings.begin(), read.warnings.end(),
                   [](const EdlWarning& a, const EdlWarning& b) { return a.line < b.line; });
}

bool LoadFile(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  // In blocks: a character at a time through the stream's iterator was a
  // twentieth of reading a long list.
  text.clear();
  char block[1 << 16];
  while (in.read(block, sizeof block) || in.gcount() > 0) text.append(block, size_t(in.gcount()));
  return !in.bad();
}

}  // namespace tcs::host
