// OS layer of the host: critical sections, file times, files, paths, memory
// and an intrusive doubly linked list. The stand-in maps the Windows-style
// file arguments onto POSIX. Plain C.
#ifndef TCS_PLATFORM_QVOS_H_
#define TCS_PLATFORM_QVOS_H_

#include <stddef.h>
#include <stdint.h>

#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// A recursive lock: the owning thread may enter it again and must leave it as
// many times. The storage is held inline so that an object embedding one
// needs no further allocation.
typedef union QVCRITICALSECTION {
  uint64_t align;
  unsigned char opaque[64];
} QVCRITICALSECTION;

TCS_EXPORT void qvOSInitializeCriticalSection(QVCRITICALSECTION* cs);
TCS_EXPORT void qvOSEnterCriticalSection(QVCRITICALSECTION* cs);
TCS_EXPORT void qvOSLeaveCriticalSection(QVCRITICALSECTION* cs);
TCS_EXPORT void qvOSDeleteCriticalSection(QVCRITICALSECTION* cs);

// Modification time of a file as a 64-bit value (nanoseconds since the epoch);
// 0 for a missing file, a null or an empty name.
TCS_EXPORT uint64_t qvOSFileTimeModified(const char* fileName);

// Files, with the arguments of the Windows file calls. Access: 0x80000000
// read, 0x40000000 write (neither: read). Creation: 1 create new, 2 create
// always, 3 open existing, 4 open always, 5 truncate existing; any other
// value fails. Share, security, flags and template are accepted and ignored.
// Only files open: a directory fails. Every call that fails sets this
// thread's last error (qvOSGetLastError) to the errno of the failure; a call
// that succeeds leaves it alone.
typedef void* QVHANDLE;
#define QV_INVALID_HANDLE ((QVHANDLE)(intptr_t)-1)
#define QV_GENERIC_READ 0x80000000u
#define QV_GENERIC_WRITE 0x40000000u
#define QV_CREATE_NEW 1u
#define QV_CREATE_ALWAYS 2u
#define QV_OPEN_EXISTING 3u
#define QV_OPEN_ALWAYS 4u
#define QV_TRUNCATE_EXISTING 5u
#define QV_FILE_BEGIN 0u
#define QV_FILE_CURRENT 1u
#define QV_FILE_END 2u

TCS_EXPORT QVHANDLE qvOSCreateFile(const char* name, uint32_t access, uint32_t share,
                                   void* security, uint32_t creation, uint32_t flags,
                                   QVHANDLE templateFile);
// Reads and writes return nonzero on success; *done (when not null) receives
// the byte count. A read stops early only at the end of the file.
TCS_EXPORT int qvOSReadFile(QVHANDLE file, void* buffer, uint32_t count, uint32_t* done,
                            void* overlapped);
TCS_EXPORT int qvOSWriteFile(QVHANDLE file, const void* buffer, uint32_t count,
                             uint32_t* done, void* overlapped);
// Moves by distance (signed 32 bits, or the 64-bit *high:distance when high
// is not null, which then receives the new position's high half) from
// QV_FILE_BEGIN, _CURRENT or _END. Returns the low 32 bits of the new
// position, 0xFFFFFFFF on failure.
TCS_EXPORT uint32_t qvOSSetFilePointer(QVHANDLE file, int32_t distance, int32_t* high,
                                       uint32_t method);
// Cuts the file at the current position. Nonzero on success.
TCS_EXPORT int qvOSSetEndOfFile(QVHANDLE file);
// Low 32 bits of the size (0xFFFFFFFF on failure); the high 32 bits go to
// *high when it is not null.
TCS_EXPORT uint32_t qvOSGetFileSize(QVHANDLE file, uint32_t* high);
// Nonzero on success.
TCS_EXPORT int qvOSCloseFile(QVHANDLE file);
// Nonzero when a file (not a directory) of that name exists. An answer, not a
// failure: the last error is left alone.
TCS_EXPORT int qvOSFileExists(const char* name);
// Nonzero on success, 0 on failure (the reason then from qvOSGetLastError).
TCS_EXPORT int qvOSDeleteFile(const char* name);
// The errno of this thread's last failed file call; 0 before any failed.
TCS_EXPORT uint32_t qvOSGetLastError(void);

// Paths, POSIX style: "/data/timeline.spc" splits into drive "" (there are
// no drives), directory "/data/" (its trailing '/' kept), file name
// "timeline" and extension ".spc" (its dot kept; a name's leading dots are
// part of the name, so ".profile" has no extension). A null path splits as
// "". Any output may be null. Outputs are buffers of at least QV_MAX_PATH
// bytes (drive and directory) and QV_MAX_FNAME bytes (file name, extension);
// longer parts are cut to fit. REQUIRES: no output overlaps path.
#define QV_MAX_PATH 4096
#define QV_MAX_FNAME 255
TCS_EXPORT void qvOSSplitPath(const char* path, char* drive, char* directory,
                              char* fileName, char* extension);
// Joins the parts into out (QV_MAX_PATH bytes), cutting the whole to fit; a
// null or empty part adds nothing; a directory without a trailing '/' gets
// one; an extension without a leading dot gets one. REQUIRES: no part
// overlaps out.
TCS_EXPORT void qvOSMakePath(char* out, const char* drive, const char* directory,
                             const char* fileName, const char* extension);

// Memory.
TCS_EXPORT void qvOSZeroMemory(void* block, size_t size);
TCS_EXPORT void qvOSCopyMemory(void* to, const void* from, size_t size);
TCS_EXPORT void* QVAlloc(size_t size);
TCS_EXPORT void QVFree(void* block);

// Intrusive doubly linked list. A header of all zero bytes is a valid empty
// list; the header keeps the number of its nodes.
typedef struct QVLISTNODE {
  struct QVLISTNODE* next;
  struct QVLISTNODE* prev;
} QVLISTNODE;

typedef struct QVLIST {
  QVLISTNODE* head;
  QVLISTNODE* tail;
  uint32_t count;
} QVLIST;

TCS_EXPORT void ListInitNode(QVLISTNODE* node);
TCS_EXPORT void ListAddTail(QVLIST* list, QVLISTNODE* node);
// REQUIRES: node is on list.
TCS_EXPORT void ListRemove(QVLIST* list, QVLISTNODE* node);
TCS_EXPORT QVLISTNODE* ListHead(const QVLIST* list);
TCS_EXPORT QVLISTNODE* ListNext(const QVLISTNODE* node);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_PLATFORM_QVOS_H_
