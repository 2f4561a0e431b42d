#include "backup/backup_names.h"

#include <cstdio>
#include <cstring>

namespace tcs {
namespace {

// snprintf into out, refusing (false, out "") what does not fit.
template <typename... Args>
bool Format(PathBuffer& out, const char* format, Args... args) {
  const int length = std::snprintf(out.data(), out.size(), format, args...);
  if (length < 0 || static_cast<size_t>(length) >= out.size()) {
    out[0] = '\0';
    return false;
  }
  return true;
}

}  // namespace

std::optional<BackupNames> BackupNames::Of(const char* file_name) {
  if (file_name == nullptr || std::strlen(file_name) >= QV_MAX_PATH) return std::nullopt;
  char drive[QV_MAX_PATH];
  char directory[QV_MAX_PATH];
  char name[QV_MAX_FNAME];
  char extension[QV_MAX_FNAME];
  qvOSSplitPath(file_name, drive, directory, name, extension);

  PathBuffer rejoined;
  qvOSMakePath(rejoined.data(), drive, directory, name, extension);
  if (std::strcmp(rejoined.data(), file_name) != 0) return std::nullopt;

  BackupNames names;
  qvOSMakePath(names.base_.data(), drive, directory, name, nullptr);
  std::strcpy(names.extension_, extension[0] == '.' ? extension + 1 : extension);
  // With a dot, "%s.%s" of base and extension rebuilds F exactly, as the
  // split joined back into F above. Without one it would give "base.", which
  // is not the space's file. So the restore's target is F in both cases.
  std::strcpy(names.own_.data(), file_name);
  return names;
}

bool BackupNames::Backup(int32_t number, PathBuffer& out) const {
  return Format(out, "%s.%03d.%s", base_.data(), static_cast<int>(number), extension_);
}

}  // namespace tcs
