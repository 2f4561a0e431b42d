#include <cstdlib>
#include <cstring>

#include "platform/qvos.h"

extern "C" {

void qvOSZeroMemory(void* block, size_t size) {
  if (size != 0) std::memset(block, 0, size);
}

void qvOSCopyMemory(void* to, const void* from, size_t size) {
  if (size != 0) std::memmove(to, from, size);
}

void* QVAlloc(size_t size) { return std::malloc(size == 0 ? 1 : size); }

void QVFree(void* block) { std::free(block); }

}  // extern "C"
