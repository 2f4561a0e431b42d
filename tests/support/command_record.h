// Helpers for tests that drive a space through the command record: records
// built in one line, and a channel's play clips as plain spans.
#ifndef TCS_TESTS_SUPPORT_COMMAND_RECORD_H_
#define TCS_TESTS_SUPPORT_COMMAND_RECORD_H_

#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "tcs.h"

namespace tcs_test {

// A zeroed, full-size record of the right type and size for `command`.
// On the heap, so ASan sees a read past its 4188 bytes.
std::unique_ptr<TCSCMD> NewCommand(uint32_t command, uint32_t flags = 0,
                                   uint32_t sub_command = 0);

// A play clip as the timeline shows it: where it plays and the source frame
// its record starts with.
struct PlaySpan {
  uint32_t start;
  uint32_t length;
  uint32_t source_in;
  friend bool operator==(const PlaySpan&, const PlaySpan&) = default;
};
void PrintTo(const PlaySpan& span, std::ostream* os);

// The play clips of a channel in start order (none without a lookup).
std::vector<PlaySpan> PlaySpans(const CTimeCodeSpace& space, uint32_t channel);

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_COMMAND_RECORD_H_
