// The names of backups and of the restore's target.
#include <string>

#include <gtest/gtest.h>

#include "backup/backup_names.h"

namespace {

using tcs::BackupNames;
using tcs::PathBuffer;

std::string BackupName(const BackupNames& names, int32_t number) {
  PathBuffer out;
  out.fill('?');
  const bool fits = names.Backup(number, out);
  EXPECT_EQ(fits, out[0] != '\0');
  return out.data();
}

TEST(BackupNames, Table) {
  struct Case {
    const char* file;
    const char* minus_one;
    const char* zero;
    const char* n1000;
  };
  const Case cases[] = {
      {"/data/timeline.spc", "/data/timeline.-01.spc", "/data/timeline.000.spc",
       "/data/timeline.1000.spc"},
      {"/data/timeline", "/data/timeline.-01.", "/data/timeline.000.", "/data/timeline.1000."},
      {"/data/timeline.", "/data/timeline.-01.", "/data/timeline.000.", "/data/timeline.1000."},
      {"a.b.spc", "a.b.-01.spc", "a.b.000.spc", "a.b.1000.spc"},
      {"/d.x/.hidden", "/d.x/.hidden.-01.", "/d.x/.hidden.000.", "/d.x/.hidden.1000."},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const auto names = BackupNames::Of(c.file);
    ASSERT_TRUE(names.has_value());
    EXPECT_EQ(BackupName(*names, -1), c.minus_one);
    EXPECT_EQ(BackupName(*names, 0), c.zero);
    EXPECT_EQ(BackupName(*names, 1000), c.n1000);
    EXPECT_STREQ(names->Own(), c.file) << "the restore writes the space's file itself";
  }
}

// 4095 characters fit; one more is refused, never cut.
TEST(BackupNames, LongNamesAreRefusedNotCut) {
  // /ddd.../t.spc of 4091 characters: backup 999 has 4095, backup 1000 4096.
  const std::string file = "/" + std::string(4091 - 7, 'd') + "/t.spc";
  ASSERT_EQ(file.size(), 4091u);
  const auto names = BackupNames::Of(file.c_str());
  ASSERT_TRUE(names.has_value());
  EXPECT_EQ(BackupName(*names, 999).size(), 4095u);
  EXPECT_EQ(BackupName(*names, -1).size(), 4095u);
  EXPECT_EQ(BackupName(*names, 1000), "");
  EXPECT_EQ(BackupName(*names, INT32_MAX), "");
}

// A file whose parts do not fit the split's buffers gives no names at all.
TEST(BackupNames, UnsplittableFilesGiveNoNames) {
  const std::string long_component = "/data/" + std::string(300, 'n') + ".spc";
  const std::string long_extension = "/data/t." + std::string(300, 'e');
  const std::string too_long = "/" + std::string(4096, 'd');
  for (const std::string& file : {long_component, long_extension, too_long}) {
    EXPECT_FALSE(BackupNames::Of(file.c_str()).has_value()) << file.size();
  }
  EXPECT_FALSE(BackupNames::Of(nullptr).has_value());
  // The longest name whose parts fit still splits whole.
  const std::string longest = "/data/" + std::string(250, 'n') + ".spc";
  EXPECT_TRUE(BackupNames::Of(longest.c_str()).has_value());
}

}  // namespace
