#include "record/channel_set.h"

#include <cctype>
#include <charconv>

namespace tcs {
namespace {

constexpr char kKinds[] = {'V', 'A', 'X'};

}  // namespace

std::string ChannelSet::Name(uint32_t channel) {
  if (channel >= kChannels) return "";
  return kKinds[channel / 32] + std::to_string(channel % 32 + 1);
}

std::optional<uint32_t> ChannelSet::ParseName(std::string_view text) {
  uint32_t base = 0;
  uint32_t first = 0;  // the number the digits count from: 1 after a letter
  uint32_t count = kChannels;
  if (!text.empty() && std::isalpha(static_cast<unsigned char>(text[0]))) {
    const char kind = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    uint32_t k = 0;
    while (k < 3 && kKinds[k] != kind) ++k;
    if (k == 3) return std::nullopt;
    base = k * 32;
    first = 1;
    count = 32;
    text.remove_prefix(1);
  }
  uint32_t n = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), n);
  if (text.empty() || ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (n < first || n - first >= count) return std::nullopt;
  return base + n - first;
}

std::optional<ChannelSet> ChannelSet::Parse(std::string_view text) {
  if (text.empty()) return std::nullopt;
  ChannelSet set;
  while (true) {
    const size_t plus = text.find('+');
    const std::optional<uint32_t> channel = ParseName(text.substr(0, plus));
    if (!channel) return std::nullopt;
    set.Add(*channel);
    if (plus == std::string_view::npos) return set;
    text.remove_prefix(plus + 1);
  }
}

std::string ChannelSet::Names() const {
  std::string names;
  ForEach([&](uint32_t channel) {
    if (!names.empty()) names += '+';
    names += Name(channel);
  });
  return names;
}

}  // namespace tcs
