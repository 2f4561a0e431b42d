// A C++ host of the installed interchange library: reads a one-clip
// timeline from memory into a space, writes the space back as .otio and
// says what it found.
#include <cstdio>
#include <string>

#include "otio/otio.h"
#include "tcs.h"

int main() {
  const char* text = R"({"OTIO_SCHEMA": "Timeline.1", "tracks": {"OTIO_SCHEMA": "Stack.1",
    "children": [{"OTIO_SCHEMA": "Track.1", "name": "A2", "kind": "Audio", "children": [
      {"OTIO_SCHEMA": "Clip.2", "name": "theme", "source_range": {"OTIO_SCHEMA": "TimeRange.1",
        "start_time": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 0},
        "duration": {"OTIO_SCHEMA": "RationalTime.1", "rate": 25, "value": 250}}}]}]}})";
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, nullptr);
  const tcs::otio::ReadResult read = tcs::otio::ReadOtioText(space, text);
  std::string written;
  const tcs::otio::WriteResult write = tcs::otio::WriteOtioText(space, {read.rate, "host"}, &written);
  tcsClose(space);
  if (read.status != tcs::otio::Status::kOk || write.status != tcs::otio::Status::kOk) return 1;
  std::printf("otio: %llu clip on channel %u at %u fps, written back as %u track\n",
              static_cast<unsigned long long>(read.clips), read.tracks.at(0).channel, read.rate.fps,
              write.tracks);
  return 0;
}
