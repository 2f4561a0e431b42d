#include "library_call.h"

#include <cstdio>
#include <cstdlib>

#include "tcs.h"

namespace py = pybind11;

namespace tcs::py_module {
namespace {

std::recursive_mutex library_lock;
LogCapture* innermost = nullptr;  // guarded by library_lock

std::string Joined(const LogLines& log) {
  std::string text;
  for (const std::string& line : log) {
    if (!text.empty()) text += '\n';
    text += line;
  }
  return text;
}

}  // namespace

LogCapture::LogCapture() : lock_(library_lock), outer_(innermost) {
  innermost = this;
  ErrSetSink(&Collect, this);
}

LogCapture::~LogCapture() {
  innermost = outer_;
  if (outer_ != nullptr) {
    ErrSetSink(&Collect, outer_);
  } else {
    ErrSetSink(nullptr, nullptr);
  }
}

void LogCapture::Collect(void* self, const char* line) {
  std::string text = line != nullptr ? line : "";
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  static_cast<LogCapture*>(self)->lines_.push_back(std::move(text));
}

uint32_t LoggedStatus(const LogLines& log) {
  for (const std::string& line : log) {
    unsigned long code = 0;
    char tail = 0;
    if (std::sscanf(line.c_str(), "TCSpace(0x%lX%c", &code, &tail) == 2 && tail == ')') {
      return static_cast<uint32_t>(code);
    }
  }
  return 0;
}

void RaiseStatus(uint32_t code, const LogLines& log, const std::string& what) {
  py::object errors = py::module_::import("tcspace.errors");
  py::object error = errors.attr("error_for")(code, Joined(log), what);
  PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(error.ptr())), error.ptr());
  throw py::error_already_set();
}

void Warn(const LogLines& log) {
  for (const std::string& line : log) {
    if (PyErr_WarnEx(PyExc_RuntimeWarning, ("tcspace: " + line).c_str(), 2) != 0) {
      throw py::error_already_set();  // warnings turned into errors
    }
  }
}

void Check(uint32_t status, const LogLines& log, const std::string& what) {
  if (status == 0) status = LoggedStatus(log);
  if (status != 0) RaiseStatus(status, log, what);
  Warn(log);
}

}  // namespace tcs::py_module
