// The clip walk. One call runs at most two sweeps: the first skips the
// channels marked on entry; when it finds nothing before the limit and some
// channel was marked, the cursor moves one frame on, the marks are cleared
// and a second sweep runs, which either finds an event or ends the walk.
//
//   ch 0   |A.........|C.........|        cursor 0  -> A (with A2: one event)
//   ch 1        |B..|                     cursor 0  -> B at 50 (ch 0 marked)
//   ch 32  |A2........|                   cursor 50 -> nothing before 80:
//          0    50  80 100       200      restart at 51 -> C at 100
#include "command/clip_walk.h"

#include <cassert>
#include <cstring>

#include "command/clip_search.h"
#include "record/timecode.h"
#include "platform/clip.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {
namespace {

constexpr uint32_t kFirstAudioChannel = 32;

// Channels without a lookup, or with an empty one, take no part in a scan:
// they are not even asked, so they leave the scratch play clip and
// clipActive alone.
bool InScan(CTimeCodeSpace& space, uint32_t channel) {
  SpaceLock hold(space);
  const CTCLookup* lookup = space.LookupOf(channel);
  return lookup != nullptr && !lookup->empty();
}

bool Marked(uint32_t video_marks, uint32_t audio_marks, uint32_t channel) {
  if (channel < kFirstAudioChannel) return ((video_marks >> channel) & 1) != 0;
  return ((audio_marks >> (channel - kFirstAudioChannel)) & 1) != 0;
}

void Mark(TCSCMD& record, uint32_t channel) {
  if (channel < kFirstAudioChannel) {
    record.videoMask |= 1u << channel;
  } else {
    record.audioMask |= 1u << (channel - kFirstAudioChannel);
  }
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
  if (channel < kFirstAudioChannel || choice.channel == kNoChannel) {
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

}  // namespace

WalkSetUp SetUpWalk(const TCSCMD& record) {
  WalkSetUp walk;
  walk.mode = (record.flags & TCSF_MODE) != 0 && record.selector != 0 ? record.selector : kWalkMode;
  walk.cursor = record.position;
  walk.video_marks = record.videoMask;
  walk.audio_marks = record.audioMask;
  // After a find, outPoint - inPoint is the length of the event reported, so
  // the limit is that event's end. The sum wraps, as all timecode sums do:
  // inPoint 0 and outPoint 0xFFFFFFFF mean no limit only at position 0; at a
  // later position they give position - 1, below every clip at or after the
  // cursor, so a walk started there without marks ends at once. A walk
  // started elsewhere passes inPoint equal to outPoint.
  walk.limit = record.inPoint < record.outPoint
                   ? record.position + (record.outPoint - record.inPoint)
                   : kNoTimecode;
  walk.cover = (record.flags & kCoverFlagsMask) == TCSF_AT;
  return walk;
}

WalkChoice Sweep(CTimeCodeSpace& space, const WalkSetUp& walk) {
  WalkChoice choice;
  for (const uint32_t channel : kWalkChannels) {
    if (!InScan(space, channel)) continue;
    // A play clip without a record offers no candidate: there would be
    // nothing to copy out or to compare in the event pass.
    CClip* k = nullptr;
    uint32_t value = FindClip(space, walk.mode, walk.cursor, k, channel);
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
      value = FindClip(space, walk.mode, k->start + k->length, k, channel);
      if (k == nullptr) continue;
    }
    if (Marked(walk.video_marks, walk.audio_marks, channel)) continue;
    // Ties go to the channel met first in scan order.
    if (value < choice.best || (value == choice.best && choice.channel == kNoChannel)) {
      choice.best = value;
      choice.channel = channel;
    }
  }
  return choice;
}

void RestartWalk(TCSCMD& record, WalkSetUp& walk) {
  record.position += 1;
  walk.cursor += 1;
  ClearMarks(record);
  walk.video_marks = 0;
  walk.audio_marks = 0;
  walk.limit = kNoTimecode;
}

uint32_t FoundEvent(CTimeCodeSpace& space, TCSCMD& record, const WalkSetUp& walk,
                    const WalkChoice& choice, bool fresh_marks, CClip* clip) {
  CClip* found = nullptr;
  record.position = FindClip(space, walk.mode, choice.best, found, choice.channel);
  // A host's own search mode may land on another play clip than the sweep
  // did; one without a record cannot be reported, so the walk ends there
  // as if nothing had been found.
  if (record.position == kNotFound || found == nullptr) return EndWalk(record);
  if (clip != nullptr) clip->SetClip(found);
  if (fresh_marks) ClearMarks(record);
  Mark(record, choice.channel);
  EventPass(space, record, walk, *found);
  return record.position;
}

void EventPass(CTimeCodeSpace& space, TCSCMD& record, const WalkSetUp& walk,
               const CClip& found) {
  // The chosen channel meets its own clip here, so the event's fields are
  // filled whenever that channel was not marked on entry.
  for (const uint32_t channel : kWalkChannels) {
    if (!InScan(space, channel)) continue;
    CClip* g = nullptr;
    const uint32_t value = FindClip(space, walk.mode, record.position, g, channel);
    if (g == nullptr || Marked(walk.video_marks, walk.audio_marks, channel) ||
        value != record.position || !SameSource(*g, found)) {
      continue;
    }
    record.flags |= kEventFlags;
    Mark(record, channel);
    record.position = found.start;
    record.inPoint = found.sourceIn;
    record.outPoint = found.sourceIn + found.length;
    CClip::GetString(TcsCmdReplyText(record), found.name, TCSCMD_REPLY_TEXT_SIZE);
  }
}

uint32_t EndWalk(TCSCMD& record) {
  record.position = kNoTimecode;
  record.inPoint = kNoTimecode;
  record.outPoint = kNoTimecode;
  ClearMarks(record);
  return kNotFound;
}

uint32_t FindNextClip(CTimeCodeSpace& space, TCSCMD& record, bool fresh_marks, CClip* clip) {
  // The sweeps keep record pointers between channel queries and the event
  // pass reads them: another thread's edit in between would free them.
  SpaceLock hold(space);
  WalkSetUp walk = SetUpWalk(record);
  WalkChoice choice = Sweep(space, walk);
  if (choice.best >= walk.limit) {
    if (walk.video_marks == 0 && walk.audio_marks == 0) return EndWalk(record);
    RestartWalk(record, walk);
    choice = Sweep(space, walk);
    // With no marks left, the second sweep finds an event or the walk ends.
    if (choice.best >= walk.limit) return EndWalk(record);
  }
  // best < limit <= 0xFFFFFFFF: only a chosen channel lowers best.
  assert(choice.channel != kNoChannel);
  return FoundEvent(space, record, walk, choice, fresh_marks, clip);
}

}  // namespace tcs
