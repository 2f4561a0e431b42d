#include "edl/edl_line_cursor.h"

#include <cstring>
#include <iterator>

#include "lookup/search_mode.h"
#include "platform/clip.h"
#include "record/channel_set.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {
namespace {

constexpr uint32_t kChannels = CTimeCodeSpace::kChannels;
constexpr uint32_t kCoverOrNextMode = SearchMode::StartOfCoverOrNext().word();
constexpr unsigned long kClipNameLimit = 9;
constexpr unsigned long kNameLimit = 4096;
// edlFirstLineChannel: no line given since the reset.
constexpr uint32_t kNoFirstLine = 0xFFFFFFFFu;
// edlLineChannel once the first line is given: the next line is the first in
// line order.
constexpr uint32_t kFromTheTop = 0xFFFFFFFFu;

struct LineKey {
  uint32_t start;
  uint32_t channel;
};

// Zeroes every field but the five text pointers. The pointer fields are
// unaligned (4-byte packing), so they are copied by value, never addressed.
void ClearLine(EDLLINE& line) {
  char* const clip_name = line.clip.clipName;
  char* const name = line.clip.name;
  char* const comment = line.clip.comment;
  char* const reel = line.clip.reel;
  char* const extra_text = line.extraText;
  std::memset(&line, 0, sizeof line);
  line.clip.clipName = clip_name;
  line.clip.name = name;
  line.clip.comment = comment;
  line.clip.reel = reel;
  line.extraText = extra_text;
}

void SetChannelBit(EDLLINE& line, uint32_t channel) {
  ChannelSet set(line.clip.videoMask, line.clip.audioMask, line.clip.auxMask);
  set.Add(channel);
  line.clip.videoMask = set.video();
  line.clip.audioMask = set.audio();
  line.clip.auxMask = set.aux();
}

// The source out is the record's source in plus its own range's length, not
// the play clip's: a play clip cut short still names the whole source span.
void FillLine(EDLLINE& line, const CPlayClip& play_clip, uint32_t channel) {
  if (const CClip* record = play_clip.clip; record != nullptr) {
    line.clip.sourceIn = record->sourceIn;
    line.clip.sourceOut = record->sourceIn + record->length;
    CClip::GetString(line.clip.clipName, record->clipName, kClipNameLimit);
    CClip::GetString(line.clip.name, record->name, kNameLimit);
  }
  line.recordIn = play_clip.start;
  line.recordOut = play_clip.start + play_clip.length;
  SetChannelBit(line, channel);
}

// Of the channels from c0 up whose play clip covers t, the one whose play
// clip started earliest; equal starts go to the higher channel, met later.
// A play clip that starts after t yields a value above t and never wins.
// The searches only compare: the chosen channel's play clip is copied out
// once, by the caller.
uint32_t ScanChannels(const CTimeCodeSpace& space, uint32_t t, uint32_t c0) {
  uint32_t best = t;
  uint32_t chosen = c0;
  for (uint32_t c = c0; c < kChannels; ++c) {
    const CTCLookup* lookup = space.lookups[c];
    if (lookup == nullptr) continue;
    CTCLookup::Position at;
    const uint32_t r = lookup->FindPlayClip(kCoverOrNextMode, t, at);
    if (r != kNotFound && r <= best) {
      best = r;
      chosen = c;
    }
  }
  return chosen;
}

// The first play clip of `lookup` that starts at `t` or later (only later
// when `strictly_after`). findle lies at or before the answer: it is the
// greatest start up to t (clamped to the last start), or the first play clip.
CTCLookup::Position FirstFrom(const CTCLookup& lookup, uint32_t t, bool strictly_after) {
  CTCLookup::Position it = lookup.findle(t);
  while (it != lookup.end() && (it->start < t || (strictly_after && it->start == t))) ++it;
  return it;
}

// The play clip after `after` (null: from the top) in line order, passing
// over `skip`, copied into the scratch play clip. False when none is left.
bool NextInLineOrder(CTimeCodeSpace& space, const LineKey* after, LineKey skip,
                     uint32_t& channel) {
  const CTCLookup* best_lookup = nullptr;
  CTCLookup::Position best;
  // No line can start before this; a channel's line that starts on it is
  // the one.
  const uint32_t lowest = after == nullptr ? 0 : after->start;
  for (uint32_t c = 0; c < kChannels; ++c) {
    const CTCLookup* lookup = space.lookups[c];
    if (lookup == nullptr || lookup->empty()) continue;
    // Channels above the last line's continue at its start, the others after it.
    const bool strictly_after = after != nullptr && c <= after->channel;
    const CTCLookup::Position end = lookup->end();
    const uint32_t last_start = std::prev(end)->start;
    if (last_start < lowest || (strictly_after && last_start == lowest)) continue;  // played out
    CTCLookup::Position it = after == nullptr ? lookup->begin()
                                              : FirstFrom(*lookup, lowest, strictly_after);
    if (it != end && c == skip.channel && it->start == skip.start) ++it;
    // Strictly earlier only: on equal starts the lower channel, met first, stays.
    if (it != end && (best_lookup == nullptr || it->start < best->start)) {
      best_lookup = lookup;
      best = it;
      channel = c;
      // Nothing later can start earlier.
      if (best->start == lowest) break;
    }
  }
  if (best_lookup == nullptr) return false;
  best->CopyTo(space.currentPlayClip);
  return true;
}

void EndOfLines(CTimeCodeSpace& space, EDLLINE& line) {
  line.recordIn = kNoMoreLines;
  line.recordOut = kNoMoreLines;
  space.edlLineTime = kNotFound;
  space.edlLineChannel = 0;
  space.edlFirstLineChannel = kNoFirstLine;
}

void GiveNextInLineOrder(CTimeCodeSpace& space, EDLLINE& line, const LineKey* after) {
  const LineKey skip{space.edlFirstLineTime, space.edlFirstLineChannel};
  uint32_t channel = 0;
  if (!NextInLineOrder(space, after, skip, channel)) {
    EndOfLines(space, line);
    return;
  }
  FillLine(line, space.currentPlayClip, channel);
  if (space.edlFirstLineChannel == kNoFirstLine) {
    // Given from the top already: there is nothing before it to come back for.
    space.edlFirstLineTime = space.currentPlayClip.start;
    space.edlFirstLineChannel = channel;
  }
  space.edlLineTime = space.currentPlayClip.start;
  space.edlLineChannel = channel;
}

void GiveFirstLine(CTimeCodeSpace& space, EDLLINE& line) {
  const uint32_t t = space.edlLineTime;
  const uint32_t chosen = ScanChannels(space, t, space.edlLineChannel);
  if (space.FindPlayClip(kCoverOrNextMode, t, space.currentPlayClip, chosen) == kNotFound) {
    // Nothing at or after t on the chosen channel; the scratch play clip
    // still holds an earlier query's, whose record may be gone.
    GiveNextInLineOrder(space, line, nullptr);
    return;
  }
  FillLine(line, space.currentPlayClip, chosen);
  space.edlFirstLineTime = space.currentPlayClip.start;
  space.edlFirstLineChannel = chosen < kChannels ? chosen : 0;  // the space reads 96 and up as 0
  space.edlLineTime = 0;
  space.edlLineChannel = kFromTheTop;
}

}  // namespace

void GetEdlLine(CTimeCodeSpace& space, EDLLINE& line, uint32_t first) {
  SpaceLock hold(space);
  ClearLine(line);
  if (first != 0 || space.edlLineTime == kNotFound) {
    space.edlLineTime = 0;
    space.edlLineChannel = 0;
    space.edlFirstLineChannel = kNoFirstLine;
  }
  if (space.edlFirstLineChannel == kNoFirstLine) {
    GiveFirstLine(space, line);
  } else if (space.edlLineChannel == kFromTheTop) {
    GiveNextInLineOrder(space, line, nullptr);
  } else {
    const LineKey last{space.edlLineTime, space.edlLineChannel};
    GiveNextInLineOrder(space, line, &last);
  }
}

}  // namespace tcs
