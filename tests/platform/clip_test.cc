// The clip record of the stand-in clip library: a copy owns strings of its
// own, and a null record clears a record whole but for its list fields.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platform/clip.h"
#include "platform/clip_slab.h"
#include "platform/clip_notes.h"
#include "platform/clip_speed.h"

namespace {

std::string Str(const char* text) { return text != nullptr ? text : "<null>"; }

TEST(Clip, ACopyOwnsItsStringsAndANullRecordClearsAllButTheListFields) {
  CClip from;
  from.ClearClip();
  from.start = 100;
  from.length = 50;
  from.sourceIn = 1000;
  from.sourceOut = 1050;
  from.videoMask = 5;
  from.hostTag = 77;
  from.channel = 2;
  from.SetName("Interview_A.mov");
  from.SetReel("TAPE01");
  from.SetComment("checked");
  from.SetClipName("a long short name");
  char text[] = "Dissolve";
  from.SetEffect(0, text, 25);
  clsSetClipSpeed(&from, -25000, 990);
  clsSetBareNotes(&from, 5);

  CClip copy;
  copy.SetClip(&from);
  copy.SetClip(&copy);  // itself: nothing changes
  from.SetName(nullptr);
  from.SetReel("other");
  EXPECT_EQ(Str(copy.name), "Interview_A.mov");
  EXPECT_EQ(Str(copy.reel), "TAPE01");
  EXPECT_EQ(Str(copy.comment), "checked");
  EXPECT_EQ(Str(copy.clipName), "a long s");  // cut to the short name's eight
  EXPECT_STREQ(copy.effectText, "Dissolve");
  EXPECT_EQ(copy.effectDuration, 25u);
  EXPECT_EQ(copy.start, 100u);
  EXPECT_EQ(copy.sourceOut, 1050u);
  EXPECT_EQ(copy.videoMask, 5u);
  EXPECT_EQ(copy.hostTag, 77u);
  EXPECT_EQ(copy.channel, 2u);
  int32_t speed = 0;
  uint32_t entry = 0;
  ASSERT_EQ(clsGetClipSpeed(&copy, &speed, &entry), 1);
  EXPECT_EQ(speed, -25000);
  EXPECT_EQ(entry, 990u);
  EXPECT_EQ(clsGetBareNotes(&copy), 5u);
  // A comment set again has its notes under the label: the forms were the
  // old comment's.
  copy.SetComment("new words");
  EXPECT_EQ(clsGetBareNotes(&copy), 0u);
  clsSetBareNotes(nullptr, 1);
  EXPECT_EQ(clsGetBareNotes(nullptr), 0u);
  ASSERT_EQ(clsGetClipSpeed(&copy, &speed, &entry), 1);

  // The list fields belong to the space that lists the record.
  CClip neighbour;
  copy.next = &neighbour;
  copy.SetClip(static_cast<const CClip*>(nullptr));
  EXPECT_EQ(copy.next, &neighbour);
  // The packed text pointers are read by value, never bound to a reference.
  EXPECT_TRUE(copy.name == nullptr);
  EXPECT_TRUE(copy.reel == nullptr);
  EXPECT_TRUE(copy.comment == nullptr);
  EXPECT_TRUE(copy.clipName == nullptr);
  EXPECT_STREQ(copy.effectText, "");
  EXPECT_EQ(copy.start + copy.length + copy.effectCode + copy.effectDuration, 0u);
  EXPECT_EQ(copy.sourceIn + copy.sourceOut + copy.videoMask + copy.channel, 0u);
  EXPECT_EQ(copy.hostTag, 0u);
  EXPECT_EQ(clsGetClipSpeed(&copy, nullptr, nullptr), 0);
}

}  // namespace

// Records made and freed in a random order: no two live records share
// memory, each keeps what was written into it, a host's larger derived
// record starts empty (its bases are built by the derived class) and is
// freed as what it is; slabs emptied are used again before any new one is
// mapped, and a trim gives back every slab that holds no record.
TEST(ClipSlabs, LiveRecordsNeverShareMemoryAndEmptySlabsGoBack) {
  struct HostClip : CClip {
    char extra[100] = {};
  };
  std::mt19937 random(7);
  std::vector<std::unique_ptr<CClip>> live;
  uint64_t made = 0;
  size_t peak = 0;
  const auto check_all = [&] {
    for (const auto& clip : live) {
      ASSERT_EQ(Str(clip->name), "take " + std::to_string(clip->hostTag));
      ASSERT_EQ(clip->start, uint32_t(clip->hostTag * 3));
    }
  };
  for (int step = 0; step < 3000; ++step) {
    // Grows to about a thousand records (four slabs), then shrinks to none.
    const bool make = step < 1500 ? random() % 4 != 0 : random() % 4 == 0;
    if (make || live.empty()) {
      auto clip = random() % 16 == 0 ? std::unique_ptr<CClip>(new HostClip) : std::make_unique<CClip>();
      clip->hostTag = ++made;
      clip->start = uint32_t(made * 3);
      clip->SetName(("take " + std::to_string(made)).c_str());
      live.push_back(std::move(clip));
      peak = std::max(peak, live.size());
    } else {
      std::swap(live[random() % live.size()], live.back());
      live.pop_back();
    }
    if (step % 100 == 0) check_all();
  }
  check_all();
  live.clear();
  const size_t held = clsRecordSlabs();
  for (size_t i = 0; i < peak / 2; ++i) live.push_back(std::make_unique<CClip>());
  // From the heap (under AddressSanitizer or valgrind) there are none.
  EXPECT_EQ(clsRecordSlabs(), held);
  const size_t in_use = held == 0 ? 0 : size_t(clsRecordSlabs() - clsTrimRecordSlabs());
  EXPECT_LE(in_use, held);
  live.resize(1);
  clsTrimRecordSlabs();
  EXPECT_EQ(clsRecordSlabs(), held == 0 ? 0u : 1u);
}

// Stepping through a mask with findChannel gives its set bits lowest
// first, each plus the base, then 0xFFFFFFFF with nothing left.
TEST(Clip, FindChannelStepsThroughAMaskLowestBitFirst) {
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    const unsigned int mask = round == 0 ? 0u : round == 1 ? 0x80000001u : unsigned(random());
    const unsigned int base = 32u * unsigned(round % 3);
    std::vector<unsigned int> expected;
    for (unsigned int bit = 0; bit < 32; ++bit) {
      if ((mask >> bit & 1u) != 0) expected.push_back(base + bit);
    }
    std::vector<unsigned int> found;
    unsigned int rest = mask;
    for (unsigned int channel; (channel = findChannel(rest, &rest, base)) != 0xFFFFFFFFu;) {
      ASSERT_LE(found.size(), 32u);
      found.push_back(channel);
    }
    EXPECT_EQ(found, expected) << std::hex << mask;
    EXPECT_EQ(rest, 0u);
  }
  EXPECT_EQ(findChannel(6u, nullptr, 0u), 1u);
}
