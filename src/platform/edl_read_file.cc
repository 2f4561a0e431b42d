#include "platform/edl_read_file.h"

#include <cstdint>

#include "platform/qvos.h"

namespace tcs::translator {

bool LoadFile(const char* path, std::string& text) {
  const QVHANDLE file =
      qvOSCreateFile(path, QV_GENERIC_READ, 0, nullptr, QV_OPEN_EXISTING, 0, nullptr);
  if (file == QV_INVALID_HANDLE) return false;
  uint32_t high = 0;
  const uint32_t low = qvOSGetFileSize(file, &high);
  // All ones with no high half is the failure answer (no EDL is 4 GB long).
  bool ok = !(low == 0xFFFFFFFFu && high == 0);
  if (ok) {
    const uint64_t size = (uint64_t(high) << 32) | low;
    text.resize(size);
    uint64_t done_total = 0;
    while (ok && done_total < size) {
      const uint64_t left = size - done_total;
      const uint32_t chunk = left > (1u << 30) ? (1u << 30) : uint32_t(left);
      uint32_t done = 0;
      ok = qvOSReadFile(file, text.data() + done_total, chunk, &done, nullptr) != 0;
      if (done == 0) break;  // the file shrank under us: keep what was read
      done_total += done;
    }
    text.resize(done_total);
  }
  qvOSCloseFile(file);
  return ok;
}

}  // namespace tcs::translator
