// CTCLookup: construction, emptying, destruction and the tree primitives the
// edits share.
#include "lookup/lookup.h"

#include <unistd.h>

#include <cstdio>
#include <set>

#include "lookup/invariant_broken.h"
#include "platform/clip.h"
#include "space/space.h"

CTCLookup::CTCLookup(CTimeCodeSpace* owning_space) : space(owning_space) {}

CTCLookup::~CTCLookup() {
  // Each removal runs the host's delete notification. The 1 ms pause after
  // each (the last included) is kept because hosts see it: a lookup torn
  // down on its own hands its records back at most one per millisecond,
  // never in one burst of notifications. The space empties its lookups
  // before deleting them, so its own teardown never gets here with play
  // clips and never sleeps.
  for (const CPlayClip& pc : playClips) {
    space->__DelClipFromList(pc.clip);
    usleep(1000);
  }
  playClips.clear();
}

void CTCLookup::Clear() { playClips.clear(); }

bool CTCLookup::Insert(const CPlayClip& pc) { return playClips.insert(pc).second; }

void CTCLookup::Erase(Position x) { playClips.erase(x); }

// Only the start is written to the record: a move leaves both lengths alone.
bool CTCLookup::Rekey(Position x, uint32_t start) {
  auto node = playClips.extract(x);
  node.value().start = start;
  if (CClip* record = node.value().clip) record->start = start;
  return playClips.insert(std::move(node)).inserted;
}

bool CTCLookup::Reshape(Position x, uint32_t start, uint32_t length) {
  auto node = playClips.extract(x);
  node.value().start = start;
  node.value().length = length;
  if (CClip* record = node.value().clip) {
    record->start = start;
    record->length = length;
  }
  return playClips.insert(std::move(node)).inserted;
}

CTCLookup::Position CTCLookup::Refind(uint32_t start, const CClip* record) const {
  const Position x = playClips.find(start);
  if (x == playClips.end() || x->clip != record) return playClips.end();
  return x;
}

namespace {

[[noreturn]] void Broken(const char* what, uint32_t start) {
  char where[64];
  std::snprintf(where, sizeof where, "CTCLookup (play clip at %u)", start);
  tcs::InvariantBroken(where, what);
}

}  // namespace

void CTCLookup::CheckInvariants() const {
  std::set<const CClip*> played;
  bool first = true;
  uint32_t previous_start = 0;
  for (const CPlayClip& pc : *this) {
    if (!first && !(previous_start < pc.start)) {
      Broken("starts not strictly increasing", pc.start);
    }
    first = false;
    previous_start = pc.start;
    if (pc.clip == nullptr) continue;
    const CClip& record = *pc.clip;
    if (record.start != pc.start || record.length != pc.length) {
      Broken("play clip range differs from its record's range", pc.start);
    }
    if (record.owner != space) Broken("record is not on the owning space's list", pc.start);
    if (!played.insert(pc.clip).second) Broken("record played by two play clips", pc.start);
  }
}
