// Backups: their names, the file copy they are restored with, and counting
// and restoring them on real files against a model of what a restore does to
// the numbered files.
#include "backup/backup_restore.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "backup/backup_api.h"
#include "backup/backup_copy.h"
#include "backup/backup_names.h"
#include "support/log_capture.h"
#include "support/temp_dir.h"

namespace {

using tcs_test::ReadFile;
using tcs_test::TempDir;
using tcs_test::WriteFile;

constexpr uint32_t kNone = 0xFFFFFFFF;
constexpr int kOwn = -2;

// The folder as the model sees it: file number -> contents; the space's file
// is kOwn, its backups are 0, 1, ... and -1.
using Layout = std::map<int, std::string>;

// The space's file "timeline[.ext]" in a fresh folder; its backups are
// "timeline.NNN.ext" (ending in a dot without an extension).
struct Folder {
  TempDir dir;
  std::string ext;
  std::string File(int number) const {
    if (number == kOwn) return dir.File(ext.empty() ? "timeline" : "timeline." + ext);
    char middle[16];
    std::snprintf(middle, sizeof middle, ".%03d.", number);
    return dir.File("timeline" + std::string(middle) + ext);
  }
  void Write(const Layout& layout) const {
    for (const auto& [number, contents] : layout) WriteFile(File(number), contents);
  }
  // Reads the files kOwn..9; any other file is a failure.
  Layout Read() const {
    Layout layout;
    for (int i = kOwn; i < 10; ++i) {
      if (std::filesystem::exists(File(i))) layout[i] = ReadFile(File(i));
    }
    const std::filesystem::directory_iterator files(dir.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), std::ssize(layout));
    return layout;
  }
};

// Restoring n: backups before n go, backup n - 1 becomes the space's file,
// every later one of the run moves down one (000 onto -1 when n = 0).
// Files past the run stay.
Layout ModelRestore(const Layout& before, int n) {
  int count = 0;
  while (before.count(count) != 0) ++count;
  if (n > count) return before;
  Layout after = before;
  for (int i = 0; i < count; ++i) after.erase(i);
  for (int i = std::max(n - 1, 0); i < count; ++i) after[i + 1 == n ? kOwn : i - 1] = before.at(i);
  return after;
}

// Runs 000..run-1 with a stray backup past a gap (000 001 003 counts 2),
// with and without a -1 file, restored with every n from 0 to past the count.
TEST(BackupRestore, MatchesTheModel) {
  for (const char* ext : {"spc", ""}) {
    for (int run = 0; run <= 3; ++run) {
      for (bool minus_one : {false, true}) {
        for (int n = 0; n <= run + 1; ++n) {
          SCOPED_TRACE(testing::Message()
                       << "ext '" << ext << "' run " << run << " -1 " << minus_one << " n " << n);
          Layout before{{kOwn, "space"}, {run + 1, "stray"}};
          for (int i = 0; i < run; ++i) before[i] = "backup " + std::to_string(i);
          if (minus_one) before[-1] = "old -1";
          const Folder folder{{}, ext};
          folder.Write(before);
          const std::string own = folder.File(kOwn);
          EXPECT_EQ(tcs::CountBackups(own.c_str()), static_cast<uint32_t>(run));
          // A host's buffer holds whatever it held before: the name must
          // bring its own terminating zero.
          char restored[4096];
          std::memset(restored, '#', sizeof restored - 1);
          restored[sizeof restored - 1] = '\0';
          std::memcpy(restored, "untouched", 10);
          tcs_test::LogCapture log;
          EXPECT_EQ(tcs::RestoreBackup(own.c_str(), n, restored), kNone);
          EXPECT_EQ(folder.Read(), ModelRestore(before, n));
          EXPECT_EQ(restored, n >= 1 && n <= run ? folder.File(n - 1) : "untouched");
          EXPECT_TRUE(log.Lines().empty());
        }
      }
    }
  }
}

