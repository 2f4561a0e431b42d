// SpaceLock: holds a space's recursive lock for a scope, so that anything
// that propagates leaves no lock held.
#ifndef TCS_SPACE_SPACE_LOCK_H_
#define TCS_SPACE_SPACE_LOCK_H_

#include "space/space.h"

namespace tcs {

class SpaceLock {
 public:
  explicit SpaceLock(CTimeCodeSpace& space) : space_(space) {
    qvOSEnterCriticalSection(&space_.lock);
  }
  SpaceLock(const SpaceLock&) = delete;
  SpaceLock& operator=(const SpaceLock&) = delete;
  ~SpaceLock() { qvOSLeaveCriticalSection(&space_.lock); }

 private:
  CTimeCodeSpace& space_;
};

}  // namespace tcs

#endif  // TCS_SPACE_SPACE_LOCK_H_
