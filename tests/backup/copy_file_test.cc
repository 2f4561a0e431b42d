// CopyFileBytes and the exported CopyFileContents on real files.
#include <string>

#include <gtest/gtest.h>

#include "backup/backup_api.h"
#include "backup/backup_copy.h"
#include "support/temp_dir.h"

namespace {

using tcs_test::ReadFile;
using tcs_test::WriteFile;

constexpr const char* kMissing = "<missing>";

TEST(CopyFile, Outcomes) {
  struct Case {
    const char* what;
    std::string destination;  // kMissing: no file
    std::string source;
    bool copied;
    std::string after;
  };
  const Case cases[] = {
      {"onto a missing destination", kMissing, "0123456789", false, kMissing},
      {"onto a longer destination", std::string(100, 'h'), "0123456789", true, "0123456789"},
      {"from an empty source", "keep", "", false, "keep"},
  };
  for (const Case& c : cases) {
    for (bool exported : {false, true}) {
      SCOPED_TRACE(testing::Message() << c.what << (exported ? " (exported)" : ""));
      tcs_test::TempDir dir;
      std::string destination = dir.File("to");
      std::string source = dir.File("from");
      if (c.destination != kMissing) WriteFile(destination, c.destination);
      WriteFile(source, c.source);
      if (exported) {
        CopyFileContents(destination.data(), source.data());
      } else {
        EXPECT_EQ(tcs::CopyFileBytes(destination.c_str(), source.c_str()), c.copied);
      }
      EXPECT_EQ(ReadFile(destination), c.after);
      EXPECT_EQ(ReadFile(source), c.source) << "the source is never changed";
    }
  }
}

}  // namespace
