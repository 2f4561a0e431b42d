// The lines of an event's comment as notes, each spelled as the reader
// took it in: a line that is itself a labelled note (SOURCE FILE: ...,
// LOC: ..., ASC_SOP ..., FROM CLIP: ...) goes back as that note, "* " and
// the line, and so does a line that stood bare in the file it came from
// ("* a remark"); any other as "* COMMENT: " and the line. Each reads back
// as the same line of the comment. Pure; safe from any thread.
#ifndef TCS_CMX3600_COMMENT_LINES_H_
#define TCS_CMX3600_COMMENT_LINES_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace tcs::cmx3600 {

// Appends one note line, CR LF included, per line of `comment` (lines
// joined by '\n'); nothing for an empty comment. Control characters become
// blanks. Bit n of `bare` set: line n stood bare, and goes back so where it
// reads back as the same line.
void AppendCommentLines(std::string& out, std::string_view comment, uint32_t bare = 0);

}  // namespace tcs::cmx3600

#endif  // TCS_CMX3600_COMMENT_LINES_H_
