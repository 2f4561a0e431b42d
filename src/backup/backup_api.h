// Numbered backups of a space's file: "<base>.<NNN>.<ext>" beside it, an
// unbroken run from 000. Plain C.
#ifndef TCS_BACKUP_BACKUP_API_H_
#define TCS_BACKUP_BACKUP_API_H_

#include "space/clip_callback.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// The number of backups in the unbroken run from 000; 0 when the space's
// file does not exist.
TCS_EXPORT unsigned int tcsGetNumberOfBackUpsAvailable(CTimeCodeSpace* space);
// Restores backup n (1-based; 0 restores nothing) over the space's file and
// moves every later backup down by one. restoredName (4096 bytes) receives the
// restored backup's name. 0xFFFFFFFF, or the OS error of the last failed
// deletion.
TCS_EXPORT unsigned int tcsSetBackUpRestore(CTimeCodeSpace* space, unsigned int n,
                                            char* restoredName);
// Makes an existing destination file a byte copy of source; creates nothing.
TCS_EXPORT void CopyFileContents(char* destination, char* source);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_BACKUP_BACKUP_API_H_
