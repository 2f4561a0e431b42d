// One line of an EDL file, as the tools that write them lay it out: what
// kind of line it is, the fields of an event line, the label of a note.
// Lines come without their line end and with trailing blanks removed.
// Everything returned points into the line. Pure functions; safe from any
// thread.
#ifndef TCS_PLATFORM_EDL_TEXT_LINE_H_
#define TCS_PLATFORM_EDL_TEXT_LINE_H_

#include <cstdint>
#include <string_view>

#include "platform/edl_text_timecode.h"
#include "platform/edl_text_tracks.h"

namespace tcs::translator {

enum class LineKind {
  kBlank,
  kEvent,        // starts with the event number
  kTitle,        // TITLE:
  kFrameCode,    // FCM: DROP FRAME / NON-DROP FRAME
  kAudio,        // AUD 3 4: more audio tracks for the event above
  kNote,         // a comment: "* ..." or a labelled line such as LOC: or ASC_SOP
  kSourceTable,  // >>> SOURCE ...
  kSpeed,        // M2: a speed change
  kSplit,        // SPLIT: a split edit
  kUnknown,
};

struct LineClass {
  LineKind kind = LineKind::kUnknown;
  // kNote: the text after the '*' and the blanks that follow it (the whole
  // line when there is no '*'); kTitle, kFrameCode, kAudio: what follows the
  // keyword, blanks skipped; otherwise the whole line.
  std::string_view body;
};

LineClass ClassifyLine(std::string_view line);

// The labels of notes that the reader uses; every other note is kept as text.
enum class NoteLabel {
  kOther,
  kFromClipName,  // FROM CLIP NAME:
  kToClipName,    // TO CLIP NAME:
  kComment,       // COMMENT:
  kOwnTracks,     // TCS TRACKS: channels no track field can name
  kOwnClip,       // TCS CLIP: the short clip name
  kOwnReel,       // TCS REEL: the reel, where the event line cannot carry it
  kOwnName,       // TCS NAME: the clip's name byte for byte, escaped
  kOwnEffect,     // TCS EFFECT: transition code and duration
  kOwnRate,       // TCS FRAME RATE: timecode rate of what follows
};

// The label of a note body and, for a known label, the value after its
// colon, leading blanks skipped.
NoteLabel LabelOf(std::string_view body, std::string_view& value);

struct EventFields {
  uint32_t number = 0;
  std::string_view reel;
  TrackMasks tracks;
  char edit = 'C';        // 'C' cut, 'D' dissolve, 'W' wipe, 'K' key
  uint32_t wipeCode = 0;  // the digits after W
  uint32_t duration = 0;  // transition duration in frames
  TimecodeText times[4];  // source in, source out, record in, record out
};

// Reads an event line: number, reel, track field, edit type with its
// duration, and four timecodes. Tolerates missing blanks where the fields
// can still be told apart: timecodes run together, an eight-character reel
// run into its track field, an event number run into its reel. nullptr, or
// what is wrong with the line.
const char* ParseEventLine(std::string_view line, EventFields& out);

// Letter case folding and prefix tests shared by the reader.
bool StartsWithUpper(std::string_view text, std::string_view upper_prefix);
bool IsBlank(char c);

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_TEXT_LINE_H_
