// Play clips keep the text their record had when they were made, however the
// record changes later, and share one pooled copy per distinct text.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "lookup/effect_text_pool.h"
#include "lookup/lookup.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "support/test_clips.h"

namespace {

constexpr size_t kTextSize = CTCRange::kEffectTextSize;

std::string TextOf(const char* buffer) { return std::string(buffer, strnlen(buffer, kTextSize)); }

// Random texts from a small set (so many are shared), some of the full 4095
// characters, laid as records; afterwards every record's text is changed.
// Each query still copies out the text the play clip was made with, followed
// by zeros: stale bytes past a record's terminator are not kept.
TEST(EffectTextPool, QueriesCopyTheTextThePlayClipWasMadeWith) {
  const std::string long_text(kTextSize - 1, 'x');
  const std::vector<std::string> texts = {"", "", "Dissolve", "Wipe", long_text};
  std::mt19937 rng(301);
  tcs_test::OpenedSpace space;
  tcs::SpaceLock hold(*space);
  std::vector<std::string> made_with;
  for (uint32_t i = 0; i < 200; ++i) {
    const auto record = tcs_test::MakeClip(i * 10, 10);
    // A longer text first leaves stale bytes behind the shorter one.
    record->SetEffect(5, const_cast<char*>("Dissolve-long-name"), 10);
    const std::string& text = texts[rng() % texts.size()];
    std::memcpy(record->effectText, text.c_str(), text.size() + 1);
    made_with.push_back(text);
    ASSERT_NE(space->AddClip(0, record.get(), 0), nullptr);
  }
  for (CClip* c : tcs_test::ListedClips(*space)) {
    c->SetEffect(1, const_cast<char*>("changed behind the lookup's back"), 5);
  }
  CTCLookup& lookup = *space->LookupOf(0);
  lookup.CheckInvariants();
  for (uint32_t i = 0; i < 200; ++i) {
    CPlayClip out;
    std::memset(out.effectText, '?', kTextSize);
    ASSERT_NE(lookup.Translate(i * 10 + 3, out), 0x80000001u);
    const std::string& text = made_with[i];
    const std::string zeros(kTextSize - text.size(), '\0');
    EXPECT_EQ(std::string(out.effectText, kTextSize), text + zeros) << "clip " << i;
  }
}

// Acquire and Release against a count per distinct text: a text stays pooled
// exactly while someone holds it, and equal texts share one copy.
TEST(EffectTextPool, SharesEqualTextsAndFreesWithTheLastHolder) {
  tcs::EffectTextPool pool;
  std::mt19937 rng(7);
  std::vector<const tcs::PooledText*> held;
  std::map<std::string, int> model;
  char buffer[kTextSize];
  for (int step = 0; step < 4000; ++step) {
    if (held.empty() || rng() % 3 != 0) {
      std::memset(buffer, 0, sizeof buffer);
      const std::string text = rng() % 4 == 0 ? "" : "fx" + std::to_string(rng() % 6);
      std::memcpy(buffer, text.c_str(), text.size());
      const tcs::PooledText* pooled = pool.Acquire(buffer);
      ASSERT_EQ(TextOf(pooled->bytes), text);
      for (const tcs::PooledText* other : held) {
        ASSERT_EQ(TextOf(other->bytes) == text, other == pooled);
      }
      held.push_back(pooled);
      ++model[text];
    } else {
      const size_t k = rng() % held.size();
      const std::string text = TextOf(held[k]->bytes);
      pool.Release(held[k]);
      held.erase(held.begin() + long(k));
      if (--model[text] == 0) model.erase(text);
    }
    ASSERT_EQ(pool.distinct(), model.size());
  }
}

}  // namespace
