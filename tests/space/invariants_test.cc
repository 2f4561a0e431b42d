// The checker must catch what it claims to: each case breaks one rule of a
// consistent space by hand and expects the checker to abort naming it.
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <iterator>

#include "support/test_clips.h"
#include "tcs.h"

// Present only in a build with clang's source-based coverage.
extern "C" int __llvm_profile_write_file(void) __attribute__((weak));

namespace {

// A death test's child aborts, which skips the coverage runtime's write at
// exit: the lines it ran would count as never run. Before the abort goes on,
// the child writes its counts.
void WriteCoverageThenAbort(int) {
  if (__llvm_profile_write_file != nullptr) __llvm_profile_write_file();
  std::signal(SIGABRT, SIG_DFL);
  std::raise(SIGABRT);
}

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
      {"not on the owning space's list",
       [](CTimeCodeSpace& s) {  // a play clip left holding a record of no space
         static CClip stranger;
         auto& first = const_cast<tcs::PlayClipNode&>(*s.lookups[0]->begin());
         stranger.start = first.start;
         stranger.length = first.length;
         first.clip = &stranger;
       }},
      {"holder count is wrong",
       [](CTimeCodeSpace& s) {  // a text given up once too few times
         const tcs::PooledText* text = s.lookups[0]->begin()->text;
         ++const_cast<tcs::PooledText*>(text)->refs;
       }},
      {"pool holds a text no play clip holds",
       [](CTimeCodeSpace& s) {  // a play clip holding a text from outside the pool
         static tcs::PooledText stray{};
         stray.refs = 1;
         auto& second = const_cast<tcs::PlayClipNode&>(*std::next(s.lookups[0]->begin()));
         --const_cast<tcs::PooledText*>(second.text)->refs;
         second.text = &stray;
       }},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    tcs_test::OpenedSpace space;
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(0, 10).get(), 0), 0u);
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(20, 10).get(), 0), 0u);
    space->CheckInvariants();  // consistent before the break
    EXPECT_DEATH(
        {
          std::signal(SIGABRT, WriteCoverageThenAbort);
          c.breakIt(*space);
          space->CheckInvariants();
        },
        c.message);
  }
}

}  // namespace
