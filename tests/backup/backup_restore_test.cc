// Counting and restoring backups on real files, against a model of what a
// restore does to the numbered files.
#include "backup/backup_restore.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <string>

#include "support/log_capture.h"
#include "support/temp_dir.h"

namespace {

using tcs_test::LogCapture;
using tcs_test::ReadFile;
using tcs_test::TempDir;
using tcs_test::WriteFile;

constexpr uint32_t kNone = 0xFFFFFFFF;

// The folder as the model sees it: backup number -> contents, and the
// contents of the space's file.
struct Layout {
  std::map<int, std::string> backups;
  std::string own;
  bool operator==(const Layout&) const = default;
};

std::string BackupPath(const TempDir& dir, int number) {
  char suffix[32];
  std::snprintf(suffix, sizeof suffix, ".%03d.spc", number);
  return dir.File(std::string("timeline") + suffix);
}

void Write(const TempDir& dir, const Layout& layout) {
  WriteFile(dir.File("timeline.spc"), layout.own);
  for (const auto& [number, contents] : layout.backups)
    WriteFile(BackupPath(dir, number), contents);
}

// Reads every file of the folder, failing on any the model cannot name.
Layout Read(const TempDir& dir) {
  Layout layout;
  for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
    const std::string name = entry.path().filename().string();
    int number = 0;
    char tail[8] = {};
    if (name == "timeline.spc") {
      layout.own = ReadFile(entry.path().string());
    } else if (std::sscanf(name.c_str(), "timeline.%d.%3s", &number, tail) == 2 &&
               name == BackupPath(dir, number).substr(dir.path().string().size() + 1)) {
      layout.backups[number] = ReadFile(entry.path().string());
    } else {
      ADD_FAILURE() << "unexpected file " << name;
    }
  }
  return layout;
}

uint32_t ModelCount(const Layout& layout) {
  uint32_t count = 0;
  while (layout.backups.count(static_cast<int>(count)) != 0) ++count;
  return count;
}

// What restoring n does: backups before n go, backup n - 1 becomes the
// space's file, every later one of the unbroken run moves down one number
// (backup 000 onto -1 when n = 0). Files past the run stay.
Layout ModelRestore(const Layout& before, uint32_t n) {
  const int count = static_cast<int>(ModelCount(before));
  if (static_cast<int>(n) > count) return before;
  Layout after = before;
  for (int i = 0; i < count; ++i) after.backups.erase(i);
  for (int i = 0; i < count; ++i) {
    if (i + 1 == static_cast<int>(n)) after.own = before.backups.at(i);
    if (i + 1 > static_cast<int>(n)) after.backups[i - 1] = before.backups.at(i);
  }
  return after;
}

// Every run length 0..4, with or without a stray backup past a gap and a -1
// file, restored with every n from 0 to one past the count.
TEST(BackupRestore, MatchesTheModel) {
  for (int run = 0; run <= 4; ++run) {
    for (bool stray : {false, true}) {
      for (bool minus_one : {false, true}) {
        for (uint32_t n = 0; n <= static_cast<uint32_t>(run) + 1; ++n) {
          SCOPED_TRACE(testing::Message()
                       << "run " << run << " stray " << stray << " -1 " << minus_one << " n " << n);
          Layout before;
          before.own = "space";
          for (int i = 0; i < run; ++i) before.backups[i] = "backup " + std::to_string(i);
          if (stray) before.backups[run + 1] = "stray";
          if (minus_one) before.backups[-1] = "old minus one";
          TempDir dir;
          Write(dir, before);
          const std::string file = dir.File("timeline.spc");
          ASSERT_EQ(tcs::CountBackups(file.c_str()), static_cast<uint32_t>(run));

          char restored[4096] = "untouched";
          LogCapture log;
          EXPECT_EQ(tcs::RestoreBackup(file.c_str(), n, restored), kNone);
          const Layout want = ModelRestore(before, n);
          const Layout got = Read(dir);
          EXPECT_EQ(got.backups, want.backups);
          EXPECT_EQ(got.own, want.own);
          EXPECT_EQ(tcs::CountBackups(file.c_str()), ModelCount(want));
          const bool restores = n >= 1 && n <= static_cast<uint32_t>(run);
          EXPECT_EQ(std::string(restored),
                    restores ? BackupPath(dir, static_cast<int>(n) - 1) : "untouched");
          EXPECT_TRUE(log.Lines().empty());
        }
      }
    }
  }
}

