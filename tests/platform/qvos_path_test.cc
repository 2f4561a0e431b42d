// Splitting and joining paths.
#include <string>

#include <gtest/gtest.h>

#include "platform/qvos.h"

namespace {

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
