// CLIPINFO: the plain clip description inside every clip record and at the
// head of an EDL line. A wire format shared with the clip library and the EDL
// translator: 80 bytes, 4-byte packing, so the four text pointers sit at
// offsets that are not 8-byte aligned. Never take the address of a pointer
// field: read and write them by value. Plain C.
#ifndef TCS_RECORD_CLIP_INFO_H_
#define TCS_RECORD_CLIP_INFO_H_

#include <stdint.h>

#pragma pack(push, 4)
typedef struct CLIPINFO {
  uint32_t sourceIn;        // source timecode of the first frame
  uint32_t sourceOut;       // source timecode one past the last frame
  uint32_t sourceOrigin;    // Translate measures source positions from here
  uint32_t sourceEnd;       // kept beside sourceOrigin
  uint8_t libReserved[8];   // the clip library's; never read or written here
  uint32_t videoMask;       // bit n: channel n
  uint32_t audioMask;       // bit n: channel 32 + n
  uint32_t auxMask;         // bit n: channel 64 + n
  char* clipName;           // short name, at most 8 characters
  char* name;               // long name, naming the source
  char* comment;
  char* reel;
  uint8_t libTrailer[12];   // the clip library's; never read or written here
} CLIPINFO;
#pragma pack(pop)

#ifdef __cplusplus
#include <cstddef>
#include <type_traits>
static_assert(sizeof(CLIPINFO) == 80);
static_assert(alignof(CLIPINFO) == 4);
static_assert(offsetof(CLIPINFO, sourceIn) == 0);
static_assert(offsetof(CLIPINFO, sourceOut) == 4);
static_assert(offsetof(CLIPINFO, sourceOrigin) == 8);
static_assert(offsetof(CLIPINFO, sourceEnd) == 12);
static_assert(offsetof(CLIPINFO, libReserved) == 16);
static_assert(offsetof(CLIPINFO, videoMask) == 24);
static_assert(offsetof(CLIPINFO, audioMask) == 28);
static_assert(offsetof(CLIPINFO, auxMask) == 32);
static_assert(offsetof(CLIPINFO, clipName) == 36);
static_assert(offsetof(CLIPINFO, name) == 44);
static_assert(offsetof(CLIPINFO, comment) == 52);
static_assert(offsetof(CLIPINFO, reel) == 60);
static_assert(offsetof(CLIPINFO, libTrailer) == 68);
static_assert(std::is_standard_layout_v<CLIPINFO> && std::is_trivially_copyable_v<CLIPINFO>);
#endif

#endif  // TCS_RECORD_CLIP_INFO_H_
