#include "cmx3600/reader.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "cmx3600/aux_note.h"
#include "timecode/timecode.h"

namespace tcs::cmx3600 {
namespace {

constexpr const char* kTimeNames[4] = {"source in", "source out", "record in", "record out"};

// Whitespace-separated decimal numbers; false on anything else.
template <typename Each>
bool ForEachNumber(std::string_view text, Each each) {
  size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && IsBlank(text[i])) ++i;
    if (i == text.size()) break;
    uint64_t value = 0;
    size_t digits = 0;
    for (; i < text.size() && !IsBlank(text[i]); ++i, ++digits) {
      if (text[i] < '0' || text[i] > '9' || digits == 10) return false;
      value = value * 10 + uint64_t(text[i] - '0');
    }
    if (value > UINT32_MAX || !each(uint32_t(value))) return false;
  }
  return true;
}

// The writer's escapes undone: `\\` and `\xHH` (never `\x00`, which would end
// the text); any other backslash, and `\x` without two hex digits, stands for
// itself.
void Unescape(std::string_view text, std::string& out) {
  out.clear();
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) {
      if (text[i + 1] == '\\') {
        out += '\\';
        ++i;
        continue;
      }
      if (text[i + 1] == 'x' && i + 3 < text.size()) {
        const char* digits = text.data() + i + 2;
        unsigned value = 0;
        const auto [end, error] = std::from_chars(digits, digits + 2, value, 16);
        if (error == std::errc() && end == digits + 2 && value != 0) {
          out += char(value);
          i += 3;
          continue;
        }
      }
    }
    out += text[i];
  }
}

}  // namespace

EventReader::EventReader(const ReadSettings& settings, EventSink on_event,
                         WarningSink on_warning, void* context)
    : rate_(settings.rate),
      sourceDrop_(settings.rate.dropFrame),
      strict_(settings.strict),
      keepRate_(settings.keepRate && !settings.findRate),
      findRate_(settings.findRate),
      onEvent_(on_event),
      onWarning_(on_warning),
      context_(context),
      placed_(64) {}

bool EventReader::Read(std::string_view text) {
  lineNumber_ = 0;
  const auto each_line = [this](std::string_view raw) {
    ++lineNumber_;
    const LineClass line = ClassifyLine(raw);
    if (line.kind != LineKind::kEvent) return OnLine(line, nullptr);
    ParsedEvent event;
    event.problem = ParseEventLine(line.body, event.fields);
    return OnLine(line, &event);
  };
  const bool read = findRate_ ? ReadFindingRate(text) : ForEachLine(text, each_line);
  if (!read) {
    pending_.active = key_.active = false;
    return false;
  }
  EmitAll();
  return true;
}

// The lines are classified and the event lines parsed first, the rate
// found from them, and then they are read at that rate from what was kept:
// each line is parsed once (a scan of its own before the read cost a third
// as much again as the read of a long list).
bool EventReader::ReadFindingRate(std::string_view text) {
  // Room for every line, reserved once: what the events do not fill is
  // never touched.
  const size_t most = size_t(std::count(text.begin(), text.end(), '\n')) + 1;
  std::vector<LineClass> lines;
  lines.reserve(most);
  std::vector<ParsedEvent> events;
  events.reserve(most);
  RateScanner scanner;
  ForEachLine(text, [&](std::string_view raw) {
    const LineClass& line = lines.emplace_back(ClassifyLine(raw));
    const EventFields* parsed = nullptr;
    if (line.kind == LineKind::kEvent) {
      ParsedEvent& event = events.emplace_back();
      event.problem = ParseEventLine(line.body, event.fields);
      if (event.problem == nullptr) parsed = &event.fields;
    }
    scanner.Add(line, parsed);
    return true;
  });
  rateScan_ = scanner.Result();
  rate_ = rateScan_.rate;
  sourceDrop_ = rate_.dropFrame;
  size_t next_event = 0;
  for (const LineClass& line : lines) {
    ++lineNumber_;
    const ParsedEvent* event = line.kind == LineKind::kEvent ? &events[next_event++] : nullptr;
    if (!OnLine(line, event)) return false;
  }
  return true;
}

