// CTCLookup: the play clips of one channel of a space, in a balanced tree
// keyed by start frame, at most one per start. Owns its play clips by value:
// each is a small tree node (PlayClipNode) whose 4 KB effect text lives once
// per distinct text in the lookup's pool, and the nodes live in the lookup's
// own arena. Queries copy a whole CPlayClip out and never allocate.
// Borrows the space (which outlives it) and the records its play clips point
// to (on the space's clip list); an edit that splits or swallows a play clip
// asks the space to add or drop a record.
//
// Thread safety: no lock of its own. Every member REQUIRES the owning space's
// lock, held by the calling thread for the whole call. Edits re-enter that
// lock through the space's list operations, and run the host's notifications
// part-way through the edit.
//
// CAVEATS: every edit invalidates Positions.
//
// A ripple moves a whole run of play clips by one amount, which keeps their
// order, so a moved start is written into its node in place whenever it
// stays strictly between its neighbours' starts; only a move that would
// pass a neighbour (or land on its start) takes the node out and puts it
// back. No 4 KB text is copied either way.
//
// Invariants (CheckInvariants(), run after every step in tests and fuzzing):
//  (1) starts strictly increase in iteration order;
//  (2) a play clip's start and length equal its record's range;
//  (3) every record a play clip points to is on the owning space's list;
//  (4) no record is played by two play clips;
//  (5) each pooled text counts exactly the play clips that hold it.
// The edits keep (2) to (5); (1) holds by construction (an insert whose
// start is taken drops the newcomer without a report) and by the in-place
// rule above.
#ifndef TCS_LOOKUP_LOOKUP_H_
#define TCS_LOOKUP_LOOKUP_H_

#include <cstdint>
#include <cstddef>
#include <set>

#include "lookup/effect_text_pool.h"
#include "lookup/node_arena.h"
#include "lookup/play_clip_node.h"
#include "record/play_clip.h"
#include "record/timecode.h"
#include "record/tc_range.h"
#include "tcs_export.h"

class CClip;
class CTimeCodeSpace;

// Edit flags of ModifyRange and AddClip. Bits 24..26 are one field: any other
// value of it (combinations included) makes ModifyRange do nothing.
#define TCS_EDIT_INSERT 0x1000000u
#define TCS_EDIT_BLANK 0x2000000u
#define TCS_EDIT_DELETE 0x4000000u
#define TCS_EDIT_RIPPLE 0x200000u
#define TCS_EDIT_OPERATION_MASK 0x7000000u

class TCS_EXPORT CTCLookup {
 public:
  using Node = tcs::PlayClipNode;
  // Transparent: a search takes a bare frame.
  struct ByStart {
    using is_transparent = void;
    bool operator()(const Node& a, const Node& b) const { return a.start < b.start; }
    bool operator()(const Node& a, uint32_t b) const { return a.start < b; }
    bool operator()(uint32_t a, const Node& b) const { return a < b.start; }
  };
  using PlayClipSet = std::set<Node, ByStart, tcs::ArenaAllocator<Node>>;
  using Position = PlayClipSet::const_iterator;  // end(): no play clip

  explicit CTCLookup(CTimeCodeSpace* space);
  CTCLookup(const CTCLookup&) = delete;
  CTCLookup& operator=(const CTCLookup&) = delete;
  // Removes the records of the remaining play clips from the space, in start
  // order, sleeping 1 ms after each, then frees the play clips.
  virtual ~CTCLookup();

  // --- Point queries: one descent plus at most one step; they never fail.
  // findle: the greatest start at or before min(t, 10692000). Before every
  // start (and, with a single play clip, always) it still returns the first
  // play clip, so callers test containment themselves. end() only when empty.
  Position findle(uint32_t t) const;
  // As findle(t), looking first at `hint` (any position of this lookup, or
  // end()) and its neighbours: a search near its last answer makes no descent.
  Position findle(uint32_t t, Position hint) const;
  // The play clip containing t, else the first one starting after t, else end().
  Position findge(uint32_t t) const;
  // The play clip containing t, else end(). Only findle(t) is examined.
  Position find(uint32_t t) const;
  // The source position at t, measured from the record's sourceOrigin, or
  // 0x80000001. out receives the play clip whenever one contains t.
  uint32_t Translate(uint32_t t, CPlayClip& out) const;
  // The same without the copy: `at` receives the play clip containing t, or
  // end().
  uint32_t Translate(uint32_t t, Position& at) const;
  // The play clip at t or, in a gap, the previous, next or nearest one, as
  // the mode word says; returns the value its selector picks, or 0x80000001.
  uint32_t FindPlayClip(uint32_t mode, uint32_t t, CPlayClip& out) const;
  // The same search without the copy: `chosen` receives the play clip the
  // search settled on (end() when none), which the other form copies out
  // whatever the result; a source-frame result may still read 0x80000001.
  uint32_t FindPlayClip(uint32_t mode, uint32_t t, Position& chosen) const;
  // As above, its one findle(t) made from `hint` (see findle).
  uint32_t FindPlayClip(uint32_t mode, uint32_t t, Position& chosen, Position hint) const;
  // Where the clip walk's last search here settled, kept between its steps
  // as a hint: end() once a play clip has been made or freed since. Edits
  // that only move play clips (in place, or out and back in) leave every
  // node in the tree, so the kept position stays one of its play clips.
  Position WalkHint() const;
  void KeepWalkHint(Position x) const;

