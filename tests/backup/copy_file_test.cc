// CopyFileBytes and the exported CopyFileContents on real files.
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "backup/backup_api.h"
#include "backup/backup_copy.h"
#include "support/temp_dir.h"

namespace {

using tcs_test::ReadFile;
using tcs_test::TempDir;
using tcs_test::WriteFile;

constexpr const char* kMissing = "<missing>";

TEST(CopyFile, Outcomes) {
  const std::string ten = "0123456789";
  const std::string hundred(100, 'h');
  struct Case {
    const char* what;
    const char* destination;  // kMissing: no file
    std::string source;       // kMissing: no file
    bool copied;
    std::string after;
  };
  const Case cases[] = {
      {"onto a missing destination", kMissing, ten, false, kMissing},
      {"onto an empty destination", "", ten, true, ten},
      {"onto a longer destination", hundred.c_str(), ten, true, ten},
      {"onto a shorter destination", "abc", hundred, true, hundred},
      {"from an empty source", "keep", "", false, "keep"},
      {"from a missing source", "keep", kMissing, false, "keep"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    for (bool exported : {false, true}) {
      SCOPED_TRACE(exported ? "CopyFileContents" : "CopyFileBytes");
      TempDir dir;
      std::string destination = dir.File("to");
      std::string source = dir.File("from");
      if (std::string(c.destination) != kMissing) WriteFile(destination, c.destination);
      if (c.source != kMissing) WriteFile(source, c.source);
      if (exported) {
        CopyFileContents(destination.data(), source.data());
      } else {
        EXPECT_EQ(tcs::CopyFileBytes(destination.c_str(), source.c_str()), c.copied);
      }
      EXPECT_EQ(ReadFile(destination), c.after);
      EXPECT_EQ(ReadFile(source), c.source) << "the source is never changed";
    }
  }
  EXPECT_FALSE(tcs::CopyFileBytes(nullptr, nullptr));
  CopyFileContents(nullptr, nullptr);
}

// A source whose size and 4096 bytes of slack do not count in 32 bits is
// refused whole rather than copied cut. Sparse files: no disk is used.
TEST(CopyFile, RefusesSourcesOf4GiBMinus4096AndMore) {
  for (uintmax_t size : {uintmax_t{0xFFFFF000}, uintmax_t{0x100000000}, uintmax_t{0x10000000A}}) {
    SCOPED_TRACE(size);
    TempDir dir;
    const std::string destination = dir.File("to");
    const std::string source = dir.File("from");
    WriteFile(destination, "keep");
    WriteFile(source, "");
    std::filesystem::resize_file(source, size);
    EXPECT_FALSE(tcs::CopyFileBytes(destination.c_str(), source.c_str()));
    EXPECT_EQ(ReadFile(destination), "keep");
  }
}

}  // namespace
