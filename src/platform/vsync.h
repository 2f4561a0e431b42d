// Millisecond clock of the host. Plain C.
#ifndef TCS_PLATFORM_VSYNC_H_
#define TCS_PLATFORM_VSYNC_H_

#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// Milliseconds of a steady clock, wrapping at 2^32.
TCS_EXPORT unsigned int vsyncGetCurMs(void);
// Tests drive the clock through now(); a null function restores the steady clock.
TCS_EXPORT void vsyncSetClock(unsigned int (*now)(void));

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_PLATFORM_VSYNC_H_
