// FuzzHost: what every harness shares. One live space opened in a private
// temporary directory (so backups and exports the input asks for stay
// there) or bound to no file, add and delete notifications that count and,
// as the input says, refuse or throw, a quiet error log, and the checks run
// after every call: the space's invariants, and a clip list that holds
// exactly the additions minus the deletions the host was told of.
//
// Thread safety: one harness thread; not for concurrent use.
#ifndef TCS_FUZZ_FUZZ_HOST_H_
#define TCS_FUZZ_FUZZ_HOST_H_

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tcs.h"

namespace tcs_fuzz {

// The private directory, made once per process in $TMPDIR (else /tmp) and
// removed at its exit. Every run creates and deletes a few files here, so a
// memory file system (run.sh picks one) roughly doubles the executions.
inline const std::string& FuzzDir() {
  struct Dir {
    Dir() {
      const char* base = std::getenv("TMPDIR");
      std::string name = std::string(base != nullptr && *base != '\0' ? base : "/tmp") +
                         "/tcs_fuzz.XXXXXX";
      if (mkdtemp(name.data()) == nullptr) std::abort();
      path = name;
    }
    ~Dir() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
    std::string path;
  };
  static const Dir dir;
  return dir.path;
}

inline void QuietLog(void*, const char*) {}

struct FuzzHost {
  enum class Answer : uint8_t { kAccept, kRefuse, kThrow };

  // A null file name opens a space bound to no file, which never touches
  // the file system.
  explicit FuzzHost(const char* file_name = "space.tl") {
    ErrSetSink(&QuietLog, nullptr);
    if (file_name != nullptr) path = FuzzDir() + "/" + file_name;
    space = tcsOpen(nullptr, nullptr, file_name != nullptr ? path.c_str() : nullptr);
    if (space == nullptr) std::abort();
    tcsSetAddCallback(space, this, &OnAdd);
    tcsSetDelCallback(space, this, &OnDel);
  }
  ~FuzzHost() {
    Check();
    const long before = deleted;
    const long listed = added - deleted;
    if (tcsClose(space) != 0) std::abort();
    // The last close reports every record still listed, once.
    if (deleted - before != listed) Broken("close did not report every listed record");
  }
  FuzzHost(const FuzzHost&) = delete;
  FuzzHost& operator=(const FuzzHost&) = delete;

  [[noreturn]] static void Broken(const char* what) {
    std::fprintf(stderr, "fuzz check failed: %s\n", what);
    std::abort();
  }

  // After every call: the whole state consistent, nothing lost or invented.
  void Check() const {
    space->CheckInvariants();
    long listed = 0;
    for (const CClip* c = space->firstClip; c != nullptr; c = c->next) ++listed;
    if (listed != added - deleted) Broken("listed records differ from additions - deletions");
    CheckListing();
  }

  // Every channel read through the listing entry points, as a host reads
  // it: each play clip once, in start order, as many as the channel counts,
  // on exactly the channels that the channel masks name. The masks are held
  // against every lookup; the entry points list the channels that hold clips
  // and count one empty channel a call, in turn (96 locked calls after every
  // step would cost the harness most of its speed).
  void CheckListing() const {
    unsigned int masks[3];
    if (tcsGetChannels(space, &masks[0], &masks[1], &masks[2]) != 0) Broken("tcsGetChannels");
    TCSCLIP rows[16];
    empty_turn = (empty_turn + 1) % 96;
    for (unsigned int c = 0; c < 96; ++c) {
      const bool masked = ((masks[c / 32] >> (c % 32)) & 1) != 0;
      const CTCLookup* lookup = space->lookups[c];
      if (masked != (lookup != nullptr && lookup->size() != 0)) {
        Broken("the channel masks and the lookups disagree");
      }
      if (!masked && c != empty_turn) continue;
      unsigned int expected = 0, listed = 0, count = 0, from = 0;
      if (tcsGetClipCount(space, c, &expected) != 0) Broken("tcsGetClipCount");
      if (masked != (expected != 0)) Broken("the channel masks and the clip count disagree");
      bool first = true;
      unsigned int last = 0;
      do {
        if (tcsGetClips(space, c, from, TCS_NO_TIMECODE, rows, 16, &count, &from) != 0) {
          Broken("tcsGetClips");
        }
        for (unsigned int i = 0; i < count; ++i) {
          if (!first && rows[i].start <= last) Broken("the listing is out of start order");
          first = false;
          last = rows[i].start;
        }
        listed += count;
      } while (from != TCS_NO_TIMECODE && listed <= expected);
      if (listed != expected) Broken("the listing missed or repeated a clip");
    }
  }

