// The OS layer: file calls on real files in a temporary folder, and
// splitting and joining paths.
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

// Every creation disposition on a missing and on an existing file: whether
// the open succeeds, and what the file holds afterwards (its old "old", or
// nothing). An unknown disposition opens nothing and creates nothing.
TEST(QvOSFile, CreationDispositions) {
  const std::string kMissing = "<missing>", kFails = "<fails>";
  const struct {
    uint32_t creation;
    std::string on_missing, on_existing;  // the contents after, or kFails
  } rows[] = {
      {QV_CREATE_NEW, "", kFails},
      {QV_CREATE_ALWAYS, "", ""},
      {QV_OPEN_EXISTING, kFails, "old"},
      {QV_OPEN_ALWAYS, "", "old"},
      {QV_TRUNCATE_EXISTING, kFails, ""},
      {0, kFails, kFails},
      {6, kFails, kFails},
  };
  for (const auto& row : rows) {
    for (bool existing : {false, true}) {
      SCOPED_TRACE(testing::Message() << "creation " << row.creation
                                      << (existing ? " on a file" : ""));
      tcs_test::TempDir dir;
      const std::string name = dir.File("f");
      if (existing) tcs_test::WriteFile(name, "old");
      const QVHANDLE h = Open(name, row.creation);
      const std::string& want = existing ? row.on_existing : row.on_missing;
      EXPECT_EQ(h == QV_INVALID_HANDLE, want == kFails);
      if (h != QV_INVALID_HANDLE) {
        EXPECT_NE(qvOSCloseFile(h), 0);
      }
      if (row.creation == 0 || row.creation == 6) {
        EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EINVAL));
      }
      EXPECT_EQ(tcs_test::ReadFile(name), want == kFails ? (existing ? "old" : kMissing) : want);
    }
  }
}

// Positions past 4 GB go through the high half, both ways; a position from
// the current one moves on from it; an unknown method moves nothing. A read
// on a handle opened for writing only, and a write on one opened for reading
// only, fail and say they moved nothing.
TEST(QvOSFile, LargePositionsAndFailedCalls) {
  tcs_test::TempDir dir;
  const std::string name = dir.File("f");
  QVHANDLE h = qvOSCreateFile(name.c_str(), QV_GENERIC_WRITE, 0, nullptr, QV_CREATE_NEW, 0,
                              nullptr);
  ASSERT_NE(h, QV_INVALID_HANDLE);
  int32_t high = 1;  // 4 GB + 16
  EXPECT_EQ(qvOSSetFilePointer(h, 16, &high, QV_FILE_BEGIN), 16u);
  EXPECT_EQ(high, 1);
  EXPECT_EQ(qvOSSetFilePointer(h, 4, nullptr, QV_FILE_CURRENT), 20u);
  uint32_t done = 7;
  EXPECT_NE(qvOSWriteFile(h, "x", 1, &done, nullptr), 0);
  uint32_t size_high = 0;
  EXPECT_EQ(qvOSGetFileSize(h, &size_high), 21u);
  EXPECT_EQ(size_high, 1u);
  high = 0;
  EXPECT_EQ(qvOSSetFilePointer(h, -1, &high, QV_FILE_END), 20u);  // high:low = 0:0xFFFFFFFF
  EXPECT_EQ(high, 2);
  EXPECT_EQ(qvOSSetFilePointer(h, 0, nullptr, 3), 0xFFFFFFFFu);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EINVAL));
  EXPECT_EQ(qvOSSetFilePointer(h, 0, nullptr, QV_FILE_CURRENT), 20u);
  char byte = 0;
  done = 7;
  EXPECT_EQ(qvOSReadFile(h, &byte, 1, &done, nullptr), 0);
  EXPECT_EQ(done, 0u);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EBADF));
  EXPECT_NE(qvOSCloseFile(h), 0);
  h = qvOSCreateFile(name.c_str(), QV_GENERIC_READ, 0, nullptr, QV_OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(h, QV_INVALID_HANDLE);
  done = 7;
  EXPECT_EQ(qvOSWriteFile(h, "y", 1, &done, nullptr), 0);
  EXPECT_EQ(done, 0u);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EBADF));
  EXPECT_NE(qvOSCloseFile(h), 0);
  EXPECT_EQ(qvOSCreateFile(nullptr, QV_GENERIC_READ, 0, nullptr, QV_OPEN_EXISTING, 0, nullptr),
            QV_INVALID_HANDLE);
  EXPECT_EQ(qvOSGetLastError(), static_cast<uint32_t>(EINVAL));
}

// Copies between overlapping blocks, both ways, as if through a buffer.
TEST(QvOSMemory, CopyBetweenOverlappingBlocks) {
  char up[] = "abcdefgh";
  qvOSCopyMemory(up + 2, up, 5);
  EXPECT_STREQ(up, "ababcdeh");
  char down[] = "abcdefgh";
  qvOSCopyMemory(down, down + 3, 5);
  EXPECT_STREQ(down, "defghfgh");
  qvOSCopyMemory(nullptr, nullptr, 0);
}

// Each path splits into its parts, and joining them gives the path back
// whenever no part was cut to its buffer. (Plain names and extensions are
// seen through the backup names.)
TEST(QvOSPath, SplitAndMakeBack) {
  const std::string long_dir = "/" + std::string(5000, 'd') + "/";
  const std::string long_name(300, 'n');
  const std::string long_ext = "." + std::string(300, 'e');
  struct Case {
    std::string path, directory, name, extension;
  };
  const Case cases[] = {
      {"/data/timeline.", "/data/", "timeline", "."},
      {"rel/a.b.c", "rel/", "a.b", ".c"},
      {"/data.d/timeline", "/data.d/", "timeline", ""},
      {"/data/.profile", "/data/", ".profile", ""},
      {"/data/..a.b", "/data/", "..a", ".b"},
      {long_dir + long_name + long_ext, long_dir.substr(0, QV_MAX_PATH - 1),
       long_name.substr(0, QV_MAX_FNAME - 1), long_ext.substr(0, QV_MAX_FNAME - 1)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path.substr(0, 40));
    char drive[QV_MAX_PATH] = "?";
    char directory[QV_MAX_PATH] = "?";
    char name[QV_MAX_FNAME] = "?";
    char extension[QV_MAX_FNAME] = "?";
    qvOSSplitPath(c.path.c_str(), drive, directory, name, extension);
    EXPECT_EQ(directory, c.directory);
    EXPECT_EQ(name, c.name);
    EXPECT_EQ(extension, c.extension);
    char joined[QV_MAX_PATH] = "?";
    qvOSMakePath(joined, drive, directory, name, extension);
    EXPECT_EQ(joined, c.path.substr(0, QV_MAX_PATH - 1));
  }
}

}  // namespace
