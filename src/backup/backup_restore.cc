// The restore, drawn for backups 000..003 of /d/t.spc (contents A B C D):
//
//   n = 1:  t.spc=A  000=B 001=C 002=D
//   n = 2:  t.spc=B  001=C 002=D            (000 deleted; a count now gives 0)
//   n = 0:  t.-01.spc=A  000=B 001=C 002=D  (nothing restored)
//
// Every backup after the restored one moves down by exactly one number.
#include "backup/backup_restore.h"

#include <cassert>
#include <cstdio>
#include <cstring>

#include "backup/backup_copy.h"
#include "backup/backup_names.h"
#include "platform/errlog.h"
#include "platform/qvos.h"
#include "tcs_status.h"

namespace tcs {
namespace {

// A backup before the restored one goes. A failure is logged and becomes the
// result; the restore goes on.
void DeleteEarlier(const char* backup, uint32_t* result) {
  if (qvOSFileExists(backup) && !qvOSDeleteFile(backup)) {
    *result = qvOSGetLastError();
    ErrOut("Can not delete file %s", backup);
  }
}

// The backup becomes the file: renamed over it when the file can be deleted,
// else (the file in use) copied into it and then deleted. False when neither
// could be done: the backup is kept, and the failed deletion of the file is
// logged and becomes the result.
bool RestoreOver(const char* backup, const char* own, uint32_t* result) {
  if (qvOSDeleteFile(own)) {
    std::rename(backup, own);  // a failed rename is not looked at
    return true;
  }
  const uint32_t delete_error = qvOSGetLastError();
  if (!CopyFileBytes(own, backup)) {
    *result = delete_error;
    ErrOut("Can not delete file %s", own);
    return false;
  }
  qvOSDeleteFile(backup);
  return true;
}

// A later backup takes the number below. A file already there (the -1 file,
// or one a failed rename left) gets the backup's bytes, and then the backup
// goes. False when that copy could not be made: the backup is kept.
bool MoveDown(const char* backup, const char* lower) {
  if (!qvOSFileExists(backup)) return true;
  if (!qvOSFileExists(lower)) {
    std::rename(backup, lower);  // a failed rename is not looked at
    return true;
  }
  if (!CopyFileBytes(lower, backup)) return false;
  qvOSDeleteFile(backup);
  return true;
}

}  // namespace

uint32_t CountBackups(const char* file_name) {
  if (!qvOSFileExists(file_name)) return 0;
  const std::optional<BackupNames> names = BackupNames::Of(file_name);
  if (!names) return 0;
  PathBuffer backup;
  int32_t number = 0;
  while (number < INT32_MAX && names->Backup(number, backup) && qvOSFileExists(backup.data())) {
    ++number;
  }
  return static_cast<uint32_t>(number);
}

// A copy that could not be made stops the restore there: the backups after
// it keep their numbers, since moving the next one down would copy over the
// backup just kept and lose it.
uint32_t RestoreBackup(const char* file_name, uint32_t n, char* restored_name) {
  const uint32_t count = CountBackups(file_name);
  if (count < n || !qvOSFileExists(file_name)) return TCS_RESULT_NONE;
  const std::optional<BackupNames> names = BackupNames::Of(file_name);
  // The count is 0 then, and n too: there is nothing to do.
  if (!names) return TCS_RESULT_NONE;

  uint32_t result = TCS_RESULT_NONE;
  PathBuffer backup;
  PathBuffer lower;
  for (uint32_t i = 0; i < count; ++i) {
    // Every name from -1 to count - 1 fits: the count stopped below the
    // first that did not, and -1 is as long as 000.
    [[maybe_unused]] const bool fits = names->Backup(static_cast<int32_t>(i), backup) &&
                                       names->Backup(static_cast<int32_t>(i) - 1, lower);
    assert(fits);
    if (i + 1 < n) {
      DeleteEarlier(backup.data(), &result);
    } else if (i + 1 == n) {
      if (!RestoreOver(backup.data(), names->Own(), &result)) return result;
      if (restored_name != nullptr) {
        std::memcpy(restored_name, backup.data(), std::strlen(backup.data()) + 1);
      }
    } else if (!MoveDown(backup.data(), lower.data())) {
      return result;
    }
  }
  return result;
}

}  // namespace tcs
