// The media file a clip's comment names: the EDL note "SOURCE FILE: path"
// kept as a line of the comment. The writer makes it the clip's
// ExternalReference; the reader adds the line for a reference that the
// comment does not name yet. Pure function.
#ifndef TCS_OTIO_SOURCE_FILE_H_
#define TCS_OTIO_SOURCE_FILE_H_

#include <string>
#include <string_view>

namespace tcs::otio {

// The text after "SOURCE FILE:" (any case) and its blanks on the first line
// that starts so; "" when no line names a file.
std::string SourceFileOf(std::string_view comment);

inline constexpr std::string_view kSourceFileLabel = "SOURCE FILE: ";

}  // namespace tcs::otio

#endif  // TCS_OTIO_SOURCE_FILE_H_
