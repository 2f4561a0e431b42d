// The OS layer's file calls on real files in a temporary folder.
#include <errno.h>

#include <cstring>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/qvos.h"
#include "support/temp_dir.h"

namespace {

using tcs_test::ReadFile;
using tcs_test::TempDir;
using tcs_test::WriteFile;

QVHANDLE Open(const std::string& name, uint32_t access, uint32_t creation) {
  return qvOSCreateFile(name.c_str(), access, 1, nullptr, creation, 0x10000000u, nullptr);
}

// What each creation disposition does to a missing and to an existing file
// ("old" inside): whether the open succeeds, the error when it fails, and the
// contents afterwards.
TEST(QvOSFile, CreationDispositions) {
  struct Case {
    uint32_t creation;
    bool exists;
    bool opens;
    uint32_t error;
    const char* after;
  };
  const Case cases[] = {
      {QV_CREATE_NEW, false, true, 0, ""},
      {QV_CREATE_NEW, true, false, EEXIST, "old"},
      {QV_CREATE_ALWAYS, false, true, 0, ""},
      {QV_CREATE_ALWAYS, true, true, 0, ""},
      {QV_OPEN_EXISTING, false, false, ENOENT, "<missing>"},
      {QV_OPEN_EXISTING, true, true, 0, "old"},
      {QV_OPEN_ALWAYS, false, true, 0, ""},
      {QV_OPEN_ALWAYS, true, true, 0, "old"},
      {QV_TRUNCATE_EXISTING, false, false, ENOENT, "<missing>"},
      {QV_TRUNCATE_EXISTING, true, true, 0, ""},
      {0, true, false, EINVAL, "old"},
      {6, false, false, EINVAL, "<missing>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "creation " << c.creation << " exists " << c.exists);
    TempDir dir;
    const std::string name = dir.File("f");
    if (c.exists) WriteFile(name, "old");
    const QVHANDLE h = Open(name, QV_GENERIC_WRITE, c.creation);
    EXPECT_EQ(h != QV_INVALID_HANDLE, c.opens);
    if (h != QV_INVALID_HANDLE) {
      EXPECT_NE(h, nullptr);
      EXPECT_NE(qvOSCloseFile(h), 0);
    } else {
      EXPECT_EQ(qvOSGetLastError(), c.error);
    }
    EXPECT_EQ(ReadFile(name), c.after);
  }
}

TEST(QvOSFile, OpeningRefusesDirectoriesAndNullNames) {
  TempDir dir;
  EXPECT_EQ(Open(dir.path().string(), QV_GENERIC_READ, QV_OPEN_EXISTING), QV_INVALID_HANDLE);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EISDIR));
  EXPECT_EQ(qvOSCreateFile(nullptr, QV_GENERIC_READ, 0, nullptr, QV_OPEN_EXISTING, 0, nullptr),
            QV_INVALID_HANDLE);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EINVAL));
  EXPECT_EQ(qvOSFileExists(dir.path().c_str()), 0);
  EXPECT_EQ(qvOSFileExists(nullptr), 0);
}

