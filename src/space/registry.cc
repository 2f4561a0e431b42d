// The registry of open spaces. The list itself is the exported dlTCS; the
// lock that guards it is this file's own and is not exported.
#include "space/registry.h"

#include <cstring>
#include <memory>
#include <mutex>
#include <shared_mutex>

#include "space/space.h"
#include "space/space_api.h"
#include "space/status_log.h"
#include "tcs_status.h"

extern "C" {
QVLIST dlTCS = {};
}

namespace tcs {
namespace {

// Guards dlTCS and every entry's refCount. Handle checks share it; opening
// and closing take it alone. Never held while a space is built, emptied or
// deleted, so a host notification that re-enters the library (a delete
// notification running inside a close, say) cannot deadlock on it.
std::shared_mutex& RegistryMutex() {
  static std::shared_mutex mutex;  // built on first use: safe from static init order
  return mutex;
}

SpaceEntry* EntryOf(QVLISTNODE* node) { return reinterpret_cast<SpaceEntry*>(node); }

// REQUIRES: RegistryMutex() held, shared or alone.
SpaceEntry* FindEntry(const CTimeCodeSpace* handle) {
  if (handle == nullptr) return nullptr;
  for (QVLISTNODE* node = ListHead(&dlTCS); node != nullptr; node = ListNext(node)) {
    if (EntryOf(node)->space == handle) return EntryOf(node);
  }
  return nullptr;
}

}  // namespace

CTimeCodeSpace* OpenSpace(CTimeCodeSpace* handle, const char* path) {
  {
    std::unique_lock lock(RegistryMutex());
    if (SpaceEntry* entry = FindEntry(handle)) {
      ++entry->refCount;
      return handle;
    }
  }
  // A path that does not fit would bind the space to a cut name: a different
  // file, whose backups a restore would then overwrite. Refuse instead.
  if (path != nullptr && strnlen(path, CTimeCodeSpace::kFileNameSize) >=
                             CTimeCodeSpace::kFileNameSize) {
    LogStatus(TCS_ERR_BAD_ARGUMENTS);
    return nullptr;
  }
  auto entry = std::make_unique<SpaceEntry>();
  ListInitNode(&entry->link);
  entry->refCount = 1;
  auto space = std::make_unique<CTimeCodeSpace>();
  if (path != nullptr) {
    std::strcpy(space->fileName, path);
    space->fileTime.store(qvOSFileTimeModified(path), std::memory_order_relaxed);
  }
  space->clipActive = 0;
  CTimeCodeSpace* opened = space.release();
  entry->space = opened;
  std::unique_lock lock(RegistryMutex());
  ListAddTail(&dlTCS, &entry.release()->link);
  return opened;
}

uint32_t CloseSpace(CTimeCodeSpace* handle) {
  std::unique_ptr<SpaceEntry> doomed;
  {
    std::unique_lock lock(RegistryMutex());
    if (dlTCS.count == 0) return TCS_OK;
    SpaceEntry* entry = FindEntry(handle);
    if (entry == nullptr) {
      lock.unlock();
      return LogStatus(TCS_ERR_BAD_HANDLE);
    }
    if (entry->refCount > 1) {
      --entry->refCount;
      return TCS_OK;
    }
    ListRemove(&dlTCS, &entry->link);
    doomed.reset(entry);
  }
  // Unlisted: no other thread can reach the space through the registry now.
  std::unique_ptr<CTimeCodeSpace> space(doomed->space);
  space->Destroy();
  return TCS_OK;
}

bool IsOpenSpace(const CTimeCodeSpace* handle) {
  std::shared_lock lock(RegistryMutex());
  return FindEntry(handle) != nullptr;
}

}  // namespace tcs
