// CClip: the clip record of the host's clip library. Two virtual bases: the
// record range (CTCRange: where the record sits on the timeline, and its
// transition) and the clip description (CLIPINFO: source points, channel
// masks, texts). Owns its four strings; a copy (SetClip) duplicates them.
// The list fields (owner, next, prev) belong to the space that lists the
// record and are never copied.
#ifndef TCS_PLATFORM_CLIP_H_
#define TCS_PLATFORM_CLIP_H_

#include <cstdint>

#include "record/clip_info.h"
#include "record/tc_range.h"
#include "tcs_export.h"

class CTimeCodeSpace;

class TCS_EXPORT CClip : public virtual CTCRange, public virtual CLIPINFO {
 public:
  // The longest short name; SetClipName cuts longer ones.
  static constexpr unsigned int kClipNameMax = 8;

  CClip();
  CClip(const CClip&) = delete;
  CClip& operator=(const CClip&) = delete;
  ~CClip() override;

  // Back to the empty state: range, transition, source, masks and texts
  // cleared; hostTag and channel 0. The list fields are kept.
  void ClearClip();
  // A full copy of another record: both bases, its strings, hostTag and
  // channel. A null record clears this one.
  void SetClip(const CClip* other);
  // Fills the source part from a plain description: source times, channel
  // masks, the library's bytes and copies of the texts. Range and own fields
  // are kept. A null description changes nothing.
  void SetClip(const CLIPINFO* info);

  // Copies text (empty for null) into buffer of size bytes, NUL included;
  // a longer text is cut. A size of 0 writes nothing.
  static void GetString(char* buffer, const char* text, unsigned long size);

  // Each replaces one string by a copy of text; null or empty clears it.
  void SetName(const char* text);
  void SetReel(const char* text);
  void SetComment(const char* text);
  void SetClipName(const char* text);  // at most kClipNameMax characters kept

  // Records of this class live in the clip slabs (clip_slab.h says why;
  // clip_slab.cc defines both).
  static void* operator new(size_t size);
  static void operator delete(void* record, size_t size) noexcept;

  uint64_t hostTag = 0;  // attached by the EDL translator; never interpreted
  uint32_t channel = 0;  // 0..95 for a listed record
  CTimeCodeSpace* owner = nullptr;  // the space listing the record, or null
  CClip* next = nullptr;
  CClip* prev = nullptr;
};

// Yields the number of the lowest set bit of mask and stores mask without it
// in *rest; 0xFFFFFFFF when no bit is set. `base` is added to the number.
extern "C" TCS_EXPORT unsigned int findChannel(unsigned int mask, unsigned int* rest,
                                               unsigned int base);

#endif  // TCS_PLATFORM_CLIP_H_
