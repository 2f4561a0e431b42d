// CPlayClip: a span placed in a channel's lookup, tied to the clip record
// that plays there. A value: the lookup keeps its own copies and queries copy
// one out; a copy carries the same record pointer. The record is borrowed
// from the space's clip list and never owned.
#ifndef TCS_LOOKUP_PLAY_CLIP_H_
#define TCS_LOOKUP_PLAY_CLIP_H_

#include "lookup/tc_range.h"
#include "tcs_export.h"

class CClip;

class TCS_EXPORT CPlayClip : public CTCRange {
 public:
  CPlayClip() = default;
  CPlayClip(const CPlayClip&) = default;
  CPlayClip& operator=(const CPlayClip&) = default;
  ~CPlayClip() override = default;

  // Plays `record` (non-null): takes its range and transition as they are,
  // unclamped.
  void Construct(CClip* record);

  CClip* clip = nullptr;
};

#endif  // TCS_LOOKUP_PLAY_CLIP_H_
