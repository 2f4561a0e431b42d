// Splitting and joining paths.
#include <string>

#include <gtest/gtest.h>

#include "platform/qvos.h"

namespace {

struct Parts {
  std::string drive, directory, name, extension;
};

Parts Split(const char* path) {
  char drive[QV_MAX_PATH] = "?";
  char directory[QV_MAX_PATH] = "?";
  char name[QV_MAX_FNAME] = "?";
  char extension[QV_MAX_FNAME] = "?";
  qvOSSplitPath(path, drive, directory, name, extension);
  return {drive, directory, name, extension};
}

std::string Make(const char* drive, const char* directory, const char* name,
                 const char* extension) {
  char out[QV_MAX_PATH] = "?";
  qvOSMakePath(out, drive, directory, name, extension);
  return out;
}

TEST(QvOSPath, SplitTable) {
  struct Case {
    const char* path;
    Parts parts;
  };
  const Case cases[] = {
      {"/data/timeline.spc", {"", "/data/", "timeline", ".spc"}},
      {"/data/timeline", {"", "/data/", "timeline", ""}},
      {"/data/timeline.", {"", "/data/", "timeline", "."}},
      {"/data/a.b.c", {"", "/data/", "a.b", ".c"}},
      {"/data.d/timeline", {"", "/data.d/", "timeline", ""}},
      {"/data/.profile", {"", "/data/", ".profile", ""}},
      {"/data/..a.b", {"", "/data/", "..a", ".b"}},
      {"/data/..", {"", "/data/", "..", ""}},
      {"/data/", {"", "/data/", "", ""}},
      {"timeline.spc", {"", "", "timeline", ".spc"}},
      {"/", {"", "/", "", ""}},
      {"", {"", "", "", ""}},
      {nullptr, {"", "", "", ""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path == nullptr ? "(null)" : c.path);
    const Parts got = Split(c.path);
    EXPECT_EQ(got.drive, c.parts.drive);
    EXPECT_EQ(got.directory, c.parts.directory);
    EXPECT_EQ(got.name, c.parts.name);
    EXPECT_EQ(got.extension, c.parts.extension);
  }
  char name[QV_MAX_FNAME] = "?";
  qvOSSplitPath("/data/timeline.spc", nullptr, nullptr, name, nullptr);
  EXPECT_STREQ(name, "timeline");
}

TEST(QvOSPath, MakeTable) {
  EXPECT_EQ(Make("", "/data/", "timeline", "spc"), "/data/timeline.spc");
  EXPECT_EQ(Make(nullptr, "/data", "timeline", nullptr), "/data/timeline");
  EXPECT_EQ(Make(nullptr, "", "timeline", ""), "timeline");
  EXPECT_EQ(Make(nullptr, nullptr, nullptr, nullptr), "");
}

// Joining the parts of a split gives the path back, whenever nothing was cut.
TEST(QvOSPath, SplitThenMakeGivesThePathBack) {
  const char* paths[] = {"/data/timeline.spc", "/data/timeline", "/data/timeline.",
                         "rel/dir/a.b.c",      "/data/.profile", "/data/..a.b",
                         "/",                  "x"};
  for (const char* path : paths) {
    SCOPED_TRACE(path);
    const Parts p = Split(path);
    EXPECT_EQ(Make(p.drive.c_str(), p.directory.c_str(), p.name.c_str(), p.extension.c_str()),
              path);
  }
}

// Parts too long for their buffers are cut to fit, never overrun (the
// sanitizer build checks the bounds).
TEST(QvOSPath, LongPartsAreCutToTheirBuffers) {
  const std::string long_dir = "/" + std::string(5000, 'd') + "/";
  const std::string long_name(300, 'n');
  const std::string long_ext = "." + std::string(300, 'e');
  const Parts p = Split((long_dir + long_name + long_ext).c_str());
  EXPECT_EQ(p.directory, long_dir.substr(0, QV_MAX_PATH - 1));
  EXPECT_EQ(p.name, long_name.substr(0, QV_MAX_FNAME - 1));
  EXPECT_EQ(p.extension, long_ext.substr(0, QV_MAX_FNAME - 1));

  const std::string joined = Make("", long_dir.c_str(), long_name.c_str(), long_ext.c_str());
  EXPECT_EQ(joined, long_dir.substr(0, QV_MAX_PATH - 1));
  const std::string dir_4000 = "/" + std::string(3998, 'd') + "/";
  EXPECT_EQ(Make("", dir_4000.c_str(), long_name.c_str(), "spc"),
            (dir_4000 + long_name + ".spc").substr(0, QV_MAX_PATH - 1));
}

}  // namespace
