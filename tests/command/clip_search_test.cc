// tcsFindClip: the clip handed back, the current clip it leaves behind, the
// retry from timecode 0 under bit 0 of the mode; the current clip's life.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/test_clips.h"
#include "tcs.h"

namespace {

constexpr uint32_t kNotFound = 0x80000001u;

// Clip a at [0, 10) on channel 0 plays source frames from 0x7FFFFFFC, so its
// source frame at 5 is exactly the not-found answer.
TEST(ClipSearch, FindingSetsTheCurrentClip) {
  tcs_test::OpenedSpace space;
  ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(0, 10, 0x7FFFFFFC, "a").get(), 0), 0u);
  CClip* const a = space->lookups[0]->begin()->clip;
  const uint32_t cases[][4] = {  // mode, timecode, channel, answer
      {0x10, 5, 0, 0},
      {0x70, 5, 0, kNotFound},
      {0x71, 5, 0, 0x7FFFFFFC},  // bit 0: searched again from 0
      {0x10, 5, 1, kNotFound},   // no lookup on channel 1
  };
  for (const auto& [mode, t, channel, answer] : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << "mode 0x" << mode << " ch " << channel);
    const bool found = answer != kNotFound;
    space->clipActive = found ? 0 : 1;
    CClip* out = nullptr;
    EXPECT_EQ(tcsFindClip(space.get(), mode, t, &out, channel), answer);
    EXPECT_EQ(out, found ? a : nullptr);
    EXPECT_EQ(tcsClipActive(space.get()), found ? 1u : 0u);
  }
}

// The current clip names a record of the space; every way a record can leave
// the list takes the current clip with it, and the current-clip entry points
// then answer that there is none instead of reading freed memory. An edit
// that only cuts the record keeps it current.
TEST(ClipSearch, TheCurrentClipGoesWithItsRecord) {
  const struct {
    const char* name;
    void (*edit)(CTimeCodeSpace&);
    bool stays;
  } cases[] = {
      {"blank", [](CTimeCodeSpace& s) { s.ModifyRange(0, 100, 1, 0, TCS_EDIT_BLANK); }, false},
      {"overwrite", [](CTimeCodeSpace& s) { s.AddClip(0, tcs_test::MakeClip(0, 50).get(), 0); },
       false},
      {"destroy", [](CTimeCodeSpace& s) { s.Destroy(); }, false},
      {"cut", [](CTimeCodeSpace& s) { s.ModifyRange(0, 5, 1, 0, TCS_EDIT_BLANK); }, true},
      {"other clip", [](CTimeCodeSpace& s) { s.ModifyRange(40, 60, 1, 0, TCS_EDIT_BLANK); }, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    tcs_test::OpenedSpace space;
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(0, 10, 7, "a").get(), 0), 0u);
    ASSERT_EQ(tcsAddClip(space.get(), tcs_test::MakeClip(40, 10, 9, "b").get(), 0), 0u);
    CClip* found = nullptr;
    ASSERT_EQ(tcsFindClip(space.get(), 64, 8, &found, 0), 8u);
    c.edit(*space);
    space->CheckInvariants();
    CClip copy;
    const uint32_t expected = c.stays ? 0u : 0xA808F003u;
    EXPECT_EQ(tcsClipActive(space.get()), c.stays ? 1u : 0u);
    EXPECT_EQ(tcsGetCurClip(space.get(), &copy), expected);
    EXPECT_STREQ(copy.name, c.stays ? "a" : nullptr);  // else left alone
    auto replacement = tcs_test::MakeClip(200, 10, 3, "r");
    EXPECT_EQ(tcsSetCurClip(space.get(), replacement.get()), expected);
  }
}

}  // namespace