// Moving 000 onto an existing -1 file copies it; a 000 too large to copy
// (sparse, no disk used) is kept, and 001 is not moved onto it.
TEST(BackupRestore, FailedCopyKeepsItsSource) {
  const Folder folder{{}, "spc"};
  folder.Write({{kOwn, "space"}, {-1, "old"}, {0, ""}, {1, "B"}});
  std::filesystem::resize_file(folder.File(0), 0x100000000);
  EXPECT_EQ(tcs::RestoreBackup(folder.File(kOwn).c_str(), 0, nullptr), kNone);
  EXPECT_EQ(std::filesystem::file_size(folder.File(0)), 0x100000000u);
  std::filesystem::resize_file(folder.File(0), 0);
  EXPECT_EQ(folder.Read(), (Layout{{kOwn, "space"}, {-1, "old"}, {0, ""}, {1, "B"}}));
}

// A coverage build's profile writer, which runs at exit: the child below
// leaves by _exit (no test framework teardown in a copy of this process), so
// it calls the writer itself. Null in other builds.
extern "C" int __llvm_profile_write_file(void) __attribute__((weak));

// What a restore answered, wrote into the name buffer and logged.
struct Outcome {
  uint32_t result = 0;
  std::string restored;
  std::vector<std::string> log;
};

// Restores backup n of `own` in a child process that may not change the
// folder's entries (the folder read-only; root, who may change any, drops to
// an ordinary user first), so no file there can be deleted or renamed.
// Nothing when no such process can be had.
std::optional<Outcome> RestoreInReadOnlyFolder(const std::string& folder, const std::string& own,
                                               uint32_t n) {
  std::filesystem::permissions(folder, std::filesystem::perms::owner_read |
                                           std::filesystem::perms::owner_exec |
                                           std::filesystem::perms::others_read |
                                           std::filesystem::perms::others_exec);
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) return std::nullopt;
  std::fflush(nullptr);  // or the child would print what is buffered again
  const pid_t child = fork();
  if (child == 0) {
    close(pipe_ends[0]);
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(2);
    std::string report;
    {
      tcs_test::LogCapture log;
      char restored[4096];
      std::memset(restored, '#', sizeof restored - 1);
      restored[sizeof restored - 1] = '\0';
      std::memcpy(restored, "untouched", 10);
      const uint32_t result = tcs::RestoreBackup(own.c_str(), n, restored);
      report = std::to_string(result) + "\n" + restored + "\n";
      for (const std::string& line : log.Lines()) report += line + "\n";
    }
    const bool sent = write(pipe_ends[1], report.data(), report.size()) ==
                      static_cast<ssize_t>(report.size());
    if (__llvm_profile_write_file != nullptr) __llvm_profile_write_file();
    _exit(sent ? 0 : 3);
  }
  close(pipe_ends[1]);
  std::string report;
  char buffer[4096];
  for (ssize_t got; (got = read(pipe_ends[0], buffer, sizeof buffer)) > 0;) {
    report.append(buffer, got);
  }
  close(pipe_ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
      WEXITSTATUS(status) != 0) {
    return std::nullopt;
  }
  std::istringstream lines(report);
  Outcome outcome;
  std::string line;
  std::getline(lines, line);
  outcome.result = static_cast<uint32_t>(std::stoul(line));
  std::getline(lines, outcome.restored);
  while (std::getline(lines, line)) outcome.log.push_back(line);
  return outcome;
}

