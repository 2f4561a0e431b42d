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
// a record a search result reads.
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
  static constexpr uint32_t kRemembered = 64;  // channels 0..63 (the walk's)

  Answer Search(uint32_t mode, uint32_t t, uint32_t channel) const;

  CTimeCodeSpace& space_;
  const PlayClipNode* last_found_ = nullptr;  // the scratch play clip, once copied
  bool searched_ = false;                     // clipActive is to be written
  uint8_t active_ = 0;
  uint64_t remembered_ = 0;  // bit c: answers_[c] holds channel c's last search
  Answer answers_[kRemembered];
};

}  // namespace tcs

#endif  // TCS_COMMAND_WALK_SEARCH_H_
