// Helpers for tests that drive a space through the command record: records
// built in one line.
#ifndef TCS_TESTS_SUPPORT_COMMAND_RECORD_H_
#define TCS_TESTS_SUPPORT_COMMAND_RECORD_H_

#include <cstdint>
#include <cstring>
#include <memory>

#include "support/test_clips.h"
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

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_COMMAND_RECORD_H_
