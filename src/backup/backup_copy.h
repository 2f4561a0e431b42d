// Copying one file's bytes over another existing file. No state; any thread.
#ifndef TCS_BACKUP_BACKUP_COPY_H_
#define TCS_BACKUP_BACKUP_COPY_H_

#include <cstdint>

namespace tcs {

// The largest source copied: the buffer is the size plus 4096 bytes, counted
// in 32 bits.
constexpr uint32_t kMaxCopySize = 0xFFFFFFFFu - 4096;

// Makes the existing file `destination` a byte copy of `source`. True only
// when every byte of the source was written and the destination cut after
// them. False when nothing (or not all) was copied: either file cannot be
// opened (a missing destination is never created), the source is empty (the
// destination is left as it was), the source is larger than kMaxCopySize
// (refused rather than cut), or a read or write fails. A caller that deletes
// the source after a copy must do so only on true.
bool CopyFileBytes(const char* destination, const char* source);

}  // namespace tcs

#endif  // TCS_BACKUP_BACKUP_COPY_H_
