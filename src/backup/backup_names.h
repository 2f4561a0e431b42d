// BackupNames: the names built around a space's file F for its numbered
// backups and for the restore's target.
//
//   F = /data/timeline.spc   base /data/timeline   extension spc
//   backup i   "%s.%03d.%s"  /data/timeline.000.spc ... /data/timeline.1000.spc
//                            (-1 prints as /data/timeline.-01.spc)
//   own file   "%s.%s"       /data/timeline.spc
//
// A plain value; any thread may use its own.
#ifndef TCS_BACKUP_BACKUP_NAMES_H_
#define TCS_BACKUP_BACKUP_NAMES_H_

#include <array>
#include <cstdint>
#include <optional>

#include "platform/qvos.h"

namespace tcs {

// Every name is built in one of these: at most 4095 characters.
using PathBuffer = std::array<char, QV_MAX_PATH>;

class BackupNames {
 public:
  // Empty when F does not split into parts that join back into F (a part too
  // long for its buffer, or F itself too long): no name is ever built from a
  // cut part.
  static std::optional<BackupNames> Of(const char* file_name);

  // Writes backup `number`'s name into out. A name longer than 4095
  // characters is refused, not cut: false, and out holds "".
  bool Backup(int32_t number, PathBuffer& out) const;

  // The file a restore writes: F. "%s.%s" of base and extension names F
  // whenever F has a dot; for a file without one it would name "base.",
  // which is not the space's file, so the restore writes F itself.
  const char* Own() const { return own_.data(); }

 private:
  BackupNames() = default;

  PathBuffer base_{};
  char extension_[QV_MAX_FNAME] = {};  // without its dot
  PathBuffer own_{};
};

}  // namespace tcs

#endif  // TCS_BACKUP_BACKUP_NAMES_H_