// Write, seek, overwrite, cut and read back, checking every count and size
// against the bytes expected.
TEST(QvOSFile, ReadWriteSeekAndCut) {
  TempDir dir;
  const std::string name = dir.File("f");
  QVHANDLE h = Open(name, QV_GENERIC_READ | QV_GENERIC_WRITE, QV_CREATE_NEW);
  ASSERT_NE(h, QV_INVALID_HANDLE);
  uint32_t done = 99;
  EXPECT_NE(qvOSWriteFile(h, "0123456789", 10, &done, nullptr), 0);
  EXPECT_EQ(done, 10u);
  uint32_t high = 7;
  EXPECT_EQ(qvOSGetFileSize(h, &high), 10u);
  EXPECT_EQ(high, 0u);

  EXPECT_EQ(qvOSSetFilePointer(h, -4, nullptr, QV_FILE_END), 6u);
  EXPECT_NE(qvOSWriteFile(h, "ab", 2, &done, nullptr), 0);
  EXPECT_EQ(qvOSSetFilePointer(h, 0, nullptr, QV_FILE_CURRENT), 8u);
  EXPECT_NE(qvOSSetEndOfFile(h), 0);
  EXPECT_EQ(qvOSGetFileSize(h, nullptr), 8u);

  int32_t position_high = 0;
  EXPECT_EQ(qvOSSetFilePointer(h, 2, &position_high, QV_FILE_BEGIN), 2u);
  EXPECT_EQ(position_high, 0);
  char buffer[16] = {};
  EXPECT_NE(qvOSReadFile(h, buffer, sizeof buffer, &done, nullptr), 0);
  EXPECT_EQ(done, 6u) << "a read stops at the end of the file";
  EXPECT_EQ(std::string(buffer, done), "2345ab");
  EXPECT_NE(qvOSReadFile(h, buffer, sizeof buffer, &done, nullptr), 0);
  EXPECT_EQ(done, 0u);

  EXPECT_EQ(qvOSSetFilePointer(h, -1, nullptr, QV_FILE_BEGIN), 0xFFFFFFFFu);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EINVAL));
  EXPECT_EQ(qvOSSetFilePointer(h, 0, nullptr, 3), 0xFFFFFFFFu);
  EXPECT_NE(qvOSCloseFile(h), 0);
  EXPECT_EQ(ReadFile(name), "012345ab");
}

// A 64-bit move: high:distance addresses past 4 GiB in a sparse file.
TEST(QvOSFile, SixtyFourBitPositions) {
  TempDir dir;
  const std::string name = dir.File("f");
  QVHANDLE h = Open(name, QV_GENERIC_WRITE, QV_CREATE_NEW);
  ASSERT_NE(h, QV_INVALID_HANDLE);
  int32_t high = 1;
  EXPECT_EQ(qvOSSetFilePointer(h, 5, &high, QV_FILE_BEGIN), 5u);
  EXPECT_EQ(high, 1);
  ASSERT_NE(qvOSSetEndOfFile(h), 0);
  uint32_t size_high = 0;
  EXPECT_EQ(qvOSGetFileSize(h, &size_high), 5u);
  EXPECT_EQ(size_high, 1u);
  EXPECT_NE(qvOSCloseFile(h), 0);
}

// Failures set this thread's last error and successes leave it alone;
// another thread's failures do not reach it.
TEST(QvOSFile, LastErrorIsPerThreadAndKeptBySuccess) {
  TempDir dir;
  const std::string name = dir.File("f");
  EXPECT_EQ(qvOSFileExists(name.c_str()), 0);
  ASSERT_EQ(qvOSDeleteFile(name.c_str()), 0);
  ASSERT_EQ(qvOSGetLastError(), static_cast<uint32_t>(ENOENT));

  uint32_t other_before = 1;
  uint32_t other_after = 1;
  std::thread other([&] {
    other_before = qvOSGetLastError();
    char byte = 0;
    uint32_t done = 5;
    qvOSReadFile(QV_INVALID_HANDLE, &byte, 1, &done, nullptr);
    other_after = done == 0 ? qvOSGetLastError() : 0;
  });
  other.join();
  EXPECT_EQ(other_before, 0u);
  EXPECT_EQ(other_after, static_cast<uint32_t>(EBADF));
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(ENOENT));

  WriteFile(name, "x");
  EXPECT_NE(qvOSFileExists(name.c_str()), 0);
  EXPECT_NE(qvOSDeleteFile(name.c_str()), 0);
  EXPECT_EQ(qvOSFileExists(name.c_str()), 0);
  EXPECT_EQ(qvOSCloseFile(QV_INVALID_HANDLE), 0);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EBADF));
}

}  // namespace
