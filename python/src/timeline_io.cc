#include "timeline_io.h"

#include "library_call.h"

namespace tcs::py_module {

std::unique_ptr<Space> ReadFile(const std::string& path, std::optional<FrameRate> rate) {
  auto space = std::make_unique<Space>(rate.value_or(FrameRate{}));
  CTimeCodeSpace* handle = space->Handle("read");
  const FrameRate r = space->state()->rate;
  EDLSETTINGS settings;
  edlInitSettings(&settings, r.fps, r.dropFrame ? 1 : 0);
  LogLines log;
  ++space->state()->edits;
  const uint32_t status = Call([&] { return edlReadFile(handle, path.c_str(), &settings); }, log);
  Check(status, log, "reading " + path);
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
