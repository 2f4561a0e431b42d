#include "otio/channel_plan.h"

#include <bitset>

namespace tcs::otio {
namespace {

constexpr uint32_t kPerKind = 32;
constexpr uint32_t kFirstAudio = 32;

std::optional<uint32_t> Number(const std::string& digits) {
  if (digits.empty() || digits.size() > 2 || digits[0] == '0') return std::nullopt;
  uint32_t n = 0;
  for (const char c : digits) {
    if (c < '0' || c > '9') return std::nullopt;
    n = n * 10 + uint32_t(c - '0');
  }
  if (n < 1 || n > kPerKind) return std::nullopt;
  return n;
}

bool IsAuxName(const std::string& name) {
  return name.size() >= 2 && (name[0] == 'X' || name[0] == 'x') && Number(name.substr(1));
}

}  // namespace

std::optional<uint32_t> ChannelOfName(const std::string& name) {
  if (name.size() < 2) return std::nullopt;
  const std::optional<uint32_t> n = Number(name.substr(1));
  if (!n) return std::nullopt;
  if (name[0] == 'V' || name[0] == 'v') return *n - 1;
  if (name[0] == 'A' || name[0] == 'a') return kFirstAudio + *n - 1;
  return std::nullopt;
}

std::vector<std::optional<TrackPlacement>> PlanChannels(const std::vector<TrackInfo>& tracks,
                                                        std::vector<Warning>& warnings) {
  std::vector<std::optional<TrackPlacement>> plan(tracks.size());
  std::bitset<2 * kPerKind> taken;
  for (size_t i = 0; i < tracks.size(); ++i) {
    const std::optional<uint32_t> channel = ChannelOfName(tracks[i].name);
    if (channel && !taken[*channel]) {
      taken[*channel] = true;
      plan[i] = TrackPlacement{tracks[i].name, *channel, true};
    }
  }
  for (size_t i = 0; i < tracks.size(); ++i) {
    if (plan[i]) continue;
    const TrackInfo& track = tracks[i];
    const std::string label = track.name.empty() ? "track " + std::to_string(i + 1) : track.name;
    if (IsAuxName(track.name)) {
      warnings.push_back({label, "aux channels cannot be laid by a host: placed as a " +
                                     std::string(track.kind == "Audio" ? "audio" : "video") +
                                     " track"});
    } else if (ChannelOfName(track.name)) {
      warnings.push_back({label, "a track before it took that channel"});
    }
    if (track.kind != "Video" && track.kind != "Audio") {
      warnings.push_back({label, "kind \"" + track.kind + "\" read as video"});
    }
    const uint32_t first = track.kind == "Audio" ? kFirstAudio : 0;
    uint32_t channel = first;
    while (channel < first + kPerKind && taken[channel]) ++channel;
    if (channel == first + kPerKind) {
      warnings.push_back({label, std::string("no free ") + (first == 0 ? "video" : "audio") +
                                     " channel: the track is not read"});
      continue;
    }
    taken[channel] = true;
    plan[i] = TrackPlacement{track.name, channel, false};
  }
  return plan;
}

}  // namespace tcs::otio
