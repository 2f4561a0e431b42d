// CPlayClip: a span placed in a channel's lookup, tied to the clip record
// that plays there. A value: the lookup keeps its own copies and queries copy
// one out; a copy carries the same record pointer. The record is borrowed
// from the space's clip list and never owned.
#ifndef TCS_RECORD_PLAY_CLIP_H_
#define TCS_RECORD_PLAY_CLIP_H_

#include "record/tc_range.h"
#include "tcs_export.h"

class CClip;

class TCS_EXPORT CPlayClip : public CTCRange {
 public:
  CPlayClip() = default;
  explicit CPlayClip(TextUnset unset) : CTCRange(unset) {}
  CPlayClip(const CPlayClip&) = default;
  CPlayClip& operator=(const CPlayClip&) = default;
  ~CPlayClip() override = default;

  // Plays `record` (a non-null CClip*): takes its range and transition as
  // they are, unclamped. A template only so that this header need not see the
  // clip library's class: it is instantiated where CClip is complete.
  template <class Record>
  void Construct(Record* record) {
    static_cast<CTCRange&>(*this) = static_cast<const CTCRange&>(*record);
    clip = record;
  }

  CClip* clip = nullptr;
};

#endif  // TCS_RECORD_PLAY_CLIP_H_
