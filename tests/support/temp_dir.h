// TempDir: a fresh directory under the system's temporary folder, unique to
// one test, removed with everything in it when the object goes. Helpers to
// write and read whole files in it.
#ifndef TCS_TESTS_SUPPORT_TEMP_DIR_H_
#define TCS_TESTS_SUPPORT_TEMP_DIR_H_

#include <filesystem>
#include <string>

namespace tcs_test {

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // path() / name, as a string.
  std::string File(const std::string& name) const;

 private:
  std::filesystem::path path_;
};

// Writes `contents` as the whole file (created or replaced).
void WriteFile(const std::string& name, const std::string& contents);
// The whole file; "<missing>" when it cannot be opened.
std::string ReadFile(const std::string& name);

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_TEMP_DIR_H_
