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
void WalkSearch::Search(uint32_t mode, uint32_t t, uint32_t channel, Answer& answer) {
  answer = Answer{mode, t, kNotFound, nullptr, nullptr, 0};
  const CTCLookup* lookup = space_.LookupOf(channel);
  if (lookup == nullptr) return;
  CTCLookup::Position hint = lookup->WalkHint();
  CTCLookup::Position chosen;
  answer.result = lookup->FindPlayClip(mode, t, chosen, hint);
  if (chosen != lookup->end()) {
    answer.chosen = &*chosen;
    hint = chosen;
  }
  if ((mode & kSearchRetryFromStart) != 0 && answer.result == kNotFound) {
    answer.result = lookup->FindPlayClip(mode, 0, chosen, hint);
    if (chosen != lookup->end()) {
      answer.chosen = &*chosen;
      hint = chosen;
    }
  }
  lookup->KeepWalkHint(hint);
  if (answer.result != kNotFound) {
    answer.found = chosen->clip;
    answer.active = answer.found != nullptr ? 1 : 0;
  }
}

const WalkSearch::Answer& WalkSearch::Ask(uint32_t mode, uint32_t t, uint32_t channel) {
  if (channel >= kRemembered) {
    Search(mode, t, channel, unremembered_);
    return unremembered_;
  }
  Answer& answer = answers_[channel];
  const uint64_t bit = uint64_t(1) << channel;
  if ((remembered_ & bit) == 0 || answer.mode != mode || answer.t != t) {
    Search(mode, t, channel, answer);
    remembered_ |= bit;
  }
  return answer;
}

// A search that settles on a play clip overrides every effect of the noted
// ones before it; one that does not still decides clipActive.
uint32_t WalkSearch::Find(uint32_t mode, uint32_t t, CClip*& found, uint32_t channel) {
  const Answer& answer = Ask(mode, t, channel);
  searched_ = true;
  if (answer.chosen != nullptr) {
    last_found_ = answer.chosen;
    noted_count_ = 0;
  }
  active_ = answer.active;
  active_noted_ = false;
  found = answer.found;
  return answer.result;
}

void WalkSearch::Note(uint32_t mode, uint32_t t, uint32_t channel, bool follow) {
  if (noted_count_ == kMaxNoted) Settle();
  noted_[noted_count_++] = Noted{mode, t, channel, follow};
  searched_ = true;
  active_noted_ = true;
}

// The space has not changed since the searches were noted, so running them
// now answers what running them then would have.
void WalkSearch::Settle() {
  for (uint32_t i = noted_count_; i-- > 0;) {
    const Noted& noted = noted_[i];
    Answer answer = Ask(noted.mode, noted.t, noted.channel);
    const PlayClipNode* chosen = answer.chosen;
    if (noted.follow && answer.found != nullptr && answer.result < noted.t) {
      answer = Ask(noted.mode, answer.found->start + answer.found->length, noted.channel);
      if (answer.chosen != nullptr) chosen = answer.chosen;
    }
    if (active_noted_) {
      active_ = answer.active;
      active_noted_ = false;
    }
    if (chosen != nullptr) {
      last_found_ = chosen;
      break;
    }
  }
  noted_count_ = 0;
}

void WalkSearch::Flush() {
  Settle();
  if (last_found_ != nullptr) last_found_->CopyTo(space_.currentPlayClip);
  if (searched_) space_.clipActive = active_;
  last_found_ = nullptr;
  searched_ = false;
  remembered_ = 0;
}

}  // namespace tcs
