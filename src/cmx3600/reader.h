// EventReader: turns the text of a CMX 3600 list into events, handed to a
// sink in file order, and tells its caller, as warnings, of everything it
// could not carry as the file says. It owns the text buffers the events it
// hands out point into; an event is valid for the sink call only.
//
// An event is an event line with the lines that follow it up to the next
// event line:
//  - "AUD 3 4" adds audio tracks, wherever it stands among the notes; the
//    notes FROM CLIP NAME / TO CLIP NAME give the name; COMMENT: and every
//    other note (LOC:, ASC_SOP, FROM CLIP:, EFFECTS NAME IS ...) are kept, in
//    file order, as lines of the comment; the notes of this codec's own
//    (TCS ...) restore what an event line cannot carry.
//  - A zero-length cut followed by a D, W or K line is the outgoing half of a
//    two-line transition: the second line is the event, FROM CLIP NAME after
//    it names the outgoing clip. Different event numbers on the two lines
//    are kept as the file says, with a warning.
//  - A key: a "K B" line (the background) followed by a K or K O line (the
//    key) of the same number gives two events, background then key, each
//    with its name (FROM CLIP NAME, KEY CLIP NAME), both placed as cuts; the
//    key one video track above its background's (V2 over V), so that the
//    background keeps its frames.
//  - Lines of the same event number with the same reel, edit and timecodes
//    (one line per track, as some tools write them) are one event.
//  - FCM: lines before the first event set the list's counting (record
//    timecodes), up to this codec's own rate note, which follows the list's
//    FCM: line; every FCM: line sets the counting of the source timecodes of
//    the events after it, as tools that mix drop and non-drop tapes write.
//    Each event says how its source timecodes counted.
//  - An M2 line naming the event's reel gives its speed; one naming the
//    outgoing reel of a two-line transition is reported and not kept. Speed
//    changes no timing: an event keeps its record in and out; where its
//    source length differs from its record length, its source out is moved
//    to match (reported). SPLIT: lines are reported.
//  - An event over an earlier one on the same track is reported with both
//    lines (the later one plays, as an overwrite does).
//  - A zero-length event is reported and not handed on.
// By default a line that cannot be read is skipped with a warning (an event
// line together with its notes) and the rest is read; in strict mode the
// first such line stops the reading: events handed on before it stay handed
// on, a bad event line ends the event above it (handed on), any other bad
// line may belong to the event being read, which is then dropped.
//
// Thread safety: one reader per thread; distinct readers share nothing.
#ifndef TCS_CMX3600_READER_H_
#define TCS_CMX3600_READER_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cmx3600/event.h"
#include "cmx3600/line.h"
#include "cmx3600/rate_scan.h"
#include "cmx3600/track_spans.h"
#include "cmx3600/warning.h"
#include "timecode/frame_rate.h"

namespace tcs::cmx3600 {

struct ReadSettings {
  // The counting of the list where it says nothing else: this codec's own
  // frame rate note replaces fps, FCM: lines the drop-frame flag.
  timecode::FrameRate rate;
  bool strict = false;
  // `rate` was asked for: the list counts at it whatever this codec's rate
  // note or the FCM: lines above the first event say (FCM: lines still set
  // the counting of the source timecodes after them).
  bool keepRate = false;
  // The list counts at the rate its own text gives (ScanRate's), not at
  // `rate`; keepRate is then ignored. The reader parses the whole text before
  // it hands on the first event, so that each line is parsed once.
  bool findRate = false;
};

class EventReader {
 public:
  using EventSink = void (*)(void* context, const Event& event);
  using WarningSink = void (*)(void* context, const Warning& warning);

  EventReader(const ReadSettings& settings, EventSink on_event, WarningSink on_warning,
              void* context);
  EventReader(const EventReader&) = delete;
  EventReader& operator=(const EventReader&) = delete;

  // Reads the whole text. False when strict mode stopped at a line (its
  // warning, marked fatal, said which).
  bool Read(std::string_view text);

  uint32_t warnings() const { return warnings_; }
  // Where findRate found the rate; after Read.
  const RateScan& rateScan() const { return rateScan_; }

 private:
  struct Pending {
    bool active = false;
    uint32_t number = 0;
    uint32_t line = 0;
    char edit = 'C';
    bool keyBackground = false;  // K B
    uint32_t code = 0;
    uint32_t duration = 0;
    uint32_t times[4] = {};  // source in, source out, record in, record out
    uint32_t video = 0;
    uint32_t audio = 0;
    uint32_t aux = 0;
    bool pair = false;  // a transition read from two lines
    bool hasFrom = false;
    bool hasTo = false;
    bool hasComment = false;
    bool ownEffect = false;
    uint32_t ownCode = 0;
    uint32_t ownDuration = 0;
    bool sourceDrop = false;  // the counting of its source timecodes
    bool hasSpeed = false;
    int32_t speedMilliFps = 0;
    uint32_t speedEntry = 0;
    uint32_t speedLine = 0;
    // Reused from event to event: their memory grows once, not per line.
    std::string reel;
    std::string fromName;
    std::string toName;
    std::string outgoingName;
    std::string outgoingReel;
    uint32_t outgoingSource = 0;
    std::string ownName;  // from a TCS NAME note; never empty when given
    std::string comment;
    uint32_t commentLines = 0;
    uint32_t bareNotes = 0;  // Event::bareNotes
    std::string clipName;
  };

  // An event line as parsed: `problem` says what is wrong with it, or null.
  struct ParsedEvent {
    const char* problem;
    EventFields fields;
  };
  bool ReadFindingRate(std::string_view text);
  // Each returns false when the line stops the reading. `event`: the
  // parse of an event line (null for any other).
  bool OnLine(const LineClass& line, const ParsedEvent* event);
  bool OnEvent(const ParsedEvent& event);
  bool OnAudio(std::string_view numbers);
  void OnSpeed(std::string_view line);
  void OnFrameCode(std::string_view value);
  void OnNote(std::string_view body);
  enum class Counted { kRead, kSkip, kStop };
  Counted Count(const EventFields& fields, uint32_t (&times)[4]);
  void Start(Pending& p, const EventFields& fields, const uint32_t (&times)[4]);
  // `bare`: the line stood as a note of its own, not under COMMENT:.
  void AppendComment(std::string_view text, bool bare);
  void EmitAll();
  void Emit(Pending& p);
  void CheckOverlap(const Event& event);
  // Warns; in strict mode a kind strict refuses stops the reading (false).
  bool Problem(uint32_t line, WarningKind kind, std::string_view text);
  void Warn(uint32_t line, WarningKind kind, std::string_view text, bool fatal = false);

  timecode::FrameRate rate_;  // fps, and the list's (record) drop-frame counting
  bool sourceDrop_;           // the counting of source timecodes
  bool strict_;
  bool keepRate_;
  bool findRate_;
  RateScan rateScan_;
  bool seenEvent_ = false;
  bool ownList_ = false;  // this codec's own frame rate note was read
  bool afterRateNote_ = false;  // a line labelled as that note was read
  bool skipping_ = false;  // the notes of a skipped event line
  EventSink onEvent_;
  WarningSink onWarning_;
  void* context_;
  uint32_t lineNumber_ = 0;
  uint32_t warnings_ = 0;
  Pending pending_;
  Pending key_;  // the key line of a K B pair
  std::string message_;
  // Per track (video 0..31, audio 32..63): what plays there, for reporting
  // events laid over earlier ones.
  std::vector<TrackSpans> placed_;
};

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_READER_H_