bool EventReader::OnLine(const LineClass& line, const ParsedEvent* event) {
  if (event != nullptr) return OnEvent(*event);
  if (line.kind == LineKind::kFrameCode) {
    OnFrameCode(line.body);
    return true;
  }
  // What follows a skipped event line belongs to it.
  if (skipping_ && line.kind != LineKind::kBlank && line.kind != LineKind::kTitle) return true;
  switch (line.kind) {
    case LineKind::kBlank:
    case LineKind::kTitle:
    case LineKind::kSourceTable:
      return true;
    case LineKind::kAudio:
      return OnAudio(line.body);
    case LineKind::kNote:
      OnNote(line.body);
      return true;
    case LineKind::kSpeed:
      OnSpeed(line.body);
      return true;
    case LineKind::kSplit:
      Warn(lineNumber_, WarningKind::kSplitIgnored,
           "split edit (SPLIT:) ignored: the event keeps its record timing");
      return true;
    case LineKind::kEvent:
    case LineKind::kFrameCode:
    case LineKind::kUnknown:
      break;
  }
  // Banners and other header lines above the first event describe the file.
  if (!seenEvent_ && !strict_) return true;
  return Problem(lineNumber_, WarningKind::kUnknownLine, "not an EDL line");
}

EventReader::Counted EventReader::Count(const EventFields& fields, uint32_t (&times)[4]) {
  for (int i = 0; i < 4; ++i) {
    if (fields.frameCounts) {
      times[i] = fields.counts[i];
      continue;
    }
    // Record timecodes count as the list does, source timecodes as the
    // FCM: line in force says.
    timecode::FrameRate rate = rate_;
    rate.dropFrame = (i < 2 ? sourceDrop_ : rate_.dropFrame) && timecode::CanDropFrame(rate.fps);
    const timecode::Count count = timecode::TimecodeToFrames(fields.times[i], rate, times[i]);
    if (count == timecode::Count::kOutOfRange) {
      skipping_ = true;
      const bool go_on = Problem(lineNumber_, WarningKind::kBadEventLine,
                                 std::string(kTimeNames[i]) + " out of range");
      return go_on ? Counted::kSkip : Counted::kStop;
    }
    if (count == timecode::Count::kFramePastRate) {
      const std::string text = std::string(kTimeNames[i]) + " frame field " +
                               std::to_string(fields.times[i].frames) + " is past the rate (" +
                               std::to_string(rate_.fps) + " fps): counted on into the next second";
      if (!Problem(lineNumber_, WarningKind::kFramePastRate, text)) return Counted::kStop;
    }
  }
  return Counted::kRead;
}

bool EventReader::OnEvent(const ParsedEvent& event) {
  seenEvent_ = true;
  skipping_ = false;
  // A bad event line still ends the event above it, which is complete.
  const auto skip = [this](WarningKind kind, const std::string& problem) {
    EmitAll();
    skipping_ = true;
    return Problem(lineNumber_, kind, problem);
  };
  if (event.problem != nullptr) return skip(WarningKind::kBadEventLine, event.problem);
  const EventFields& fields = event.fields;
  uint32_t times[4];
  const Counted counted = Count(fields, times);
  if (counted != Counted::kRead) {
    EmitAll();  // a line that cannot be counted still ends the event above
    return counted == Counted::kSkip;
  }
  if (times[3] < times[2]) {
    return skip(WarningKind::kRecordOutBeforeIn, "record out before record in");
  }
  if (fields.impliedDissolve &&
      !Problem(lineNumber_, WarningKind::kImpliedDissolve,
               "a duration with no edit type: read as a dissolve")) {
    return false;
  }
  if (fields.tracks.glued &&
      !Problem(lineNumber_, WarningKind::kGluedTracks,
               "track field read with one audio track per digit")) {
    return false;
  }
  if (fields.tracks.ambiguous && !ownList_) {
    Warn(lineNumber_, WarningKind::kAmbiguousTracks,
         "two-digit audio track read as one track, not one per digit");
  }
  if (fields.tracks.dropped) {
    Warn(lineNumber_, WarningKind::kTracksDropped, "tracks above 32 ignored");
  }

  Pending& p = pending_;
  // Some tools give the outgoing half a source length; its record is empty.
  const bool zero_cut = p.active && !p.pair && p.edit == 'C' && p.times[2] == p.times[3];
  if (zero_cut && fields.edit != 'C') {
    // The outgoing half of a transition: the incoming line is the event. A
    // FROM CLIP NAME seen so far named the outgoing clip.
    if (fields.number != p.number) {
      Warn(lineNumber_, WarningKind::kTransitionNumbers,
           "transition event " + std::to_string(fields.number) + " follows the outgoing cut of event " +
               std::to_string(p.number) + " (line " + std::to_string(p.line) +
               "): read as one transition, numbers kept as written");
    }
    std::string comment;
    comment.swap(p.comment);
    const bool has_comment = p.hasComment;
    const uint32_t comment_lines = p.commentLines, bare_notes = p.bareNotes;
    std::string outgoing = p.hasTo ? p.toName : p.fromName;
    std::string outgoing_reel = p.reel;
    const uint32_t outgoing_source = p.times[0];
    Start(p, fields, times);
    p.outgoingReel = std::move(outgoing_reel);
    p.outgoingSource = outgoing_source;
    p.comment.swap(comment);
    p.hasComment = has_comment;
    p.commentLines = comment_lines;
    p.bareNotes = bare_notes;
    p.outgoingName = std::move(outgoing);
    p.pair = true;
    return true;
  }
  if (p.active && p.keyBackground && !key_.active && fields.edit == 'K' &&
      fields.number == p.number) {
    Start(key_, fields, times);
    return true;
  }
  if (p.active && !key_.active && fields.number == p.number &&
      fields.reel == std::string_view(p.reel) && fields.edit == p.edit &&
      fields.wipeCode == p.code && fields.duration == p.duration &&
      std::memcmp(times, p.times, sizeof times) == 0) {
    p.video |= fields.tracks.video;
    p.audio |= fields.tracks.audio;
    return true;
  }
  EmitAll();
  Start(p, fields, times);
  p.keyBackground = fields.edit == 'K' && fields.keyBackground;
  return true;
}

