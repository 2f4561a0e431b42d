// The host's EDL translator: it owns the EDL text format. The library opens a
// file through it, hands it one EDLLINE per event and closes it (export); the
// translator's reader parses a file and hands every event back to the library
// through _tcsAddEdlLine (import). This stand-in writes and reads CMX 3600
// files; a host links its own translator in its place under the same C names.
// Plain C.
#ifndef TCS_PLATFORM_EDL_TRANSLATOR_H_
#define TCS_PLATFORM_EDL_TRANSLATOR_H_

#include <stddef.h>
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
  uint32_t framesPerSecond;  // timecode rate of the file: 24, 25, 30 ... 120; 0 (or above
                             // 120) means 30; 29 and 59 mean 30 and 60
  uint32_t dropFrame;        // nonzero: drop-frame timecode (29.97 and 59.94 material, at 30
                             // and 60 frames per second; ignored at other rates)
  char title[256];           // the TITLE: line written on export; empty: the file's name
  uint32_t strict;           // reading: nonzero stops at the first line that cannot be read;
                             // 0 skips it with a warning and reads on
  uint32_t keepRate;         // reading: nonzero counts the record timecodes at
                             // framesPerSecond and dropFrame whatever the file's own frame
                             // rate note or its FCM: lines above the first event say
  uint32_t findRate;         // reading: nonzero counts the list at the rate its own text gives
                             // (EDLREADRATE says how), not at framesPerSecond and dropFrame;
                             // keepRate is then ignored
  uint8_t reserved280[4008];
  uint32_t lineWord;         // copied by the library into every line's settingsWord
  uint8_t reserved4292[4236];
} EDLSETTINGS;
#pragma pack(pop)

// One warning of a read: the file line it is about (0: the file as a whole),
// its kind (the numbers of docs/edl-conventions.md), whether strict mode
// stopped the read there, and what is wrong. `text` is valid during the call
// only.
typedef struct EDLWARNING {
  uint32_t line;
  uint32_t kind;
  uint32_t fatal;
  const char* text;
} EDLWARNING;
typedef void (*EDLWARNINGFN)(void* context, const EDLWARNING* warning);

// Where the rate a list was read at came from.
#define EDL_RATE_GIVEN 0u         // the settings' (or 30 without settings)
#define EDL_RATE_OWN_NOTE 1u      // the list's own "* TCS FRAME RATE:" note
#define EDL_RATE_DROP_FRAME 2u    // FCM: DROP FRAME above the first event, or ';' timecodes
#define EDL_RATE_FRAME_FIELDS 3u  // the highest frame field of its event lines
#define EDL_RATE_NO_EVENTS 4u     // nothing to go by: 30

// The rate a read counted a list at, and how it was found (findRate): to
// 23 the highest frame field gives 24, 24 gives 25, to 29 gives 30, to 59
// gives 60; drop-frame gives 29.97 (59.94 where frames pass 29). A list's
// own note may still set the rate of what follows it.
typedef struct EDLREADRATE {
  uint32_t framesPerSecond;
  uint32_t dropFrame;
  uint32_t source;        // EDL_RATE_*
  uint32_t highestFrame;  // findRate: the highest frame field of the event lines
  uint64_t eventLines;    // findRate: the lines that read as event lines
} EDLREADRATE;

#ifdef __cplusplus
extern "C" {
#endif

// Zero-fills `settings` and sets a rate: 0 frames per second means 30;
// `dropFrame` nonzero asks for drop-frame timecode.
TCS_EXPORT void edlInitSettings(EDLSETTINGS* settings, uint32_t framesPerSecond,
                                uint32_t dropFrame);

// Opens an EDL file for writing (access EDL_ACCESS_WRITE, creation
// EDL_CREATE_ALWAYS) and writes its TITLE: and FCM: lines; null on failure
// (also when access does not ask for writing). `settings` null: 30 frames per
// second, non-drop.
TCS_EXPORT void* edlOpen(const char* path, uint32_t access, uint32_t creation,
                         const EDLSETTINGS* settings);
// Formats one event (CMX 3600, see docs/edl-conventions.md) into the file's
// buffer. 0; TCS_RESULT_NONE once a write to the file has failed;
// TCS_ERR_BAD_ARGUMENTS for a null handle or line.
TCS_EXPORT uint32_t edlWriteLine(void* handle, const EDLLINE* line);
// Writes what is buffered and closes the file; the handle is gone either way.
// 0; TCS_RESULT_NONE when a write or the close failed; TCS_ERR_BAD_ARGUMENTS
// for a null handle.
TCS_EXPORT uint32_t edlClose(void* handle);

// Reads an EDL file into `space`, one _tcsAddEdlLine per event, in file
// order; each record's hostTag is the file line number of its event line.
// `settings` null: 30 frames per second, non-drop, tolerant, unless the file
// says otherwise (FCM: lines, this translator's frame rate note). A line that
// cannot be read is skipped with a warning and the rest is read: returns 0.
// In strict mode (settings->strict) it returns TCS_ERR_BAD_ARGUMENTS at the
// first such line: reading stops there and the events before it stay added,
// except the event being read when the bad line is not an event line (it may
// be one of its notes): that event is not added. TCS_RESULT_NONE when the
// file cannot be opened or read; TCS_ERR_NULL_SPACE for a null space, or when
// libtcspace is not loaded. Every problem, warnings included, is logged with
// its line number (warnings up to 100 a file).
TCS_EXPORT uint32_t edlReadFile(CTimeCodeSpace* space, const char* path,
                                const EDLSETTINGS* settings);

// Reads an EDL held in memory (`size` bytes at `text`, NULs allowed) as
// edlReadFile reads a file. With `onWarning` every warning goes to it, as
// data, and none is logged; without, they are logged as edlReadFile logs
// them. TCS_ERR_BAD_ARGUMENTS also for a null text with a nonzero size.
TCS_EXPORT uint32_t edlReadText(CTimeCodeSpace* space, const char* text, size_t size,
                                const EDLSETTINGS* settings, EDLWARNINGFN onWarning,
                                void* context);
// edlReadText, and `rate` (when not null) receives the rate the list was
// counted at, whenever the read got as far as the text.
TCS_EXPORT uint32_t edlReadTextRate(CTimeCodeSpace* space, const char* text, size_t size,
                                    const EDLSETTINGS* settings, EDLWARNINGFN onWarning,
                                    void* context, EDLREADRATE* rate);

#ifdef __cplusplus
}  // extern "C"
#include <cstddef>
static_assert(sizeof(EDLSETTINGS) == EDLSETTINGS_SIZE);
static_assert(offsetof(EDLSETTINGS, revision) == 0);
static_assert(offsetof(EDLSETTINGS, framesPerSecond) == 4);
static_assert(offsetof(EDLSETTINGS, dropFrame) == 8);
static_assert(offsetof(EDLSETTINGS, title) == 12);
static_assert(offsetof(EDLSETTINGS, strict) == 268);
static_assert(offsetof(EDLSETTINGS, keepRate) == 272);
static_assert(offsetof(EDLSETTINGS, findRate) == 276);
static_assert(sizeof(EDLREADRATE) == 24 && offsetof(EDLREADRATE, eventLines) == 16);
static_assert(sizeof(EDLWARNING) == 24 && offsetof(EDLWARNING, text) == 16);
static_assert(offsetof(EDLSETTINGS, lineWord) == EDLSETTINGS_LINE_WORD_OFFSET);
#endif

#endif  // TCS_PLATFORM_EDL_TRANSLATOR_H_
