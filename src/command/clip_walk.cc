// The clip walk. One call runs at most two sweeps: the first skips the
// channels marked on entry; when it finds nothing before the end of the
// event last reported (restart_at) and some channel was marked, the cursor
// moves one frame on, the marks are cleared and a second sweep runs, which
// either finds an event or ends the walk.
//
//   ch 0   |A.........|C.........|        cursor 0  -> A (with A2: one event)
//   ch 1        |B..|                     cursor 0  -> B at 50 (ch 0 marked)
//   ch 32  |A2........|                   cursor 50 -> nothing before 80:
//          0    50  80 100       200      restart at 51 -> C at 100
#include "command/clip_walk.h"

#include <array>
#include <cassert>
#include <cstring>

#include "command/clip_search.h"
#include "command/walk_search.h"
#include "lookup/search_mode.h"
#include "platform/clip.h"
#include "record/channel_set.h"
#include "record/timecode.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {
namespace {

// The searched channels in scan order: video 0..3, then audio 32..47.
constexpr std::array<uint32_t, 20> kWalkChannels = {
    0, 1, 2, 3, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47};

// The walk's search mode unless the record names one.
constexpr uint32_t kWalkMode = SearchMode::StartOfCoverOrNext().word();

// Flags ORed into the record when an event's fields are filled in.
constexpr uint32_t kEventFlags = TCSF_TEXT | TCSF_OUT | TCSF_IN | TCSF_AT | TCSF_POS;
static_assert(kEventFlags == 0x2560);

// TCSF_AT alone among TCSF_AT, TCSF_IN, TCSF_OUT asks for the cover search.
constexpr uint32_t kCoverFlagsMask = TCSF_AT | TCSF_IN | TCSF_OUT;

constexpr uint32_t kNoChannel = 0xFFFFFFFFu;

// What one call reads from the record on entry; a restart updates it.
struct WalkSetUp {
  uint32_t mode;
  uint32_t cursor;       // the record's position: where the sweep looks from
  uint32_t video_marks;  // channels 0..3 already reported at the cursor
  uint32_t audio_marks;  // bit k: channel 32 + k already reported
  uint32_t restart_at;   // a candidate at or past it means a restart
  bool cover;
};

// The outcome of a sweep: the best candidate value and its channel.
struct WalkChoice {
  uint32_t best = 0xFFFFFFFFu;
  uint32_t channel = kNoChannel;
};

bool Marked(uint32_t video_marks, uint32_t audio_marks, uint32_t channel) {
  return ChannelSet(video_marks, audio_marks).Has(channel);
}

void Mark(TCSCMD& record, uint32_t channel) {
  ChannelSet marks(record.videoMask, record.audioMask);
  marks.Add(channel);
  record.videoMask = marks.video();
  record.audioMask = marks.audio();
}

void ClearMarks(TCSCMD& record) {
  record.videoMask = 0;
  record.audioMask = 0;
  record.auxMask = 0;
}

// The cover search takes a channel whose clip covers the cursor, the marks
// aside: channel 0 first, then the highest covering video channel, and an
// audio channel only when no video channel covers it.
void OfferCover(WalkChoice& choice, uint32_t channel, uint32_t value) {
  if (channel < ChannelSet::kFirstAudio || choice.channel == kNoChannel) {
    choice.best = value;
    choice.channel = channel;
  }
}

// Same length, source in and out, and name; a missing name matches any.
bool SameSource(const CClip& a, const CClip& b) {
  const char* a_name = a.name;
  const char* b_name = b.name;
  return a.length == b.length && a.sourceIn == b.sourceIn && a.sourceOut == b.sourceOut &&
         (a_name == nullptr || b_name == nullptr || std::strcmp(a_name, b_name) == 0);
}

WalkSetUp SetUpWalk(const TCSCMD& record) {
  WalkSetUp walk;
  walk.mode = (record.flags & TCSF_MODE) != 0 && record.selector != 0 ? record.selector : kWalkMode;
  walk.cursor = record.position;
  walk.video_marks = record.videoMask;
  walk.audio_marks = record.audioMask;
  // After a find, outPoint - inPoint is the length of the event reported, so
  // a sweep restarts at that event's end. The sum wraps, as all timecode sums
  // do: inPoint 0 and outPoint 0xFFFFFFFF mean no limit only at position 0;
  // at a later position they give position - 1, below every clip at or after
  // the cursor, so a walk started there without marks ends at once. A walk
  // started elsewhere passes inPoint equal to outPoint.
  walk.restart_at = record.inPoint < record.outPoint
                        ? record.position + (record.outPoint - record.inPoint)
                        : kNoTimecode;
  walk.cover = (record.flags & kCoverFlagsMask) == TCSF_AT;
  return walk;
}

// Asks every searched channel for its candidate; no record field changes.
// Channels without a lookup, or with an empty one, take no part in a scan:
// they are not even asked, so they leave the scratch play clip and
// clipActive alone.
WalkChoice Sweep(WalkSearch& search, const WalkSetUp& walk) {
  WalkChoice choice;
  for (const uint32_t channel : kWalkChannels) {
    if (!search.InScan(channel)) continue;
    // A marked channel is passed over (the cover search aside): its searches
    // count only for what they leave in the scratch play clip.
    if (!walk.cover && Marked(walk.video_marks, walk.audio_marks, channel)) {
      search.Note(walk.mode, walk.cursor, channel, true);
      continue;
    }
    // A play clip without a record offers no candidate: there would be
    // nothing to copy out or to compare in the event pass.
    CClip* k = nullptr;
    uint32_t value = search.Find(walk.mode, walk.cursor, k, channel);
    if (k == nullptr) continue;
    if (walk.cover) {
      if (value <= walk.cursor && walk.cursor <= k->start + k->length) {
        OfferCover(choice, channel, value);
      }
      continue;
    }
    if (value < walk.cursor) {
      // A clip that began before the cursor covers it: the channel offers the
      // first clip after that clip's end.
      value = search.Find(walk.mode, k->start + k->length, k, channel);
      if (k == nullptr) continue;
    }
    // Ties go to the channel met first in scan order.
    if (value < choice.best || (value == choice.best && choice.channel == kNoChannel)) {
      choice.best = value;
      choice.channel = channel;
    }
  }
  return choice;
}

// Moves the cursor one frame on and clears the marks, in record and walk.
void RestartWalk(TCSCMD& record, WalkSetUp& walk) {
  record.position += 1;
  walk.cursor += 1;
  ClearMarks(record);
  walk.video_marks = 0;
  walk.audio_marks = 0;
  walk.restart_at = kNoTimecode;
}

// Adds every unmarked channel whose clip at the event's start shares the
// found clip's source, filling the event's fields for each.
void EventPass(WalkSearch& search, TCSCMD& record, const WalkSetUp& walk,
               const CClip& found) {
  // The chosen channel meets its own clip here, so the event's fields are
  // filled whenever that channel was not marked on entry.
  for (const uint32_t channel : kWalkChannels) {
    if (!search.InScan(channel)) continue;
    if (Marked(walk.video_marks, walk.audio_marks, channel)) {
      search.Note(walk.mode, record.position, channel, false);
      continue;
    }
    CClip* g = nullptr;
    const uint32_t value = search.Find(walk.mode, record.position, g, channel);
    if (g == nullptr || value != record.position || !SameSource(*g, found)) continue;
    record.flags |= kEventFlags;
    Mark(record, channel);
    record.position = found.start;
    record.inPoint = found.sourceIn;
    record.outPoint = found.sourceIn + found.length;
    CClip::GetString(TcsCmdReplyText(record), found.name, TCSCMD_REPLY_TEXT_SIZE);
  }
}

// Fetches the event chosen by a sweep, marks its channel, runs the event
// pass. Returns the event's start, or kNotFound (having ended the walk).
uint32_t FoundEvent(WalkSearch& search, TCSCMD& record, const WalkSetUp& walk,
                    const WalkChoice& choice, bool fresh_marks, CClip* clip) {
  CClip* found = nullptr;
  record.position = search.Find(walk.mode, choice.best, found, choice.channel);
  // A host's own search mode may land on another play clip than the sweep
  // did; one without a record cannot be reported, so the walk ends there
  // as if nothing had been found.
  if (record.position == kNotFound || found == nullptr) return EndWalk(record);
  if (clip != nullptr) {
    // The copy may throw: the scratch play clip is as the searches left it.
    search.Flush();
    clip->SetClip(found);
  }
  if (fresh_marks) ClearMarks(record);
  Mark(record, choice.channel);
  EventPass(search, record, walk, *found);
  return record.position;
}

}  // namespace

