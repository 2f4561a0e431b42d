// The error log: one line per call, to stderr or to the sink a test set.
#include "platform/errlog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

using Sink = void (*)(void* context, const char* line);

std::mutex sink_mutex;
Sink sink = nullptr;       // guarded by sink_mutex
void* sink_context = nullptr;  // guarded by sink_mutex

void Emit(const char* line) {
  std::lock_guard<std::mutex> guard(sink_mutex);
  if (sink != nullptr) {
    sink(sink_context, line);
  } else {
    std::fprintf(stderr, "%s\n", line);
  }
}

void EmitV(const char* format, va_list args) {
  char line[8192];
  std::vsnprintf(line, sizeof line, format, args);
  Emit(line);
}

}  // namespace

extern "C" {

void ErrOut(const char* format, ...) {
  va_list args;
  va_start(args, format);
  EmitV(format, args);
  va_end(args);
}

void ErrFmtOut(unsigned int, unsigned int, unsigned int, const char* format, ...) {
  va_list args;
  va_start(args, format);
  EmitV(format, args);
  va_end(args);
}

void ErrMsgOut(const char* module, unsigned int code, unsigned int, unsigned int) {
  char line[512];
  std::snprintf(line, sizeof line, "%s(0x%X)", module != nullptr ? module : "", code);
  Emit(line);
}

void ErrSetSink(Sink new_sink, void* context) {
  std::lock_guard<std::mutex> guard(sink_mutex);
  sink = new_sink;
  sink_context = context;
}

}  // extern "C"
