// Little-endian 32-bit values in the clip library's own bytes of CLIPINFO,
// which the space copies with a record through every edit. Who uses which
// bytes: libReserved[0..7] and libTrailer[0] the speed (clip_speed.h),
// libTrailer[1] the counting of the source timecodes (clip_counting.h),
// libTrailer[4..7] the forms of the comment's notes (clip_notes.h).
#ifndef TCS_PLATFORM_LIB_BYTES_H_
#define TCS_PLATFORM_LIB_BYTES_H_

#include <cstdint>

namespace tcs::platform {

inline void PutU32(uint8_t* at, uint32_t value) {
  for (int i = 0; i < 4; ++i) at[i] = uint8_t(value >> (8 * i));
}

inline uint32_t GetU32(const uint8_t* at) {
  uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value |= uint32_t(at[i]) << (8 * i);
  return value;
}

}  // namespace tcs::platform

#endif  // TCS_PLATFORM_LIB_BYTES_H_
