#include "cmx3600/tracks.h"

#include <cstring>

namespace tcs::cmx3600 {
namespace {

char Upper(char c) { return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c; }

bool EqualsUpper(std::string_view text, std::string_view upper) {
  if (text.size() != upper.size()) return false;
  for (size_t i = 0; i < text.size(); ++i) {
    if (Upper(text[i]) != upper[i]) return false;
  }
  return true;
}

// A track number of one or two digits, 1 and up.
bool TrackNumber(std::string_view digits, unsigned& number) {
  if (digits.empty() || digits.size() > 2) return false;
  number = 0;
  for (char c : digits) {
    if (c < '0' || c > '9') return false;
    number = number * 10 + unsigned(c - '0');
  }
  return number >= 1;
}

void AddTrack(uint32_t& mask, unsigned number, bool& dropped) {
  if (number > 32) {
    dropped = true;
  } else {
    mask |= 1u << (number - 1);
  }
}

// "A" then digits, perhaps glued to a trailing "V": see ParseTrackField.
bool ParseAudioDigits(std::string_view part, TrackMasks& masks) {
  std::string_view digits = part.substr(1);
  const bool with_video = !digits.empty() && Upper(digits.back()) == 'V';
  if (with_video) digits.remove_suffix(1);
  if (digits.empty()) return false;
  for (char c : digits) {
    if (c < '0' || c > '9') return false;
  }
  unsigned number = 0;
  const bool numbered = TrackNumber(digits, number);
  // Two digits with a 0 among them cannot be two tracks: a track past 32.
  const bool one_track = digits.size() == 1 || number <= 32 || digits.find('0') != digits.npos;
  if (!with_video && numbered && one_track) {
    AddTrack(masks.audio, number, masks.dropped);
    masks.ambiguous |= digits.size() == 2 && digits[0] != '0' && digits[0] < digits[1];
  } else {
    for (char c : digits) {
      if (c == '0') return false;
      masks.audio |= 1u << unsigned(c - '1');
    }
    masks.glued = true;
  }
  if (with_video) masks.video |= 1u;
  return true;
}

bool ParsePart(std::string_view part, TrackMasks& masks) {
  if (EqualsUpper(part, "V")) {
    masks.video |= 1u;
  } else if (EqualsUpper(part, "B")) {
    masks.video |= 1u;
    masks.audio |= 1u;
  } else if (EqualsUpper(part, "A")) {
    masks.audio |= 1u;
  } else if (EqualsUpper(part, "AA")) {
    masks.audio |= 3u;
  } else if (part.size() >= 2 && Upper(part[0]) == 'A') {
    return ParseAudioDigits(part, masks);
  } else {
    unsigned number = 0;
    if (part.size() < 2 || Upper(part[0]) != 'V' || !TrackNumber(part.substr(1), number)) {
      return false;
    }
    AddTrack(masks.video, number, masks.dropped);
  }
  return true;
}

unsigned LowestBit(uint32_t mask) { return unsigned(__builtin_ctz(mask)); }

}  // namespace

TrackSpelling SpellTracks(uint32_t video, uint32_t audio) {
  TrackSpelling out;
  const bool v = (video & 1u) != 0;
  const char* audio_part = nullptr;
  char numbered[4] = {};
  switch (audio & 3u) {
    case 3u: audio_part = "AA"; break;
    case 1u: audio_part = "A"; break;
    case 2u: audio_part = "A2"; break;
    default:
      if (!v && audio != 0) {
        const unsigned bit = LowestBit(audio);
        numbered[TrackName(true, bit, numbered)] = '\0';
        audio_part = numbered;
        audio &= ~(1u << bit);
      }
      break;
  }
  audio &= ~3u;

  const char* field = "NONE";
  if (v && audio_part == nullptr) {
    field = "V";
  } else if (v && std::strcmp(audio_part, "A") == 0) {
    field = "B";
  } else if (v && std::strcmp(audio_part, "A2") == 0) {
    field = "A2/V";
  } else if (v) {
    field = "AA/V";
  } else if (audio_part != nullptr) {
    field = audio_part;
  }
  std::memcpy(out.field, field, std::strlen(field) + 1);

  out.aud3 = (audio & 4u) != 0;
  out.aud4 = (audio & 8u) != 0;
  out.extraVideo = video & ~1u;
  out.extraAudio = audio & ~12u;
  return out;
}

bool ParseTrackField(std::string_view text, TrackMasks& masks) {
  if (EqualsUpper(text, "NONE")) return true;
  TrackMasks result = masks;
  size_t begin = 0;
  while (true) {
    const size_t slash = text.find('/', begin);
    const std::string_view part =
        text.substr(begin, slash == std::string_view::npos ? std::string_view::npos : slash - begin);
    if (!ParsePart(part, result)) return false;
    if (slash == std::string_view::npos) break;
    begin = slash + 1;
  }
  masks = result;
  return true;
}

size_t TrackName(bool audio, unsigned bit, char* out) {
  const unsigned number = bit + 1;
  size_t n = 0;
  out[n++] = audio ? 'A' : 'V';
  if (number >= 10) out[n++] = char('0' + number / 10);
  out[n++] = char('0' + number % 10);
  return n;
}

}  // namespace tcs::cmx3600
