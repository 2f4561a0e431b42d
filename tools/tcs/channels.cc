#include "channels.h"

#include <cctype>
#include <charconv>

namespace tcs::cli {

std::string ChannelName(uint32_t channel) {
  static constexpr char kKinds[] = {'V', 'A', 'X'};
  if (channel >= 96) return "?" + std::to_string(channel);
  return kKinds[channel / 32] + std::to_string(channel % 32 + 1);
}

std::optional<uint32_t> ParseChannel(std::string_view text) {
  uint32_t base = 0;
  uint32_t first = 0;  // the number the digits count from
  if (!text.empty() && std::isalpha(static_cast<unsigned char>(text[0]))) {
    switch (std::toupper(static_cast<unsigned char>(text[0]))) {
      case 'V': base = 0; break;
      case 'A': base = 32; break;
      case 'X': base = 64; break;
      default: return std::nullopt;
    }
    first = 1;
    text.remove_prefix(1);
  }
  uint32_t n = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), n);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (n < first || n - first >= (first == 0 ? 96u : 32u)) return std::nullopt;
  return base + n - first;
}

std::string MaskNames(ChannelMasks masks) {
  std::string names;
  for (uint32_t c = 0; c < 64; ++c) {
    const uint32_t word = c < 32 ? masks.video : masks.audio;
    if ((word >> (c % 32) & 1) == 0) continue;
    if (!names.empty()) names += '+';
    names += ChannelName(c);
  }
  return names;
}

}  // namespace tcs::cli
