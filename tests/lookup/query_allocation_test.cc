// No query allocates: the point queries, the searches and the walk run with
// the global operator new counting, over a space with shared and distinct
// effect texts on several channels.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "support/allocation_count.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

TEST(QueryAllocation, QueriesAndTheWalkAllocateNothing) {
  tcs_test::OpenedSpace space;
  for (uint32_t channel : {0u, 1u, 32u}) {
    for (uint32_t i = 0; i < 300; ++i) {
      const std::string name = "tape " + std::to_string(i % 7);
      auto record = tcs_test::MakeClip(i * 20 + channel, 15, i * 100, name.c_str());
      const std::string effect = i % 3 == 0 ? "" : "fx " + std::to_string(i % 5);
      record->SetEffect(i % 4, const_cast<char*>(effect.c_str()), 10);
      ASSERT_EQ(tcsAddClip(space.get(), record.get(), channel), 0u);
    }
  }
  auto walk = std::make_unique<TCSCMD>();
  walk->outPoint = 0xFFFFFFFFu;
  CPlayClip out;
  CClip* found = nullptr;
  const CTCLookup& lookup = *space->LookupOf(0);
  uint64_t answers = 0;  // so that no query is dropped as unused

  const uint64_t before = tcs_test::AllocationsSoFar();
  for (uint32_t t = 0; t < 6100; t += 3) {
    answers += lookup.find(t) != lookup.end();
    answers += lookup.findle(t) != lookup.end();
    answers += lookup.findge(t) != lookup.end();
    answers += lookup.Translate(t, out);
    for (uint32_t mode : {0x10u, 0x18u, 0x19u, 0x24u, 0x40u, 0x72u}) {
      answers += lookup.FindPlayClip(mode, t, out);
      answers += tcsFindClip(space.get(), mode, t, &found, t % 3 == 0 ? 32 : 1);
      answers += tcsTranslate(space.get(), mode, t, &found, 0);
    }
    answers += tcsClipActive(space.get());
  }
  int events = 0;
  while (tcsFindNextClip(space.get(), walk.get(), 0, nullptr) != 0x80000001u) ++events;
  const uint64_t after = tcs_test::AllocationsSoFar();

  EXPECT_EQ(after, before);
  EXPECT_GT(events, 300);
  EXPECT_NE(answers, 0u);
}

}  // namespace
