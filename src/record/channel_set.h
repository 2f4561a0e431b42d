// ChannelSet: a set of a space's 96 channels, held as the three mask words
// that CLIPINFO, the command record and the EDL line carry: bit n of the
// video word is channel n (0..31), of the audio word channel 32 + n, of the
// aux word channel 64 + n. Also the one place that names channels as editors
// read them: V1..V32, A1..A32 and X1..X32. A plain value.
#ifndef TCS_RECORD_CHANNEL_SET_H_
#define TCS_RECORD_CHANNEL_SET_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tcs {

class ChannelSet {
 public:
  static constexpr uint32_t kChannels = 96;
  static constexpr uint32_t kFirstAudio = 32;
  static constexpr uint32_t kFirstAux = 64;

  constexpr ChannelSet() = default;
  constexpr ChannelSet(uint32_t video, uint32_t audio, uint32_t aux = 0)
      : words_{video, audio, aux} {}
  // One channel; an empty set for a channel of 96 or more.
  static constexpr ChannelSet Of(uint32_t channel) {
    ChannelSet set;
    set.Add(channel);
    return set;
  }

  constexpr uint32_t video() const { return words_[0]; }
  constexpr uint32_t audio() const { return words_[1]; }
  constexpr uint32_t aux() const { return words_[2]; }
  constexpr bool empty() const { return (words_[0] | words_[1] | words_[2]) == 0; }
  constexpr bool Has(uint32_t channel) const {
    return channel < kChannels && ((words_[channel / 32] >> (channel % 32)) & 1) != 0;
  }
  // Channels of 96 or more are ignored.
  constexpr void Add(uint32_t channel) {
    if (channel < kChannels) words_[channel / 32] |= 1u << (channel % 32);
  }
  constexpr void Remove(uint32_t channel) {
    if (channel < kChannels) words_[channel / 32] &= ~(1u << (channel % 32));
  }
  // Calls fn(channel) for each channel of the set in ascending order: video,
  // then audio, then aux.
  template <typename Fn>
  constexpr void ForEach(Fn&& fn) const {
    for (uint32_t w = 0; w < 3; ++w) {
      for (uint32_t bits = words_[w]; bits != 0; bits &= bits - 1) {
        fn(w * 32 + static_cast<uint32_t>(__builtin_ctz(bits)));
      }
    }
  }
  friend constexpr bool operator==(const ChannelSet&, const ChannelSet&) = default;

  // "V1", "A3", "X32"; "" for a channel of 96 or more.
  static std::string Name(uint32_t channel);
  // "V1", "a3", "X2" (any case) or a channel number 0..95.
  static std::optional<uint32_t> ParseName(std::string_view text);
  // Channel names joined by '+' ("V1+A1+A2"), or a single one; nullopt when
  // a part is not a channel or the text is empty.
  static std::optional<ChannelSet> Parse(std::string_view text);
  // The names of the set joined by '+', in ForEach order; "" when empty.
  std::string Names() const;

 private:
  uint32_t words_[3] = {0, 0, 0};
};

}  // namespace tcs

#endif  // TCS_RECORD_CHANNEL_SET_H_