// Files that cannot be deleted: an earlier backup stays, and its failed
// deletion is logged and answered, while the restore goes on; the space's
// file, when it cannot be deleted, receives the backup's bytes instead, and
// when it cannot be written either the restore stops there with the failed
// deletion's error, the name buffer untouched.
TEST(BackupRestore, FilesThatCannotBeDeleted) {
  const struct {
    Layout before;
    bool own_writable;
    uint32_t n;
    int deleted_in_vain;  // the file the log names
    Layout after;
    int restored;  // the backup whose name is given back, or kOwn for none
  } rows[] = {
      {{{kOwn, "space"}, {0, "A"}, {1, "B"}}, true, 2, 0,
       {{kOwn, "B"}, {0, "A"}, {1, "B"}}, 1},
      {{{kOwn, "space"}, {0, "A"}}, false, 1, kOwn, {{kOwn, "space"}, {0, "A"}}, kOwn},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "n " << row.n);
    const Folder folder{{}, "spc"};
    folder.Write(row.before);
    const std::string own = folder.File(kOwn);
    std::filesystem::permissions(
        own, row.own_writable ? std::filesystem::perms::all : std::filesystem::perms::owner_read,
        std::filesystem::perm_options::replace);
    const std::optional<Outcome> outcome =
        RestoreInReadOnlyFolder(folder.dir.path().string(), own, row.n);
    if (!outcome) GTEST_SKIP() << "no process that may not delete the files";
    EXPECT_EQ(outcome->result, static_cast<uint32_t>(EACCES));
    EXPECT_EQ(outcome->restored, row.restored == kOwn ? "untouched" : folder.File(row.restored));
    EXPECT_EQ(outcome->log,
              std::vector<std::string>{"Can not delete file " + folder.File(row.deleted_in_vain)});
    EXPECT_EQ(folder.Read(), row.after);
  }
}

// Names are "%s.%03d.%s" around the space's file, never cut: a name that
// does not fit is empty, and a file whose name is too long has none.
TEST(BackupRestore, Names) {
  const std::string dir = "/" + std::string(4084, 'd');
  const std::string file_4091 = dir + "/t.spc";  // backup 999: 4095 characters
  const std::string cases[][3] = {
      {"/data/timeline.spc", "0", "/data/timeline.000.spc"},
      {"/data/timeline.spc", "-1", "/data/timeline.-01.spc"},
      {"/data/timeline.spc", "1000", "/data/timeline.1000.spc"},
      {"/data/timeline", "0", "/data/timeline.000."},
      {"a.b.spc", "7", "a.b.007.spc"},
      {file_4091, "999", dir + "/t.999.spc"},
      {file_4091, "1000", ""},  // 4096 characters: refused, not cut
      {"/data/" + std::string(300, 'n') + ".spc", "0", "<no names>"},
  };
  for (const auto& [file, number, want] : cases) {
    SCOPED_TRACE(testing::Message() << file.size() << " " << number);
    const auto names = tcs::BackupNames::Of(file.c_str());
    tcs::PathBuffer out;
    out.fill('?');
    if (names) names->Backup(std::stoi(number), out);
    EXPECT_EQ(names ? std::string(out.data()) : "<no names>", want);
  }
}

// A copy replaces an existing destination whole and leaves the source; it
// neither creates a destination nor copies an empty source. The exported
// CopyFileContents does the same.
TEST(BackupRestore, CopyFile) {
  const std::string kMissing = "<missing>";
  const std::string cases[][3] = {  // destination before, source, destination after
      {kMissing, "0123456789", kMissing},
      {std::string(100, 'h'), "0123456789", "0123456789"},
      {"keep", "", "keep"},
  };
  for (const auto& [before, source, after] : cases) {
    for (bool exported : {false, true}) {
      SCOPED_TRACE(testing::Message() << before.size() << (exported ? " (exported)" : ""));
      TempDir dir;
      std::string to = dir.File("to"), from = dir.File("from");
      if (before != kMissing) WriteFile(to, before);
      WriteFile(from, source);
      if (exported) {
        CopyFileContents(to.data(), from.data());
      } else {
        EXPECT_EQ(tcs::CopyFileBytes(to.c_str(), from.c_str()), after != before);
      }
      EXPECT_EQ(ReadFile(to), after);
      EXPECT_EQ(ReadFile(from), source);
    }
  }
}

}  // namespace
