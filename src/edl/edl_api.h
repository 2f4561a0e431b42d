// EDL entry points of the library: the export of a whole space through the
// host's EDL translator. The line exchange the translator calls back is
// declared with its record in record/edl_line.h. Plain C.
#ifndef TCS_EDL_EDL_API_H_
#define TCS_EDL_EDL_API_H_

#include <stdint.h>

#include "platform/edl_translator.h"
#include "record/edl_line.h"
#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// Writes the space as an EDL file at `path`, one line per event of the clip
// walk. An old file at `path` is deleted first. `settings` null: the
// translator's defaults. 0, or 0xFFFFFFFF (not logged) when the translator
// cannot open the file. A space that is not open: 0xA8080004, logged, and the
// old file is left alone.
TCS_EXPORT uint32_t tcsWriteEdl(CTimeCodeSpace* space, const char* path, uint64_t reserved,
                                const EDLSETTINGS* settings);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_EDL_EDL_API_H_
