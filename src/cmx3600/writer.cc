#include "cmx3600/writer.h"

#include <cstring>

#include "cmx3600/aux_note.h"
#include "cmx3600/tracks.h"
#include "timecode/timecode.h"

namespace tcs::cmx3600 {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
// CMX 3600 columns: a reel of eight, then the track field, edit type and
// duration in fields of four, four and three.
constexpr size_t kReelWidth = 8;
constexpr uint32_t kMaxCode = 999;
constexpr uint32_t kMaxDuration = 999;

void AppendNumber(std::string& out, uint64_t value, size_t min_width) {
  char digits[24];
  out.append(digits, timecode::PutDigits(value, min_width, digits));
}

void AppendPadded(std::string& out, std::string_view text, size_t width) {
  out.append(text);
  if (text.size() < width) out.append(width - text.size(), ' ');
}

void AppendTimecode(std::string& out, uint32_t frames, timecode::FrameRate rate) {
  char text[timecode::kMaxTimecodeText];
  out.append(text, timecode::FormatTimecode(frames, rate, text));
}

// Text on one line: control characters become blanks.
void AppendFlat(std::string& out, std::string_view text) {
  for (char c : text) out += (static_cast<unsigned char>(c) < 0x20) ? ' ' : c;
}

void AppendNote(std::string& out, std::string_view label, std::string_view value) {
  out += "* ";
  out.append(label);
  if (!value.empty()) {
    out += ' ';
    AppendFlat(out, value);
  }
  out.append(kLineEnd);
}

// A name the FROM CLIP NAME note carries as it is. Control characters would
// come back as blanks and blanks at either end not at all, and names decide
// which clips an export joins into one event, so such a name also goes on a
// TCS NAME note that keeps every byte.
bool PlainName(std::string_view name) {
  if (name.front() == ' ' || name.back() == ' ') return false;
  for (char c : name) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) return false;
  }
  return true;
}

// `\\` for a backslash; `\xHH` for a control character and for a blank at
// either end.
void AppendEscaped(std::string& out, std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  for (size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const bool edge_blank = c == ' ' && (i == 0 || i + 1 == text.size());
    if (c == '\\') {
      out += "\\\\";
    } else if (c < 0x20 || c == 0x7F || edge_blank) {
      out += "\\x";
      out += kHex[c >> 4];
      out += kHex[c & 0xF];
    } else {
      out += char(c);
    }
  }
}

// A reel the event line can carry as it is: one to eight visible characters.
bool PlainReel(std::string_view reel) {
  if (reel.empty() || reel.size() > kReelWidth) return false;
  for (char c : reel) {
    if (static_cast<unsigned char>(c) <= 0x20 || c == 0x7F) return false;
  }
  return true;
}

void AppendTracksNote(std::string& out, const TrackSpelling& tracks) {
  out += "* TCS TRACKS:";
  char name[4];
  for (unsigned bit = 0; bit < 32; ++bit) {
    if ((tracks.extraVideo >> bit) & 1u) {
      out += ' ';
      out.append(name, TrackName(false, bit, name));
    }
  }
  for (unsigned bit = 0; bit < 32; ++bit) {
    if ((tracks.extraAudio >> bit) & 1u) {
      out += ' ';
      out.append(name, TrackName(true, bit, name));
    }
  }
  out.append(kLineEnd);
}

