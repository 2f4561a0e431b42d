#include "clips.h"

#include "channels.h"

namespace tcs::cli {
namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

constexpr unsigned int kBatch = 256;  // rows asked for at a time

}  // namespace

ClipView ViewOf(const TCSCLIP& row) {
  ClipView clip{row.channel, row.start, row.start + row.length, row.sourceIn, row.sourceOut,
                "", "", "", row.effectText, 0, ""};
  if (row.info != nullptr) {
    clip.name = Text(row.info->name);
    clip.reel = Text(row.info->reel);
    clip.comment = Text(row.info->comment);
    if (int32_t milli = 0; clsGetClipSpeed(row.info, &milli, nullptr) != 0) {
      clip.speed = SpeedText(milli);
    }
  }
  clip.transitionFrames = row.effectText[0] != '\0' ? row.effectDuration : 0;
  return clip;
}

std::vector<ChannelView> ChannelsOf(CTimeCodeSpace* space) {
  ChannelMasks masks;
  std::vector<ChannelView> channels;
  if (tcsGetChannels(space, &masks.video, &masks.audio, &masks.aux) != TCS_OK) return channels;
  TCSCLIP rows[kBatch];
  for (const uint32_t channel : MaskChannels(masks)) {
    ChannelView view{channel, {}};
    unsigned int from = 0;
    unsigned int count = 0;
    do {
      if (tcsGetClips(space, channel, from, TCS_NO_TIMECODE, rows, kBatch, &count, &from) != TCS_OK) {
        break;
      }
      for (unsigned int i = 0; i < count; ++i) view.clips.push_back(ViewOf(rows[i]));
    } while (from != TCS_NO_TIMECODE);
    channels.push_back(std::move(view));
  }
  return channels;
}

std::optional<ClipView> ClipAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at) {
  TCSCLIP row;
  unsigned int count = 0;
  unsigned int next = 0;
  if (at == TCS_NO_TIMECODE ||
      tcsGetClips(space, channel, at, at + 1, &row, 1, &count, &next) != TCS_OK || count == 0) {
    return std::nullopt;
  }
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
