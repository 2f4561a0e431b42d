#include "support/log_capture.h"

#include "platform/errlog.h"

namespace tcs_test {

LogCapture::LogCapture() { ErrSetSink(&LogCapture::Sink, this); }

LogCapture::~LogCapture() { ErrSetSink(nullptr, nullptr); }

std::vector<std::string> LogCapture::Lines() const {
  std::lock_guard<std::mutex> guard(mutex_);
  return lines_;
}

void LogCapture::Clear() {
  std::lock_guard<std::mutex> guard(mutex_);
  lines_.clear();
}

void LogCapture::Sink(void* context, const char* line) {
  auto* self = static_cast<LogCapture*>(context);
  std::lock_guard<std::mutex> guard(self->mutex_);
  self->lines_.emplace_back(line);
}

}  // namespace tcs_test
