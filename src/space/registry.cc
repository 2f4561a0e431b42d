#include "space/registry.h"

#include <cstring>
#include <memory>

#include "space/space.h"
#include "space/space_api.h"
#include "space/status_log.h"
#include "tcs_status.h"

extern "C" {
QVLIST dlTCS = {};
}

namespace tcs {
namespace {

SpaceEntry* EntryOf(QVLISTNODE* node) { return reinterpret_cast<SpaceEntry*>(node); }

SpaceEntry* FindEntry(const CTimeCodeSpace* handle) {
  if (handle == nullptr) return nullptr;
  for (QVLISTNODE* node = ListHead(&dlTCS); node != nullptr; node = ListNext(node)) {
    if (EntryOf(node)->space == handle) return EntryOf(node);
  }
  return nullptr;
}

}  // namespace

CTimeCodeSpace* OpenSpace(CTimeCodeSpace* handle, const char* path) {
  if (SpaceEntry* entry = FindEntry(handle)) {
    ++entry->refCount;
    return handle;
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
  ListAddTail(&dlTCS, &entry.release()->link);
  return opened;
}

uint32_t CloseSpace(CTimeCodeSpace* handle) {
  if (dlTCS.count == 0) return TCS_OK;
  SpaceEntry* entry = FindEntry(handle);
  if (entry == nullptr) return LogStatus(TCS_ERR_BAD_HANDLE);
  if (entry->refCount > 1) {
    --entry->refCount;
    return TCS_OK;
  }
  ListRemove(&dlTCS, &entry->link);
  std::unique_ptr<SpaceEntry> doomed(entry);
  std::unique_ptr<CTimeCodeSpace> space(entry->space);
  space->Destroy();
  return TCS_OK;
}

bool IsOpenSpace(const CTimeCodeSpace* handle) { return FindEntry(handle) != nullptr; }

}  // namespace tcs
