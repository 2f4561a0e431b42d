// A small host: opens a space, lays clips on two channels, overwrites a range
// and prints the clip list and each channel's play clips, with timecodes at
// 30 frames per second.
#include <cstdio>
#include <string>

#include "tcs.h"

namespace {

constexpr unsigned int kFps = 30;

// HH:MM:SS:FF for a frame count.
std::string Tc(unsigned int frames) {
  char text[64];
  std::snprintf(text, sizeof text, "%02u:%02u:%02u:%02u", frames / (kFps * 3600),
                frames / (kFps * 60) % 60, frames / kFps % 60, frames % kFps);
  return text;
}

unsigned int Accept(void*, CTimeCodeSpace*, CClip*) { return 0; }

void AddClip(CTimeCodeSpace* space, unsigned int channel, unsigned int start,
             unsigned int length, unsigned int source_in, const char* name) {
  CClip clip;
  clip.ClearClip();
  clip.start = start;
  clip.length = length;
  clip.sourceIn = source_in;
  clip.sourceOut = source_in + length;
  clip.SetName(name);
  const unsigned int status = tcsAddClip(space, &clip, channel);
  if (status != TCS_OK) std::fprintf(stderr, "tcsAddClip: 0x%X\n", status);
}

void PrintSpace(CTimeCodeSpace* space) {
  std::printf("clip list:\n");
  for (const CClip* c = space->firstClip; c != nullptr; c = c->next) {
    std::printf("  ch %2u  %s - %s  source %s - %s  %s\n", c->channel, Tc(c->start).c_str(),
                Tc(c->start + c->length).c_str(), Tc(c->sourceIn).c_str(),
                Tc(c->sourceOut).c_str(), c->name != nullptr ? c->name : "");
  }
  for (unsigned int channel = 0; channel < CTimeCodeSpace::kChannels; ++channel) {
    const CTCLookup* lookup = space->lookups[channel];
    if (lookup == nullptr) continue;
    std::printf("channel %u plays:\n", channel);
    for (const auto& pc : *lookup) {
      std::printf("  %s - %s  %s\n", Tc(pc.start).c_str(), Tc(pc.start + pc.length).c_str(),
                  pc.clip != nullptr && pc.clip->name != nullptr ? pc.clip->name : "");
    }
  }
}

}  // namespace

int main() {
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  if (space == nullptr) return 1;
  tcsSetAddCallback(space, nullptr, &Accept);

  AddClip(space, 0, 0, 300, 1000, "opening");
  AddClip(space, 0, 300, 600, 5000, "interview");
  AddClip(space, 32, 0, 900, 0, "music");

  std::printf("== after adding three clips\n");
  PrintSpace(space);

  // Overwrite 00:00:13:10 to 00:00:16:20 of channel 0: the interview is cut in two.
  AddClip(space, 0, 400, 100, 9000, "insert");
  std::printf("\n== after overwriting %s - %s on channel 0\n", Tc(400).c_str(), Tc(500).c_str());
  PrintSpace(space);

  CClip* playing = nullptr;
  const unsigned int frame = tcsTranslate(space, 0, 550, &playing, 0);
  std::printf("\nat %s channel 0 plays source %s of \"%s\"\n", Tc(550).c_str(), Tc(frame).c_str(),
              playing != nullptr && playing->name != nullptr ? playing->name : "");
  return tcsClose(space) == TCS_OK ? 0 : 1;
}
