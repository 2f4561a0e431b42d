#include "command/walk_search.h"

#include "command/clip_search.h"
#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"

namespace tcs {

bool WalkSearch::InScan(uint32_t channel) const {
  const CTCLookup* lookup = space_.LookupOf(channel);
  return lookup != nullptr && !lookup->empty();
}

// Step for step FindClip: the lookup's search copies whatever play clip it
// settles on into the scratch play clip, even when the value it selects
// reads as not found; the flag follows the final answer.
WalkSearch::Answer WalkSearch::Search(uint32_t mode, uint32_t t, uint32_t channel) const {
  Answer answer{mode, t, kNotFound, nullptr, nullptr, 0};
  const CTCLookup* lookup = space_.LookupOf(channel);
  if (lookup == nullptr) return answer;
  CTCLookup::Position chosen;
  answer.result = lookup->FindPlayClip(mode, t, chosen);
  if (chosen != lookup->end()) answer.chosen = &*chosen;
  if ((mode & kSearchRetryFromStart) != 0 && answer.result == kNotFound) {
    answer.result = lookup->FindPlayClip(mode, 0, chosen);
    if (chosen != lookup->end()) answer.chosen = &*chosen;
  }
  if (answer.result != kNotFound) {
    answer.found = chosen->clip;
    answer.active = answer.found != nullptr ? 1 : 0;
  }
  return answer;
}

uint32_t WalkSearch::Find(uint32_t mode, uint32_t t, CClip*& found, uint32_t channel) {
  Answer answer;
  const bool rememberable = channel < kRemembered;
  const uint64_t bit = rememberable ? uint64_t(1) << channel : 0;
  if ((remembered_ & bit) != 0 && answers_[channel].mode == mode && answers_[channel].t == t) {
    answer = answers_[channel];
  } else {
    answer = Search(mode, t, channel);
    if (rememberable) {
      answers_[channel] = answer;
      remembered_ |= bit;
    }
  }
  searched_ = true;
  if (answer.chosen != nullptr) last_found_ = answer.chosen;
  active_ = answer.active;
  found = answer.found;
  return answer.result;
}

void WalkSearch::Flush() {
  if (last_found_ != nullptr) last_found_->CopyTo(space_.currentPlayClip);
  if (searched_) space_.clipActive = active_;
  last_found_ = nullptr;
  searched_ = false;
  remembered_ = 0;
}

}  // namespace tcs
