#include "otio/otio_space.h"

#include <gtest/gtest.h>

#include <cstring>

#include "hostkit/each_clip.h"

namespace tcs_test {
namespace {

char* Raw(const std::string& text) { return text.empty() ? nullptr : const_cast<char*>(text.c_str()); }

}  // namespace

std::vector<ClipRow> AllClips(CTimeCodeSpace* space) {
  std::vector<ClipRow> out;
  for (uint32_t channel = 0; channel < 96; ++channel) {
    const uint32_t status = tcs::host::EachClip(space, channel, [&out](const TCSCLIP& r) {
      const bool effect = r.effectText[0] != '\0';
      const tcs::host::RecordTexts t = tcs::host::TextsOf(r);
      out.push_back(ClipRow{r.channel, r.start, r.length, r.sourceIn, effect ? r.effectCode : 0,
                            effect ? r.effectDuration : 0, std::string(t.name),
                            std::string(t.reel), std::string(t.comment), std::string(t.clipName),
                            t.hasSpeed, t.speedMilliFps, t.speedEntry});
    });
    EXPECT_EQ(status, 0u);
  }
  return out;
}

void LayClip(CTimeCodeSpace* space, const ClipRow& clip) {
  EDLLINE line;
  std::memset(&line, 0, sizeof line);
  line.clip.sourceIn = clip.sourceIn;
  line.clip.sourceOut = clip.sourceIn + clip.length;
  if (clip.channel < 32) {
    line.clip.videoMask = 1u << clip.channel;
  } else {
    line.clip.audioMask = 1u << (clip.channel - 32);
  }
  line.clip.name = Raw(clip.name);
  line.clip.reel = Raw(clip.reel);
  line.clip.comment = Raw(clip.comment);
  line.clip.clipName = Raw(clip.clipName);
  line.recordIn = clip.start;
  line.recordOut = clip.start + clip.length;
  line.effectCode = clip.effectCode;
  line.effectDuration = clip.effectDuration;
  if (clip.speed) clsSetClipSpeed(&line.clip, clip.milliFps, clip.speedEntry);
  ASSERT_EQ(_tcsAddEdlLine(space, &line, 0), 0u);
}

}  // namespace tcs_test
