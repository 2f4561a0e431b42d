// Small helpers shared by the tests: an open space that closes itself, clip
// records built in one line, a clock the test drives, counting notifications
// and a channel's play clips as plain spans.
#ifndef TCS_TESTS_SUPPORT_TEST_CLIPS_H_
#define TCS_TESTS_SUPPORT_TEST_CLIPS_H_

#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "tcs.h"

namespace tcs_test {

// A space opened with tcsOpen and closed on destruction.
class OpenedSpace {
 public:
  explicit OpenedSpace(const char* path = nullptr) : space_(tcsOpen(nullptr, nullptr, path)) {}
  ~OpenedSpace() {
    if (space_ != nullptr) tcsClose(space_);
  }
  OpenedSpace(const OpenedSpace&) = delete;
  OpenedSpace& operator=(const OpenedSpace&) = delete;

  CTimeCodeSpace* get() const { return space_; }
  CTimeCodeSpace* operator->() const { return space_; }
  CTimeCodeSpace& operator*() const { return *space_; }

 private:
  CTimeCodeSpace* const space_;
};

// A record at [start, start + length) playing source frames from source_in.
std::unique_ptr<CClip> MakeClip(uint32_t start, uint32_t length, uint32_t source_in = 0,
                                const char* name = nullptr);

// Replaces the library's clock while it lives; Set() moves it.
class FakeClock {
 public:
  explicit FakeClock(unsigned int start_ms = 1000);
  ~FakeClock();
  FakeClock(const FakeClock&) = delete;
  FakeClock& operator=(const FakeClock&) = delete;
  void Set(unsigned int ms);
};

// Records what the host's add and delete notifications were told. Install()
// registers both on a space; `refuse` makes additions answer 1.
struct NotificationLog {
  std::vector<CClip*> added;    // the records the add notification was asked about
  std::vector<CClip*> deleted;  // the records the delete notification received
  bool refuse = false;
  void Install(CTimeCodeSpace* space);
  static unsigned int OnAdd(void* context, CTimeCodeSpace* space, CClip* clip);
  static unsigned int OnDel(void* context, CTimeCodeSpace* space, CClip* clip);
};

// A play clip as the timeline shows it: where it plays and the source frame
// its record starts with.
struct PlaySpan {
  uint32_t start, length, source_in;
  friend bool operator==(const PlaySpan&, const PlaySpan&) = default;
  friend void PrintTo(const PlaySpan& s, std::ostream* os) {
    *os << "[" << s.start << ", +" << s.length << ") src " << s.source_in;
  }
};

// The play clips of a channel in start order (none without a lookup).
inline std::vector<PlaySpan> PlaySpans(const CTimeCodeSpace& space, uint32_t channel) {
  std::vector<PlaySpan> spans;
  if (const CTCLookup* lookup = space.LookupOf(channel)) {
    for (const auto& pc : *lookup) {
      spans.push_back({pc.start, pc.length, pc.clip != nullptr ? pc.clip->sourceIn : 0});
    }
  }
  return spans;
}

// The records on a space's clip list, in order.
std::vector<CClip*> ListedClips(const CTimeCodeSpace& space);

}  // namespace tcs_test

#endif  // TCS_TESTS_SUPPORT_TEST_CLIPS_H_
