// tcs backups: counts the numbered backups beside a file ("NAME.000.EXT",
// "NAME.001.EXT", ... an unbroken run from 000) and restores one of them over
// the file, the later ones moving down by one number.
#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <iostream>

#include "cli.h"
#include "tcs.h"

namespace tcs::cli {
namespace {

// Opens a space bound to the file for the call, closes it on every path.
class BoundSpace {
 public:
  explicit BoundSpace(const std::string& path) : space_(tcsOpen(nullptr, nullptr, path.c_str())) {
    if (space_ == nullptr) Fail(path + ": no space could be opened for it");
  }
  ~BoundSpace() { tcsClose(space_); }
  BoundSpace(const BoundSpace&) = delete;
  BoundSpace& operator=(const BoundSpace&) = delete;
  CTimeCodeSpace* get() const { return space_; }

 private:
  CTimeCodeSpace* space_;
};

}  // namespace

int RunBackups(const Args& args) {
  const std::string& path = args.positional()[0];
  std::optional<uint32_t> restore;
  if (const std::optional<std::string> text = args.Value("--restore")) {
    uint32_t n = 0;
    const auto [end, ec] = std::from_chars(text->data(), text->data() + text->size(), n);
    if (text->empty() || ec != std::errc() || end != text->data() + text->size() || n == 0) {
      UsageFail("--restore " + *text + ": give the number of a backup: 1 for NAME.000.EXT, 2 for NAME.001.EXT, ...");
    }
    restore = n;
  }
  struct stat info;
  if (stat(path.c_str(), &info) != 0) Fail(path + ": " + std::strerror(errno));
  const BoundSpace space(path);
  const uint32_t count = tcsGetNumberOfBackUpsAvailable(space.get());
  if (!restore) {
    std::cout << path << ": " << Counted(count, "backup") << '\n';
    return 0;
  }
  if (*restore > count) {
    Fail(path + ": cannot restore backup " + std::to_string(*restore) + ", there " +
         (count == 1 ? "is 1" : "are " + std::to_string(count)));
  }
  char restored[4096] = {};
  const uint32_t result = tcsSetBackUpRestore(space.get(), *restore, restored);
  if (result != TCS_RESULT_NONE) {
    Fail(path + ": restored " + restored + ", but an older backup could not be deleted (error " +
         std::to_string(result) + ")");
  }
  std::cout << "restored " << restored << " over " << path;
  if (*restore == 2) std::cout << "; backup 1 deleted";
  if (*restore > 2) std::cout << "; backups 1 to " << *restore - 1 << " deleted";
  std::cout << "; " << count - *restore << " older backups renumbered\n";
  return 0;
}

}  // namespace tcs::cli
