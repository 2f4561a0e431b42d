// The test binary replaces the global operator new: every allocation made
// through it, on any thread, is counted here.
#ifndef TCS_TESTS_SUPPORT_ALLOCATION_COUNT_H_
#define TCS_TESTS_SUPPORT_ALLOCATION_COUNT_H_

#include <cstdint>

namespace tcs_test {

uint64_t AllocationsSoFar();

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_ALLOCATION_COUNT_H_
