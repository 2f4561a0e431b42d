#include "platform/vsync.h"

#include <atomic>
#include <chrono>

namespace {

std::atomic<unsigned int (*)(void)> clock_hook{nullptr};

}  // namespace

extern "C" {

unsigned int vsyncGetCurMs(void) {
  if (auto hook = clock_hook.load(std::memory_order_acquire)) return hook();
  const auto since = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<unsigned int>(
      std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
}

void vsyncSetClock(unsigned int (*now)(void)) {
  clock_hook.store(now, std::memory_order_release);
}

}  // extern "C"
