#include "platform/edl_text_events.h"

#include <charconv>
#include <cstring>

#include "platform/errlog.h"
#include "record/timecode.h"
#include "tcs_status.h"

namespace tcs::translator {
namespace {

constexpr uint32_t kMaxWarnings = 100;
constexpr unsigned int kWarningSeverity = 0x80000000u;

std::string_view TrimRight(std::string_view text) {
  size_t end = text.size();
  while (end > 0 && (IsBlank(text[end - 1]) || text[end - 1] == '\r')) --end;
  return text.substr(0, end);
}

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

char* Text(std::string& s) { return s.empty() ? nullptr : s.data(); }

// The writer's escapes undone: `\\` and `\xHH` (never `\x00`, which would end
// the text); any other backslash stands for itself.
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

EdlEventReader::EdlEventReader(TimecodeRate rate, const char* label, Sink sink, void* context)
    : fps_(rate.fps), wantDrop_(rate.dropFrame), label_(label), sink_(sink), context_(context) {}

uint32_t EdlEventReader::Read(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  lineNumber_ = 0;
  size_t pos = 0;
  while (pos < text.size()) {
    // A line ends at LF, CR LF or a lone CR.
    size_t end = pos;
    while (end < text.size() && text[end] != '\n' && text[end] != '\r') ++end;
    ++lineNumber_;
    if (!OnLine(text.substr(pos, end - pos))) {
      pending_.active = false;
      return TCS_ERR_BAD_ARGUMENTS;
    }
    pos = end;
    if (pos < text.size() && text[pos] == '\r') ++pos;
    if (pos < text.size() && text[pos] == '\n' && (pos == end || text[pos - 1] == '\r')) ++pos;
  }
  Emit();
  return TCS_OK;
}

bool EdlEventReader::OnLine(std::string_view raw) {
  const LineClass line = ClassifyLine(TrimRight(raw));
  switch (line.kind) {
    case LineKind::kBlank:
    case LineKind::kTitle:
    case LineKind::kSourceTable:
      return true;
    case LineKind::kEvent:
      return OnEvent(line.body);
    case LineKind::kAudio:
      return OnAudio(line.body);
    case LineKind::kFrameCode:
      OnFrameCode(line.body);
      return true;
    case LineKind::kNote:
      OnNote(line.body);
      return true;
    case LineKind::kSpeed:
      Warn(lineNumber_, "speed change (M2) ignored: the event keeps its record timing");
      return true;
    case LineKind::kSplit:
      Warn(lineNumber_, "split edit (SPLIT:) ignored: the event keeps its record timing");
      return true;
    case LineKind::kUnknown:
      break;
  }
  return Fail("not an EDL line");
}

bool EdlEventReader::OnEvent(std::string_view text) {
  // A bad event line still ends the event above it, which is complete.
  const auto fail = [this](const char* problem) {
    Emit();
    return Fail(problem);
  };
  EventFields fields;
  if (const char* problem = ParseEventLine(text, fields)) return fail(problem);
  const TimecodeRate rate = MakeRate(fps_, wantDrop_);
  uint32_t times[4];
  for (int i = 0; i < 4; ++i) {
    if (!TimecodeToFrames(fields.times[i], rate, times[i])) {
      return fail("timecode out of range for the frame rate");
    }
  }
  if (times[3] < times[2]) return fail("record out before record in");
  if (fields.tracks.dropped) Warn(lineNumber_, "tracks above 32 ignored");

  Pending& p = pending_;
  // Some tools give the outgoing half a source length; its record is empty.
  const bool zero_cut = p.edit == 'C' && p.times[2] == p.times[3];
  if (p.active && !p.pair && zero_cut && fields.number == p.number && fields.edit != 'C') {
    // The outgoing half of a transition: the incoming line is the event. A
    // FROM CLIP NAME seen so far named the outgoing clip.
    std::string comment;
    comment.swap(p.comment);
    const bool has_comment = p.hasComment;
    Start(fields, times);
    p.comment.swap(comment);
    p.hasComment = has_comment;
    p.pair = true;
    return true;
  }
  if (p.active && fields.number == p.number && fields.reel == std::string_view(p.reel) &&
      fields.edit == p.edit && fields.wipeCode == p.code && fields.duration == p.duration &&
      std::memcmp(times, p.times, sizeof times) == 0) {
    p.video |= fields.tracks.video;
    p.audio |= fields.tracks.audio;
    return true;
  }
  Emit();
  Start(fields, times);
  return true;
}

void EdlEventReader::Start(const EventFields& fields, const uint32_t (&times)[4]) {
  Pending& p = pending_;
  p.active = true;
  p.number = fields.number;
  p.line = lineNumber_;
  p.edit = fields.edit;
  p.code = fields.wipeCode;
  p.duration = fields.duration;
  std::memcpy(p.times, times, sizeof p.times);
  p.video = fields.tracks.video;
  p.audio = fields.tracks.audio;
  p.pair = p.hasFrom = p.hasTo = p.hasComment = p.ownEffect = false;
  p.reel.assign(fields.reel);
  p.fromName.clear();
  p.toName.clear();
  p.ownName.clear();
  p.comment.clear();
  p.clipName.clear();
}

bool EdlEventReader::OnAudio(std::string_view numbers) {
  if (!pending_.active) {
    Warn(lineNumber_, "AUD line before the first event ignored");
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
  if (!ok) return Fail("AUD line: expected audio track numbers");
  if (dropped) Warn(lineNumber_, "tracks above 32 ignored");
  pending_.audio |= audio;
  return true;
}

void EdlEventReader::OnFrameCode(std::string_view value) {
  if (StartsWithUpper(value, "NON")) {
    wantDrop_ = false;
  } else if (StartsWithUpper(value, "DROP")) {
    wantDrop_ = true;
  } else {
    Warn(lineNumber_, "unknown FCM: line ignored");
  }
}

void EdlEventReader::OnNote(std::string_view body) {
  std::string_view value;
  const NoteLabel label = LabelOf(body, value);
  if (label == NoteLabel::kOwnRate) {
    uint32_t fps = 0;
    if (!ForEachNumber(value, [&](uint32_t n) { return fps == 0 && (fps = n) != 0; })) {
      Warn(lineNumber_, "TCS FRAME RATE: expected one rate");
    } else {
      fps_ = MakeRate(fps, false).fps;
    }
    return;
  }
  // Notes above the first event describe the file, not a clip.
  if (!pending_.active) return;
  Pending& p = pending_;
  switch (label) {
    case NoteLabel::kFromClipName:
      // In a two-line transition it names the outgoing clip.
      if (!p.pair) {
        p.fromName.assign(value);
        p.hasFrom = true;
      }
      break;
    case NoteLabel::kToClipName:
      p.toName.assign(value);
      p.hasTo = true;
      break;
    case NoteLabel::kComment:
      AppendComment(value);
      break;
    case NoteLabel::kOwnTracks:
      for (size_t i = 0; i < value.size();) {
        size_t end = value.find(' ', i);
        if (end == std::string_view::npos) end = value.size();
        TrackMasks masks{p.video, p.audio, false};
        if (end > i && ParseTrackField(value.substr(i, end - i), masks) && !masks.dropped) {
          p.video = masks.video;
          p.audio = masks.audio;
        } else if (end > i) {
          Warn(lineNumber_, "TCS TRACKS: unknown track ignored");
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
        Warn(lineNumber_, "TCS EFFECT: expected a code and a duration");
      }
      break;
    }
    case NoteLabel::kOther:
      // A bare '*' is a separator some tools draw, not a line of text.
      if (!body.empty()) AppendComment(body);
      break;
    case NoteLabel::kOwnRate:
      break;
  }
}

void EdlEventReader::AppendComment(std::string_view text) {
  Pending& p = pending_;
  if (p.hasComment) p.comment += '\n';
  p.comment.append(text);
  p.hasComment = true;
}

void EdlEventReader::Emit() {
  Pending& p = pending_;
  if (!p.active) return;
  p.active = false;
  const uint32_t record_length = p.times[3] - p.times[2];
  if (record_length == 0) {
    Warn(p.line, "zero-length event not added");
    return;
  }
  EDLLINE line;
  std::memset(&line, 0, sizeof line);
  line.clip.sourceIn = p.times[0];
  line.clip.sourceOut = p.times[1];
  if (p.times[1] - p.times[0] != record_length || p.times[1] < p.times[0]) {
    // The clip's length on the timeline comes from its source points.
    Warn(p.line, "source length differs from record length: source out set from the record");
    line.clip.sourceOut = p.times[0] + record_length;
  }
  // The space cuts a clip that runs past the end of the timeline; its source
  // out is cut with it, so that what the space plays and what an export of it
  // writes agree. Otherwise two such clips that differ only in the frames the
  // space never plays would stay two events here and come back as one.
  const uint32_t span = line.clip.sourceOut - line.clip.sourceIn;
  const uint32_t kept = LengthRule(ClampStart(p.times[2]), span);
  if (kept != span) {
    Warn(p.line, "event runs past the end of the timeline: cut at its end");
    line.clip.sourceOut = line.clip.sourceIn + kept;
  }
  line.clip.videoMask = p.video;
  line.clip.audioMask = p.audio;
  std::string& name = !p.ownName.empty() ? p.ownName : p.hasTo ? p.toName : p.fromName;
  // A longer name would be cut by the next export, and two clips that differ
  // only past the cut would stop being told apart.
  if (name.size() > EDLLINE_NAME_MAX) {
    Warn(p.line, "clip name cut to the 4097 bytes an export carries");
    name.resize(EDLLINE_NAME_MAX);
  }
  line.clip.name = Text(name);
  line.clip.reel = Text(p.reel);
  line.clip.comment = p.hasComment ? p.comment.data() : nullptr;
  line.clip.clipName = Text(p.clipName);
  line.unused80 = p.number;
  line.recordIn = p.times[2];
  line.recordOut = p.times[3];
  if (p.edit == 'K') Warn(p.line, "key edit read as a cut");
  const bool transition = p.edit == 'D' || p.edit == 'W';
  line.transition = transition ? EDLLINE_WIPE : EDLLINE_CUT;
  line.effectCode = p.edit == 'W' ? p.code : 0;
  line.effectDuration = transition ? p.duration : 0;
  if (p.ownEffect) {
    line.effectCode = p.ownCode;
    line.effectDuration = p.ownDuration;
  }
  sink_(context_, line, p.line);
}

void EdlEventReader::Warn(uint32_t line, const char* message) {
  if (warnings_ < kMaxWarnings) {
    ErrFmtOut(kWarningSeverity, line, 0, "WARNING(edlReadFile) %s line %u: %s", label_, line,
              message);
  } else if (warnings_ == kMaxWarnings) {
    ErrFmtOut(kWarningSeverity, line, 0, "WARNING(edlReadFile) %s: further warnings not shown",
              label_);
  }
  ++warnings_;
}

bool EdlEventReader::Fail(const char* message) {
  ErrOut("edlReadFile(%s) line %u: %s", label_, lineNumber_, message);
  if (pending_.active) {
    ErrOut("edlReadFile(%s) line %u: event %u, begun on line %u, not added", label_, lineNumber_,
           pending_.number, pending_.line);
  }
  return false;
}

}  // namespace tcs::translator
