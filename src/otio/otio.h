// tcsotio: OpenTimelineIO (.otio) files in and out of a space. A host of the
// C entry points like any other: it lays clips with _tcsAddEdlLine and lists
// them with tcsGetChannels and tcsGetClips, and reaches nothing else of the
// library. docs/otio-conventions.md gives the mapping both ways.
//
// Reading parses and checks the whole file first and only then adds its
// clips, so a file that fails adds nothing. Adding overwrites what lies in a
// clip's range, as an EDL import does; the space needs no add callback, but
// one that refuses clips loses them (the read still succeeds).
//
// Thread safety: the functions hold no state of their own; each call takes
// the space's lock once per entry point it calls, so a host that edits the
// same space from another thread meanwhile gets a mix.
#ifndef TCS_OTIO_OTIO_H_
#define TCS_OTIO_OTIO_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "otio/rate.h"

class CTimeCodeSpace;

namespace tcs::otio {

// Every outcome of a read or a write.
enum class Status {
  kOk,
  kCannotOpen,     // the file could not be opened or read
  kCannotWrite,    // the output could not be written
  kNotJson,        // the text is not JSON (or is cut short)
  kNotTimeline,    // valid JSON, but no Timeline at its top or in a collection
  kBadSchema,      // an object without a schema, or a version this reader does not know
  kBadValue,       // a missing, mistyped, negative or absurd time, or a rate of 0
  kTooDeep,        // compositions nested past kMaxNesting
  kSpaceRefused,   // the space answered an entry point with a status
};
const char* StatusName(Status status);

// Compositions (Stack, Track) nested deeper than this refuse the file.
inline constexpr int kMaxNesting = 64;

// Something of the file the space cannot hold, or a choice the reader made;
// never an error. `item` names the file's item (a clip's or track's name, or
// its schema where it has none).
struct Warning {
  std::string item;
  std::string text;
};

// Where a track of the file went.
struct TrackPlacement {
  std::string track;    // its name in the file
  uint32_t channel;     // 0..95
  bool byName;          // its name is the channel's (V1, A3)
};

struct ReadOptions {
  // The rate of the space's frames. Empty: the timeline's own (that of its
  // global_start_time, else of its first clip, else 24).
  std::optional<FrameRate> rate;
};

struct ReadResult {
  Status status = Status::kOk;
  std::string error;  // one line, for a status other than kOk
  FrameRate rate;     // the rate the clips were laid at
  std::string name;   // the timeline's name
  std::vector<TrackPlacement> tracks;
  std::vector<Warning> warnings;
  uint64_t clips = 0;  // clips laid (one per channel)
};

ReadResult ReadOtioText(CTimeCodeSpace* space, std::string_view text,
                        const ReadOptions& options = {});
// As ReadOtioText; errors name the file ("cut.otio: not JSON: ...").
ReadResult ReadOtioFile(CTimeCodeSpace* space, const std::string& path,
                        const ReadOptions& options = {});

struct WriteOptions {
  FrameRate rate;    // the rate every RationalTime is written at (default 30)
  std::string name;  // the timeline's name
};

struct WriteResult {
  Status status = Status::kOk;
  std::string error;
  std::vector<Warning> warnings;  // clips cut where they overlap on a channel
  uint64_t clips = 0;
  uint32_t tracks = 0;
};

// The space as one Timeline.1, indented JSON.
WriteResult WriteOtioText(CTimeCodeSpace* space, const WriteOptions& options, std::string* out);
// Writes to a temporary file beside `path` and renames it over `path`: on
// failure nothing is written and an existing file is left as it was.
WriteResult WriteOtioFile(CTimeCodeSpace* space, const std::string& path,
                          const WriteOptions& options);

}  // namespace tcs::otio

#endif  // TCS_OTIO_OTIO_H_
