#include <sys/stat.h>

#include "platform/qvos.h"

extern "C" uint64_t qvOSFileTimeModified(const char* fileName) {
  if (fileName == nullptr || fileName[0] == '\0') return 0;
  struct stat st;
  if (stat(fileName, &st) != 0) return 0;
  return static_cast<uint64_t>(st.st_mtim.tv_sec) * 1000000000u +
         static_cast<uint64_t>(st.st_mtim.tv_nsec);
}
