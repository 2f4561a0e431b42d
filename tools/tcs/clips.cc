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
      ClipView clip{channel, pc.start, pc.start + pc.length, 0, 0, "", "", "", "", 0};
      if (pc.clip != nullptr) {
        const CClip& record = *pc.clip;
        clip.sourceIn = record.sourceIn;
        clip.sourceOut = record.sourceOut;
        clip.name = Text(record.name);
        clip.reel = Text(record.reel);
        clip.comment = Text(record.comment);
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

std::string TransitionText(const ClipView& clip) {
  if (clip.transition.empty()) return "cut";
  return clip.transition + " " + std::to_string(clip.transitionFrames);
}

}  // namespace tcs::cli
