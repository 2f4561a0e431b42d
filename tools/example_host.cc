// A small host: opens a space, lays clips on two channels, overwrites a range
// and prints the clip list and each channel's play clips.
#include <cstdio>

#include "tcs.h"

namespace {

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
    std::printf("  ch %2u  [%7u, %7u)  source %u..%u  %s\n", c->channel, c->start,
                c->start + c->length, c->sourceIn, c->sourceOut,
                c->name != nullptr ? c->name : "");
  }
  for (unsigned int channel = 0; channel < CTimeCodeSpace::kChannels; ++channel) {
    const CTCLookup* lookup = space->lookups[channel];
    if (lookup == nullptr) continue;
    std::printf("channel %u plays:\n", channel);
    for (const auto& pc : *lookup) {
      std::printf("  [%7u, %7u)  %s\n", pc.start, pc.start + pc.length,
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

  // Overwrite frames 400..500 of channel 0: the interview is cut in two.
  AddClip(space, 0, 400, 100, 9000, "insert");
  std::printf("\n== after overwriting [400, 500) on channel 0\n");
  PrintSpace(space);

  CClip* playing = nullptr;
  const unsigned int frame = tcsTranslate(space, 0, 550, &playing, 0);
  std::printf("\nat 550 channel 0 plays source frame %u of \"%s\"\n", frame,
              playing != nullptr && playing->name != nullptr ? playing->name : "");
  return tcsClose(space) == TCS_OK ? 0 : 1;
}