TEST(BackupRestore, MissingSpaceFile) {
  TempDir dir;
  WriteFile(BackupPath(dir, 0), "backup 0");
  const std::string file = dir.File("timeline.spc");
  char restored[4096] = "untouched";
  EXPECT_EQ(tcs::CountBackups(file.c_str()), 0u);
  EXPECT_EQ(tcs::RestoreBackup(file.c_str(), 0, restored), kNone);
  EXPECT_EQ(tcs::RestoreBackup(file.c_str(), 1, restored), kNone);
  EXPECT_EQ(ReadFile(BackupPath(dir, 0)), "backup 0");
  EXPECT_STREQ(restored, "untouched");
  EXPECT_EQ(tcs::CountBackups(""), 0u);
  EXPECT_EQ(tcs::CountBackups(nullptr), 0u);
}

// Without an extension the backups end in a dot, and the restore writes the
// space's file itself, not "timeline.".
TEST(BackupRestore, SpaceFileWithoutExtension) {
  TempDir dir;
  const std::string file = dir.File("timeline");
  WriteFile(file, "space");
  WriteFile(file + ".000.", "backup 0");
  WriteFile(file + ".001.", "backup 1");
  WriteFile(file + ".000", "not a backup");
  EXPECT_EQ(tcs::CountBackups(file.c_str()), 2u);
  char restored[4096] = {};
  EXPECT_EQ(tcs::RestoreBackup(file.c_str(), 1, restored), kNone);
  EXPECT_EQ(std::string(restored), file + ".000.");
  EXPECT_EQ(ReadFile(file), "backup 0");
  EXPECT_EQ(ReadFile(file + ".000."), "backup 1");
  EXPECT_FALSE(std::filesystem::exists(file + ".001."));
  EXPECT_FALSE(std::filesystem::exists(file + "."));
  EXPECT_EQ(ReadFile(file + ".000"), "not a backup");
}

// Makes `path` a chain of directories beside `dir` so that the whole path
// has exactly `length` characters; returns it (the last part not created).
std::string PathOfLength(const TempDir& dir, size_t length, const std::string& last) {
  std::string path = dir.path().string();
  while (path.size() + 1 + last.size() < length) {
    const size_t room = length - path.size() - 1 - last.size();
    // Leave room for the '/' of the next part when this one is not the last.
    const size_t part = room <= 200 ? room - 1 : 150;
    if (room <= 1) break;
    path += "/" + std::string(part, 'd');
    std::filesystem::create_directory(path);
  }
  return path + "/" + last;
}

// Backup 000's name would have 4096 characters; a file under its first 4095
// is not a backup and is never touched.
TEST(BackupRestore, NamesTooLongAreRefusedNotCut) {
  TempDir dir;
  const std::string file = PathOfLength(dir, 4092, "t.spc");
  ASSERT_EQ(file.size(), 4092u);
  WriteFile(file, "space");
  const std::string full = file.substr(0, file.size() - 4) + ".000.spc";
  ASSERT_EQ(full.size(), 4096u);
  const std::string cut = full.substr(0, 4095);
  WriteFile(cut, "cut");
  EXPECT_EQ(tcs::CountBackups(file.c_str()), 0u);
  char restored[4096] = "untouched";
  for (uint32_t n : {0u, 1u}) {
    EXPECT_EQ(tcs::RestoreBackup(file.c_str(), n, restored), kNone);
    EXPECT_EQ(ReadFile(file), "space");
    EXPECT_EQ(ReadFile(cut), "cut");
  }
  EXPECT_STREQ(restored, "untouched");
}

// Sets an inode flag (immutable, append-only) for the object's life; ok() is
// false where the file system or the privileges do not allow it.
class InodeFlag {
 public:
  InodeFlag(const std::string& path, int flag) : path_(path), flag_(flag) { ok_ = Set(true); }
  ~InodeFlag() {
    if (ok_) Set(false);
  }
  bool ok() const { return ok_; }

