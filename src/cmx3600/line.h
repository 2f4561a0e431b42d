// One line of an EDL file, as the tools that write them lay it out: what
// kind of line it is, the fields of an event line, the label of a note.
// Lines come without their line end and with trailing blanks removed.
// Everything returned points into the line. Pure functions; safe from any
// thread.
#ifndef TCS_CMX3600_LINE_H_
#define TCS_CMX3600_LINE_H_

#include <cstdint>
#include <string_view>

#include "cmx3600/tracks.h"
#include "timecode/timecode.h"

namespace tcs::cmx3600 {

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
  kOwnAux,        // TCS AUX: aux channels X1 ... X32
  kKeyClipName,   // KEY CLIP NAME: the key of a K B / K pair
};

// The label of a note body and, for a known label, the value after its
// colon, leading blanks skipped.
NoteLabel LabelOf(std::string_view body, std::string_view& value);

struct EventFields {
  uint32_t number = 0;
  std::string_view reel;
  TrackMasks tracks;
  char edit = 'C';        // 'C' cut, 'D' dissolve, 'W' wipe, 'K' key
  bool keyBackground = false;  // K B: the background of a key
  uint32_t wipeCode = 0;  // the digits after W
  uint32_t duration = 0;  // transition duration in frames
  bool impliedDissolve = false;  // a duration after the track field, no edit type
  // Source in, source out, record in, record out: timecodes, or frame counts
  // where the line gives four plain numbers.
  timecode::TimecodeText times[4];
  bool frameCounts = false;
  uint32_t counts[4] = {};
};

// Reads an event line by its fields, whatever its columns: number, reel
// (any length, blanks inside), track field, edit type with its duration,
// and four timecodes or frame counts. Tolerates missing blanks where the
// fields can still be told apart: timecodes run together, an eight-character
// reel run into its track field, an event number run into its reel; and a
// duration with no edit type (impliedDissolve). nullptr, or what is wrong
// with the line.
const char* ParseEventLine(std::string_view line, EventFields& out);

// An M2 line: "M2   REEL   -025.0   01:00:00:00", the speed in frames per
// second of source (negative: reverse; 0: a freeze frame) from the source
// timecode given. The speed is kept in thousandths.
struct SpeedFields {
  std::string_view reel;
  int32_t milliFps = 0;
  timecode::TimecodeText entry;
};
// nullptr, or what is wrong with the line.
const char* ParseSpeedLine(std::string_view line, SpeedFields& out);

// Letter case folding and prefix tests shared by the reader.
bool StartsWithUpper(std::string_view text, std::string_view upper_prefix);
bool IsBlank(char c);
inline bool IsPadding(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\x1A' || c == '\0';
}

// Calls each(line) for every line of a text, in order, until it returns
// false; false then. A UTF-8 byte-order mark is skipped; a line ends at LF,
// CR LF or a lone CR and comes without its end, trailing blanks, or the ^Z
// and NUL bytes some tools pad a file's end with.
template <typename Each>
bool ForEachLine(std::string_view text, Each each) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  size_t pos = 0;
  while (pos < text.size()) {
    size_t end = pos;
    while (end < text.size() && text[end] != '\n' && text[end] != '\r') ++end;
    size_t trimmed = end;
    while (trimmed > pos && IsPadding(text[trimmed - 1])) --trimmed;
    if (!each(text.substr(pos, trimmed - pos))) return false;
    pos = end;
    if (pos < text.size() && text[pos] == '\r') ++pos;
    if (pos < text.size() && text[pos] == '\n' && (pos == end || text[pos - 1] == '\r')) ++pos;
  }
  return true;
}

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_LINE_H_