// "M2   REEL       -025.0                01:00:00:00": the speed right-aligned
// in twelve columns after the reel's eight, one decimal or as many as it
// needs (up to three).
void AppendSpeed(std::string& out, std::string_view reel, const Event& event,
                 timecode::FrameRate rate) {
  const int32_t milli = event.speedMilliFps;
  const uint32_t size = milli < 0 ? uint32_t(-int64_t(milli)) : uint32_t(milli);
  char speed[24];
  size_t n = 0;
  if (milli < 0) speed[n++] = '-';
  const uint32_t whole = size / 1000;
  char digits[12];
  size_t d = 0;
  for (uint32_t w = whole; w > 0 || d < 3; w /= 10) digits[d++] = char('0' + w % 10);
  while (d > 0) speed[n++] = digits[--d];
  speed[n++] = '.';
  uint32_t fraction = size % 1000;
  speed[n++] = char('0' + fraction / 100);
  fraction %= 100;
  if (fraction != 0) speed[n++] = char('0' + fraction / 10);
  if (fraction % 10 != 0) speed[n++] = char('0' + fraction % 10);
  out += "M2   ";
  AppendPadded(out, reel, kReelWidth);
  if (n < 12) out.append(12 - n, ' ');
  out.append(speed, n);
  out.append(16, ' ');
  AppendTimecode(out, event.speedEntry, rate);
  out.append(kLineEnd);
}

// The reel as the event line spells it (AX for none). Blanks would split it
// in two for every reader, and control characters end a line for some.
std::string_view ReelField(std::string_view reel, char (&field)[kReelWidth]) {
  const bool plain = PlainReel(reel);
  size_t length = 0;
  if (plain || !reel.empty()) {
    for (char c : reel.substr(0, kReelWidth)) {
      const auto u = static_cast<unsigned char>(c);
      field[length++] = plain ? c : (u <= 0x20 || u == 0x7F) ? '_' : c;
    }
  } else {
    field[length++] = 'A';
    field[length++] = 'X';
  }
  return std::string_view(field, length);
}

// One event line: number, reel, tracks, edit (a cut unless `effect` is a
// transition) and the four timecodes.
void AppendEventLine(std::string& out, uint32_t number, std::string_view reel,
                     std::string_view tracks, const Event* effect, uint32_t source_in,
                     uint32_t source_out, uint32_t record_in, uint32_t record_out,
                     timecode::FrameRate source_rate, timecode::FrameRate rate) {
  AppendNumber(out, number, 3);
  out += "  ";
  AppendPadded(out, reel, kReelWidth);
  out += ' ';
  AppendPadded(out, tracks, 4);
  out += "  ";
  if (effect == nullptr) {
    out += "C        ";
  } else {
    if (effect->effectCode == 0) {
      out += "D    ";
    } else {
      out += 'W';
      AppendNumber(out, effect->effectCode > kMaxCode ? kMaxCode : effect->effectCode, 3);
      out += ' ';
    }
    AppendNumber(out, effect->effectDuration > kMaxDuration ? kMaxDuration : effect->effectDuration,
                 3);
    out += ' ';
  }
  AppendTimecode(out, source_in, source_rate);
  out += ' ';
  AppendTimecode(out, source_out, source_rate);
  out += ' ';
  AppendTimecode(out, record_in, rate);
  out += ' ';
  AppendTimecode(out, record_out, rate);
  out.append(kLineEnd);
}

// The counting of an event's source timecodes.
timecode::FrameRate SourceRate(const Event& event, timecode::FrameRate rate) {
  if (event.sourceCounting == SourceCounting::kAsList || !timecode::CanDropFrame(rate.fps)) {
    return rate;
  }
  return timecode::MakeFrameRate(rate.fps, event.sourceCounting == SourceCounting::kDropFrame);
}

}  // namespace

bool NoteReadsBackAs(std::string_view value, std::string_view read) {
  const auto blank = [](char c) { return static_cast<unsigned char>(c) <= 0x20; };
  while (!value.empty() && blank(value.front())) value.remove_prefix(1);
  while (!value.empty() && blank(value.back())) value.remove_suffix(1);
  if (value.size() != read.size()) return false;
  for (size_t i = 0; i < value.size(); ++i) {
    if ((blank(value[i]) ? ' ' : value[i]) != read[i]) return false;
  }
  return true;
}

