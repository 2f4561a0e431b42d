// WalkSearch: the clip search as the clip walk makes it, many times per step
// with the space's lock held throughout. Each search answers exactly what
// FindClip would (value and record, the retry from 0 included), but the
// effects FindClip has on the space (the found play clip copied into the
// scratch currentPlayClip, clipActive set or cleared) are only noted: Flush
// applies what the searches so far would have left, which is one 4 KB copy
// of the last play clip found instead of one per search.
//
// A step asks the same channel the same question more than once (the event
// pass asks at the event's start, which the sweep asked already), so each
// channel remembers its last search and answers a repeat without a descent.
// Flush forgets them: a caller's copy of a record made after it may change
// a record a search result reads. Every search starts from where the last
// one on its channel settled, which the lookup keeps between steps (see
// CTCLookup::WalkHint): a walk's searches on a channel lie close together.
//
// A search whose answer the walk does not need (a channel it passes over)
// is only noted: of the searches since the last one that settled on a play
// clip, only those decide what Flush writes, and a noted one runs only if
// nothing asked after it overrides its effects.
//
// Thread safety: REQUIRES the space's lock, held by the calling thread from
// the first search until after Flush; nothing may edit the space between
// them (the noted play clip is a position into a lookup).
#ifndef TCS_COMMAND_WALK_SEARCH_H_
#define TCS_COMMAND_WALK_SEARCH_H_

#include <cstdint>

#include "lookup/play_clip_node.h"

class CClip;
class CTimeCodeSpace;

namespace tcs {

class WalkSearch {
 public:
  explicit WalkSearch(CTimeCodeSpace& space) : space_(space) {}
  WalkSearch(const WalkSearch&) = delete;
  WalkSearch& operator=(const WalkSearch&) = delete;

  // As FindClip(space, mode, t, found, channel).
  uint32_t Find(uint32_t mode, uint32_t t, CClip*& found, uint32_t channel);
  // As Find, for its effects alone. With `follow`, a search that finds a
  // record whose value lies before t is followed by a second at the end of
  // that record, as the walk's sweep asks.
  void Note(uint32_t mode, uint32_t t, uint32_t channel, bool follow);
  // The channel has a lookup holding play clips.
  bool InScan(uint32_t channel) const;
  // Writes the scratch play clip and clipActive as the searches since the
  // last Flush left them; nothing when there were none.
  void Flush();

 private:
  // One search's answer and its effects on the scratch state.
  struct Answer {
    uint32_t mode;
    uint32_t t;
    uint32_t result;
    CClip* found;
    const PlayClipNode* chosen;  // the last play clip the search settled on
    uint8_t active;
  };
  struct Noted {
    uint32_t mode;
    uint32_t t;
    uint32_t channel;
    bool follow;
  };
  static constexpr uint32_t kRemembered = 64;  // channels 0..63 (the walk's)
  static constexpr uint32_t kMaxNoted = 64;    // two sweeps and an event pass

  // The answer, remembered or searched for; no effect on the scratch state.
  // Valid until the next Ask on the same channel (channels from 64 on share
  // one answer).
  const Answer& Ask(uint32_t mode, uint32_t t, uint32_t channel);
  void Search(uint32_t mode, uint32_t t, uint32_t channel, Answer& answer);
  // Runs the noted searches that still count, latest first, into
  // last_found_ and active_; forgets them all.
  void Settle();

  CTimeCodeSpace& space_;
  const PlayClipNode* last_found_ = nullptr;  // the scratch play clip, once copied
  bool searched_ = false;                     // clipActive is to be written
  uint8_t active_ = 0;
  bool active_noted_ = false;  // active_ waits for the latest search, a noted one
  uint32_t noted_count_ = 0;   // searches noted since one settled on a play clip
  Noted noted_[kMaxNoted];
  uint64_t remembered_ = 0;  // bit c: answers_[c] holds channel c's last search
  Answer answers_[kRemembered];
  Answer unremembered_;  // the last answer on a channel from 64 on
};

}  // namespace tcs

#endif  // TCS_COMMAND_WALK_SEARCH_H_
