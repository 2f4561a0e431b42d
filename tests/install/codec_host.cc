// A C++ program outside the tree that reads a list with the installed CMX
// 3600 codec alone: how many events, and the rate its text gives.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "cmx3600/cmx3600.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  std::ifstream in(argv[1], std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const tcs::cmx3600::RateScan scan = tcs::cmx3600::ScanRate(text);
  unsigned events = 0;
  tcs::cmx3600::EventReader reader(
      {scan.rate, false}, [](void* n, const tcs::cmx3600::Event&) { ++*static_cast<unsigned*>(n); },
      nullptr, &events);
  if (!reader.Read(text)) return 1;
  std::printf("%u events at %s\n", events, tcs::timecode::FrameRateText(scan.rate).c_str());
  return 0;
}
