// Walking channel masks: bit n of the video mask names channel n (0..31), bit
// n of the audio mask channel 32 + n. Video channels are all visited first.
#ifndef TCS_SPACE_CHANNEL_MASK_H_
#define TCS_SPACE_CHANNEL_MASK_H_

#include <cstdint>

#include "platform/clip.h"

namespace tcs {

// Bit k of an audio mask names this channel plus k.
inline constexpr uint32_t kFirstAudioChannel = 32;

template <typename Fn>
void ForEachMaskedChannel(uint32_t video_mask, uint32_t audio_mask, Fn&& fn) {
  for (uint32_t c = findChannel(video_mask, &video_mask, 0); c != 0xFFFFFFFFu;
       c = findChannel(video_mask, &video_mask, 0)) {
    fn(c);
  }
  for (uint32_t c = findChannel(audio_mask, &audio_mask, kFirstAudioChannel);
       c != 0xFFFFFFFFu; c = findChannel(audio_mask, &audio_mask, kFirstAudioChannel)) {
    fn(c);
  }
}

}  // namespace tcs

#endif  // TCS_SPACE_CHANNEL_MASK_H_
