// The walk step against the same step made of plain clip searches, each of
// which copies its play clip into the space's scratch play clip and sets or
// clears clipActive, on random channels that overlap, hold empty and
// record-less play clips and link sources across channels, with host search
// modes, the cover search and fresh marks. After every step the record, the
// caller's copy of the clip, the scratch play clip (all its bytes) and
// clipActive must be the same. Edits between steps move, make and free play
// clips. TCS_WALK_SEED and TCS_WALK_RUNS move the seeds.
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <tuple>

#include "command/clip_search.h"
#include "command/clip_walk.h"
#include "lookup/lookup.h"
#include "space/space.h"
#include "space/space_lock.h"
#include "support/random_channel.h"
#include "support/test_clips.h"
#include "tcs.h"

namespace {

constexpr uint32_t kNotFound = 0x80000001u;
constexpr std::array<uint32_t, 20> kScan = {0,  1,  2,  3,  32, 33, 34, 35, 36, 37,
                                            38, 39, 40, 41, 42, 43, 44, 45, 46, 47};

bool InScan(CTimeCodeSpace& space, uint32_t c) {
  const CTCLookup* lookup = space.LookupOf(c);
  return lookup != nullptr && !lookup->empty();
}

bool Marked(uint32_t v, uint32_t a, uint32_t c) { return ((c < 32 ? v >> c : a >> (c - 32)) & 1) != 0; }

void Mark(TCSCMD& r, uint32_t c) { (c < 32 ? r.videoMask : r.audioMask) |= 1u << (c % 32); }

uint32_t End(TCSCMD& r) {
  r.position = r.inPoint = r.outPoint = 0xFFFFFFFFu;
  r.videoMask = r.audioMask = r.auxMask = 0;
  return kNotFound;
}

// The step as its definition reads: set-up, at most two sweeps, the find and
// the event pass, every query a tcs::FindClip.
uint32_t PlainStep(CTimeCodeSpace& s, TCSCMD& r, bool fresh, CClip* clip) {
  const uint32_t m = (r.flags & TCSF_MODE) != 0 && r.selector != 0 ? r.selector : 24;
  uint32_t p = r.position, v = r.videoMask, a = r.audioMask;
  uint32_t limit = r.inPoint < r.outPoint ? p + (r.outPoint - r.inPoint) : 0xFFFFFFFFu;
  const bool cover = (r.flags & 0x540) == 0x40;
  uint32_t best = 0, chosen = 0;
  for (int sweep = 0;; ++sweep) {
    best = 0xFFFFFFFFu;
    chosen = 0xFFFFFFFFu;
    for (uint32_t c : kScan) {
      if (!InScan(s, c)) continue;
      CClip* k = nullptr;
      uint32_t t = tcs::FindClip(s, m, p, k, c);
      if (k == nullptr) continue;
      if (cover) {
        if (t <= p && p <= k->start + k->length && (c < 32 || chosen == 0xFFFFFFFFu)) {
          best = t;
          chosen = c;
        }
        continue;
      }
      if (t < p) t = tcs::FindClip(s, m, k->start + k->length, k, c);
      if (k == nullptr || Marked(v, a, c)) continue;
      if (t < best || (t == best && chosen == 0xFFFFFFFFu)) best = t, chosen = c;
    }
    if (best < limit) break;
    if (sweep == 1 || (v == 0 && a == 0)) return End(r);
    r.position += 1;
    p += 1;
    r.videoMask = r.audioMask = r.auxMask = 0;
    v = a = 0;
    limit = 0xFFFFFFFFu;
  }
  CClip* f = nullptr;
  r.position = tcs::FindClip(s, m, best, f, chosen);
  if (r.position == kNotFound || f == nullptr) return End(r);
  if (clip != nullptr) clip->SetClip(f);
  if (fresh) r.videoMask = r.audioMask = r.auxMask = 0;
  Mark(r, chosen);
  for (uint32_t c : kScan) {
    if (!InScan(s, c)) continue;
    CClip* g = nullptr;
    const uint32_t t = tcs::FindClip(s, m, r.position, g, c);
    if (g == nullptr || Marked(v, a, c) || t != r.position) continue;
    if (g->length != f->length || g->sourceIn != f->sourceIn || g->sourceOut != f->sourceOut ||
        (g->name != nullptr && f->name != nullptr && std::strcmp(g->name, f->name) != 0)) {
      continue;
    }
    r.flags |= 0x2560;
    Mark(r, c);
    r.position = f->start;
    r.inPoint = f->sourceIn;
    r.outPoint = f->sourceIn + f->length;
    CClip::GetString(TcsCmdReplyText(r), f->name, TCSCMD_REPLY_TEXT_SIZE);
  }
  return r.position;
}

// What a step leaves behind: its answer, the record, the scratch play clip,
// clipActive and the caller's copy of the clip.
struct After {
  uint32_t answer;
  TCSCMD record;
  CPlayClip scratch;
  uint32_t active, copy_start, copy_in;
  bool operator==(const After& o) const {
    return std::memcmp(&record, &o.record, sizeof record) == 0 &&
           std::memcmp(scratch.effectText, o.scratch.effectText, sizeof scratch.effectText) == 0 &&
           std::tie(answer, scratch.start, scratch.length, scratch.effectCode, scratch.clip, active,
                    copy_start, copy_in) == std::tie(o.answer, o.scratch.start, o.scratch.length,
                                                     o.scratch.effectCode, o.scratch.clip, o.active,
                                                     o.copy_start, o.copy_in);
  }
};

After Run(CTimeCodeSpace& s, const TCSCMD& from, bool fresh, bool with_copy, bool plain) {
  // A scratch state no search leaves, so an untouched one shows.
  std::memset(s.currentPlayClip.effectText, '#', sizeof s.currentPlayClip.effectText);
  s.currentPlayClip.start = 0xDEAD;
  s.currentPlayClip.clip = nullptr;
  s.clipActive = 7;
  CClip copy;
  TCSCMD record = from;
  CClip* out = with_copy ? &copy : nullptr;
  const uint32_t answer = plain ? PlainStep(s, record, fresh, out)
                                : tcs::FindNextClip(s, record, fresh, out);
  return {answer, record, s.currentPlayClip, s.clipActive, copy.start, copy.sourceIn};
}

// An edit between two steps: an overwrite, or a ripple insert, blank or
// delete. Each may make, free and move play clips under the positions the
// walk keeps between steps.
void Edit(CTimeCodeSpace& s, tcs_test::Dice& u, uint32_t channel) {
  if (u(0, 1) == 0) {
    s.AddClip(0, tcs_test::MakeClip(u(0, 150), u(1, 40), u(0, 2) * 10).get(), channel);
    return;
  }
  const uint32_t operations[] = {TCS_EDIT_INSERT, TCS_EDIT_BLANK, TCS_EDIT_DELETE};
  const uint32_t from = u(0, 150);
  s.ModifyRange(from, from + u(0, 30), channel < 32 ? 1u << channel : 0,
                channel < 32 ? 0 : 1u << (channel - 32), operations[u(0, 2)] | TCS_EDIT_RIPPLE);
}

void Play(uint64_t seed) {
  tcs_test::Dice u(seed);
  tcs_test::OpenedSpace space;
  CTimeCodeSpace& s = *space;
  tcs::SpaceLock hold(s);
  const char* names[] = {nullptr, "reel A", "reel B"};
  const char* effects[] = {"", "", "Dissolve", "Wipe"};
  const uint32_t channels[] = {0, 1, 2, 3, 32, 33, 34, 5};
  std::unique_ptr<CClip> made;
  for (int i = 0, n = int(u(1, 40)); i < n; ++i) {
    if (made == nullptr || u(0, 2) != 0) {  // else the last clip again: linked, if on time
      made = tcs_test::MakeClip(u(0, 150), u(0, 4) == 0 ? 0 : u(1, 40), u(0, 2) * 10,
                                names[u(0, 2)]);
      std::strcpy(made->effectText, effects[u(0, 3)]);
    }
    made->sourceOut += u(0, 5) == 0;  // which a different source out undoes
    made->channel = channels[u(0, 7)];
    tcs_test::LayPlayClip(s, made->channel, *made, u(0, 15) != 0);  // some without a record
  }
  const uint32_t modes[] = {0x18, 0x18, 0x19, 0x10, 0x14, 0x12, 0x40, 0x41, 0x70, 0x0C};
  TCSCMD record{};
  record.flags = (u(0, 3) == 0 ? TCSF_MODE : 0) | (u(0, 5) == 0 ? TCSF_AT : 0) |
                 (u(0, 5) == 0 ? TCSF_IN : 0);
  record.selector = modes[u(0, 9)];
  record.position = u(0, 3) == 0 ? u(0, 100) : 0;
  record.outPoint = record.position == 0 ? 0xFFFFFFFFu : 0;
  for (int step = 0; step < 80; ++step) {
    SCOPED_TRACE(::testing::Message() << "step " << step);
    const bool fresh = u(0, 9) == 0, with_copy = u(0, 1) == 0;
    const After want = Run(s, record, fresh, with_copy, true);
    const After got = Run(s, record, fresh, with_copy, false);
    ASSERT_TRUE(got == want) << "answer " << got.answer << ", plain " << want.answer;
    record = got.record;
    if (got.answer == kNotFound) break;
    if (u(0, 1) == 0) Edit(s, u, channels[u(0, 7)]);
  }
}

// Run under another name, for the tests' bodies, where Run is the test's.
After Step(CTimeCodeSpace& s, const TCSCMD& from, bool fresh, bool plain) {
  return Run(s, from, fresh, true, plain);
}

TEST(WalkSearch, StepsLeaveWhatPlainSearchesLeave) {
  tcs_test::ForEachSeed("TCS_WALK", 301, 400, Play);
}

// A host's search mode with bit 0 searches again from frame 0 when its value
// reads as not found, in the walk as in a plain search: here the source
// frame that plays at the cursor is 0x80000001 itself.
TEST(WalkSearch, AHostModeSearchesAgainFromTheStartAsPlainSearchesDo) {
  tcs_test::OpenedSpace space;
  CTimeCodeSpace& s = *space;
  tcs::SpaceLock hold(s);
  for (const uint32_t start : {10u, 40u}) {
    auto made = tcs_test::MakeClip(start, 20, kNotFound - 5);
    made->channel = 0;
    tcs_test::LayPlayClip(s, 0, *made);
  }
  TCSCMD record{};
  record.flags = TCSF_MODE;
  record.selector = 0x71;  // the source frame, searching again when it reads as not found
  record.position = 15;
  CPlayClip unused;
  ASSERT_EQ(s.LookupOf(0)->FindPlayClip(0x71, 15, unused), kNotFound);
  for (const bool fresh : {false, true}) {
    const After want = Step(s, record, fresh, true);
    const After got = Step(s, record, fresh, false);
    EXPECT_NE(want.answer, kNotFound);
    EXPECT_TRUE(got == want) << "answer " << got.answer << ", plain " << want.answer;
  }
}

}  // namespace

