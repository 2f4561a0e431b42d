// The lines of an event's comment as notes, each spelled as the reader
// took it in: a line that is itself a labelled note (SOURCE FILE: ...,
// LOC: ..., ASC_SOP ..., FROM CLIP: ...) goes back as that note, "* " and
// the line; any other as "* COMMENT: " and the line. Either reads back as
// the same line of the comment. Pure; safe from any thread.
#ifndef TCS_CMX3600_COMMENT_LINES_H_
#define TCS_CMX3600_COMMENT_LINES_H_

#include <string>
#include <string_view>

namespace tcs::cmx3600 {

// Appends one note line, CR LF included, per line of `comment` (lines
// joined by '\n'); nothing for an empty comment. Control characters become
// blanks.
void AppendCommentLines(std::string& out, std::string_view comment);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_COMMENT_LINES_H_
