// Files: the Windows-style file calls of the OS layer on POSIX descriptors.
//
// A handle is the descriptor plus one, so no valid handle is null and the
// all-ones invalid handle decodes to no descriptor. Every call that fails
// records errno as this thread's last error; a call that succeeds leaves it
// alone, as a Windows caller expects.
#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>

#include "platform/qvos.h"

namespace {

thread_local uint32_t last_error = 0;

// Records errno and returns `result`, so a failing path is one line.
template <typename T>
T Fail(T result) {
  last_error = static_cast<uint32_t>(errno);
  return result;
}

template <typename T>
T FailWith(int error, T result) {
  errno = error;
  return Fail(result);
}

QVHANDLE HandleOf(int fd) { return reinterpret_cast<QVHANDLE>(static_cast<intptr_t>(fd) + 1); }

// -1 for the invalid handle (or any value no descriptor could give).
int DescriptorOf(QVHANDLE file) {
  const intptr_t value = reinterpret_cast<intptr_t>(file) - 1;
  return (value < 0 || value > INT32_MAX) ? -1 : static_cast<int>(value);
}

// open() flags for the access and creation words; false for a creation word
// that names no disposition.
bool OpenFlags(uint32_t access, uint32_t creation, int* flags) {
  const bool read = (access & QV_GENERIC_READ) != 0;
  const bool write = (access & QV_GENERIC_WRITE) != 0;
  // An access word asking for neither still opens the file, for reading,
  // so its size can be asked.
  *flags = (read && write) ? O_RDWR : write ? O_WRONLY : O_RDONLY;
  *flags |= O_CLOEXEC;
  switch (creation) {
    case QV_CREATE_NEW:
      *flags |= O_CREAT | O_EXCL;
      return true;
    case QV_CREATE_ALWAYS:
      *flags |= O_CREAT | O_TRUNC;
      return true;
    case QV_OPEN_EXISTING:
      return true;
    case QV_OPEN_ALWAYS:
      *flags |= O_CREAT;
      return true;
    case QV_TRUNCATE_EXISTING:
      *flags |= O_TRUNC;
      return true;
    default:
      return false;
  }
}

}  // namespace

