// Channel names as editors read them: channels 0..31 are video V1..V32,
// 32..63 audio A1..A32, 64..95 auxiliary X1..X32. Pure functions.
#ifndef TCS_TOOLS_TCS_CHANNELS_H_
#define TCS_TOOLS_TCS_CHANNELS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tcs::cli {

std::string ChannelName(uint32_t channel);
// "V1", "a3", "X2" or a channel number 0..95; empty when it is none of these.
std::optional<uint32_t> ParseChannel(std::string_view text);

// The channel masks of the command record and the clip walk.
struct ChannelMasks {
  uint32_t video = 0;  // bit c: channel c
  uint32_t audio = 0;  // bit k: channel 32 + k
};
// "V1+A1+A2" for the channels of two masks.
std::string MaskNames(ChannelMasks masks);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_CHANNELS_H_
