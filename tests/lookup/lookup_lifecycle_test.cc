// A lookup's own lifecycle: emptying it is silent, destroying a non-empty one
// hands every record back to the space in start order.
#include <gtest/gtest.h>

#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs_test::ListedClips;
using tcs_test::MakeClip;
using tcs_test::NotificationLog;

// Three listed records played by a free-standing lookup, inserted out of order.
struct Fixture {
  NotificationLog notes;
  tcs_test::OpenedSpace space;
  std::vector<CClip*> by_start;
  std::unique_ptr<CTCLookup> lookup = std::make_unique<CTCLookup>(space.get());

  Fixture() {
    notes.Install(space.get());
    for (uint32_t start : {30u, 10u, 20u}) {
      CClip* record = space->__AddClipToList(0, MakeClip(start, 5).get(), 0);
      CPlayClip pc;
      pc.Construct(record);
      lookup->Insert(pc);
    }
    for (const auto& pc : *lookup) by_start.push_back(pc.clip);
  }
};

TEST(LookupLifecycle, EmptyingFreesPlayClipsAndKeepsRecordsSilently) {
  Fixture f;
  f.lookup->Clear();
  EXPECT_TRUE(f.lookup->empty());
  EXPECT_TRUE(f.notes.deleted.empty());
  EXPECT_EQ(ListedClips(*f.space).size(), 3u);
  f.space->DestroyLookup();  // the space's emptying reaches only its own lookups
  EXPECT_EQ(ListedClips(*f.space).size(), 3u);
}

TEST(LookupLifecycle, DestroyingRemovesRecordsInStartOrder) {
  Fixture f;
  ASSERT_EQ(f.by_start.size(), 3u);
  EXPECT_LT(f.by_start[0]->start, f.by_start[1]->start);
  f.lookup.reset();
  EXPECT_EQ(f.notes.deleted, f.by_start);
  EXPECT_TRUE(ListedClips(*f.space).empty());
}

TEST(LookupLifecycle, DestroyingIgnoresRecordsOfOtherSpacesAndMissingRecords) {
  Fixture f;
  tcs_test::OpenedSpace other;
  CClip* foreign = other->__AddClipToList(0, MakeClip(50, 5).get(), 0);
  CPlayClip pc;
  pc.Construct(foreign);
  f.lookup->Insert(pc);
  CPlayClip bare;
  bare.start = 60;
  f.lookup->Insert(bare);
  f.lookup.reset();
  EXPECT_EQ(f.notes.deleted.size(), 3u);
  EXPECT_EQ(ListedClips(*other), std::vector<CClip*>{foreign});
}

}  // namespace
