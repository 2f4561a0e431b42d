// The text of a CMX 3600 list as this codec writes it: CMX 3600 event
// lines in fixed columns, CR LF line ends, and notes (lines starting with
// '*', which other readers skip) for what an event line cannot carry. The
// notes of this codec's own start with "* TCS "; docs/edl-conventions.md
// lists them. Pure functions; safe from any thread.
#ifndef TCS_CMX3600_WRITER_H_
#define TCS_CMX3600_WRITER_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "cmx3600/event.h"
#include "timecode/frame_rate.h"

namespace tcs::cmx3600 {

// Appends the TITLE:, FCM: and frame rate lines and a blank line.
void AppendHeader(std::string& out, std::string_view title, timecode::FrameRate rate);

// Appends an FCM: line. After the header it sets the counting of the source
// timecodes of the events after it, for readers and for this codec's own.
void AppendFrameCode(std::string& out, bool drop_frame);

// Appends the lines of one event numbered `number`: the event line (a
// transition with its outgoing source is preceded by the outgoing cut of no
// length, and its notes name both clips, FROM and TO CLIP NAME), an AUD line
// for audio tracks 3 and 4, FROM CLIP NAME:, one COMMENT: line per line of
// the comment, and this codec's own notes where needed. Source timecodes
// count as the event's sourceCounting says (the caller writes the FCM: line
// that says so). Appends only:
// a caller that reuses `out` allocates nothing once it has grown.
void AppendEvent(std::string& out, const Event& event, uint32_t number, timecode::FrameRate rate);

// Whether a note written with `value` (FROM CLIP NAME: and the like, control
// characters as blanks) reads back with the value `read` (blanks at either
// end gone).
bool NoteReadsBackAs(std::string_view value, std::string_view read);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_WRITER_H_
