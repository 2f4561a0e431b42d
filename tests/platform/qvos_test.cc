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
