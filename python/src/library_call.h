// LibraryCall: how the module calls the library. Every call runs with the
// interpreter's lock released (other Python threads go on, and reading or
// writing a large file does not stop them) and with the module's one library
// lock held, under which the library's error log is captured for the call.
//
// Thread safety: the library lock is recursive, because the library runs the
// host's notifications on the calling thread and a notification may call
// back into the space. It is taken only after the interpreter's lock is
// released, and a notification takes the interpreter's lock while holding
// it, so the two are always taken in one order: no deadlock.
#ifndef TCS_PYTHON_LIBRARY_CALL_H_
#define TCS_PYTHON_LIBRARY_CALL_H_

#include <pybind11/pybind11.h>

#include <cstdint>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace tcs::py_module {

// The library's log lines of one call.
using LogLines = std::vector<std::string>;

// Holds the library lock and captures the error log while it lives. Nests:
// a notification's call into the library captures its own lines, and the
// outer capture goes on when it ends.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;
  const LogLines& lines() const { return lines_; }

 private:
  static void Collect(void* self, const char* line);
  std::unique_lock<std::recursive_mutex> lock_;
  LogCapture* outer_;
  LogLines lines_;
};

// Runs fn() without the interpreter's lock and under the library lock,
// returning its result and the lines the library logged meanwhile.
template <typename Fn>
auto Call(Fn&& fn, LogLines& log) {
  pybind11::gil_scoped_release no_gil;
  LogCapture capture;
  struct Keep {
    LogCapture& capture;
    LogLines& log;
    ~Keep() { log = capture.lines(); }
  } keep{capture, log};
  return fn();
}

// The status a line such as "TCSpace(0xA8087013)" logs, or 0.
uint32_t LoggedStatus(const LogLines& log);
// Raises the TcsError of `code` with the log and `what` (the call).
[[noreturn]] void RaiseStatus(uint32_t code, const LogLines& log, const std::string& what);
// Raises for a nonzero status, or for a status the library only logged (an
// edit it refused answers 0 but logs). Lines it logged otherwise (warnings)
// become Python RuntimeWarnings.
void Check(uint32_t status, const LogLines& log, const std::string& what);
// Lines the library logged though the call succeeded, as RuntimeWarnings.
void Warn(const LogLines& log);

}  // namespace tcs::py_module

#endif  // TCS_PYTHON_LIBRARY_CALL_H_
