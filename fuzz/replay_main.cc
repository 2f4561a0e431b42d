// A main for a harness built without libFuzzer: runs LLVMFuzzerTestOneInput
// once on every file named, and on every file inside a directory named. The
// coverage build replays the checked-in corpora through it.
//
//   fuzz_setmode_replay fuzz/corpus/fuzz_setmode [FILE...]
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

void Replay(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>()};
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  long replayed = 0;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path named(argv[i]);
    if (std::filesystem::is_directory(named)) {
      for (const auto& entry : std::filesystem::directory_iterator(named)) {
        if (!entry.is_regular_file()) continue;
        Replay(entry.path());
        ++replayed;
      }
    } else {
      Replay(named);
      ++replayed;
    }
  }
  std::printf("replayed %ld inputs\n", replayed);
  return 0;
}
