// The names of backups: "%s.%03d.%s" around the space's file, never cut.
#include <string>

#include <gtest/gtest.h>

#include "backup/backup_names.h"

namespace {

using tcs::BackupNames;

std::string BackupName(const char* file, int32_t number) {
  const auto names = BackupNames::Of(file);
  if (!names) return "<no names>";
  tcs::PathBuffer out;
  out.fill('?');
  names->Backup(number, out);
  return out.data();
}

TEST(BackupNames, Table) {
  const std::string dir = "/" + std::string(4084, 'd');
  const std::string file_4091 = dir + "/t.spc";  // backup 999: 4095 characters
  struct Case {
    std::string file;
    int32_t number;
    std::string want;
  };
  const Case cases[] = {
      {"/data/timeline.spc", 0, "/data/timeline.000.spc"},
      {"/data/timeline.spc", -1, "/data/timeline.-01.spc"},
      {"/data/timeline.spc", 1000, "/data/timeline.1000.spc"},
      {"/data/timeline", 0, "/data/timeline.000."},
      {"a.b.spc", 7, "a.b.007.spc"},
      {file_4091, 999, dir + "/t.999.spc"},
      {file_4091, 1000, ""},  // 4096 characters: refused, not cut
      {"/data/" + std::string(300, 'n') + ".spc", 0, "<no names>"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.file.size() << " " << c.number);
    EXPECT_EQ(BackupName(c.file.c_str(), c.number), c.want);
  }
}

}  // namespace