  static unsigned int OnAdd(void* context, CTimeCodeSpace*, CClip*) {
    auto* host = static_cast<FuzzHost*>(context);
    const Answer answer = host->NextAnswer();
    if (answer == Answer::kThrow) {
      ++host->added;  // a throwing host lets the record in
      throw 1;
    }
    if (answer == Answer::kRefuse) return 1;
    ++host->added;
    return 0;
  }
  static unsigned int OnDel(void* context, CTimeCodeSpace*, CClip*) {
    auto* host = static_cast<FuzzHost*>(context);
    ++host->deleted;
    if (host->NextAnswer() == Answer::kThrow) throw 2;
    return host->NextAnswer() == Answer::kRefuse ? 1u : 0u;  // ignored by the library
  }

  // The notifications answer from a pattern the input sets: bit k of
  // `pattern` (cycling) refuses the k-th question, and one in `throw_every`
  // throws.
  Answer NextAnswer() {
    const uint32_t k = questions++;
    if (throw_every != 0 && k % throw_every == throw_every - 1) return Answer::kThrow;
    return ((pattern >> (k % 32)) & 1u) != 0 ? Answer::kRefuse : Answer::kAccept;
  }

  std::string path;
  CTimeCodeSpace* space = nullptr;
  long added = 0;
  long deleted = 0;
  uint32_t pattern = 0;
  uint32_t throw_every = 0;
  uint32_t questions = 0;
  mutable unsigned int empty_turn = 0;
};

// A timecode where the faults live: near 0, near the end of the timeline,
// near 2^32, or anywhere.
inline uint32_t PickTime(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange<int>(0, 5)) {
    case 0:
      return in.ConsumeIntegralInRange<uint32_t>(0, 400);
    case 1:
      return 10692000u - 200u + in.ConsumeIntegralInRange<uint32_t>(0, 400);
    case 2:
      return 0xFFFFFFFFu - in.ConsumeIntegralInRange<uint32_t>(0, 300);
    case 3:
      return 0x80000001u + in.ConsumeIntegralInRange<uint32_t>(0, 2) - 1u;
    default:
      return in.ConsumeIntegral<uint32_t>();
  }
}

// A length: short, about the timeline, negative in disguise, or anything.
inline uint32_t PickLength(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
      return in.ConsumeIntegralInRange<uint32_t>(0, 300);
    case 1:
      return 10692000u + in.ConsumeIntegralInRange<uint32_t>(0, 2) - 1u;
    case 2:
      return 0u - in.ConsumeIntegralInRange<uint32_t>(0, 400);
    default:
      return in.ConsumeIntegral<uint32_t>();
  }
}

// Channel bits: none, one, some of the first four (so that clips meet on
// them), two anywhere, or any.
inline uint32_t PickMask(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange<int>(0, 4)) {
    case 0:
      return 0;
    case 1:
      return 1u << in.ConsumeIntegralInRange<int>(0, 31);
    case 2:
      return in.ConsumeIntegralInRange<uint32_t>(0, 15);
    case 3:
      return 1u << in.ConsumeIntegralInRange<int>(0, 31) | 1u << in.ConsumeIntegralInRange<int>(0, 31);
    default:
      return in.ConsumeIntegral<uint32_t>();
  }
}

inline uint32_t PickChannel(FuzzedDataProvider& in) {
  static const uint32_t kChannels[] = {0, 1, 2, 3, 31, 32, 33, 47, 48, 63, 64, 95, 96, 200};
  return in.ConsumeBool() ? in.PickValueInArray(kChannels) : in.ConsumeIntegral<uint32_t>();
}

// A record for tcsAddClip/tcsSetCurClip, with texts from the input.
inline void FillClip(FuzzedDataProvider& in, CClip& clip) {
  clip.ClearClip();
  clip.start = PickTime(in);
  clip.length = PickLength(in);
  clip.sourceIn = PickTime(in);
  clip.sourceOut = in.ConsumeBool() ? clip.sourceIn + clip.length : PickTime(in);
  clip.sourceOrigin = in.ConsumeBool() ? 0 : PickTime(in);
  clip.sourceEnd = in.ConsumeBool() ? clip.sourceOut : PickTime(in);
  clip.videoMask = in.ConsumeIntegral<uint32_t>();
  clip.audioMask = in.ConsumeIntegral<uint32_t>();
  clip.channel = PickChannel(in);
  const std::string name = in.ConsumeRandomLengthString(40);
  clip.SetName(name.c_str());
  clip.SetClipName(name.c_str());
  if (in.ConsumeBool()) clip.SetReel("R1");
  if (in.ConsumeBool()) {
    std::string effect = in.ConsumeRandomLengthString(300);
    clip.SetEffect(in.ConsumeIntegral<uint8_t>(), effect.data(), PickLength(in));
  }
}

}  // namespace tcs_fuzz

#endif  // TCS_FUZZ_FUZZ_HOST_H_
