// Reading a file into a space and writing a space as a file, for the
// module: the format follows the file's extension.
#ifndef TCS_PYTHON_TIMELINE_IO_H_
#define TCS_PYTHON_TIMELINE_IO_H_

#include <pybind11/pybind11.h>

#include <optional>
#include <string>

#include "rates.h"
#include "space_object.h"

namespace tcs::py_module {

// A new space holding what `path` holds, at `rate` or the rate the file
// gives. Raises TcsError for a file that cannot be read.
// In strict mode the first line the reader cannot read stops it (a
// TcsError); otherwise such lines are skipped and listed in the space's
// warnings.
std::unique_ptr<Space> ReadFile(const std::string& path, std::optional<FrameRate> rate,
                                bool strict);
void WriteFile(Space& space, const std::string& path);

}  // namespace tcs::py_module

#endif  // TCS_PYTHON_TIMELINE_IO_H_
