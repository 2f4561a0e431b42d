// Counting and restoring the numbered backups of a space's file (names in
// backup_names.h). No state: the backups are found anew on the file system
// by every call. No lock: the host must not run two restores, or a restore
// and a save of the file, at once.
#ifndef TCS_BACKUP_BACKUP_RESTORE_H_
#define TCS_BACKUP_BACKUP_RESTORE_H_

#include <cstdint>

namespace tcs {

// The number of backups in the unbroken run from 000: the first number whose
// file does not exist, or whose name would be longer than 4095 characters.
// 0 when the file does not exist or its name cannot be split whole.
uint32_t CountBackups(const char* file_name);

// Restores backup n (1-based: n = 1 is backup 000; 0 restores nothing) over
// the file, deletes the backups before it and moves every later one down by
// one number (backup 000 to -1 when n = 0). restored_name (4096 bytes, may be
// null) receives the restored backup's name. Returns 0xFFFFFFFF, or the OS
// error of the last deletion that failed. Changes nothing when n is above
// the count or the file does not exist.
uint32_t RestoreBackup(const char* file_name, uint32_t n, char* restored_name);

}  // namespace tcs

#endif  // TCS_BACKUP_BACKUP_RESTORE_H_
