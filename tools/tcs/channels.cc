#include "channels.h"

#include "tcs.h"

namespace tcs::cli {
namespace {

// Text the user typed that names no channel is an answer here, not an error
// of the library's: its log line is kept off stderr.
void Discard(void*, const char*) {}

}  // namespace

std::string ChannelName(uint32_t channel) {
  char name[8];
  if (channel >= 96) return "?" + std::to_string(channel);
  tcsChannelName(channel, name, sizeof name);
  return name;
}

std::optional<ChannelMasks> ParseChannels(std::string_view text) {
  const std::string copy(text);
  ChannelMasks masks;
  ErrSetSink(&Discard, nullptr);
  const unsigned int status = tcsParseChannels(copy.c_str(), &masks.video, &masks.audio, &masks.aux);
  ErrSetSink(nullptr, nullptr);
  if (status != TCS_OK) return std::nullopt;
  return masks;
}

std::optional<uint32_t> ParseChannel(std::string_view text) {
  if (text.find('+') != std::string_view::npos) return std::nullopt;
  const std::optional<ChannelMasks> masks = ParseChannels(text);
  if (!masks) return std::nullopt;
  return MaskChannels(*masks).front();
}

std::vector<uint32_t> MaskChannels(ChannelMasks masks) {
  std::vector<uint32_t> channels;
  const uint32_t words[3] = {masks.video, masks.audio, masks.aux};
  for (uint32_t c = 0; c < 96; ++c) {
    if ((words[c / 32] >> (c % 32) & 1) != 0) channels.push_back(c);
  }
  return channels;
}

std::string MaskNames(ChannelMasks masks) {
  std::string names;
  for (const uint32_t c : MaskChannels(masks)) {
    if (!names.empty()) names += '+';
    names += ChannelName(c);
  }
  return names;
}

}  // namespace tcs::cli
