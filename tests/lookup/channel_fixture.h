// A space with channel 0's lookup and a host that counts (and may refuse)
// additions and counts deletions, for the lookup tests.
#ifndef TCS_TESTS_LOOKUP_CHANNEL_FIXTURE_H_
#define TCS_TESTS_LOOKUP_CHANNEL_FIXTURE_H_

#include <cstdint>

#include "lookup/lookup.h"
#include "platform/clip.h"
#include "space/space.h"

namespace tcs_test {

struct CountingHost {
  int added = 0;
  int deleted = 0;
  bool refuse_own = false;     // the test's own records
  bool refuse_splits = false;  // every other addition: the pieces of a split
  const CClip* own = nullptr;

  static unsigned int Add(void* context, CTimeCodeSpace*, CClip* clip) {
    auto* host = static_cast<CountingHost*>(context);
    const bool refuse = clip == host->own ? host->refuse_own : host->refuse_splits;
    if (!refuse) ++host->added;
    return refuse ? 1 : 0;
  }
  static unsigned int Del(void* context, CTimeCodeSpace*, CClip*) {
    ++static_cast<CountingHost*>(context)->deleted;
    return 0;
  }
};

class Channel {
 public:
  Channel() {
    space.addClipCallback = &CountingHost::Add;
    space.addClipContext = &host;
    space.delClipCallback = &CountingHost::Del;
    space.delClipContext = &host;
    space.lookups[0] = new CTCLookup(&space);
  }
  CTCLookup& lookup() { return *space.lookups[0]; }

  // Lists a record [start, start + length) playing source from source_in and
  // lays it on channel 0: through the space for flags 0, else through the
  // lookup's AddClip with flags. Null when refused.
  CClip* Add(uint32_t start, uint32_t length, uint32_t source_in, uint64_t tag = 0,
             uint32_t flags = 0) {
    CClip record;
    record.start = start;
    record.length = length;
    record.sourceIn = source_in;
    record.sourceOut = source_in + length;
    record.hostTag = tag;
    host.own = &record;
    CClip* listed = nullptr;
    if (flags == 0) {
      listed = space.AddClip(0, &record, 0);
    } else {
      listed = space.__AddClipToList(0, &record, 0);
      if (listed != nullptr) lookup().AddClip(listed, flags);
    }
    host.own = nullptr;
    return listed;
  }

  int ListLength() const {
    int n = 0;
    for (const CClip* c = space.firstClip; c != nullptr; c = c->next) ++n;
    return n;
  }

  CountingHost host;  // outlives the space, which reports deletions as it goes
  CTimeCodeSpace space;
};

}  // namespace tcs_test

#endif  // TCS_TESTS_LOOKUP_CHANNEL_FIXTURE_H_
