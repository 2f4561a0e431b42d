// EdlEventReader: turns the text of an EDL into events, one EDLLINE per
// event, handed to a sink in file order. It owns the text buffers that the
// lines it hands out point into; a line is valid for the sink call only.
//
// An event is an event line with the lines that follow it up to the next
// event line:
//  - "AUD 3 4" adds audio tracks; the notes FROM CLIP NAME / TO CLIP NAME
//    give the name, COMMENT: and every other note (LOC:, ASC_SOP, FROM
//    CLIP:, EFFECTS NAME IS ...) are kept, in file order, as lines of the
//    comment; the notes of this translator's own (TCS ...) restore what an
//    event line cannot carry.
//  - A zero-length cut followed by a D, W or K line of the same event number
//    is one event: the second line, carrying the transition.
//  - Lines of the same event number with the same reel, edit and timecodes
//    (one line per track, as some tools write them) are one event.
//  - FCM: lines change the timecode counting of the lines that follow.
//  - M2 and SPLIT: lines are reported as warnings and change no timing: an
//    event keeps its record in and out, and when its source length differs
//    from its record length, its source out is moved to match (warned).
//  - A zero-length event is reported and not handed on.
// The first line that cannot be read stops the reading: events handed on
// before it stay handed on. A bad event line ends the event above it, which
// is handed on; any other bad line may belong to the event being read, which
// is then dropped, so no half-read event is handed on.
// Problems are logged with their line number; warnings stop after 100.
//
// Thread safety: one reader per thread; distinct readers share nothing.
#ifndef TCS_PLATFORM_EDL_TEXT_EVENTS_H_
#define TCS_PLATFORM_EDL_TEXT_EVENTS_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/edl_text_line.h"
#include "platform/edl_text_timecode.h"
#include "record/edl_line.h"

namespace tcs::translator {

class EdlEventReader {
 public:
  // `tag` is the file line number of the event's first line.
  using Sink = void (*)(void* context, const EDLLINE& line, uint64_t tag);

  // `label` names the text in log lines (the file's path); it must outlive
  // the reader.
  EdlEventReader(TimecodeRate rate, const char* label, Sink sink, void* context);
  EdlEventReader(const EdlEventReader&) = delete;
  EdlEventReader& operator=(const EdlEventReader&) = delete;

  // Reads the whole text. 0, or TCS_ERR_BAD_ARGUMENTS at the first line that
  // cannot be read.
  uint32_t Read(std::string_view text);

  uint32_t warnings() const { return warnings_; }

 private:
  struct Pending {
    bool active = false;
    uint32_t number = 0;
    uint32_t line = 0;
    char edit = 'C';
    uint32_t code = 0;
    uint32_t duration = 0;
    uint32_t times[4] = {};  // source in, source out, record in, record out
    uint32_t video = 0;
    uint32_t audio = 0;
    bool pair = false;       // a transition read from two lines
    bool hasFrom = false;
    bool hasTo = false;
    bool hasComment = false;
    bool ownEffect = false;
    uint32_t ownCode = 0;
    uint32_t ownDuration = 0;
    // Reused from event to event: their memory grows once, not per line.
    std::string reel;
    std::string fromName;
    std::string toName;
    std::string ownName;  // from a TCS NAME note; never empty when given
    std::string comment;
    std::string clipName;
  };

  // Each returns false when the line stops the reading.
  bool OnLine(std::string_view line);
  bool OnEvent(std::string_view text);
  bool OnAudio(std::string_view numbers);
  void OnFrameCode(std::string_view value);
  void OnNote(std::string_view body);
  void Start(const EventFields& fields, const uint32_t (&times)[4]);
  void AppendComment(std::string_view text);
  void Emit();
  void Warn(uint32_t line, const char* message);
  bool Fail(const char* message);

  uint32_t fps_;
  bool wantDrop_;  // FCM: DROP FRAME seen (or asked for); used at 30 and 60
  const char* label_;
  Sink sink_;
  void* context_;
  uint32_t lineNumber_ = 0;
  uint32_t warnings_ = 0;
  Pending pending_;
};

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_TEXT_EVENTS_H_
