#include "timeline_io.h"

#include <cctype>
#include <cstdio>
#include <fstream>

#include "edl_file.h"
#include "edl_writer.h"
#include "library_call.h"
#ifdef TCS_PYTHON_OTIO
#include "otio/otio.h"
#endif

namespace py = pybind11;

namespace tcs::py_module {

namespace {

bool IsOtio(const std::string& path) {
  const size_t dot = path.rfind('.');
  if (dot == std::string::npos) return false;
  std::string extension = path.substr(dot + 1);
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension == "otio";
}

#ifdef TCS_PYTHON_OTIO
// An .otio file read or written: a failure is a TcsError of the status that
// fits (a file that cannot be opened: OSError).
void CheckOtio(tcs::otio::Status status, const std::string& error, const std::string& what) {
  using tcs::otio::Status;
  if (status == Status::kOk) return;
  if (status == Status::kCannotOpen || status == Status::kCannotWrite) {
    throw py::error_already_set((PyErr_SetString(PyExc_OSError, error.c_str()),
                                 py::error_already_set()));
  }
  RaiseStatus(status == Status::kSpaceRefused ? TCS_ERR_ADD_REFUSED : TCS_ERR_BAD_ARGUMENTS,
              {error}, what);
}

std::unique_ptr<Space> ReadOtio(const std::string& path, std::optional<FrameRate> rate) {
  auto space = std::make_unique<Space>(rate.value_or(FrameRate{}));
  CTimeCodeSpace* handle = space->Handle("read");
  LogLines log;
  tcs::otio::ReadOptions options;
  options.rate = rate;
  ++space->state()->edits;
  const tcs::otio::ReadResult read =
      Call([&] { return tcs::otio::ReadOtioFile(handle, path, options); }, log);
  CheckOtio(read.status, read.error, "reading " + path);
  SpaceState& state = *space->state();
  state.rate = read.rate;
  state.rate_reason = rate ? "given" : "the timeline's own";
  state.title = read.name;
  for (const tcs::otio::Warning& w : read.warnings) {
    state.warnings.emplace_back(0, w.item + ": " + w.text);
  }
  Warn(log);
  return space;
}

#else
std::unique_ptr<Space> ReadOtio(const std::string&, std::optional<FrameRate>) {
  throw py::value_error("this tcspace was built without .otio support");
}
#endif

}  // namespace

std::unique_ptr<Space> ReadFile(const std::string& path, std::optional<FrameRate> rate,
                                bool strict) {
  if (IsOtio(path)) return ReadOtio(path, rate);
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
  state.title = read.title.value_or("");
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
  if (IsOtio(path)) {
#ifndef TCS_PYTHON_OTIO
    throw py::value_error("this tcspace was built without .otio support");
#else
    tcs::otio::WriteOptions options;
    options.rate = r;
    options.name = space.state()->title;
    LogLines log;
    const tcs::otio::WriteResult written =
        Call([&] { return tcs::otio::WriteOtioFile(handle, path, options); }, log);
    CheckOtio(written.status, written.error, "writing " + path);
    Warn(log);
    return;
#endif
  }
  // Every clip of every channel, not the export walk's events: nothing is
  // passed over. Written beside the file and renamed over it, so a failure
  // leaves an existing file as it was.
  const std::string title = space.state()->title;
  LogLines log;
  bool written = false;
  const uint32_t status = Call(
      [&] {
        std::string text;
        const uint32_t listed = host::AppendSpaceEdl(handle, {title, r}, text);
        if (listed != TCS_OK) return listed;
        const std::string temporary = path + ".tcs-partial";
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        out.close();
        written = out.good() && std::rename(temporary.c_str(), path.c_str()) == 0;
        if (!written) std::remove(temporary.c_str());
        return uint32_t{TCS_OK};
      },
      log);
  Check(status, log, "writing " + path);
  if (!written) {
    throw py::error_already_set((PyErr_SetFromErrnoWithFilename(PyExc_OSError, path.c_str()),
                                 py::error_already_set()));
  }
}

}  // namespace tcs::py_module
