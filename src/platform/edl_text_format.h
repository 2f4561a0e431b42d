// The text of an EDL file as this translator writes it: CMX 3600 event
// lines in fixed columns, CR LF line ends, and notes (lines starting with
// '*', which other readers skip) for what an event line cannot carry. The
// notes of this translator's own start with "* TCS "; docs/edl-conventions.md
// lists them. Pure functions; safe from any thread.
#ifndef TCS_PLATFORM_EDL_TEXT_FORMAT_H_
#define TCS_PLATFORM_EDL_TEXT_FORMAT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/edl_text_timecode.h"
#include "record/edl_line.h"

namespace tcs::translator {

// Appends the TITLE:, FCM: and frame rate lines and a blank line.
void AppendHeader(std::string& out, std::string_view title, TimecodeRate rate);

// Appends the lines of one event numbered `number`: the event line, an AUD
// line for audio tracks 3 and 4, FROM CLIP NAME:, one COMMENT: line per line
// of the comment, and the translator's own notes where needed. Appends only:
// a caller that reuses `out` allocates nothing once it has grown.
void AppendEvent(std::string& out, const EDLLINE& line, uint32_t number, TimecodeRate rate);

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_TEXT_FORMAT_H_