 private:
  bool Set(bool on) {
    const int fd = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
    if (fd < 0) return false;
    int flags = 0;
    bool done = ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    flags = on ? (flags | flag_) : (flags & ~flag_);
    done = done && ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    close(fd);
    return done;
  }
  std::string path_;
  int flag_;
  bool ok_ = false;
};

// A backup before the restored one that cannot be deleted: logged, its error
// is the result, and the restore goes on.
TEST(BackupRestoreFailures, UndeletableEarlierBackup) {
  TempDir dir;
  Write(dir, {{{0, "A"}, {1, "B"}, {2, "C"}}, "space"});
  InodeFlag stuck(BackupPath(dir, 0), FS_IMMUTABLE_FL);
  if (!stuck.ok()) GTEST_SKIP() << "inode flags not available";
  LogCapture log;
  char restored[4096] = {};
  EXPECT_EQ(tcs::RestoreBackup(dir.File("timeline.spc").c_str(), 2, restored),
            static_cast<uint32_t>(EPERM));
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"Can not delete file " + BackupPath(dir, 0)});
  EXPECT_EQ(std::string(restored), BackupPath(dir, 1));
  EXPECT_EQ(Read(dir), (Layout{{{0, "A"}, {1, "C"}}, "B"}));
}

// The space's file cannot be deleted but can be written: the backup's bytes
// are copied into it. (The folder refuses deletions, so the backup stays.)
TEST(BackupRestoreFailures, SpaceFileInUseIsCopiedInto) {
  TempDir dir;
  Write(dir, {{{0, "A"}}, "space"});
  InodeFlag append_only(dir.path().string(), FS_APPEND_FL);
  if (!append_only.ok()) GTEST_SKIP() << "inode flags not available";
  char restored[4096] = {};
  EXPECT_EQ(tcs::RestoreBackup(dir.File("timeline.spc").c_str(), 1, restored), kNone);
  EXPECT_EQ(std::string(restored), BackupPath(dir, 0));
  EXPECT_EQ(Read(dir), (Layout{{{0, "A"}}, "A"}));
}

// The space's file can neither be deleted nor written: the backup is kept,
// nothing after it moves, and the failed deletion is logged and returned.
TEST(BackupRestoreFailures, FailedRestoreCopyKeepsTheBackup) {
  TempDir dir;
  Write(dir, {{{0, "A"}, {1, "B"}, {2, "C"}}, "space"});
  InodeFlag stuck(dir.File("timeline.spc"), FS_IMMUTABLE_FL);
  if (!stuck.ok()) GTEST_SKIP() << "inode flags not available";
  LogCapture log;
  char restored[4096] = "untouched";
  EXPECT_EQ(tcs::RestoreBackup(dir.File("timeline.spc").c_str(), 2, restored),
            static_cast<uint32_t>(EPERM));
  EXPECT_EQ(log.Lines(),
            std::vector<std::string>{"Can not delete file " + dir.File("timeline.spc")});
  EXPECT_STREQ(restored, "untouched");
  EXPECT_EQ(Read(dir), (Layout{{{1, "B"}, {2, "C"}}, "space"}));
}

// n = 0 over an existing -1 file copies backup 000 onto it; a 000 too large
// to copy is kept, and 001 is not moved onto it.
TEST(BackupRestoreFailures, FailedMoveDownKeepsTheBackup) {
  TempDir dir;
  Write(dir, {{{-1, "old"}, {0, ""}, {1, "B"}}, "space"});
  std::filesystem::resize_file(BackupPath(dir, 0), 0x100000000);
  EXPECT_EQ(tcs::RestoreBackup(dir.File("timeline.spc").c_str(), 0, nullptr), kNone);
  EXPECT_EQ(std::filesystem::file_size(BackupPath(dir, 0)), 0x100000000u);
  EXPECT_EQ(ReadFile(BackupPath(dir, -1)), "old");
  EXPECT_EQ(ReadFile(BackupPath(dir, 1)), "B");
  EXPECT_EQ(ReadFile(dir.File("timeline.spc")), "space");
}

}  // namespace
