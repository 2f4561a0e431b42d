// Error log of the host. Each call writes one line, to stderr unless a sink
// is set. Plain C.
#ifndef TCS_PLATFORM_ERRLOG_H_
#define TCS_PLATFORM_ERRLOG_H_

#include "tcs_export.h"

#ifdef __cplusplus
extern "C" {
#endif

// printf-style.
TCS_EXPORT void ErrOut(const char* format, ...) __attribute__((format(printf, 1, 2)));
// A formatted message with a severity code and two host values.
TCS_EXPORT void ErrFmtOut(unsigned int severity, unsigned int a, unsigned int b,
                          const char* format, ...) __attribute__((format(printf, 4, 5)));
// A status code reported by a module; the line reads "<module>(0x<code>)".
TCS_EXPORT void ErrMsgOut(const char* module, unsigned int code, unsigned int a,
                          unsigned int b);

// Every logged line goes to sink(context, line) instead of stderr while a sink
// is set; a null sink restores stderr. The line is the message as formatted.
TCS_EXPORT void ErrSetSink(void (*sink)(void* context, const char* line), void* context);

#ifdef __cplusplus
}  // extern "C"
#endif

#endif  // TCS_PLATFORM_ERRLOG_H_
