// The registry of open spaces (dlTCS): one entry per space, owning it, with
// the number of opens not yet matched by a close.
//
// Thread safety: the functions below may be called from any thread at any
// time. A lock of the registry's own (not exported) lets handle checks run
// together and makes opening and closing exclusive. The host still
// serialises tcsClose of a space with the other calls on that space: a
// handle that passed the check stays valid only until its last close.
#ifndef TCS_SPACE_REGISTRY_H_
#define TCS_SPACE_REGISTRY_H_

#include <cstdint>

#include "platform/qvos.h"

class CTimeCodeSpace;

namespace tcs {

struct SpaceEntry {
  QVLISTNODE link;  // first: an entry is reached from its node
  int32_t refCount;
  CTimeCodeSpace* space;  // owned
};

// Shares `handle` when it is open, else opens a new space bound to `path`.
// Null when the path does not fit the space's file name.
CTimeCodeSpace* OpenSpace(CTimeCodeSpace* handle, const char* path);
// 0, or TCS_ERR_BAD_HANDLE (logged) for a handle that is not open.
uint32_t CloseSpace(CTimeCodeSpace* handle);
// The one handle check of the entry points: true for a space that is open.
bool IsOpenSpace(const CTimeCodeSpace* handle);

}  // namespace tcs

#endif  // TCS_SPACE_REGISTRY_H_
