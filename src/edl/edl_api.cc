// Exported entry points of the EDL interchange: each checks what it must
// and calls one function.
#include "edl/edl_api.h"

#include "edl/edl_export.h"
#include "edl/edl_line_cursor.h"
#include "edl/edl_line_import.h"
#include "record/edl_line.h"
#include "space/registry.h"
#include "space/status_log.h"
#include "tcs_status.h"

extern "C" {

uint32_t tcsWriteEdl(CTimeCodeSpace* space, const char* path, uint64_t,
                     const EDLSETTINGS* settings) {
  return tcs::WriteEdl(space, path, settings);
}

// A null line carries nothing to add; it gets the line exchange's status.
uint32_t _tcsAddEdlLine(CTimeCodeSpace* space, const EDLLINE* line, uint64_t tag) {
  if (line == nullptr) return tcs::LogStatus(TCS_ERR_NULL_SPACE);
  return tcs::AddEdlLine(space, *line, tag);
}

uint32_t _tcsGetEdlLine(CTimeCodeSpace* space, EDLLINE* line, uint64_t, uint32_t first) {
  if (!tcs::IsOpenSpace(space) || line == nullptr) return tcs::LogStatus(TCS_ERR_NULL_SPACE);
  tcs::GetEdlLine(*space, *line, first);
  return TCS_OK;
}

}  // extern "C"
