// The OS layer's file calls on real files in a temporary folder.
#include <errno.h>

#include <string>

#include <gtest/gtest.h>

#include "platform/qvos.h"
#include "support/temp_dir.h"

namespace {

QVHANDLE Open(const std::string& name, uint32_t creation) {
  return qvOSCreateFile(name.c_str(), QV_GENERIC_READ | QV_GENERIC_WRITE, 1, nullptr, creation,
                        0, nullptr);
}

// Open-existing fails on a missing file and creates nothing; then write, move
// back from the end, overwrite, cut, read back, reopen; then delete.
TEST(QvOSFile, RoundTripAndDelete) {
  tcs_test::TempDir dir;
  const std::string name = dir.File("f");
  EXPECT_EQ(Open(name, QV_OPEN_EXISTING), QV_INVALID_HANDLE);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(ENOENT));
  EXPECT_EQ(qvOSFileExists(name.c_str()), 0);

  QVHANDLE h = Open(name, QV_CREATE_NEW);
  ASSERT_NE(h, QV_INVALID_HANDLE);
  uint32_t done = 0;
  EXPECT_NE(qvOSWriteFile(h, "0123456789", 10, &done, nullptr), 0);
  EXPECT_EQ(qvOSSetFilePointer(h, -4, nullptr, QV_FILE_END), 6u);
  EXPECT_NE(qvOSWriteFile(h, "ab", 2, &done, nullptr), 0);
  EXPECT_NE(qvOSSetEndOfFile(h), 0);
  EXPECT_EQ(qvOSGetFileSize(h, nullptr), 8u);
  EXPECT_NE(qvOSCloseFile(h), 0);

  h = Open(name, QV_OPEN_EXISTING);
  ASSERT_NE(h, QV_INVALID_HANDLE);
  EXPECT_EQ(qvOSSetFilePointer(h, 2, nullptr, QV_FILE_BEGIN), 2u);
  char buffer[16] = {};
  EXPECT_NE(qvOSReadFile(h, buffer, sizeof buffer, &done, nullptr), 0);
  EXPECT_EQ(std::string(buffer, done), "2345ab");
  EXPECT_NE(qvOSCloseFile(h), 0);

  EXPECT_NE(qvOSDeleteFile(name.c_str()), 0);
  EXPECT_EQ(qvOSFileExists(name.c_str()), 0);
  EXPECT_EQ(qvOSDeleteFile(name.c_str()), 0);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(ENOENT));
}

}  // namespace
