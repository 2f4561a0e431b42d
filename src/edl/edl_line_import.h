// The import side of the line exchange: the translator has parsed one EDL
// line and the library lays its clip on every channel that the line names.
//
// Thread safety: takes no lock of its own; every add takes the space's lock
// for its own duration. The line belongs to the caller and is only read.
#ifndef TCS_EDL_EDL_LINE_IMPORT_H_
#define TCS_EDL_EDL_LINE_IMPORT_H_

#include <cstdint>

#include "record/edl_line.h"

class CTimeCodeSpace;

namespace tcs {

// Builds one clip record from `line` (record start recordIn, length from the
// source points, channel 0, hostTag `tag`, the transition by its code) and
// adds a copy on each video channel of videoMask, then on each audio channel
// of audioMask with videoMask 0. recordOut, transition and auxMask are not
// read. A refused add is logged by the add and does not stop the others.
// 0, or TCS_ERR_NULL_SPACE (logged) when `space` is null or not open.
uint32_t AddEdlLine(CTimeCodeSpace* space, const EDLLINE& line, uint64_t tag);

}  // namespace tcs

#endif  // TCS_EDL_EDL_LINE_IMPORT_H_