void EventReader::Start(Pending& p, const EventFields& fields, const uint32_t (&times)[4]) {
  p.active = true;
  p.number = fields.number;
  p.line = lineNumber_;
  p.edit = fields.edit;
  p.keyBackground = false;
  p.code = fields.wipeCode;
  p.duration = fields.duration;
  std::memcpy(p.times, times, sizeof p.times);
  p.sourceDrop = sourceDrop_;
  p.video = fields.tracks.video;
  p.audio = fields.tracks.audio;
  p.aux = 0;
  p.pair = p.hasFrom = p.hasTo = p.hasComment = p.ownEffect = p.hasSpeed = false;
  p.speedMilliFps = 0;
  p.speedEntry = p.speedLine = 0;
  p.reel.assign(fields.reel);
  p.fromName.clear();
  p.toName.clear();
  p.outgoingName.clear();
  p.outgoingReel.clear();
  p.outgoingSource = 0;
  p.ownName.clear();
  p.comment.clear();
  p.commentLines = 0;
  p.bareNotes = 0;
  p.clipName.clear();
}

bool EventReader::OnAudio(std::string_view numbers) {
  if (!pending_.active) {
    Warn(lineNumber_, WarningKind::kBadNote, "AUD line before the first event ignored");
    return true;
  }
  uint32_t audio = 0;
  bool dropped = false;
  const bool ok = ForEachNumber(numbers, [&](uint32_t track) {
    if (track == 0) return false;
    if (track > 32) {
      dropped = true;
    } else {
      audio |= 1u << (track - 1);
    }
    return true;
  });
  if (!ok) {
    if (strict_) pending_.active = key_.active = false;
    return Problem(lineNumber_, WarningKind::kBadAudioLine,
                   "AUD line: expected audio track numbers");
  }
  if (dropped) Warn(lineNumber_, WarningKind::kTracksDropped, "tracks above 32 ignored");
  pending_.audio |= audio;
  if (key_.active) key_.audio |= audio;
  return true;
}

void EventReader::OnSpeed(std::string_view line) {
  Pending& p = pending_;
  SpeedFields fields;
  if (const char* problem = ParseSpeedLine(line, fields)) {
    Warn(lineNumber_, WarningKind::kSpeedIgnored, std::string(problem) + ": ignored");
    return;
  }
  if (!p.active) {
    Warn(lineNumber_, WarningKind::kSpeedIgnored, "M2 line before the first event ignored");
    return;
  }
  if (fields.reel != std::string_view(p.reel)) {
    Warn(lineNumber_, WarningKind::kSpeedIgnored,
         p.pair && fields.reel == std::string_view(p.outgoingReel)
             ? "speed change of the outgoing clip of a transition: not kept"
             : "M2 line names another reel than its event's: ignored");
    return;
  }
  timecode::FrameRate rate = rate_;
  rate.dropFrame = sourceDrop_ && timecode::CanDropFrame(rate.fps);
  uint32_t entry = 0;
  if (timecode::TimecodeToFrames(fields.entry, rate, entry) == timecode::Count::kOutOfRange) {
    Warn(lineNumber_, WarningKind::kSpeedIgnored, "M2 line: timecode out of range: ignored");
    return;
  }
  p.hasSpeed = true;
  p.speedMilliFps = fields.milliFps;
  p.speedEntry = entry;
  p.speedLine = lineNumber_;
}

