// Arbitrary bytes as an EDL, read from memory into a space through the
// translator's reader, tolerantly or strictly. Whatever the reader made of them is then exported, the export read
// back into a second space and exported again: what the library writes must
// read back without a complaint, and the second export must give the same
// events as the first.
// The checks of FuzzHost run on both spaces after every call.
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/fuzz_host.h"
#include "tcs.h"

namespace {

using tcs_fuzz::FuzzHost;

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The export with its texts left out: notes ("* ..." lines) and the reel
// column of event lines. Texts are cleaned on the way out (control
// characters, trailing blanks), so only the timing, tracks and transitions
// must survive a round trip byte for byte.
std::string WithoutTexts(const std::string& text) {
  std::string kept;
  size_t from = 0;
  while (from < text.size()) {
    size_t end = text.find('\n', from);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(from, end - from);
    from = end + 1;
    if (!line.empty() && line[0] == '*') continue;
    if (line.size() > 13 && std::isdigit(static_cast<unsigned char>(line[0]))) {
      line.replace(5, 8, 8, ' ');
    }
    kept += line;
    kept += '\n';
  }
  return kept;
}

void IgnoreWarning(void*, const EDLWARNING* warning) {
  if (warning->text == nullptr) FuzzHost::Broken("a warning without its text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string dir = tcs_fuzz::FuzzDir();
  const std::string first = dir + "/first.edl";
  // The same name in another directory: the export titles a file by its name.
  const std::string second = dir + "/again/first.edl";
  static const bool made = std::filesystem::create_directories(dir + "/again");
  (void)made;
  // The last byte picks the rate and the mode, so most mutations keep them.
  EDLSETTINGS settings;
  static const uint32_t kRates[] = {30, 24, 25, 30};
  const uint8_t pick = size != 0 ? data[size - 1] : 0;
  edlInitSettings(&settings, kRates[pick & 3], (pick & 3) == 3);
  settings.strict = (pick & 8) != 0;
  const EDLSETTINGS* rate = (pick & 4) != 0 ? &settings : nullptr;

  FuzzHost read("read.tl");
  edlReadText(read.space, reinterpret_cast<const char*>(data), size, rate, &IgnoreWarning, nullptr);
  read.Check();
  if (tcsWriteEdl(read.space, first.c_str(), 0, rate) != 0) {
    FuzzHost::Broken("the export could not write its file");
  }
  read.Check();

  FuzzHost back("back.tl");
  if (edlReadFile(back.space, first.c_str(), rate) != 0) {
    FuzzHost::Broken("the library's own export does not read back");
  }
  back.Check();
  if (tcsWriteEdl(back.space, second.c_str(), 0, rate) != 0) {
    FuzzHost::Broken("the second export could not write its file");
  }
  back.Check();
  if (WithoutTexts(Slurp(first)) != WithoutTexts(Slurp(second))) {
    FuzzHost::Broken("export, read, export changed the events");
  }
  return 0;
}
