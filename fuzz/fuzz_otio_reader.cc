// Arbitrary bytes as an .otio text, read into a space in memory. Whatever
// the reader made of them is written as .otio, and that text read into a
// second space: it must read without a complaint or a warning, and give the
// same clips on the same channels, frame for frame, with the same texts and
// transitions. A refused input must leave the space empty.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "otio/otio.h"
#include "hostkit/each_clip.h"
#include "tcs.h"

namespace {

using Clip = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, std::string,
                        std::string, std::string, std::string, int, int32_t, uint32_t>;

std::string Text(const char* text) { return text != nullptr ? text : ""; }

std::vector<Clip> Clips(CTimeCodeSpace* space) {
  std::vector<Clip> out;
  for (uint32_t channel = 0; channel < 96; ++channel) {
    const uint32_t status = tcs::host::EachClip(space, channel, [&out](const TCSCLIP& r) {
      const bool effect = r.effectText[0] != '\0';
      int32_t milli = 0;
      uint32_t entry = 0;
      const int speed = clsGetClipSpeed(r.info, &milli, &entry);
      out.emplace_back(r.channel, r.start, r.length, r.sourceIn, effect ? r.effectCode : 0,
                       effect ? r.effectDuration : 0, Text(r.info->name), Text(r.info->reel),
                       Text(r.info->comment), Text(r.info->clipName), speed, milli, entry);
    });
    if (status != 0) abort();
  }
  return out;
}

void Fail(const char* what, const std::string& detail) {
  std::fprintf(stderr, "%s: %s\n", what, detail.c_str());
  abort();
}

void QuietLog(void*, const char*) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ErrSetSink(&QuietLog, nullptr);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CTimeCodeSpace* first = tcsOpen(nullptr, nullptr, nullptr);
  const tcs::otio::ReadResult read = tcs::otio::ReadOtioText(first, text);
  const std::vector<Clip> clips = Clips(first);
  if (read.status != tcs::otio::Status::kOk) {
    if (!clips.empty()) Fail("a refused file laid clips", read.error);
    if (read.error.empty() || read.error.find('\n') != std::string::npos) {
      Fail("a refusal is not one line", read.error);
    }
    tcsClose(first);
    return 0;
  }
  if (read.clips < clips.size()) Fail("more clips than laid", std::to_string(read.clips));

  std::string written;
  const tcs::otio::WriteResult write = tcs::otio::WriteOtioText(first, {read.rate, read.name}, &written);
  if (write.status != tcs::otio::Status::kOk) Fail("write failed", write.error);
  if (!write.warnings.empty()) Fail("the reader left clips overlapping", write.warnings[0].text);

  CTimeCodeSpace* second = tcsOpen(nullptr, nullptr, nullptr);
  const tcs::otio::ReadResult again = tcs::otio::ReadOtioText(second, written);
  if (again.status != tcs::otio::Status::kOk) Fail("what was written does not read", again.error);
  if (!again.warnings.empty()) {
    const tcs::otio::Warning& warning = again.warnings[0];
    Fail("what was written reads with a warning", warning.item + ": " + warning.text);
  }
  if (!(again.rate == read.rate)) Fail("the rate changed", std::to_string(again.rate.fps));
  if (Clips(second) != clips) Fail("the clips changed", written);
  tcsClose(second);
  tcsClose(first);
  return 0;
}
