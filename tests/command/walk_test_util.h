// Shared by the clip search and clip walk tests: clips laid on a space in one
// line, and a walk record stepped one event at a time.
#ifndef TCS_TESTS_COMMAND_WALK_TEST_UTIL_H_
#define TCS_TESTS_COMMAND_WALK_TEST_UTIL_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <vector>

#include "support/test_clips.h"
#include "tcs.h"

namespace tcs_test {

struct Laid {
  uint32_t channel, start, length, source_in;
  const char* name;
  uint32_t source_out = 0;  // 0: source_in + length
};

inline void Lay(CTimeCodeSpace* space, const std::vector<Laid>& clips) {
  for (const Laid& c : clips) {
    auto clip = MakeClip(c.start, c.length, c.source_in, c.name);
    if (c.source_out != 0) clip->sourceOut = c.source_out;
    ASSERT_EQ(tcsAddClip(space, clip.get(), c.channel), 0u);
  }
}

// A record as a walk starts it: position 0, no limit on the first call.
inline TCSCMD WalkRecord(uint32_t flags = 0, uint32_t position = 0) {
  TCSCMD record{};
  record.type = TCSCMD_TYPE;
  record.command = TCSCMD_GET;
  record.subCommand = TCSSUB_NEXT;
  record.flags = flags;
  record.position = position;
  record.outPoint = 0xFFFFFFFFu;
  return record;
}

// What one step answers, and the masks the record holds afterwards.
struct Step {
  uint32_t result, video, audio;
  friend bool operator==(const Step&, const Step&) = default;
};

inline void PrintTo(const Step& s, std::ostream* os) {
  *os << std::hex << "{0x" << s.result << ", v 0x" << s.video << ", a 0x" << s.audio << "}";
}

// Steps with freshMarks false until the end (or `max` steps).
inline std::vector<Step> WalkAll(CTimeCodeSpace* space, TCSCMD& record, size_t max = 64) {
  std::vector<Step> steps;
  while (steps.size() < max) {
    const uint32_t r = tcsFindNextClip(space, &record, 0, nullptr);
    steps.push_back({r, record.videoMask, record.audioMask});
    if (r == 0x80000001u) break;
  }
  return steps;
}

}  // namespace tcs_test

#endif  // TCS_TESTS_COMMAND_WALK_TEST_UTIL_H_
