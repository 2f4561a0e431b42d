// EdlImport: the CMX 3600 reader's events into a space, one _tcsAddEdlLine
// per event, and its warnings to the caller's callback or the error log.
// Applies the space's rules the codec knows nothing of: an event running past
// the end of the timeline is cut there (source out and all, as the space cuts
// its clip), a name is cut to the bytes an export carries, and a two-line
// transition's outgoing name that the space would not give back is kept
// with the incoming clip (KeepOutgoingName in the .cc). Behind
// edlReadFile and edlReadText.
//
// Thread safety: one call per space at a time, as _tcsAddEdlLine needs.
#ifndef TCS_PLATFORM_EDL_IMPORT_H_
#define TCS_PLATFORM_EDL_IMPORT_H_

#include <cstdint>
#include <string_view>

#include "platform/edl_translator.h"

namespace tcs::translator {

// `label` is the file's path, named in log lines ("edlReadFile(<label>) line
// 4: ..."); null for a text from memory ("edlReadText line 4: ...").
// `rate`, when not null, receives the rate the list was counted at.
// 0, or TCS_ERR_BAD_ARGUMENTS where strict mode stopped.
uint32_t ImportText(CTimeCodeSpace* space, std::string_view text, const EDLSETTINGS* settings,
                    const char* label, EDLWARNINGFN on_warning, void* context,
                    EDLREADRATE* rate);

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_IMPORT_H_
