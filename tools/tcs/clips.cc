#include "clips.h"

namespace tcs::cli {
namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

std::vector<ChannelView> ChannelsOf(CTimeCodeSpace* space) {
  std::vector<ChannelView> channels;
  for (uint32_t channel = 0; channel < CTimeCodeSpace::kChannels; ++channel) {
    const CTCLookup* lookup = space->lookups[channel];
    if (lookup == nullptr || lookup->empty()) continue;
    ChannelView view{channel, {}};
    for (const CPlayClip& pc : *lookup) {
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
    }
    channels.push_back(std::move(view));
  }
  return channels;
}

std::string TransitionText(const ClipView& clip) {
  if (clip.transition.empty()) return "cut";
  return clip.transition + " " + std::to_string(clip.transitionFrames);
}

}  // namespace tcs::cli
