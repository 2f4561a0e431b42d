// CTCLookup: construction, emptying, destruction and the tree primitives the
// edits share.
#include "lookup/lookup.h"

#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <iterator>
#include <vector>

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
  for (const Node& pc : playClips) {
    space->__DelClipFromList(pc.clip);
    usleep(1000);
  }
  Clear();
}

void CTCLookup::dbgDumpTree() const {}

void CTCLookup::Clear() {
  for (const Node& pc : playClips) texts_.Release(pc.text);
  playClips.clear();
}

bool CTCLookup::Insert(const CPlayClip& pc) {
  return InsertNode({pc.start, pc.length, pc.effectCode, pc.effectDuration, pc.clip,
                     texts_.Acquire(pc.effectText)});
}

bool CTCLookup::InsertFrom(CClip* record) {
  // Look first: a dropped newcomer need not have its text pooled. Past the
  // last start (every append) the place is known without a descent.
  const uint32_t start = record->start;
  const Position at = empty() || std::prev(end())->start < start ? end()
                                                                 : playClips.lower_bound(start);
  if (at != end() && at->start == start) return false;
  playClips.emplace_hint(at, Node{start, record->length, record->effectCode,
                                  record->effectDuration, record,
                                  texts_.Acquire(record->effectText)});
  return true;
}

bool CTCLookup::InsertNode(const Node& node) {
  if (playClips.insert(node).second) return true;
  texts_.Release(node.text);
  return false;
}

void CTCLookup::Erase(Position x) {
  texts_.Release(x->text);
  playClips.erase(x);
}

// Only the start is written to the record: a move leaves both lengths alone.
CTCLookup::Position CTCLookup::Rekey(Position x, uint32_t start) {
  if (CClip* record = x->clip) record->start = start;
  return Place(x, start, x->length);
}

CTCLookup::Position CTCLookup::Reshape(Position x, uint32_t start, uint32_t length) {
  if (CClip* record = x->clip) {
    record->start = start;
    record->length = length;
  }
  return Place(x, start, length);
}

// A start that stays strictly between the neighbours' starts keeps the
// order, so it is written into the node in place. Any other start takes the
// node out and puts it back.
// The node was built mutable; only the set's iterator is const.
CTCLookup::Node& CTCLookup::WriteStartInPlace(Position x, uint32_t start, Following following) {
  assert(x == begin() || std::prev(x)->start < start);
  assert(following == Following::kMovesToo || std::next(x) == end() ||
         start < std::next(x)->start);
  (void)following;
  Node& node = const_cast<Node&>(*x);
  node.start = start;
  return node;
}

CTCLookup::Position CTCLookup::Place(Position x, uint32_t start, uint32_t length) {
  const bool after_previous = x == begin() || std::prev(x)->start < start;
  const Position following = std::next(x);
  if (after_previous && (following == end() || start < following->start)) {
    WriteStartInPlace(x, start, Following::kStays).length = length;
    return x;
  }
  auto handle = playClips.extract(x);
  handle.value().start = start;
  handle.value().length = length;
  const tcs::PooledText* text = handle.value().text;
  auto inserted = playClips.insert(std::move(handle));
  if (inserted.inserted) return inserted.position;
  texts_.Release(text);  // the dropped node is freed with `inserted`
  return end();
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
  std::vector<const CClip*> played;
  std::vector<const tcs::PooledText*> holders;
  played.reserve(size());
  holders.reserve(size());
  bool first = true;
  uint32_t previous_start = 0;
  for (const Node& pc : *this) {
    if (!first && !(previous_start < pc.start)) {
      Broken("starts not strictly increasing", pc.start);
    }
    first = false;
    previous_start = pc.start;
    holders.push_back(pc.text);
    if (pc.clip == nullptr) continue;
    const CClip& record = *pc.clip;
    if (record.start != pc.start || record.length != pc.length) {
      Broken("play clip range differs from its record's range", pc.start);
    }
    if (record.owner != space) Broken("record is not on the owning space's list", pc.start);
    played.push_back(pc.clip);
  }
  std::sort(played.begin(), played.end());
  if (const auto twice = std::adjacent_find(played.begin(), played.end()); twice != played.end()) {
    Broken("record played by two play clips", (*twice)->start);
  }
  // Each pooled text counts exactly the play clips that hold it.
  std::sort(holders.begin(), holders.end());
  size_t distinct = 0;
  for (auto run = holders.begin(); run != holders.end(); ++distinct) {
    const auto run_end = std::upper_bound(run, holders.end(), *run);
    if ((*run)->refs != static_cast<uint32_t>(run_end - run)) {
      Broken("pooled text's holder count is wrong", 0);
    }
    run = run_end;
  }
  if (distinct != texts_.distinct()) Broken("pool holds a text no play clip holds", 0);
}