extern "C" {

QVHANDLE qvOSCreateFile(const char* name, uint32_t access, uint32_t, void*, uint32_t creation,
                        uint32_t, QVHANDLE) {
  int flags = 0;
  if (name == nullptr || !OpenFlags(access, creation, &flags)) {
    return FailWith(EINVAL, QV_INVALID_HANDLE);
  }
  int fd;
  do {
    fd = open(name, flags, 0666);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) return Fail(QV_INVALID_HANDLE);
  // The Windows call opens files only; a directory opened for reading would
  // otherwise look like a file that fails every read.
  struct stat st;
  int error = 0;
  if (fstat(fd, &st) != 0) {
    error = errno;
  } else if (S_ISDIR(st.st_mode)) {
    error = EISDIR;
  }
  if (error != 0) {
    close(fd);
    return FailWith(error, QV_INVALID_HANDLE);
  }
  return HandleOf(fd);
}

// Reads until `count` bytes or the end of the file: a short count means the
// end was reached, as on Windows.
int qvOSReadFile(QVHANDLE file, void* buffer, uint32_t count, uint32_t* done, void*) {
  if (done != nullptr) *done = 0;
  const int fd = DescriptorOf(file);
  if (fd < 0) return FailWith(EBADF, 0);
  auto* bytes = static_cast<unsigned char*>(buffer);
  uint32_t total = 0;
  while (total < count) {
    const ssize_t got = read(fd, bytes + total, count - total);
    if (got == 0) break;
    if (got < 0) {
      if (errno == EINTR) continue;
      if (done != nullptr) *done = total;
      return Fail(0);
    }
    total += static_cast<uint32_t>(got);
  }
  if (done != nullptr) *done = total;
  return 1;
}

int qvOSWriteFile(QVHANDLE file, const void* buffer, uint32_t count, uint32_t* done, void*) {
  if (done != nullptr) *done = 0;
  const int fd = DescriptorOf(file);
  if (fd < 0) return FailWith(EBADF, 0);
  const auto* bytes = static_cast<const unsigned char*>(buffer);
  uint32_t total = 0;
  while (total < count) {
    const ssize_t put = write(fd, bytes + total, count - total);
    if (put < 0) {
      if (errno == EINTR) continue;
      if (done != nullptr) *done = total;
      return Fail(0);
    }
    total += static_cast<uint32_t>(put);
  }
  if (done != nullptr) *done = total;
  return 1;
}

// With `high` given, the distance is the 64-bit value high:distance and the
// new position's high half is written back; without it, the distance is the
// signed 32-bit value.
uint32_t qvOSSetFilePointer(QVHANDLE file, int32_t distance, int32_t* high, uint32_t method) {
  const int fd = DescriptorOf(file);
  if (fd < 0) return FailWith(EBADF, 0xFFFFFFFFu);
  int whence;
  switch (method) {
    case QV_FILE_BEGIN:
      whence = SEEK_SET;
      break;
    case QV_FILE_CURRENT:
      whence = SEEK_CUR;
      break;
    case QV_FILE_END:
      whence = SEEK_END;
      break;
    default:
      return FailWith(EINVAL, 0xFFFFFFFFu);
  }
  int64_t offset = distance;
  if (high != nullptr) {
    offset = static_cast<int64_t>((static_cast<uint64_t>(static_cast<uint32_t>(*high)) << 32) |
                                  static_cast<uint32_t>(distance));
  }
  const off_t position = lseek(fd, static_cast<off_t>(offset), whence);
  if (position < 0) return Fail(0xFFFFFFFFu);
  const auto unsigned_position = static_cast<uint64_t>(position);
  if (high != nullptr) *high = static_cast<int32_t>(unsigned_position >> 32);
  return static_cast<uint32_t>(unsigned_position);
}

int qvOSSetEndOfFile(QVHANDLE file) {
  const int fd = DescriptorOf(file);
  if (fd < 0) return FailWith(EBADF, 0);
  const off_t position = lseek(fd, 0, SEEK_CUR);
  if (position < 0 || ftruncate(fd, position) != 0) return Fail(0);
  return 1;
}

// 0xFFFFFFFF on failure (also a valid low half: callers that care check the
// last error).
uint32_t qvOSGetFileSize(QVHANDLE file, uint32_t* high) {
  const int fd = DescriptorOf(file);
  if (fd < 0) return FailWith(EBADF, 0xFFFFFFFFu);
  struct stat st;
  if (fstat(fd, &st) != 0) return Fail(0xFFFFFFFFu);
  const auto size = static_cast<uint64_t>(st.st_size);
  if (high != nullptr) *high = static_cast<uint32_t>(size >> 32);
  return static_cast<uint32_t>(size);
}

int qvOSCloseFile(QVHANDLE file) {
  const int fd = DescriptorOf(file);
  if (fd < 0) return FailWith(EBADF, 0);
  // Linux releases the descriptor even when close reports EINTR: no retry.
  if (close(fd) != 0) return Fail(0);
  return 1;
}

// A question, not an operation: a missing file is an answer, so the last
// error is left alone. Directories are not files.
int qvOSFileExists(const char* name) {
  if (name == nullptr) return 0;
  struct stat st;
  return (stat(name, &st) == 0 && !S_ISDIR(st.st_mode)) ? 1 : 0;
}

int qvOSDeleteFile(const char* name) {
  if (name == nullptr) return FailWith(EINVAL, 0);
  if (unlink(name) != 0) return Fail(0);
  return 1;
}

uint32_t qvOSGetLastError(void) { return last_error; }

}  // extern "C"
