// Loading an EDL file in one piece for the reader. The buffer is owned by
// the caller's std::string.
#ifndef TCS_PLATFORM_EDL_READ_FILE_H_
#define TCS_PLATFORM_EDL_READ_FILE_H_

#include <string>

namespace tcs::translator {

// The whole file into `text`; false (with the OS layer's last error set)
// when it cannot be opened or read.
bool LoadFile(const char* path, std::string& text);

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_READ_FILE_H_