void AppendHeader(std::string& out, std::string_view title, timecode::FrameRate rate) {
  out += "TITLE: ";
  AppendFlat(out, title);
  out.append(kLineEnd);
  AppendFrameCode(out, rate.dropFrame);
  out += "* TCS FRAME RATE: ";
  AppendNumber(out, rate.fps, 1);
  out.append(kLineEnd);
  out.append(kLineEnd);
}

void AppendFrameCode(std::string& out, bool drop_frame) {
  out += drop_frame ? "FCM: DROP FRAME" : "FCM: NON-DROP FRAME";
  out.append(kLineEnd);
}

void AppendEvent(std::string& out, const Event& line, uint32_t number, timecode::FrameRate rate) {
  const Event& clip = line;
  const timecode::FrameRate source_rate = SourceRate(line, rate);
  const std::string_view reel = clip.reel;
  const bool plain_reel = PlainReel(reel);
  const TrackSpelling tracks = SpellTracks(clip.video, clip.audio);
  const bool wipe = line.transition;
  const bool own_effect = wipe ? (line.effectCode > kMaxCode || line.effectDuration > kMaxDuration)
                               : (line.effectCode != 0 || line.effectDuration != 0);
  // A transition with its outgoing source takes two lines of one number: a
  // cut of no length into the outgoing source where the transition starts,
  // then the transition line. Its notes then name both clips.
  const bool two_lines = wipe && line.hasOutgoing;
  if (two_lines) {
    char outgoing_field[kReelWidth];
    AppendEventLine(out, number, ReelField(line.outgoingReel, outgoing_field), tracks.field,
                    nullptr, line.outgoingSource, line.outgoingSource, line.recordIn,
                    line.recordIn, source_rate, rate);
  }
  char reel_field[kReelWidth];
  const std::string_view reel_text = ReelField(reel, reel_field);
  AppendEventLine(out, number, reel_text, tracks.field, wipe ? &line : nullptr, clip.sourceIn,
                  clip.sourceOut, line.recordIn, line.recordOut, source_rate, rate);

  if (tracks.aud3 || tracks.aud4) {
    out += tracks.aud3 ? "AUD   3" : "AUD    ";
    if (tracks.aud4) out += "   4";
    out.append(kLineEnd);
  }
  if (clip.hasSpeed) AppendSpeed(out, reel_text, clip, source_rate);
  const std::string_view name = clip.name;
  if (two_lines) {
    if (!line.outgoingName.empty()) AppendNote(out, "FROM CLIP NAME:", line.outgoingName);
    if (!name.empty()) AppendNote(out, "TO CLIP NAME:", name);
  } else if (!name.empty()) {
    AppendNote(out, "FROM CLIP NAME:", name);
  }
  if (!clip.comment.empty()) {
    std::string_view rest = clip.comment;
    while (true) {
      const size_t end = rest.find('\n');
      std::string_view text = rest.substr(0, end);
      if (text.ends_with('\r')) text.remove_suffix(1);
      AppendNote(out, "COMMENT:", text);
      if (end == std::string_view::npos) break;
      rest.remove_prefix(end + 1);
    }
  }
  if (tracks.extraVideo != 0 || tracks.extraAudio != 0) AppendTracksNote(out, tracks);
  if (clip.aux != 0) AppendAuxNote(out, clip.aux);
  if (!clip.clipName.empty()) {
    AppendNote(out, "TCS CLIP:", clip.clipName);
  }
  if (!plain_reel) AppendNote(out, "TCS REEL:", reel);
  if (!name.empty() && !PlainName(name)) {
    out += "* TCS NAME: ";
    AppendEscaped(out, name);
    out.append(kLineEnd);
  }
  if (own_effect) {
    out += "* TCS EFFECT: ";
    AppendNumber(out, line.effectCode, 1);
    out += ' ';
    AppendNumber(out, line.effectDuration, 1);
    out.append(kLineEnd);
  }
}

}  // namespace tcs::cmx3600
