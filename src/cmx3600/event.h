// Event: one event of a CMX 3600 list as plain data, what the reader hands
// out and the writer takes. Tracks are numbered from 1: bit n of `video` is
// video track n + 1 (V, V2 ... V32), bit n of `audio` audio track n + 1 (A,
// A2 ... A32). Texts are views; the reader's are valid for its sink call only
// and each is followed by a NUL. Plain data.
#ifndef TCS_CMX3600_EVENT_H_
#define TCS_CMX3600_EVENT_H_

#include <cstdint>
#include <string_view>

namespace tcs::cmx3600 {

// How an event's source timecodes count: as the list's record timecodes,
// or, at rates that have drop-frame, as the FCM: line in force says.
enum class SourceCounting : uint8_t { kAsList, kDropFrame, kNonDrop };

struct Event {
  uint32_t number = 0;  // the event number as written
  uint32_t line = 0;    // the file line of its event line (reader only)
  uint32_t sourceIn = 0;
  uint32_t sourceOut = 0;
  uint32_t recordIn = 0;
  uint32_t recordOut = 0;
  uint32_t video = 0;
  uint32_t audio = 0;
  // Bit n: aux channel n + 1 (X1 ... X32), which only this codec's own
  // TCS AUX note spells.
  uint32_t aux = 0;
  // A cut, or a transition into this event: code 0 is the dissolve (D), any
  // other a wipe (Wnnn). A cut may carry a code and duration of its own,
  // which only this codec's own note spells.
  bool transition = false;
  uint32_t effectCode = 0;
  uint32_t effectDuration = 0;
  bool key = false;  // read from a key line (K, K B, K O): placed as a cut
  // An M2 speed change: source frames per second in thousandths (negative:
  // reverse; 0: a freeze frame), from source frame speedEntry on. The record
  // in and out stay the event line's own.
  bool hasSpeed = false;
  int32_t speedMilliFps = 0;
  uint32_t speedEntry = 0;
  uint32_t speedLine = 0;  // the file line of the M2 line (reader only)
  // The source timecodes' counting (the M2 entry's too). The reader gives
  // drop-frame or non-drop at rates that have drop-frame; the writer writes
  // the timecodes so and leaves the FCM: lines to its caller.
  SourceCounting sourceCounting = SourceCounting::kAsList;
  std::string_view reel;
  std::string_view name;
  std::string_view clipName;  // the short clip name of this codec's own note
  std::string_view comment;   // lines joined by '\n'
  bool hasComment = false;    // a comment was given, perhaps empty
  // Bit n: line n of the comment stood as a note of its own ("* text"),
  // not under the COMMENT: label (lines past the 32nd: under the label).
  uint32_t bareNotes = 0;
  // The outgoing source of a two-line transition: the cut of no length at
  // the record in that comes before the transition line.
  bool hasOutgoing = false;
  uint32_t outgoingSource = 0;
  std::string_view outgoingReel;
  std::string_view outgoingName;
};

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_EVENT_H_
