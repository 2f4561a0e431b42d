#include "timeline_io.h"

#include "edl_file.h"
#include "library_call.h"

namespace py = pybind11;

namespace tcs::py_module {

std::unique_ptr<Space> ReadFile(const std::string& path, std::optional<FrameRate> rate,
                                bool strict) {
  auto space = std::make_unique<Space>(rate.value_or(FrameRate{}));
  CTimeCodeSpace* handle = space->Handle("read");
  LogLines log;
  bool loaded = false;
  host::EdlRead read;
  ++space->state()->edits;
  Call(
      [&] {
        std::string text;
        loaded = host::LoadFile(path, text);
        if (!loaded) return 0;
        read = host::ScanEdlText(text, rate, "given");
        host::ReadEdlText(handle, text, strict, read);
        return 0;
      },
      log);
  if (!loaded) {
    throw py::error_already_set((PyErr_SetFromErrnoWithFilename(PyExc_OSError, path.c_str()),
                                 py::error_already_set()));
  }
  SpaceState& state = *space->state();
  state.rate = read.rate;
  state.rate_reason = read.rateReason;
  for (const host::EdlWarning& w : read.warnings) state.warnings.emplace_back(w.line, w.text);
  if (read.failure) {
    log.push_back(path + " line " + std::to_string(read.failure->line) + ": " + read.failure->text);
  }
  Check(read.status, log, "reading " + path);
  return space;
}

void WriteFile(Space& space, const std::string& path) {
  CTimeCodeSpace* handle = space.Handle("write");
  const FrameRate r = space.state()->rate;
  EDLSETTINGS settings;
  edlInitSettings(&settings, r.fps, r.dropFrame ? 1 : 0);
  LogLines log;
  const uint32_t status =
      Call([&] { return tcsWriteEdl(handle, path.c_str(), 0, &settings); }, log);
  Check(status, log, "writing " + path);
}

}  // namespace tcs::py_module
