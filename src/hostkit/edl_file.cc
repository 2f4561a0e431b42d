#include "edl_file.h"

#include <algorithm>
#include <filesystem>
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
  read.rateGiven = rate.has_value();
  if (rate) {
    read.rate = *rate;
    read.rateReason = given_reason;
  }
  if (const std::optional<std::string_view> title = cmx3600::ScanTitle(text)) read.title = *title;
  return read;
}

void ReadEdlText(CTimeCodeSpace* space, std::string_view text, bool strict, EdlRead& read) {
  EDLSETTINGS settings;
  edlInitSettings(&settings, read.rate.fps, read.rate.dropFrame ? 1 : 0);
  settings.strict = strict ? 1 : 0;
  settings.keepRate = read.rateGiven ? 1 : 0;
  settings.findRate = read.rateGiven ? 0 : 1;
  EDLREADRATE found{};
  read.status = edlReadTextRate(space, text.data(), text.size(), &settings, &OnWarning, &read,
                                &found);
  if (!read.rateGiven) {
    cmx3600::RateScan scan;
    scan.rate = timecode::MakeFrameRate(found.framesPerSecond, found.dropFrame != 0);
    scan.source = found.source == EDL_RATE_OWN_NOTE      ? cmx3600::RateSource::kOwnNote
                  : found.source == EDL_RATE_DROP_FRAME   ? cmx3600::RateSource::kDropFrame
                  : found.source == EDL_RATE_FRAME_FIELDS ? cmx3600::RateSource::kFrameFields
                                                          : cmx3600::RateSource::kNoEvents;
    scan.highestFrame = found.highestFrame;
    scan.eventLines = found.eventLines;
    read.rate = scan.rate;
    read.rateReason = cmx3600::RateReason(scan);
  }
  // In line order: some are found only when the event they belong to ends.
  std::stable_sort(read.warnings.begin(), read.warnings.end(),
                   [](const EdlWarning& a, const EdlWarning& b) { return a.line < b.line; });
}

bool LoadFile(const std::string& path, std::string& text) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  text.clear();
  // Into room for the whole file at once where its size is known (growing
  // the text block by block was a twentieth of reading a long list); then
  // block by block, for what a pipe or a growing file still holds.
  std::error_code error;
  const uintmax_t size = std::filesystem::file_size(path, error);
  if (!error && size < text.max_size()) {
    text.resize(size_t(size));
    in.read(text.data(), std::streamsize(size));
    text.resize(size_t(in.gcount()));
    if (in.bad()) return false;
    if (!in) return true;
  }
  char block[1 << 16];
  while (in.read(block, sizeof block) || in.gcount() > 0) text.append(block, size_t(in.gcount()));
  return !in.bad();
}

}  // namespace tcs::host
