// TCSCLIP: one play clip of a channel as the listing entry points hand it out
// (tcsGetClips). A wire format: 56 bytes on the 64-bit hosts the library is
// built for, natural alignment. Plain C.
//
// The three pointers are borrowed. `clip` and `info` stay valid until the
// record leaves the space's clip list (an edit that swallows it, tcsClose);
// `effectText` until the next edit of the channel. Copy what you keep.
#ifndef TCS_RECORD_TCS_CLIP_H_
#define TCS_RECORD_TCS_CLIP_H_

#include <stdint.h>

#include "record/clip_info.h"
#include "space/clip_callback.h"

typedef struct TCSCLIP {
  uint32_t channel;          // 0..95
  uint32_t start;            // record start
  uint32_t length;           // record frames; the clip plays [start, start + length)
  uint32_t sourceIn;         // the record's source in (0 when it has no record)
  uint32_t sourceOut;        // the record's source out, as the record keeps it
  uint32_t effectCode;       // the transition into this clip; 0: a cut
  uint32_t effectDuration;   // its frames
  uint32_t reserved;         // 0
  const char* effectText;    // its name or text; "" for a cut. Never null.
  CClip* clip;               // the clip record that plays here, or null
  const CLIPINFO* info;      // that record's description (texts, masks), or null
} TCSCLIP;

#ifdef __cplusplus
#include <cstddef>
#include <type_traits>
static_assert(sizeof(void*) == 8, "TCSCLIP is pinned for 64-bit hosts");
static_assert(sizeof(TCSCLIP) == 56);
static_assert(alignof(TCSCLIP) == 8);
static_assert(offsetof(TCSCLIP, channel) == 0);
static_assert(offsetof(TCSCLIP, start) == 4);
static_assert(offsetof(TCSCLIP, length) == 8);
static_assert(offsetof(TCSCLIP, sourceIn) == 12);
static_assert(offsetof(TCSCLIP, sourceOut) == 16);
static_assert(offsetof(TCSCLIP, effectCode) == 20);
static_assert(offsetof(TCSCLIP, effectDuration) == 24);
static_assert(offsetof(TCSCLIP, reserved) == 28);
static_assert(offsetof(TCSCLIP, effectText) == 32);
static_assert(offsetof(TCSCLIP, clip) == 40);
static_assert(offsetof(TCSCLIP, info) == 48);
static_assert(std::is_standard_layout_v<TCSCLIP> && std::is_trivially_copyable_v<TCSCLIP>);
#endif

#endif  // TCS_RECORD_TCS_CLIP_H_