  // --- Range edits.
  void BlankRange(const CTCRange& r);
  void DeleteRange(const CTCRange& r);
  void InsertRange(const CTCRange& r);
  void ModifyRange(uint32_t a, uint32_t b, uint32_t flags);
  void AddClip(CClip* clip, uint32_t flags);

  // --- Single play-clip edits, addressed by start.
  void ShiftRange(uint32_t from, uint32_t to);
  void TrimRange(uint32_t at, uint32_t in, uint32_t out);
  void TrimRange(uint32_t at, uint32_t in, uint32_t out, int shift);
  CPlayClip* RemoveClip(CPlayClip& pc);

  // Inserts a copy of pc (its text pooled) unless its start is taken; false
  // when it was dropped. The record, if any, is not looked at.
  bool Insert(const CPlayClip& pc);
  // Frees every play clip; records stay on the list, nothing is reported.
  void Clear();
  // A diagnostic hook that does nothing. It stays in the exported interface
  // so that host binaries linked against it keep loading.
  void dbgDumpTree() const;

  Position begin() const { return playClips.begin(); }
  Position end() const { return playClips.end(); }
  size_t size() const { return playClips.size(); }
  bool empty() const { return playClips.empty(); }
  CTimeCodeSpace* Space() const { return space; }

  // Aborts with a message naming the first broken invariant. For tests.
  void CheckInvariants() const;
  // Starts loading what a query reads of a record (null: nothing): its
  // vtable pointer, its range and its source points. Never faults.
  static void PrefetchRecord(const CClip* record);

  CTimeCodeSpace* const space;  // not owned

 private:
  // The range edits on a bare span: no 4 KB CTCRange is built per edit.
  void BlankSpan(tcs::Span r);
  void DeleteSpan(tcs::Span r);
  void InsertSpan(tcs::Span r);
  // Gives x a new start (its record too) and returns its position, or end()
  // when the start was taken and the play clip was dropped.
  Position Rekey(Position x, uint32_t start);
  // As Rekey, giving the play clip (and its record) a new length as well.
  Position Reshape(Position x, uint32_t start, uint32_t length);
  // Writes start and length into x; moves the node only when the new start
  // does not stay strictly between its neighbours' starts.
  Position Place(Position x, uint32_t start, uint32_t length);
  // What follows x while a start is written in place: a node that keeps its
  // start, or one that a ripple writes next by the same amount.
  enum class Following { kStays, kMovesToo };
  // Writes `start` into x's node in place and returns the node. The set's
  // elements are const because their order must hold, so the write is the
  // caller's proof: REQUIRES the previous node's start below `start` and,
  // when the following node stays, `start` below its start. Debug builds
  // check both.
  Node& WriteStartInPlace(Position x, uint32_t start, Following following);
  // findge(t) and find(t), given le = findle(t).
  Position GeFrom(Position le, uint32_t t) const;
  Position AtFrom(Position le, uint32_t t) const;
  // The plain rounds of a ripple delete of rl frames, from x on.
  Position PullRun(Position x, uint32_t rl, uint32_t& key);
  // What findge(key) returns right after x was moved in place and key set
  // to x's old end: the next play clip when cheap tests prove it, else the
  // full search.
  Position FindgeAfter(Position x, uint32_t key) const;
  // Makes a node playing `record`, its text pooled, unless the start is
  // taken; false when dropped.
  bool InsertFrom(CClip* record);
  // Inserts a node whose text the pool already counts; releases the text
  // when the start is taken.
  bool InsertNode(const Node& node);
  // The play clip at exactly `start` if it still plays `record`, else end().
  // The host's notifications may re-enter the space part-way through an
  // edit, so a position held across one is looked up again.
  Position Refind(uint32_t start, const CClip* record) const;
  // Takes x's record off the space's list, then x out of the set.
  void DropWithRecord(Position x);
  // Cuts x at [rs, re): x keeps its left-hand part, a new record plays the
  // right-hand part.
  void Split(Position x, uint32_t rs, uint32_t re);
  // Takes x out and frees it, releasing its text; the record is left alone.
  void Erase(Position x);

  // Declared before the set, which draws on both.
  tcs::NodeArena arena_;
  tcs::EffectTextPool texts_;
  PlayClipSet playClips{ByStart(), tcs::ArenaAllocator<Node>(&arena_)};
  // Written by the walk's queries, under the space's lock like the rest.
  mutable Position walk_hint_;
  mutable uint64_t walk_hint_changes_ = UINT64_MAX;  // the arena's count then
};

#endif  // TCS_LOOKUP_LOOKUP_H_
