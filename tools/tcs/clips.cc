#include "clips.h"

#include <utility>

#include "channels.h"
#include "each_clip.h"

namespace tcs::cli {
namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

ClipView ViewOf(const TCSCLIP& row) {
  ClipView clip{row.channel, row.start, row.start + row.length, row.sourceIn, row.sourceOut,
                "", "", "", row.effectText, 0, ""};
  if (row.info != nullptr) {
    clip.name = Text(row.info->name);
    clip.reel = Text(row.info->reel);
    clip.comment = Text(row.info->comment);
    clip.sourceCounting = clsGetSourceCounting(row.info);
    if (int32_t milli = 0; clsGetClipSpeed(row.info, &milli, nullptr) != 0) {
      clip.speed = SpeedText(milli);
    }
  }
  clip.transitionFrames = row.effectText[0] != '\0' ? row.effectDuration : 0;
  return clip;
}

void ForEachChannel(CTimeCodeSpace* space, const std::function<void(ChannelView&&)>& each) {
  ChannelMasks masks;
  if (tcsGetChannels(space, &masks.video, &masks.audio, &masks.aux) != TCS_OK) return;
  ChannelView view;
  for (const uint32_t channel : MaskChannels(masks)) {
    view.channel = channel;
    view.clips.clear();  // also after `each` kept the last one
    if (unsigned int count = 0; tcsGetClipCount(space, channel, &count) == TCS_OK) view.clips.reserve(count);
    host::EachClip(space, channel, [&view](const TCSCLIP& row) { view.clips.push_back(ViewOf(row)); });
    each(std::move(view));
  }
}

std::vector<ChannelView> ChannelsOf(CTimeCodeSpace* space) {
  std::vector<ChannelView> channels;
  ForEachChannel(space, [&channels](ChannelView&& view) { channels.push_back(std::move(view)); });
  return channels;
}

std::optional<ClipView> ClipAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at) {
  TCSCLIP row;
  if (!host::ClipAt(space, channel, at, row)) return std::nullopt;
  return ViewOf(row);
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
