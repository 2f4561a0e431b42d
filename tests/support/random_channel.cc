#include "support/random_channel.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "lookup/lookup.h"
#include "space/space.h"

namespace tcs_test {

CClip* LayPlayClip(CTimeCodeSpace& space, uint32_t channel, CClip& made, bool keep_record) {
  if (space.lookups[channel] == nullptr) space.lookups[channel] = new CTCLookup(&space);
  CClip* record = space.__AddClipToList(0, &made, channel);
  CPlayClip pc;
  pc.Construct(record);
  if (!keep_record) pc.clip = nullptr;
  space.lookups[channel]->Insert(pc);
  return record;
}

void ForEachSeed(const char* prefix, uint64_t first, uint64_t runs,
                 const std::function<void(uint64_t)>& play) {
  const char* seed = std::getenv((std::string(prefix) + "_SEED").c_str());
  const char* count = std::getenv((std::string(prefix) + "_RUNS").c_str());
  if (seed != nullptr) first = std::strtoull(seed, nullptr, 0);
  if (count != nullptr) runs = std::strtoull(count, nullptr, 0);
  for (uint64_t i = 0; i < runs && !::testing::Test::HasFailure(); ++i) {
    SCOPED_TRACE(::testing::Message() << prefix << "_SEED=" << first + i);
    play(first + i);
  }
}

}  // namespace tcs_test
