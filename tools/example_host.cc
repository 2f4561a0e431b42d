// A small host: opens a space, lays clips on two channels through the
// command record, overwrites a range and prints each channel's clips through
// the listing entry points, with timecodes at 30 frames per second. Uses
// only the C entry points of tcs.h.
#include <cstdio>
#include <cstring>
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

// Overwrites `channels` ("V1+A1") from `at` with source [in, in + length) of `name`.
void Overwrite(CTimeCodeSpace* space, const char* channels, unsigned int at,
               unsigned int length, unsigned int in, const char* name) {
  TCSCMD cmd;
  std::memset(&cmd, 0, sizeof cmd);
  cmd.type = TCSCMD_TYPE;
  cmd.size = sizeof cmd;
  cmd.command = TCSCMD_INSERT;
  cmd.flags = TCSF_TEXT | TCSF_POS | TCSF_IN | TCSF_OUT;
  unsigned int aux = 0;
  if (tcsParseChannels(channels, &cmd.videoMask, &cmd.audioMask, &aux) != TCS_OK) return;
  cmd.position = at;
  cmd.inPoint = in;
  cmd.outPoint = in + length;
  std::snprintf(cmd.longText, sizeof cmd.longText, "%s", name);
  const unsigned int status = tcsSetMode(space, &cmd);
  if (status != TCS_OK) std::fprintf(stderr, "tcsSetMode: 0x%X\n", status);
}

void PrintSpace(CTimeCodeSpace* space) {
  unsigned int masks[3];
  if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != TCS_OK) return;
  for (unsigned int channel = 0; channel < 96; ++channel) {
    if ((masks[channel / 32] >> (channel % 32) & 1) == 0) continue;
    char name[8];
    unsigned int count = 0;
    tcsChannelName(channel, name, sizeof name);
    tcsGetClipCount(space, channel, &count);
    std::printf("%s (%u %s):\n", name, count, count == 1 ? "clip" : "clips");
    TCSCLIP rows[4];  // small batches, to show the cursor going on
    unsigned int from = 0;
    do {
      if (tcsGetClips(space, channel, from, TCS_NO_TIMECODE, rows, 4, &count, &from) != TCS_OK) {
        return;
      }
      for (unsigned int i = 0; i < count; ++i) {
        const TCSCLIP& c = rows[i];
        std::printf("  %s - %s  source %s - %s  %s\n", Tc(c.start).c_str(),
                    Tc(c.start + c.length).c_str(), Tc(c.sourceIn).c_str(),
                    Tc(c.sourceOut).c_str(),
                    c.info != nullptr && c.info->name != nullptr ? c.info->name : "");
      }
    } while (from != TCS_NO_TIMECODE);
  }
}

}  // namespace

int main() {
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  if (space == nullptr) return 1;
  tcsSetAddCallback(space, nullptr, &Accept);

  Overwrite(space, "V1", 0, 300, 1000, "opening");
  Overwrite(space, "V1", 300, 600, 5000, "interview");
  Overwrite(space, "A1", 0, 900, 0, "music");

  std::printf("== after adding three clips\n");
  PrintSpace(space);

  // Overwrite 00:00:13:10 to 00:00:16:20 of V1: the interview is cut in two.
  Overwrite(space, "V1", 400, 100, 9000, "insert");
  std::printf("\n== after overwriting %s - %s on V1\n", Tc(400).c_str(), Tc(500).c_str());
  PrintSpace(space);

  const unsigned int frame = tcsTranslate(space, 0, 550, nullptr, 0);
  std::printf("\nat %s V1 plays source %s\n", Tc(550).c_str(), Tc(frame).c_str());
  return tcsClose(space) == TCS_OK ? 0 : 1;
}
