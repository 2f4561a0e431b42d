// EdlFileWriter: one EDL file being written. Owns the file handle and one
// output buffer that grows to hold a few events and is written out in large
// blocks, so a line costs no allocation and no system call of its own.
// Created by edlOpen, used by edlWriteLine, destroyed by edlClose.
//
// Thread safety: one thread at a time per writer.
#ifndef TCS_PLATFORM_EDL_WRITE_FILE_H_
#define TCS_PLATFORM_EDL_WRITE_FILE_H_

#include <cstdint>
#include <string>

#include "platform/edl_translator.h"
#include "platform/qvos.h"
#include "timecode/frame_rate.h"

namespace tcs::translator {

class EdlFileWriter {
 public:
  // Null when the file cannot be opened for writing.
  static EdlFileWriter* Open(const char* path, uint32_t access, uint32_t creation,
                             const EDLSETTINGS* settings);
  EdlFileWriter(const EdlFileWriter&) = delete;
  EdlFileWriter& operator=(const EdlFileWriter&) = delete;
  // Closes the file; what is still buffered is lost (Close writes it).
  ~EdlFileWriter();

  // False once a write has failed; later lines are dropped.
  bool WriteLine(const EDLLINE& line);
  // Writes what is buffered and closes the file; false when any write or the
  // close failed.
  bool Close();

 private:
  EdlFileWriter(QVHANDLE file, timecode::FrameRate rate);
  bool Flush();

  QVHANDLE file_;
  const timecode::FrameRate rate_;
  uint32_t events_ = 0;
  bool failed_ = false;
  std::string buffer_;
};

}  // namespace tcs::translator

#endif  // TCS_PLATFORM_EDL_WRITE_FILE_H_
