// What the subcommands show of a space: its clips channel by channel, in
// record order, with the clip record's texts, and transitions as words.
// Read through the listing entry points (tcsGetChannels, tcsGetClips), so
// every clip of every channel comes out once.
#ifndef TCS_TOOLS_TCS_CLIPS_H_
#define TCS_TOOLS_TCS_CLIPS_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tcs.h"

namespace tcs::cli {

struct ClipView {
  uint32_t channel;
  uint32_t recordIn;
  uint32_t recordOut;  // one past the last frame
  uint32_t sourceIn;
  uint32_t sourceOut;
  std::string name;
  std::string reel;
  std::string comment;
  std::string transition;  // "" for a cut, else the effect's name or text
  uint32_t transitionFrames;
  std::string speed;  // "" at the timeline's rate, else source frames per second ("-25.0")
  uint32_t sourceCounting = CLS_SOURCE_AS_LIST;  // clsGetSourceCounting
};

struct ChannelView {
  uint32_t channel;
  std::vector<ClipView> clips;
};

ClipView ViewOf(const TCSCLIP& row);
// Calls each(ChannelView&&) for every channel that holds a clip, in channel
// order, one channel in memory at a time; `each` may keep the view.
void ForEachChannel(CTimeCodeSpace* space, const std::function<void(ChannelView&&)>& each);
// Every channel that holds a clip, in channel order.
std::vector<ChannelView> ChannelsOf(CTimeCodeSpace* space);
// The clip playing at `at` on `channel`, if any.
std::optional<ClipView> ClipAt(CTimeCodeSpace* space, uint32_t channel, uint32_t at);

// "12.5": thousandths of a frame per second as decimals, one at least.
std::string SpeedText(int32_t milli_fps);

// "cut", or the transition's name and duration in frames ("Disolve 30").
std::string TransitionText(const ClipView& clip);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_CLIPS_H_
