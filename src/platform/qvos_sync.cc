// Critical sections: a std::recursive_mutex placed in the caller's storage.
#include <mutex>
#include <new>

#include "platform/qvos.h"

namespace {

static_assert(sizeof(std::recursive_mutex) <= sizeof(QVCRITICALSECTION));
static_assert(alignof(std::recursive_mutex) <= alignof(QVCRITICALSECTION));

std::recursive_mutex* MutexOf(QVCRITICALSECTION* cs) {
  return std::launder(reinterpret_cast<std::recursive_mutex*>(cs->opaque));
}

}  // namespace

extern "C" {

void qvOSInitializeCriticalSection(QVCRITICALSECTION* cs) {
  new (cs->opaque) std::recursive_mutex();
}

void qvOSEnterCriticalSection(QVCRITICALSECTION* cs) { MutexOf(cs)->lock(); }

void qvOSLeaveCriticalSection(QVCRITICALSECTION* cs) { MutexOf(cs)->unlock(); }

void qvOSDeleteCriticalSection(QVCRITICALSECTION* cs) {
  MutexOf(cs)->~recursive_mutex();
}

}  // extern "C"
