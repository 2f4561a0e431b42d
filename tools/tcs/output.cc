#include "output.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

#include "cli.h"
#include "edl_file.h"
#include "tcs.h"
#include "timeline.h"

namespace tcs::cli {
namespace {

bool SameFile(const std::string& a, const std::string& b) {
  struct stat first;
  struct stat second;
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(text.data(), std::streamsize(text.size()));
  file.close();
  return static_cast<bool>(file);
}

// How many backups `path` has, as the library counts them.
unsigned BackupCount(const std::string& path) {
  CTimeCodeSpace* space = tcsOpen(nullptr, nullptr, path.c_str());
  if (space == nullptr) Fail(path + ": no space could be opened to count its backups");
  const unsigned count = tcsGetNumberOfBackUpsAvailable(space);
  tcsClose(space);
  return count;
}

// Moves backups up a number, oldest first, and copies `path` to backup 0.
std::string KeepBackup(const std::string& path) {
  for (unsigned n = BackupCount(path); n > 0; --n) {
    const std::string from = BackupName(path, n - 1);
    const std::string to = BackupName(path, n);
    if (std::rename(from.c_str(), to.c_str()) != 0) {
      Fail("cannot keep a backup of " + path + ": " + from + ": " + std::strerror(errno));
    }
  }
  const std::string backup = BackupName(path, 0);
  std::string old;
  if (!host::LoadFile(path, old)) Fail("cannot keep a backup of " + path + ": " + std::strerror(errno));
  WriteAtomically(backup, [&](const std::string& temporary) { return WriteFile(temporary, old); });
  return backup;
}

}  // namespace

std::string BackupName(const std::string& path, unsigned number) {
  const size_t slash = path.find_last_of('/');
  const size_t dot = path.find_last_of('.');
  const bool has_dot = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  const std::string base = has_dot ? path.substr(0, dot) : path;
  const std::string extension = has_dot ? path.substr(dot + 1) : "";
  char digits[16];
  std::snprintf(digits, sizeof digits, ".%03u.", number);
  return base + digits + extension;
}

std::optional<std::string> Deliver(const std::string& out, const std::string& input,
                                   const std::string& text) {
  if (out == "-") {
    std::cout.write(text.data(), std::streamsize(text.size()));
    std::cout.flush();
    if (!std::cout) Fail("cannot write the output");
    return std::nullopt;
  }
  std::optional<std::string> backup;
  if (SameFile(out, input)) backup = KeepBackup(out);
  WriteAtomically(out, [&](const std::string& temporary) { return WriteFile(temporary, text); });
  return backup;
}

}  // namespace tcs::cli
