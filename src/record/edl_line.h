// EDLLINE: one EDL line as the library and the host's EDL translator exchange
// it, and the two entry points through which the translator calls back into
// the library. A wire format: 188 bytes, 4-byte packing, the clip part (a
// CLIPINFO) first; every offset is pinned below. The text pointers point into
// buffers of whoever made the line; null means no text. Plain C.
#ifndef TCS_RECORD_EDL_LINE_H_
#define TCS_RECORD_EDL_LINE_H_

#include <stdint.h>

#include "record/clip_info.h"
#include "tcs_export.h"

#define EDLLINE_SIZE 188u
// lineFlags of every line the library exports.
#define EDLLINE_EXPORT_FLAGS 0xFFF0u
#define EDLLINE_CUT 'C'
#define EDLLINE_WIPE 'W'
// The longest clip name, in bytes, that an exported line carries.
#define EDLLINE_NAME_MAX 4097u

#pragma pack(push, 4)
typedef struct EDLLINE {
  CLIPINFO clip;             // source in/out, channel masks, the four texts
  uint32_t unused80;         // the translator's
  uint32_t recordIn;         // first record frame of the line
  uint32_t recordOut;        // record frame one past the line's last
  uint8_t transition;        // 'C' or 'W' on export; not read on import
  uint8_t unused93[3];
  uint32_t effectCode;       // transition code (see record/effect_names.h)
  uint32_t effectDuration;   // transition duration in frames
  uint8_t unused104[64];     // the translator's
  uint32_t lineFlags;        // EDLLINE_EXPORT_FLAGS on export; not read on import
  uint32_t settingsWord;     // on export: the u32 at byte 4288 of the settings
  char* extraText;           // a fifth text; empty on export; not read on import
  uint8_t unused184[4];
} EDLLINE;
#pragma pack(pop)

#ifdef __cplusplus
class CTimeCodeSpace;
extern "C" {
#else
typedef struct CTimeCodeSpace CTimeCodeSpace;
#endif

// The translator has parsed one line: its clip is added on every channel that
// the line's video and audio masks name (audio copies with videoMask 0), the
// record length taken from the source points. 0, or 0xA8080005 for a null
// space.
TCS_EXPORT uint32_t _tcsAddEdlLine(CTimeCodeSpace* space, const EDLLINE* line, uint64_t tag);
// Fills `line` with one play clip on one channel; a nonzero `first`
// restarts the cursor. Later calls give the following play clips, by start
// and then channel upwards, each once; when none is left the line has
// recordIn and recordOut 0x80000001 and no channel bit, and the next call
// starts over. 0, or 0xA8080005 for a null space or line.
TCS_EXPORT uint32_t _tcsGetEdlLine(CTimeCodeSpace* space, EDLLINE* line, uint64_t reserved,
                                   uint32_t first);

#ifdef __cplusplus
}  // extern "C"
#include <cstddef>
#include <type_traits>
static_assert(sizeof(EDLLINE) == EDLLINE_SIZE);
static_assert(alignof(EDLLINE) == 4);
static_assert(offsetof(EDLLINE, clip) == 0);
static_assert(offsetof(EDLLINE, clip.clipName) == 36);
static_assert(offsetof(EDLLINE, clip.name) == 44);
static_assert(offsetof(EDLLINE, clip.comment) == 52);
static_assert(offsetof(EDLLINE, clip.reel) == 60);
static_assert(offsetof(EDLLINE, unused80) == 80);
static_assert(offsetof(EDLLINE, recordIn) == 84);
static_assert(offsetof(EDLLINE, recordOut) == 88);
static_assert(offsetof(EDLLINE, transition) == 92);
static_assert(offsetof(EDLLINE, unused93) == 93);
static_assert(offsetof(EDLLINE, effectCode) == 96);
static_assert(offsetof(EDLLINE, effectDuration) == 100);
static_assert(offsetof(EDLLINE, unused104) == 104);
static_assert(offsetof(EDLLINE, lineFlags) == 168);
static_assert(offsetof(EDLLINE, settingsWord) == 172);
static_assert(offsetof(EDLLINE, extraText) == 176);
static_assert(offsetof(EDLLINE, unused184) == 184);
static_assert(std::is_standard_layout_v<EDLLINE> && std::is_trivially_copyable_v<EDLLINE>);
#endif

#endif  // TCS_RECORD_EDL_LINE_H_
