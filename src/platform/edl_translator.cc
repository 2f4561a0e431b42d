// The translator's C entry points: thin shells over the writer and reader.
#include "platform/edl_translator.h"

#include <cstring>
#include <string>

#include "platform/edl_import.h"
#include "platform/edl_read_file.h"
#include "platform/edl_write_file.h"
#include "platform/errlog.h"
#include "tcs_status.h"

// Weak, so that libtcsplatform loads (and writes EDL files) without
// libtcspace; the reader refuses to run when the library is not there.
extern "C" __attribute__((weak)) uint32_t _tcsAddEdlLine(CTimeCodeSpace* space,
                                                          const EDLLINE* line, uint64_t tag);

namespace {

using tcs::translator::EdlFileWriter;

uint32_t LogStatus(const char* path, uint32_t status, const char* why) {
  ErrOut("edlReadFile(%s): %s (0x%X)", path != nullptr ? path : "(null)", why, status);
  return status;
}

uint32_t LogTextStatus(uint32_t status, const char* why) {
  ErrOut("edlReadText: %s (0x%X)", why, status);
  return status;
}

}  // namespace

extern "C" {

void edlInitSettings(EDLSETTINGS* settings, uint32_t framesPerSecond, uint32_t dropFrame) {
  if (settings == nullptr) return;
  std::memset(settings, 0, sizeof *settings);
  settings->revision = 1;
  settings->framesPerSecond = framesPerSecond == 0 ? 30 : framesPerSecond;
  settings->dropFrame = dropFrame != 0 ? 1 : 0;
}

void* edlOpen(const char* path, uint32_t access, uint32_t creation, const EDLSETTINGS* settings) {
  return EdlFileWriter::Open(path, access, creation, settings);
}

uint32_t edlWriteLine(void* handle, const EDLLINE* line) {
  if (handle == nullptr || line == nullptr) return TCS_ERR_BAD_ARGUMENTS;
  return static_cast<EdlFileWriter*>(handle)->WriteLine(*line) ? TCS_OK : TCS_RESULT_NONE;
}

uint32_t edlClose(void* handle) {
  if (handle == nullptr) return TCS_ERR_BAD_ARGUMENTS;
  auto* writer = static_cast<EdlFileWriter*>(handle);
  const bool ok = writer->Close();
  delete writer;
  return ok ? TCS_OK : TCS_RESULT_NONE;
}

uint32_t edlReadFile(CTimeCodeSpace* space, const char* path, const EDLSETTINGS* settings) {
  if (space == nullptr) return LogStatus(path, TCS_ERR_NULL_SPACE, "no space");
  if (&_tcsAddEdlLine == nullptr) {
    return LogStatus(path, TCS_ERR_NULL_SPACE, "the time code space library is not loaded");
  }
  std::string text;
  if (path == nullptr || !tcs::translator::LoadFile(path, text)) {
    return LogStatus(path, TCS_RESULT_NONE, "cannot open or read the file");
  }
  return tcs::translator::ImportText(space, text, settings, path, nullptr, nullptr, nullptr);
}

uint32_t edlReadText(CTimeCodeSpace* space, const char* text, size_t size,
                     const EDLSETTINGS* settings, EDLWARNINGFN onWarning, void* context) {
  return edlReadTextRate(space, text, size, settings, onWarning, context, nullptr);
}

uint32_t edlReadTextRate(CTimeCodeSpace* space, const char* text, size_t size,
                         const EDLSETTINGS* settings, EDLWARNINGFN onWarning, void* context,
                         EDLREADRATE* rate) {
  if (space == nullptr) return LogTextStatus(TCS_ERR_NULL_SPACE, "no space");
  if (&_tcsAddEdlLine == nullptr) {
    return LogTextStatus(TCS_ERR_NULL_SPACE, "the time code space library is not loaded");
  }
  if (text == nullptr && size != 0) return LogTextStatus(TCS_ERR_BAD_ARGUMENTS, "no text");
  return tcs::translator::ImportText(space, std::string_view(text, size), settings, nullptr,
                                     onWarning, context, rate);
}

}  // extern "C"
