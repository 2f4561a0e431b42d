// CTimeCodeSpace: one timeline. Owns the list of clip records laid on it
// (copies of what callers hand in), one lookup per channel that has received
// a clip (up to 96), the scratch play clip of the last clip search, the host's
// notification functions and the stamps by which the host learns of changes.
// The host holds it through an opaque handle (tcsOpen).
//
// Thread safety: one recursive lock, `lock`. Every operation that reads or
// changes the clip list or the lookups takes it with SpaceLock; nested
// operations enter it again on the same thread. The host's notifications run
// with it held and may call back into the space on the same thread.
// Deliberately unlocked: see the fields.
#ifndef TCS_SPACE_SPACE_H_
#define TCS_SPACE_SPACE_H_

#include <atomic>
#include <cstdint>

#include "lookup/lookup.h"
#include "record/play_clip.h"
#include "platform/clip.h"
#include "platform/qvos.h"
#include "space/clip_callback.h"
#include "tcs_export.h"

class TCS_EXPORT CTimeCodeSpace {
 public:
  static constexpr uint32_t kChannels = 96;
  static constexpr size_t kFileNameSize = 4096;

  CTimeCodeSpace();
  CTimeCodeSpace(const CTimeCodeSpace&) = delete;
  CTimeCodeSpace& operator=(const CTimeCodeSpace&) = delete;
  virtual ~CTimeCodeSpace();

  // --- Lifecycle.
  // Empties the space: no play clips, no records (each reported to the delete
  // notification). The lookup objects stay allocated.
  void Destroy();
  // Empties every lookup; the records stay listed, nothing is reported.
  void DestroyLookup();

  // --- The clip list. A record enters only through __AddClipToList (as a copy
  // of the caller's, after the host's add notification accepted it) and
  // leaves only through __DelClipFromList (reported, then deleted).
  // Returns the listed copy, or null when the host refused. REQUIRES channel < 96.
  CClip* __AddClipToList(uint32_t ignored, CClip* clip, uint32_t channel);
  // Ignores null and records of other spaces.
  void __DelClipFromList(CClip* clip);
  // The host's answers: 0 when no function is set or it threw (logged).
  uint32_t AddClipCallback(CClip* clip);
  uint32_t DelClipCallback(CClip* clip);
  uint32_t ChangeClipCallback(CClip* clip);

  // --- Edits (each takes the lock).
  CClip* AddClip(uint32_t x, CClip* record, uint32_t channel);
  uint32_t DeleteClip(CClip* record, uint32_t flags);
  CPlayClip* RemoveClip(CPlayClip& pc);
  uint32_t InsertFile(uint32_t flags, CClip* record);
  uint32_t TrimRange(uint32_t at, uint32_t in, uint32_t out, uint32_t videoMask,
                     uint32_t audioMask, int shift);
  uint32_t ModifyRange(uint32_t start, uint32_t end, uint32_t videoMask, uint32_t audioMask,
                       uint32_t flags);
  void RebuildLookup();

  // --- Queries (each takes the lock).
  uint32_t Translate(uint32_t t, CPlayClip& out, uint32_t channel);
  uint32_t FindPlayClip(uint32_t mode, uint32_t t, CPlayClip& out, uint32_t channel);

  // Records the clock in both stamps and re-reads the file's modification time.
  void Stamp();
  // A channel number of 96 or more given to a space operation means channel 0.
  static constexpr uint32_t ChannelOrZero(uint32_t channel) {
    return channel < kChannels ? channel : 0;
  }
  // The lookup of a channel (96 and above: channel 0), or null.
  CTCLookup* LookupOf(uint32_t channel) const { return lookups[ChannelOrZero(channel)]; }
  // Aborts naming the first broken invariant. Checks the whole state: the
  // list linked both ways with matching ends and the same count each way,
  // its records owned here and on channels below 96; every lookup's own
  // invariants; every play clip's record listed, on the lookup's channel and
  // played once; the current play clip's record, if any, listed, and set
  // whenever clipActive is. Takes the lock. For tests and fuzzers.
  void CheckInvariants() const;

  // The clip list, in order of addition. Guarded by lock.
  CClip* firstClip = nullptr;
  CClip* lastClip = nullptr;
  // Channel lookups, created on first use, owned. Guarded by lock.
  CTCLookup* lookups[kChannels];
  // The last search's result. Guarded by lock. currentPlayClip.clip is null
  // or a listed record: removing that record from the list clears both.
  uint8_t clipActive = 0;
  CPlayClip currentPlayClip;
  // The EDL line cursor (see edl/edl_line_cursor.h). Until a line has been
  // given since the last reset, edlLineTime/edlLineChannel are where the
  // scan starts; afterwards they are the start and channel of the last line
  // given, and edlFirstLine* those of the first. Unlocked, like
  // currentPlayClip, which the line reader shares with the clip search.
  uint32_t edlLineTime = 0;
  uint32_t edlLineChannel = 0;
  uint32_t edlFirstLineTime = 0;
  uint32_t edlFirstLineChannel = 0xFFFFFFFFu;  // 0xFFFFFFFF: no line given since the reset
  // The host's notifications. Called with lock held; they may re-enter the
  // space on the same thread. Unlocked: set while no other call runs.
  TcsClipCallback delClipCallback = nullptr;
  void* delClipContext = nullptr;
  TcsClipCallback addClipCallback = nullptr;
  void* addClipContext = nullptr;
  TcsClipCallback changeClipCallback = nullptr;
  void* changeClipContext = nullptr;
  QVCRITICALSECTION lock;
  // The bound file; empty when none. Written once, by tcsOpen.
  char fileName[kFileNameSize];
  // Stamps. Atomic, relaxed: some operations stamp before taking the lock,
  // and the change poll reads them without it.
  std::atomic<uint64_t> fileTime{0};
  std::atomic<uint32_t> changeStamp{0};
  std::atomic<uint32_t> checkStamp{0};
};

#endif  // TCS_SPACE_SPACE_H_
