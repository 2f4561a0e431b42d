#include "clips.h"

namespace tcs::cli {
namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

// Search mode 24: the start of the play clip that covers a frame, or else of
// the first one after it.
constexpr uint32_t kCoverOrNext = 24;

}  // namespace

std::vector<ChannelView> ChannelsOf(CTimeCodeSpace* space) {
  std::vector<ChannelView> channels;
  for (uint32_t channel = 0; channel < CTimeCodeSpace::kChannels; ++channel) {
    if (space->lookups[channel] == nullptr) continue;
    ChannelView view{channel, {}};
    CPlayClip pc;
    uint32_t t = 0;
    while (space->FindPlayClip(kCoverOrNext, t, pc, channel) != kNotFound) {
      ClipView clip{channel, pc.start, pc.start + pc.length, 0, 0, "", "", "", "", 0, ""};
      if (pc.clip != nullptr) {
        const CClip& record = *pc.clip;
        clip.sourceIn = record.sourceIn;
        clip.sourceOut = record.sourceOut;
        clip.name = Text(record.name);
        clip.reel = Text(record.reel);
        clip.comment = Text(record.comment);
        if (int32_t milli = 0; clsGetClipSpeed(&record, &milli, nullptr) != 0) {
          clip.speed = SpeedText(milli);
        }
      }
      clip.transition = pc.effectText;
      clip.transitionFrames = pc.effectText[0] != '\0' ? pc.effectDuration : 0;
      view.clips.push_back(std::move(clip));
      const uint32_t next = pc.start + pc.length;
      if (next <= t || next <= pc.start) break;  // the end of the timeline
      t = next;
    }
    if (!view.clips.empty()) channels.push_back(std::move(view));
  }
  return channels;
}

std::string SpeedText(int32_t milli_fps) {
  const uint32_t size = milli_fps < 0 ? uint32_t(-int64_t(milli_fps)) : uint32_t(milli_fps);
  std::string text = (milli_fps < 0 ? "-" : "") + std::to_string(size / 1000) + ".";
  std::string fraction = std::to_string(1000 + size % 1000).substr(1);
  while (fraction.size() > 1 && fraction.back() == '0') fraction.pop_back();
  return text + fraction;
}

std::string TransitionText(const ClipView& clip) {
  if (clip.transition.empty()) return "cut";
  return clip.transition + " " + std::to_string(clip.transitionFrames);
}

}  // namespace tcs::cli
