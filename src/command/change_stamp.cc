// The change stamp protocol as the host's record sees it.
#include "command/change_stamp.h"

#include <cstdint>

#include "platform/qvos.h"
#include "platform/vsync.h"
#include "space/space.h"
#include "space/space_lock.h"

namespace tcs {
namespace {

// The file is looked at only when the clock has moved more than this far from
// checkStamp, either way.
constexpr int64_t kCheckIntervalMs = 10000;

// Taken in 64 bits, so a clock that wrapped past 2^32 since the last check
// counts as far away, not as a few milliseconds.
bool DueForCheck(uint32_t now, uint32_t check_stamp) {
  const int64_t difference = int64_t{now} - int64_t{check_stamp};
  return difference > kCheckIntervalMs || difference < -kCheckIntervalMs;
}

}  // namespace

uint32_t PollChangeStamp(CTimeCodeSpace& space, TCSCMD& record) {
  SpaceLock lock(space);
  record.inPoint = 0;
  if (DueForCheck(vsyncGetCurMs(), space.checkStamp.load(std::memory_order_relaxed))) {
    space.checkStamp.store(vsyncGetCurMs(), std::memory_order_relaxed);
    if (qvOSFileTimeModified(space.fileName) != space.fileTime.load(std::memory_order_relaxed)) {
      space.changeStamp.store(space.checkStamp.load(std::memory_order_relaxed),
                              std::memory_order_relaxed);
      record.inPoint = 1;
    }
  }
  return space.changeStamp.load(std::memory_order_relaxed);
}

uint32_t SetChangeStamp(CTimeCodeSpace& space, const TCSCMD& record) {
  SpaceLock lock(space);
  space.changeStamp.store(record.position, std::memory_order_relaxed);
  space.checkStamp.store(record.position, std::memory_order_relaxed);
  space.fileTime.store(qvOSFileTimeModified(space.fileName), std::memory_order_relaxed);
  return space.changeStamp.load(std::memory_order_relaxed);
}

}  // namespace tcs
