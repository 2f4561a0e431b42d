#include "support/temp_dir.h"

#include <stdlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace tcs_test {

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "tcs-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                               std::filesystem::perm_options::add, ignored);
  std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::File(const std::string& name) const { return (path_ / name).string(); }

void WriteFile(const std::string& name, const std::string& contents) {
  std::ofstream out(name, std::ios::binary | std::ios::trunc);
  out << contents;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + name);
}

std::string ReadFile(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  if (!in) return "<missing>";
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

}  // namespace tcs_test
