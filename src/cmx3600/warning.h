// What the reader could not carry as the file says: one list of kinds, and
// the warning a reader hands its caller for each (line, kind, text). In
// strict mode the kinds that refuse a line stop the reading at the first.
#ifndef TCS_CMX3600_WARNING_H_
#define TCS_CMX3600_WARNING_H_

#include <cstdint>
#include <string_view>

namespace tcs::cmx3600 {

enum class WarningKind : uint32_t {
  // Lines skipped (refused in strict mode).
  kUnknownLine = 1,       // not an EDL line
  kBadEventLine = 2,      // an event line whose fields cannot be told apart
  kBadAudioLine = 3,      // an AUD line without track numbers
  kRecordOutBeforeIn = 4, // the event is skipped
  // Read, with something assumed (refused in strict mode).
  kFramePastRate = 5,     // a frame field of the rate or more: counted on
  kImpliedDissolve = 6,   // a duration without an edit type: read as a dissolve
  kGluedTracks = 7,       // A1234V, A34: each digit a track
  // Read; what is said cannot be carried whole.
  kAmbiguousTracks = 8,   // A12: track 12, not tracks 1 and 2
  kTracksDropped = 9,     // tracks above 32
  kTransitionNumbers = 10,  // the two lines of a transition carry different numbers
  kKeyAsCut = 11,         // a key line placed as a cut
  kSpeedIgnored = 12,     // an M2 line not kept (another clip's, unreadable), or not carried
  kSplitIgnored = 13,     // SPLIT:
  kZeroLength = 14,       // an event of no record length: not placed
  kSourceLength = 15,     // source length differs from the record's: source out moved
  kOverlap = 16,          // an event over an earlier one on the same track: the later plays
  kBadNote = 17,          // a note of this codec's own that cannot be read, or an AUD line before any event
  kUnknownFrameCode = 18, // an FCM: line saying neither DROP nor NON-DROP
  kPastTimelineEnd = 19,  // cut where the timeline ends (the space's rule)
  kNameCut = 20,          // a name past what an export carries
};

// "unknown line", "frame field past rate", ...
std::string_view WarningKindName(WarningKind kind);

// True for the kinds strict mode refuses.
bool RefusedWhenStrict(WarningKind kind);

struct Warning {
  uint32_t line = 0;
  WarningKind kind = WarningKind::kUnknownLine;
  std::string_view text;  // valid for the sink call only
  bool fatal = false;     // strict mode stopped here
};

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_WARNING_H_
