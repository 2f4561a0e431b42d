// The export of a whole space as an EDL file through the host's EDL
// translator: the clip walk steps from event to event, and every event goes
// to the translator as one EDLLINE.
//
// Thread safety: no lock of its own; each query of the walk takes the space's
// lock for its own duration. The space must not be edited, nor searched by
// another thread, while an export runs: the host serialises this.
#ifndef TCS_EDL_EDL_EXPORT_H_
#define TCS_EDL_EDL_EXPORT_H_

#include <cstdint>

#include "platform/edl_translator.h"

class CTimeCodeSpace;

namespace tcs {

// Deletes an old file at `path`, opens the new one through the translator
// with a copy of `settings` (null: a block with revision 1 and zeros
// elsewhere, which the stand-in reads as 30 frames per second, non-drop) and
// writes one line per event of the walk. 0; TCS_RESULT_NONE, unlogged, when
// the translator cannot open the file (the old file is gone all the same) or
// `path` is null. Nothing is written for a space that is not open:
// TCS_ERR_BAD_HANDLE, logged, and the old file stays.
uint32_t WriteEdl(CTimeCodeSpace* space, const char* path, const EDLSETTINGS* settings);

}  // namespace tcs

#endif  // TCS_EDL_EDL_EXPORT_H_