void EventReader::OnFrameCode(std::string_view value) {
  bool drop;
  if (StartsWithUpper(value, "NON")) {
    drop = false;
  } else if (StartsWithUpper(value, "DROP")) {
    drop = true;
  } else {
    Warn(lineNumber_, WarningKind::kUnknownFrameCode, "FCM: line saying neither DROP nor NON-DROP ignored");
    return;
  }
  sourceDrop_ = drop;
  if (!seenEvent_ && !keepRate_ && !afterRateNote_) rate_.dropFrame = drop;
}

void EventReader::OnNote(std::string_view body) {
  std::string_view value;
  const NoteLabel label = LabelOf(body, value);
  if (label == NoteLabel::kOwnRate) {
    afterRateNote_ = true;
    uint32_t fps = 0;
    if (!ForEachNumber(value, [&](uint32_t n) { return fps == 0 && (fps = n) != 0; }) ||
        fps > timecode::kMaxFps) {
      Warn(lineNumber_, WarningKind::kBadNote, "TCS FRAME RATE: expected one rate");
    } else {
      if (!keepRate_) rate_.fps = fps;
      ownList_ = true;
    }
    return;
  }
  // Notes above the first event describe the file, not a clip.
  if (!pending_.active) return;
  Pending& p = pending_;
  switch (label) {
    case NoteLabel::kFromClipName:
      // In a two-line transition it names the outgoing clip.
      if (p.pair) {
        p.outgoingName.assign(value);
      } else {
        p.fromName.assign(value);
        p.hasFrom = true;
      }
      break;
    case NoteLabel::kToClipName:
      p.toName.assign(value);
      p.hasTo = true;
      break;
    case NoteLabel::kKeyClipName:
      if (key_.active) {
        key_.toName.assign(value);
        key_.hasTo = true;
      }
      AppendComment(body, true);
      break;
    case NoteLabel::kComment:
      AppendComment(value, false);
      break;
    case NoteLabel::kOwnTracks:
      for (size_t i = 0; i < value.size();) {
        size_t end = value.find(' ', i);
        if (end == std::string_view::npos) end = value.size();
        TrackMasks masks{p.video, p.audio};
        if (end > i && ParseTrackField(value.substr(i, end - i), masks) && !masks.dropped &&
            !masks.glued) {
          p.video = masks.video;
          p.audio = masks.audio;
        } else if (end > i) {
          Warn(lineNumber_, WarningKind::kBadNote, "TCS TRACKS: unknown track ignored");
        }
        i = end + 1;
      }
      break;
    case NoteLabel::kOwnClip:
      p.clipName.assign(value);
      break;
    case NoteLabel::kOwnReel:
      p.reel.assign(value);
      break;
    case NoteLabel::kOwnName:
      Unescape(value, p.ownName);
      break;
    case NoteLabel::kOwnEffect: {
      uint32_t numbers[2];
      int n = 0;
      if (ForEachNumber(value, [&](uint32_t v) { return n < 2 && ((numbers[n++] = v), true); }) &&
          n == 2) {
        p.ownEffect = true;
        p.ownCode = numbers[0];
        p.ownDuration = numbers[1];
      } else {
        Warn(lineNumber_, WarningKind::kBadNote, "TCS EFFECT: expected a code and a duration");
      }
      break;
    }
    case NoteLabel::kOther:
      // A bare '*' is a separator some tools draw, not a line of text.
      if (!body.empty()) AppendComment(body, true);
      break;
    case NoteLabel::kOwnAux:
      if (!ParseAuxNote(value, p.aux)) {
        Warn(lineNumber_, WarningKind::kBadNote, "TCS AUX: expected aux channels X1 to X32");
      }
      break;
    case NoteLabel::kOwnRate:
      break;
  }
}

void EventReader::AppendComment(std::string_view text, bool bare) {
  Pending& p = pending_;
  if (p.hasComment) p.comment += '\n';
  p.comment.append(text);
  p.hasComment = true;
  if (bare && p.commentLines < 32) p.bareNotes |= uint32_t{1} << p.commentLines;
  ++p.commentLines;
}

void EventReader::EmitAll() {
  Emit(pending_);
  Emit(key_);
}

