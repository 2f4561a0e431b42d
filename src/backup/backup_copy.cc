#include "backup/backup_copy.h"

#include <memory>

#include "platform/qvos.h"

namespace tcs {
namespace {

constexpr uint32_t kShareRead = 1;
constexpr uint32_t kRandomAccess = 0x10000000;
constexpr size_t kBufferSlack = 4096;

QVHANDLE OpenExisting(const char* name, uint32_t access) {
  return qvOSCreateFile(name, access, kShareRead, nullptr, QV_OPEN_EXISTING, kRandomAccess,
                        nullptr);
}

// Closes a handle that may be invalid.
struct FileCloser {
  QVHANDLE file;
  ~FileCloser() {
    if (file != QV_INVALID_HANDLE) qvOSCloseFile(file);
  }
};

//   source:       |abcdefghij|
//   destination:  |0123456789012345...99|   ->   |abcdefghij|
bool CopyOpenFiles(QVHANDLE destination, QVHANDLE source) {
  uint32_t high = 0;
  const uint32_t size = qvOSGetFileSize(source, &high);
  // Also refuses a failed size query, which reports 0xFFFFFFFF.
  if (high != 0 || size > kMaxCopySize) return false;
  std::unique_ptr<void, decltype(&QVFree)> buffer(QVAlloc(size + kBufferSlack), &QVFree);
  if (buffer == nullptr) return false;

  uint32_t read = 0;
  if (!qvOSReadFile(source, buffer.get(), size, &read, nullptr) || read == 0) return false;
  uint32_t written = 0;
  return qvOSSetFilePointer(destination, 0, nullptr, QV_FILE_BEGIN) == 0 &&
         qvOSWriteFile(destination, buffer.get(), read, &written, nullptr) && written == read &&
         qvOSSetEndOfFile(destination);
}

}  // namespace

// The destination is opened first and for writing only, so a destination
// that does not exist is never created.
bool CopyFileBytes(const char* destination, const char* source) {
  const FileCloser to{OpenExisting(destination, QV_GENERIC_WRITE)};
  const FileCloser from{OpenExisting(source, QV_GENERIC_READ)};
  if (to.file == QV_INVALID_HANDLE || from.file == QV_INVALID_HANDLE) return false;
  return CopyOpenFiles(to.file, from.file);
}

}  // namespace tcs
