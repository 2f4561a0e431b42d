// The host's EDL translator: it owns the EDL text format. The library opens a
// file through it, hands it one EDLLINE per event and closes it (export); the
// translator's reader parses a file and hands every event back to the library
// through _tcsAddEdlLine (import). This stand-in writes and reads CMX 3600
// files; a host links its own translator in its place under the same C names.
// Plain C.
#ifndef TCS_PLATFORM_EDL_TRANSLATOR_H_
#define TCS_PLATFORM_EDL_TRANSLATOR_H_

#include <stdint.h>

#include "record/edl_line.h"
#include "tcs_export.h"

#define EDLSETTINGS_SIZE 8528u
// Byte offset of the word the library copies into every exported line.
#define EDLSETTINGS_LINE_WORD_OFFSET 4288u
// What edlOpen's access and creation arguments say for an export.
#define EDL_ACCESS_WRITE 0x40000000u
#define EDL_CREATE_ALWAYS 2u

// The translator's settings block. The library copies it whole, sets
// `revision` to 1 when the caller gives none, and reads `lineWord`; every
// other field is the translator's. A block that is all zeros but `revision`
// means 30 frames per second, non-drop.
#pragma pack(push, 4)
typedef struct EDLSETTINGS {
  uint32_t revision;         // 1: this layout
  uint32_t framesPerSecond;  // timecode rate of the file: 24, 25, 30 ...; 0 means 30
  uint32_t dropFrame;        // nonzero: 29.97 drop-frame timecode (at 30 frames per second)
  char title[256];           // the TITLE: line written on export; empty: none
  uint8_t reserved268[4020];
  uint32_t lineWord;         // copied by the library into every line's settingsWord
  uint8_t reserved4292[4236];
} EDLSETTINGS;
#pragma pack(pop)

#ifdef __cplusplus
extern "C" {
#endif

// Zero-fills `settings` and sets a rate: 0 frames per second means 30;
// `dropFrame` nonzero asks for drop-frame timecode.
TCS_EXPORT void edlInitSettings(EDLSETTINGS* settings, uint32_t framesPerSecond,
                                uint32_t dropFrame);

// Opens an EDL file for writing (access EDL_ACCESS_WRITE, creation
// EDL_CREATE_ALWAYS); null on failure.
TCS_EXPORT void* edlOpen(const char* path, uint32_t access, uint32_t creation,
                         const EDLSETTINGS* settings);
// Formats and writes one line.
TCS_EXPORT uint32_t edlWriteLine(void* handle, const EDLLINE* line);
// Finishes and closes the file.
TCS_EXPORT uint32_t edlClose(void* handle);

// Reads an EDL file into `space`, one _tcsAddEdlLine per event, in file order.
// `settings` null: 30 frames per second, non-drop, unless the file says
// otherwise. 0, or a status when the file cannot be opened or holds a line
// that cannot be parsed (the events before it stay added).
TCS_EXPORT uint32_t edlReadFile(CTimeCodeSpace* space, const char* path,
                                const EDLSETTINGS* settings);

#ifdef __cplusplus
}  // extern "C"
#include <cstddef>
static_assert(sizeof(EDLSETTINGS) == EDLSETTINGS_SIZE);
static_assert(offsetof(EDLSETTINGS, revision) == 0);
static_assert(offsetof(EDLSETTINGS, framesPerSecond) == 4);
static_assert(offsetof(EDLSETTINGS, dropFrame) == 8);
static_assert(offsetof(EDLSETTINGS, title) == 12);
static_assert(offsetof(EDLSETTINGS, lineWord) == EDLSETTINGS_LINE_WORD_OFFSET);
#endif

#endif  // TCS_PLATFORM_EDL_TRANSLATOR_H_
