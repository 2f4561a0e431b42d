// The track field of an EDL event line and the channel masks behind it.
// Tracks are numbered from 1: V is video track 1 (channel 0), Vn is channel
// n - 1; A is audio track 1 (channel 32), An is channel 31 + n. Pure
// functions; safe from any thread.
#ifndef TCS_CMX3600_TRACKS_H_
#define TCS_CMX3600_TRACKS_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tcs::cmx3600 {

struct TrackMasks {
  uint32_t video = 0;  // bit n: channel n
  uint32_t audio = 0;  // bit n: channel 32 + n
  bool dropped = false;    // named a track above 32, which no mask can carry
  bool glued = false;      // A1234V, A34: audio digits read one track each
  bool ambiguous = false;  // A12: read as track 12, though tracks 1 and 2 may be meant
};

// What an event line can say of a line's channels, and what is left over.
//  field: the track field in the standard spellings: V, A, A2, AA, B (V and
//    A), A2/V, AA/V; without V and audio tracks 1 and 2, the lowest audio
//    track alone (A3, A4 ...); NONE when it names nothing.
//  aud3, aud4: audio tracks 3 and 4 not in the field, for an "AUD 3 4" line.
//  extraVideo, extraAudio: channels neither can name.
struct TrackSpelling {
  char field[8] = {};
  bool aud3 = false;
  bool aud4 = false;
  uint32_t extraVideo = 0;
  uint32_t extraAudio = 0;
};

TrackSpelling SpellTracks(uint32_t video, uint32_t audio);

// Adds the tracks of a field ("V", "aa/v", "B", "A12", "NONE", "V2", parts
// joined by '/') to `masks`, in any letter case. False, with `masks`
// unchanged, when the text is not a track field.
//
// Glued audio fields: after A, two digits up to 32 are one track (A12 is
// track 12, as the writer spells a lowest track alone; `ambiguous` is set
// when the digits rise, since tracks 1 and 2 may be meant). Three digits or
// more, two digits past 32, or digits followed by V (A1234V) name one track
// per digit (each 1 to 9), and set `glued`.
bool ParseTrackField(std::string_view text, TrackMasks& masks);

// Writes the name of one track ("V2", "A17") for bit `bit` of the video or
// audio mask into out (4 bytes, no NUL); returns its length.
size_t TrackName(bool audio, unsigned bit, char* out);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_TRACKS_H_
