// SearchMode: the mode word of the play-clip search (CTCLookup::FindPlayClip),
// by field:
//   mode & 0x70   which number about the chosen play clip is returned
//   mode & 0x10F  what a gap yields: nothing, the previous, the next or the
//                 nearest play clip
//   mode & 0x3    permits the nearest search
// The searches the library makes itself are named constructors; a host's
// word goes through FromWord unchanged, whatever bits it sets.
#ifndef TCS_LOOKUP_SEARCH_MODE_H_
#define TCS_LOOKUP_SEARCH_MODE_H_

#include <cstdint>

namespace tcs {

class SearchMode {
 public:
  static constexpr uint32_t kSelectorMask = 0x70;
  static constexpr uint32_t kGapPolicyMask = 0x10F;
  static constexpr uint32_t kNearestAllowedMask = 0x3;

  // Selectors.
  static constexpr uint32_t kSelectStart = 0x10;     // the play clip's start
  static constexpr uint32_t kSelectTimecode = 0x40;  // the timecode searched for
  // Gap policies.
  static constexpr uint32_t kGapTakesNext = 0x08;    // the first play clip after t

  // The start of the play clip covering t, else of the first one after t
  // (word 0x18): the clip walk's search and the EDL line reader's.
  static constexpr SearchMode StartOfCoverOrNext() {
    return SearchMode(kSelectStart | kGapTakesNext);
  }
  // t itself when a play clip covers it, else nothing (word 0x40).
  static constexpr SearchMode CoverOnly() { return SearchMode(kSelectTimecode); }
  static constexpr SearchMode FromWord(uint32_t word) { return SearchMode(word); }

  constexpr uint32_t word() const { return word_; }
  constexpr uint32_t selector() const { return word_ & kSelectorMask; }
  constexpr uint32_t gap_policy() const { return word_ & kGapPolicyMask; }
  constexpr bool nearest_allowed() const { return (word_ & kNearestAllowedMask) != 0; }

 private:
  explicit constexpr SearchMode(uint32_t word) : word_(word) {}
  uint32_t word_;
};

static_assert(SearchMode::StartOfCoverOrNext().word() == 0x18);
static_assert(SearchMode::CoverOnly().word() == 0x40);

}  // namespace tcs

#endif  // TCS_LOOKUP_SEARCH_MODE_H_
