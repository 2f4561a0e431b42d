// Which channel each track of a file goes on. A track named like a video or
// audio channel (V1..V32, A1..A32, any case) goes on that channel while it
// is free; every other track, in file order, takes the lowest free channel
// of its kind (Video, Audio; any other kind counts as video). The aux
// channels (X1..X32) cannot be laid through the C entry points, so a track
// named like one is placed as an unnamed track, with a warning. A track that
// finds no free channel is left out, with a warning.
#ifndef TCS_OTIO_CHANNEL_PLAN_H_
#define TCS_OTIO_CHANNEL_PLAN_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "otio/otio.h"

namespace tcs::otio {

struct TrackInfo {
  std::string name;
  std::string kind;  // "Video", "Audio", ...
};

// One entry per track, in order: its channel, or empty when it is left out.
std::vector<std::optional<TrackPlacement>> PlanChannels(const std::vector<TrackInfo>& tracks,
                                                        std::vector<Warning>& warnings);

// The channel a track's name names (V3 -> 2, a1 -> 32); empty for others.
std::optional<uint32_t> ChannelOfName(const std::string& name);

}  // namespace tcs::otio

#endif  // TCS_OTIO_CHANNEL_PLAN_H_
