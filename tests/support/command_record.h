// Helpers for tests that drive a space through the command record: records
// built in one line, and a channel's play clips as plain spans.
#ifndef TCS_TESTS_SUPPORT_COMMAND_RECORD_H_
#define TCS_TESTS_SUPPORT_COMMAND_RECORD_H_

#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <vector>

#include "tcs.h"

namespace tcs_test {

// A zeroed, full-size record of the right type and size for `command`, on the
// heap so ASan sees a read past its 4188 bytes.
inline std::unique_ptr<TCSCMD> NewCommand(uint32_t command, uint32_t flags = 0,
                                          uint32_t sub_command = 0) {
  auto record = std::make_unique<TCSCMD>();
  record->type = TCSCMD_TYPE;
  record->size = TCSCMD_SIZE;
  record->command = command;
  record->flags = flags;
  record->subCommand = sub_command;
  return record;
}

inline bool SameBytes(const TCSCMD& a, const TCSCMD& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A play clip as the timeline shows it: where it plays and the source frame
// its record starts with.
struct PlaySpan {
  uint32_t start, length, source_in;
  friend bool operator==(const PlaySpan&, const PlaySpan&) = default;
  friend void PrintTo(const PlaySpan& s, std::ostream* os) {
    *os << "[" << s.start << ", +" << s.length << ") src " << s.source_in;
  }
};

// The play clips of a channel in start order (none without a lookup).
inline std::vector<PlaySpan> PlaySpans(const CTimeCodeSpace& space, uint32_t channel) {
  std::vector<PlaySpan> spans;
  if (const CTCLookup* lookup = space.LookupOf(channel)) {
    for (const auto& pc : *lookup) {
      spans.push_back({pc.start, pc.length, pc.clip != nullptr ? pc.clip->sourceIn : 0});
    }
  }
  return spans;
}

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_COMMAND_RECORD_H_
