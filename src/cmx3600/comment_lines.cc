#include "cmx3600/comment_lines.h"

#include "cmx3600/line.h"

namespace tcs::cmx3600 {
namespace {

// A line the reader, finding it after "* ", keeps as it is: one whose label
// (if any) means nothing else to it, with no blank or control character
// that would not come back. `labelled`: only a line that is itself a
// labelled note.
bool KeptAsItIs(std::string_view line, bool labelled) {
  if (line.empty() || IsPadding(line.front()) || IsBlank(line.front()) ||
      IsPadding(line.back()) || IsBlank(line.back())) {
    return false;
  }
  for (char c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) return false;
  }
  std::string_view value;
  return (!labelled || ClassifyLine(line).kind == LineKind::kNote) &&
         LabelOf(line, value) == NoteLabel::kOther;
}

}  // namespace

void AppendCommentLines(std::string& out, std::string_view comment, uint32_t bare) {
  if (comment.empty()) return;
  for (uint32_t n = 0;; ++n) {
    const size_t end = comment.find('\n');
    std::string_view line = comment.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const bool stood_bare = n < 32 && (bare >> n & 1) != 0;
    if (KeptAsItIs(line, !stood_bare)) {
      out += "* ";
      out.append(line);
    } else {
      out += "* COMMENT:";
      if (!line.empty()) out += ' ';
      for (char c : line) out += (static_cast<unsigned char>(c) < 0x20) ? ' ' : c;
    }
    out += "\r\n";
    if (end == std::string_view::npos) break;
    comment.remove_prefix(end + 1);
  }
}

}  // namespace tcs::cmx3600