void EventReader::Emit(Pending& p) {
  if (!p.active) return;
  p.active = false;
  const uint32_t record_length = p.times[3] - p.times[2];
  if (record_length == 0) {
    Warn(p.line, WarningKind::kZeroLength,
         &p == &key_ ? "key of no record length not placed" : "zero-length event not placed");
    return;
  }
  Event event;
  event.number = p.number;
  event.line = p.line;
  event.sourceIn = p.times[0];
  event.sourceOut = p.times[1];
  if (timecode::CanDropFrame(rate_.fps)) {
    event.sourceCounting = p.sourceDrop ? SourceCounting::kDropFrame : SourceCounting::kNonDrop;
  }
  if (p.times[1] - p.times[0] != record_length || p.times[1] < p.times[0]) {
    // The clip's length on the timeline comes from its source points. A
    // speed says why they differ; without one, the file is said to.
    if (!p.hasSpeed) {
      Warn(p.line, WarningKind::kSourceLength,
           "source length differs from record length: source out set from the record");
    }
    event.sourceOut = p.times[0] + record_length;
  }
  event.recordIn = p.times[2];
  event.recordOut = p.times[3];
  event.video = p.video;
  event.audio = p.audio;
  event.aux = p.aux;
  event.reel = p.reel;
  event.name = !p.ownName.empty() ? p.ownName : p.hasTo ? p.toName : p.fromName;
  event.comment = p.comment;
  event.hasComment = p.hasComment;
  event.bareNotes = p.bareNotes;
  event.clipName = p.clipName;
  event.hasOutgoing = p.pair;
  event.outgoingSource = p.outgoingSource;
  event.outgoingReel = p.outgoingReel;
  event.outgoingName = p.outgoingName;
  event.hasSpeed = p.hasSpeed;
  event.speedMilliFps = p.speedMilliFps;
  event.speedEntry = p.speedEntry;
  event.speedLine = p.speedLine;
  event.key = p.edit == 'K';
  if (&p == &key_) {
    // The key plays over its background: it goes one video track up, so
    // that both are kept.
    event.video = p.video << 1;
    if ((p.video >> 31) != 0) Warn(p.line, WarningKind::kTracksDropped, "tracks above 32 ignored");
    Warn(p.line, WarningKind::kKeyAsCut, "key placed as a cut one video track above its background");
  } else if (event.key) {
    Warn(p.line, WarningKind::kKeyAsCut, "key edit placed as a cut");
  }
  event.transition = p.edit == 'D' || p.edit == 'W';
  event.effectCode = p.edit == 'W' ? p.code : 0;
  event.effectDuration = event.transition ? p.duration : 0;
  if (p.ownEffect) {
    event.effectCode = p.ownCode;
    event.effectDuration = p.ownDuration;
  }
  CheckOverlap(event);
  onEvent_(context_, event);
}

// Reports each earlier event the new one covers part of, once, on any of
// its tracks.
void EventReader::CheckOverlap(const Event& event) {
  uint32_t reported[4] = {};
  size_t count = 0;
  const auto covered = [&](uint32_t earlier) {
    for (size_t i = 0; i < count; ++i) {
      if (reported[i] == earlier) return;
    }
    if (count == std::size(reported)) return;
    reported[count++] = earlier;
    Warn(event.line, WarningKind::kOverlap,
         "event lies over part of the event on line " + std::to_string(earlier) +
             " on the same track: the later one plays");
  };
  for (uint32_t mask = event.video; mask != 0; mask &= mask - 1) {
    placed_[unsigned(__builtin_ctz(mask))].Lay(event.recordIn, event.recordOut, event.line, covered);
  }
  for (uint32_t mask = event.audio; mask != 0; mask &= mask - 1) {
    placed_[32 + unsigned(__builtin_ctz(mask))].Lay(event.recordIn, event.recordOut, event.line,
                                                   covered);
  }
}

bool EventReader::Problem(uint32_t line, WarningKind kind, std::string_view text) {
  const bool fatal = strict_ && RefusedWhenStrict(kind);
  if (fatal || uint32_t(kind) > uint32_t(WarningKind::kRecordOutBeforeIn)) {
    Warn(line, kind, text, fatal);
  } else {
    const bool event = kind == WarningKind::kBadEventLine || kind == WarningKind::kRecordOutBeforeIn;
    Warn(line, kind, std::string(text) + (event ? ": event skipped" : ": skipped"));
  }
  return !fatal;
}

void EventReader::Warn(uint32_t line, WarningKind kind, std::string_view text, bool fatal) {
  ++warnings_;
  if (onWarning_ == nullptr) return;
  Warning warning;
  warning.line = line;
  warning.kind = kind;
  warning.text = text;
  warning.fatal = fatal;
  onWarning_(context_, warning);
}

}  // namespace tcs::cmx3600