uint32_t EndWalk(TCSCMD& record) {
  record.position = kNoTimecode;
  record.inPoint = kNoTimecode;
  record.outPoint = kNoTimecode;
  ClearMarks(record);
  return kNotFound;
}

namespace {

uint32_t Step(WalkSearch& search, TCSCMD& record, bool fresh_marks, CClip* clip) {
  WalkSetUp walk = SetUpWalk(record);
  WalkChoice choice = Sweep(search, walk);
  if (choice.best >= walk.restart_at) {
    if (walk.video_marks == 0 && walk.audio_marks == 0) return EndWalk(record);
    RestartWalk(record, walk);
    choice = Sweep(search, walk);
    // With no marks left, the second sweep finds an event or the walk ends.
    if (choice.best >= walk.restart_at) return EndWalk(record);
  }
  // best < restart_at <= 0xFFFFFFFF: only a chosen channel lowers best.
  assert(choice.channel != kNoChannel);
  return FoundEvent(search, record, walk, choice, fresh_marks, clip);
}

}  // namespace

uint32_t FindNextClip(CTimeCodeSpace& space, TCSCMD& record, bool fresh_marks, CClip* clip) {
  // The sweeps keep record pointers between channel queries and the event
  // pass reads them: another thread's edit in between would free them.
  SpaceLock hold(space);
  WalkSearch search(space);
  const uint32_t result = Step(search, record, fresh_marks, clip);
  search.Flush();
  return result;
}

}  // namespace tcs
