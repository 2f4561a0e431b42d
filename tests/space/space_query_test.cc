// tcsTranslate against the space's own copying queries it is made of: the
// translation into a play clip and, with bit 0 of the mode, the clip search
// in a gap. Random channels with overlaps, record-less play clips and
// records the host moved away from their play clip, every frame, every gap
// policy. TCS_QUERY_SEED and TCS_QUERY_RUNS move the seeds.
#include <gtest/gtest.h>

#include <cstdint>

#include "lookup/lookup.h"
#include "record/timecode.h"
#include "space/space.h"
#include "support/random_channel.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

using tcs::kNotFound;

// The answer and record through CPlayClip copies, as a host calling the
// space's members would put them together.
uint32_t CopyingTranslate(CTimeCodeSpace& space, uint32_t mode, uint32_t t, uint32_t channel,
                          CClip*& found) {
  CPlayClip pc;
  pc.clip = nullptr;
  uint32_t result = space.Translate(t, pc, channel);
  if ((mode & 1u) != 0 && result == kNotFound) result = space.FindPlayClip(mode, t, pc, channel);
  found = result == kNotFound ? nullptr : pc.clip;
  return result;
}

void Compare(uint64_t seed) {
  tcs_test::Dice u(seed);
  tcs_test::OpenedSpace opened;
  CTimeCodeSpace& space = *opened;
  for (int i = 0, n = int(u(0, 20)); i < n; ++i) {
    const auto made = tcs_test::MakeClip(u(0, 150), u(0, 6) == 0 ? 0 : u(1, 40), u(0, 5000));
    made->sourceOrigin = u(0, 5000);
    CClip* record = tcs_test::LayPlayClip(space, 0, *made, u(0, 7) != 0);
    if (u(0, 9) == 0) record->start += u(1, 5);  // the host wrote into its record
  }
  const uint32_t modes[] = {0x00, 0x01, 0x11, 0x15, 0x19, 0x13, 0x71, 0x31, 0x18};
  for (const uint32_t mode : modes) {
    for (uint32_t t = 0; t < 200; ++t) {
      for (const uint32_t channel : {0u, 5u}) {  // 5 has no lookup
        CClip* want = nullptr;
        CClip* got = reinterpret_cast<CClip*>(&space);  // overwritten either way
        const uint32_t answer = CopyingTranslate(space, mode, t, channel, want);
        ASSERT_EQ(tcsTranslate(&space, mode, t, &got, channel), answer)
            << "mode " << mode << " t " << t << " channel " << channel;
        ASSERT_EQ(got, want) << "mode " << mode << " t " << t << " channel " << channel;
      }
    }
  }
}

TEST(SpaceQuery, TranslateAnswersAsTheCopyingQueries) {
  tcs_test::ForEachSeed("TCS_QUERY", 301, 150, Compare);
}

}  // namespace
