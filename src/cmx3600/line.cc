#include "cmx3600/line.h"

#include <algorithm>
#include <array>

namespace tcs::cmx3600 {
namespace {

constexpr size_t kMaxTokens = 32;
// A reel of the fixed-column layout fills eight columns; a track field run
// into it starts right after.
constexpr size_t kReelColumns = 8;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
char Upper(char c) { return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c; }

std::string_view SkipBlanks(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  return text.substr(i);
}

bool AllDigits(std::string_view text) {
  if (text.empty()) return false;
  for (char c : text) {
    if (!IsDigit(c)) return false;
  }
  return true;
}

// Up to nine digits into a u32.
bool Number(std::string_view digits, uint32_t& value) {
  if (!AllDigits(digits) || digits.size() > 9) return false;
  value = 0;
  for (char c : digits) value = value * 10 + uint32_t(c - '0');
  return true;
}

// "LOC:", "FROM CLIP:", "SOURCE FILE:": a word or words, then a colon.
bool IsLabelled(std::string_view line) {
  if (line.empty() || !IsLetter(line[0])) return false;
  for (size_t i = 1; i < line.size() && i < 48; ++i) {
    const char c = line[i];
    if (c == ':') return true;
    if (!IsLetter(c) && !IsDigit(c) && c != ' ' && c != '_' && c != '-') return false;
  }
  return false;
}

// Keyword followed by a blank, a digit or the end of the line.
bool StartsWithWord(std::string_view line, std::string_view upper_word) {
  if (!StartsWithUpper(line, upper_word)) return false;
  return line.size() == upper_word.size() || IsBlank(line[upper_word.size()]) ||
         IsDigit(line[upper_word.size()]);
}

// How many timecodes a token holds, run together; 0 when it is not wholly
// timecodes. The first `room` of them are kept in `out`.
int TimecodesIn(std::string_view token, timecode::TimecodeText* out, int room) {
  int count = 0;
  size_t pos = 0;
  timecode::TimecodeText tc;
  while (pos < token.size()) {
    if (!timecode::ScanTimecode(token, pos, tc)) return 0;
    if (count < room) out[count] = tc;
    ++count;
  }
  return count;
}

struct EditType {
  char edit;
  uint32_t code;
  bool hasDuration;  // "D030": the duration came with it
  uint32_t duration;
};

bool ParseEditType(std::string_view token, EditType& out) {
  if (token.empty()) return false;
  const char kind = Upper(token[0]);
  const std::string_view rest = token.substr(1);
  out = {kind, 0, false, 0};
  switch (kind) {
    case 'C':
      return rest.empty();
    case 'D':
      if (rest.empty()) return true;
      out.hasDuration = true;
      return Number(rest, out.duration);
    case 'W':
      return Number(rest, out.code);
    case 'K':
      return rest.empty() || (rest.size() == 1 && (Upper(rest[0]) == 'B' || Upper(rest[0]) == 'O'));
    default:
      return false;
  }
}

// A reel run into its track field: "ABCDEFG.V", "REEL12AA/V". Tries the cut
// after eight columns first, then the longest track field that ends the
// token and leaves a reel.
bool SplitReelAndTrack(std::string_view token, std::string_view& reel, TrackMasks& tracks) {
  if (token.size() > kReelColumns) {
    TrackMasks masks;
    if (ParseTrackField(token.substr(kReelColumns), masks)) {
      reel = token.substr(0, kReelColumns);
      tracks = masks;
      return true;
    }
  }
  for (size_t cut = 1; cut < token.size(); ++cut) {
    TrackMasks masks;
    if (ParseTrackField(token.substr(cut), masks)) {
      reel = token.substr(0, cut);
      tracks = masks;
      return true;
    }
  }
  return false;
}

// "-025.0", "12.5", "047.56": up to three decimals, in thousandths.
bool Speed(std::string_view text, int32_t& milli) {
  const bool negative = !text.empty() && text[0] == '-';
  if (negative || (!text.empty() && text[0] == '+')) text.remove_prefix(1);
  const size_t dot = text.find('.');
  const std::string_view whole = text.substr(0, dot);
  const std::string_view fraction = dot == std::string_view::npos ? "" : text.substr(dot + 1);
  uint32_t units = 0;
  if (!Number(whole, units) || units > 99999 || fraction.size() > 3 ||
      (!fraction.empty() && !AllDigits(fraction))) {
    return false;
  }
  int32_t value = int32_t(units) * 1000;
  int32_t scale = 100;
  for (char c : fraction) {
    value += int32_t(c - '0') * scale;
    scale /= 10;
  }
  milli = negative ? -value : value;
  return true;
}

// The blank-separated fields of a line; false past kMaxTokens of them.
bool SplitFields(std::string_view line, std::array<std::string_view, kMaxTokens + 1>& tokens,
                 size_t& count) {
  for (size_t i = 0; i < line.size();) {
    while (i < line.size() && IsBlank(line[i])) ++i;
    const size_t begin = i;
    while (i < line.size() && !IsBlank(line[i])) ++i;
    if (i == begin) break;
    if (count == kMaxTokens) return false;
    tokens[count++] = line.substr(begin, i - begin);
  }
  return true;
}

}  // namespace

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

bool StartsWithUpper(std::string_view text, std::string_view upper_prefix) {
  if (text.size() < upper_prefix.size()) return false;
  for (size_t i = 0; i < upper_prefix.size(); ++i) {
    if (Upper(text[i]) != upper_prefix[i]) return false;
  }
  return true;
}

const char* ParseSpeedLine(std::string_view line, SpeedFields& out) {
  std::array<std::string_view, kMaxTokens + 1> tokens;
  size_t count = 0;
  if (!SplitFields(line, tokens, count)) return "too many fields";
  if (count < 4 || !StartsWithUpper(tokens[0], "M2")) {
    return "M2 line: expected a reel, a speed and a timecode";
  }
  SpeedFields fields;
  size_t pos = 0;
  if (!timecode::ScanTimecode(tokens[count - 1], pos, fields.entry) ||
      pos != tokens[count - 1].size()) {
    return "M2 line: no timecode at its end";
  }
  if (!Speed(tokens[count - 2], fields.milliFps)) return "M2 line: no speed (such as 012.5)";
  const char* reel_end = tokens[count - 3].data() + tokens[count - 3].size();
  fields.reel = std::string_view(tokens[1].data(), size_t(reel_end - tokens[1].data()));
  out = fields;
  return nullptr;
}

LineClass ClassifyLine(std::string_view line) {
  const std::string_view text = SkipBlanks(line);
  if (text.empty()) return {LineKind::kBlank, text};
  if (IsDigit(text[0])) return {LineKind::kEvent, text};
  if (text[0] == '*') return {LineKind::kNote, SkipBlanks(text.substr(1))};
  if (text.starts_with(">>>")) return {LineKind::kSourceTable, text};
  if (StartsWithUpper(text, "TITLE:")) return {LineKind::kTitle, SkipBlanks(text.substr(6))};
  if (StartsWithUpper(text, "FCM:")) return {LineKind::kFrameCode, SkipBlanks(text.substr(4))};
  if (StartsWithWord(text, "AUD")) return {LineKind::kAudio, SkipBlanks(text.substr(3))};
  if (StartsWithWord(text, "M2")) return {LineKind::kSpeed, text};
  if (StartsWithUpper(text, "SPLIT:")) return {LineKind::kSplit, text};
  if (StartsWithUpper(text, "EFFECTS NAME IS") || StartsWithUpper(text, "ASC_SOP") ||
      StartsWithUpper(text, "ASC_SAT") || IsLabelled(text)) {
    return {LineKind::kNote, text};
  }
  return {LineKind::kUnknown, text};
}

NoteLabel LabelOf(std::string_view body, std::string_view& value) {
  struct Label {
    std::string_view text;
    NoteLabel label;
  };
  static constexpr std::array kLabels = {
      Label{"FROM CLIP NAME:", NoteLabel::kFromClipName},
      Label{"TO CLIP NAME:", NoteLabel::kToClipName},
      Label{"COMMENT:", NoteLabel::kComment},
      Label{"TCS TRACKS:", NoteLabel::kOwnTracks},
      Label{"TCS CLIP:", NoteLabel::kOwnClip},
      Label{"TCS REEL:", NoteLabel::kOwnReel},
      Label{"TCS NAME:", NoteLabel::kOwnName},
      Label{"TCS EFFECT:", NoteLabel::kOwnEffect},
      Label{"TCS FRAME RATE:", NoteLabel::kOwnRate},
      Label{"TCS AUX:", NoteLabel::kOwnAux},
      Label{"KEY CLIP NAME:", NoteLabel::kKeyClipName},
  };
  for (const Label& label : kLabels) {
    if (StartsWithUpper(body, label.text)) {
      value = SkipBlanks(body.substr(label.text.size()));
      return label.label;
    }
  }
  value = body;
  return NoteLabel::kOther;
}

const char* ParseEventLine(std::string_view line, EventFields& out) {
  std::array<std::string_view, kMaxTokens + 1> tokens;
  size_t count = 0;
  if (!SplitFields(line, tokens, count)) return "too many fields";

  // The four timecodes end the line, some of them perhaps run together;
  // else four frame counts do. The tokens are scanned from the last back,
  // each token's timecodes going in their order to the end of `scanned`.
  size_t head = count;
  int found = 0;
  timecode::TimecodeText scanned[4];
  while (head > 0 && found < 4) {
    timecode::TimecodeText in[4];
    const int in_token = TimecodesIn(tokens[head - 1], in, 4);
    if (in_token == 0) break;
    found += in_token;
    --head;
    if (found > 4) break;
    for (int i = 0; i < in_token; ++i) scanned[4 - found + i] = in[i];
  }
  EventFields fields;
  if (found == 4) {
    std::copy(scanned, scanned + 4, fields.times);
  } else {
    head = count;
    if (count < 7 || found != 0) {
      return "an event line needs four timecodes (source in/out, record in/out)";
    }
    for (size_t i = 0; i < 4; ++i) {
      if (!Number(tokens[count - 4 + i], fields.counts[i])) {
        return "an event line needs four timecodes (source in/out, record in/out)";
      }
    }
    fields.frameCounts = true;
    head = count - 4;
  }

  // The event number, perhaps run into the reel.
  if (head == 0) return "no event number";
  std::array<std::string_view, kMaxTokens + 1> rest;
  size_t n = 0;
  {
    const std::string_view first = tokens[0];
    size_t digits = 0;
    while (digits < first.size() && IsDigit(first[digits])) ++digits;
    if (!Number(first.substr(0, digits), fields.number)) return "event number too long";
    if (digits < first.size()) rest[n++] = first.substr(digits);
    for (size_t t = 1; t < head; ++t) rest[n++] = tokens[t];
  }

  // Edit type, its duration, and the two-word key types "K B" and "K O".
  EditType edit{};
  std::string_view duration_text;
  TrackMasks probe;
  if (n >= 2 && AllDigits(rest[n - 1]) && ParseEditType(rest[n - 2], edit)) {
    duration_text = rest[--n];
  } else if (n >= 3 && AllDigits(rest[n - 1]) && ParseTrackField(rest[n - 2], probe)) {
    // "005  EVL1_HEI V      008 ...": a transition that names no edit type.
    fields.impliedDissolve = true;
    duration_text = rest[n - 1];
    rest[n - 1] = "D";
  }
  bool background = false;
  if (n >= 2 && rest[n - 1].size() == 1 && (Upper(rest[n - 1][0]) == 'B' || Upper(rest[n - 1][0]) == 'O') &&
      Upper(rest[n - 2][0]) == 'K' && rest[n - 2].size() == 1) {
    background = Upper(rest[n - 1][0]) == 'B';
    --n;
  }
  if (n == 0 || !ParseEditType(rest[n - 1], edit)) return "no edit type (C, D, Wnnn or K)";
  --n;
  fields.keyBackground =
      edit.edit == 'K' && (background || (rest[n].size() == 2 && Upper(rest[n][1]) == 'B'));
  fields.edit = edit.edit;
  fields.wipeCode = edit.code;
  fields.duration = edit.duration;
  if (!duration_text.empty() && !Number(duration_text, fields.duration)) {
    return "transition duration too long";
  }

  // Reel and track field; a reel may hold blanks, the track field is last.
  if (n == 0) return "no reel and track field";
  if (n == 1) {
    if (!SplitReelAndTrack(rest[0], fields.reel, fields.tracks)) return "no track field";
  } else {
    if (!ParseTrackField(rest[n - 1], fields.tracks)) return "unknown track field";
    const char* reel_begin = rest[0].data();
    const char* reel_end = rest[n - 2].data() + rest[n - 2].size();
    fields.reel = std::string_view(reel_begin, size_t(reel_end - reel_begin));
  }
  out = fields;
  return nullptr;
}

}  // namespace tcs::cmx3600
