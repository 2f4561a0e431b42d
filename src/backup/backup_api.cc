// The backup entry points: each checks its handle and calls one function.
// A null or closed space is refused with TCS_ERR_BAD_HANDLE, logged: the
// count, which has no status of its own, then answers 0.
#include "backup/backup_api.h"

#include "backup/backup_copy.h"
#include "backup/backup_restore.h"
#include "space/registry.h"
#include "space/space.h"
#include "space/status_log.h"
#include "tcs_status.h"

extern "C" {

unsigned int tcsGetNumberOfBackUpsAvailable(CTimeCodeSpace* space) {
  if (!tcs::IsOpenSpace(space)) {
    tcs::LogStatus(TCS_ERR_BAD_HANDLE);
    return 0;
  }
  return tcs::CountBackups(space->fileName);
}

unsigned int tcsSetBackUpRestore(CTimeCodeSpace* space, unsigned int n, char* restoredName) {
  if (!tcs::IsOpenSpace(space)) return tcs::LogStatus(TCS_ERR_BAD_HANDLE);
  return tcs::RestoreBackup(space->fileName, n, restoredName);
}

void CopyFileContents(char* destination, char* source) {
  tcs::CopyFileBytes(destination, source);
}

}  // extern "C"
