#include "platform/edl_write_file.h"

#include <cstring>
#include <string_view>

#include "cmx3600/writer.h"
#include "platform/edl_rate.h"

namespace tcs::translator {
namespace {

// The buffer is written out once it holds this much.
constexpr size_t kFlushSize = 256 * 1024;

// The settings' title, or the file's name without its directory and
// extension when the title is empty.
std::string_view TitleOf(const char* path, const EDLSETTINGS* settings) {
  if (settings != nullptr) {
    const std::string_view title(settings->title, strnlen(settings->title, sizeof settings->title));
    if (!title.empty()) return title;
  }
  std::string_view name(path);
  const size_t slash = name.find_last_of('/');
  if (slash != std::string_view::npos) name.remove_prefix(slash + 1);
  const size_t dot = name.find_last_of('.');
  if (dot != std::string_view::npos && dot > 0) name = name.substr(0, dot);
  return name;
}

std::string_view View(const char* text) { return text == nullptr ? std::string_view() : text; }

cmx3600::Event EventOf(const EDLLINE& line) {
  cmx3600::Event event;
  event.sourceIn = line.clip.sourceIn;
  event.sourceOut = line.clip.sourceOut;
  event.recordIn = line.recordIn;
  event.recordOut = line.recordOut;
  event.video = line.clip.videoMask;
  event.audio = line.clip.audioMask;
  event.transition = line.transition == EDLLINE_WIPE;
  event.effectCode = line.effectCode;
  event.effectDuration = line.effectDuration;
  event.reel = View(line.clip.reel);
  event.name = View(line.clip.name);
  event.clipName = View(line.clip.clipName);
  event.comment = View(line.clip.comment);
  event.hasComment = line.clip.comment != nullptr;
  return event;
}

}  // namespace

EdlFileWriter* EdlFileWriter::Open(const char* path, uint32_t access, uint32_t creation,
                                   const EDLSETTINGS* settings) {
  if (path == nullptr || (access & QV_GENERIC_WRITE) == 0) return nullptr;
  const QVHANDLE file = qvOSCreateFile(path, access, 0, nullptr, creation, 0, nullptr);
  if (file == QV_INVALID_HANDLE) return nullptr;
  const timecode::FrameRate rate = RateOf(settings);
  auto* writer = new EdlFileWriter(file, rate);
  cmx3600::AppendHeader(writer->buffer_, TitleOf(path, settings), rate);
  return writer;
}

// The buffer grows with the list (a short list costs no more than its own
// text) and keeps its room between flushes.
EdlFileWriter::EdlFileWriter(QVHANDLE file, timecode::FrameRate rate) : file_(file), rate_(rate) {}

EdlFileWriter::~EdlFileWriter() {
  if (file_ != QV_INVALID_HANDLE) qvOSCloseFile(file_);
}

bool EdlFileWriter::WriteLine(const EDLLINE& line) {
  if (failed_) return false;
  cmx3600::AppendEvent(buffer_, EventOf(line), ++events_, rate_);
  return buffer_.size() < kFlushSize || Flush();
}

bool EdlFileWriter::Flush() {
  const char* data = buffer_.data();
  size_t left = buffer_.size();
  while (left > 0 && !failed_) {
    const uint32_t chunk = left > (1u << 30) ? (1u << 30) : uint32_t(left);
    uint32_t done = 0;
    if (!qvOSWriteFile(file_, data, chunk, &done, nullptr) || done != chunk) failed_ = true;
    data += chunk;
    left -= chunk;
  }
  buffer_.clear();
  return !failed_;
}

bool EdlFileWriter::Close() {
  const bool flushed = Flush();
  const bool closed = qvOSCloseFile(file_) != 0;
  file_ = QV_INVALID_HANDLE;
  return flushed && closed;
}

}  // namespace tcs::translator
