// Channel names as editors read them (V1..V32, A1..A32, X1..X32), through
// the library's own naming entry points. Pure functions.
#ifndef TCS_TOOLS_TCS_CHANNELS_H_
#define TCS_TOOLS_TCS_CHANNELS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tcs::cli {

// The channel masks of the command record and the clip walk.
struct ChannelMasks {
  uint32_t video = 0;  // bit c: channel c
  uint32_t audio = 0;  // bit k: channel 32 + k
  uint32_t aux = 0;    // bit k: channel 64 + k
};

std::string ChannelName(uint32_t channel);
// "V1", "a3", "X2" or a channel number 0..95; empty when it is none of these.
std::optional<uint32_t> ParseChannel(std::string_view text);
// "V1+A1+A2" (or a single name); empty when a part names no channel.
std::optional<ChannelMasks> ParseChannels(std::string_view text);
// "V1+A1+A2" for the channels of the masks.
std::string MaskNames(ChannelMasks masks);
// The channels of the masks in order: video, audio, aux.
std::vector<uint32_t> MaskChannels(ChannelMasks masks);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_CHANNELS_H_
