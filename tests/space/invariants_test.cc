// The checker must catch what it claims to: each case breaks one rule of a
// consistent space by hand and expects the checker to abort naming it.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>

#include "support/test_clips.h"
#include "tcs.h"

namespace {

TEST(InvariantsDeathTest, EachBrokenRuleIsNamed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const struct {
    const char* message;
    std::function<void(CTimeCodeSpace&)> breakIt;
  } cases[] = {
      {"prev link does not match", [](CTimeCodeSpace& s) { s.lastClip->prev = nullptr; }},
      {"lastClip is not the list's last", [](CTimeCodeSpace& s) { s.lastClip = s.firstClip; }},
      {"owned by another space", [](CTimeCodeSpace& s) { s.firstClip->owner = nullptr; }},
      {"names another channel", [](CTimeCodeSpace& s) { s.firstClip->channel = 5; }},
      {"range differs", [](CTimeCodeSpace& s) { s.firstClip->length += 1; }},
      {"starts not strictly increasing",
       [](CTimeCodeSpace& s) {  // a ripple writes starts in place: one written too far
         const auto second = std::next(s.lookups[0]->begin());
         const_cast<tcs::PlayClipNode&>(*second).start = 0;
         second->clip->start = 0;
       }},
      {"not listed",
       [](CTimeCodeSpace& s) {  // the first record taken off the list by hand
         CClip* c = s.firstClip;
         s.firstClip = c->next;
         s.firstClip->prev = nullptr;
       }},
      {"current play clip names a record",
       [](CTimeCodeSpace& s) {
         static CClip stranger;
         s.currentPlayClip.clip = &stranger;
       }},
      {"clipActive set without", [](CTimeCodeSpace& s) { s.clipActive = 1; }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    tcs_test::OpenedSpace space;
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(0, 10).get(), 0), 0u);
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(20, 10).get(), 0), 0u);
    space->CheckInvariants();  // consistent before the break
    EXPECT_DEATH(
        {
          c.breakIt(*space);
          space->CheckInvariants();
        },
        c.message);
  }
}

}  // namespace
