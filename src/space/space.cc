// CTimeCodeSpace: construction, stamping, emptying and destruction.
#include "space/space.h"

#include <algorithm>
#include <vector>

#include "lookup/invariant_broken.h"
#include "platform/vsync.h"
#include "space/space_lock.h"

CTimeCodeSpace::CTimeCodeSpace() {
  qvOSZeroMemory(lookups, sizeof lookups);
  qvOSZeroMemory(fileName, sizeof fileName);
  qvOSInitializeCriticalSection(&lock);
}

CTimeCodeSpace::~CTimeCodeSpace() {
  {
    tcs::SpaceLock guard(*this);
    Destroy();
    // Empty by now: the lookups' destructors release no records and never sleep.
    for (CTCLookup*& lookup : lookups) {
      delete lookup;
      lookup = nullptr;
    }
  }
  qvOSDeleteCriticalSection(&lock);
}

void CTimeCodeSpace::Stamp() {
  const uint32_t now = vsyncGetCurMs();
  changeStamp.store(now, std::memory_order_relaxed);
  checkStamp.store(now, std::memory_order_relaxed);
  fileTime.store(qvOSFileTimeModified(fileName), std::memory_order_relaxed);
}

void CTimeCodeSpace::Destroy() {
  Stamp();
  tcs::SpaceLock guard(*this);
  DestroyLookup();
  while (firstClip != nullptr) __DelClipFromList(firstClip);
  lastClip = nullptr;
}

void CTimeCodeSpace::DestroyLookup() {
  Stamp();
  tcs::SpaceLock guard(*this);
  for (CTCLookup* lookup : lookups) {
    if (lookup != nullptr) lookup->Clear();
  }
}

namespace {

[[noreturn]] void Broken(const char* what) { tcs::InvariantBroken("CTimeCodeSpace", what); }

}  // namespace

void CTimeCodeSpace::CheckInvariants() const {
  auto& self = const_cast<CTimeCodeSpace&>(*this);
  tcs::SpaceLock guard(self);
  if ((firstClip == nullptr) != (lastClip == nullptr)) Broken("one end of the list is null");
  // A cycle would never end the walks below: two cursors, at one and at two
  // records a step, meet only in one.
  for (const CClip *slow = firstClip, *fast = firstClip; fast != nullptr && fast->next != nullptr;) {
    slow = slow->next;
    fast = fast->next->next;
    if (slow == fast) Broken("list has a cycle");
  }
  size_t records = 0;
  for (const CClip* c = firstClip; c != nullptr; c = c->next) ++records;
  std::vector<const CClip*> listed;
  listed.reserve(records);
  const CClip* prev = nullptr;
  for (const CClip* c = firstClip; c != nullptr; c = c->next) {
    if (c->prev != prev) Broken("prev link does not match");
    if (c->owner != this) Broken("listed record owned by another space");
    if (c->channel >= kChannels) Broken("listed record on channel 96 or above");
    listed.push_back(c);
    prev = c;
  }
  if (prev != lastClip) Broken("lastClip is not the list's last record");
  std::sort(listed.begin(), listed.end());
  const auto is_listed = [&listed](const CClip* c) {
    return std::binary_search(listed.begin(), listed.end(), c);
  };
  // Walked back from lastClip, the list must give the same records.
  size_t backwards = 0;
  for (const CClip* c = lastClip; c != nullptr; c = c->prev) {
    if (++backwards > listed.size() || !is_listed(c)) {
      Broken("walking back from lastClip leaves the list");
    }
    if (c->prev == nullptr && c != firstClip) Broken("walking back ends before firstClip");
  }
  if (backwards != listed.size()) Broken("the list counts differently each way");
  std::vector<const CClip*> played;
  played.reserve(records);
  for (uint32_t channel = 0; channel < kChannels; ++channel) {
    const CTCLookup* lookup = lookups[channel];
    if (lookup == nullptr) continue;
    if (lookup->Space() != this) Broken("lookup belongs to another space");
    lookup->CheckInvariants();
    for (const auto& pc : *lookup) {
      if (pc.clip == nullptr) continue;
      if (!is_listed(pc.clip)) Broken("play clip's record is not listed");
      if (pc.clip->channel != channel) Broken("play clip's record names another channel");
      played.push_back(pc.clip);
    }
  }
  std::sort(played.begin(), played.end());
  if (std::adjacent_find(played.begin(), played.end()) != played.end()) {
    Broken("record played on two channels");
  }
  // The current clip never outlives its record.
  if (currentPlayClip.clip != nullptr && !is_listed(currentPlayClip.clip)) {
    Broken("current play clip names a record that is not listed");
  }
  if (clipActive != 0 && currentPlayClip.clip == nullptr) {
    Broken("clipActive set without a current record");
  }
}
