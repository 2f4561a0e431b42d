#include "table.h"

#include <algorithm>

namespace tcs::cli {

void Table::Print(std::ostream& out, std::string_view indent) const {
  std::vector<size_t> width;
  size_t begin = 0;
  for (const size_t end : ends_) {
    if (width.size() < end - begin) width.resize(end - begin, 0);
    for (size_t i = begin; i < end; ++i) width[i - begin] = std::max(width[i - begin], cells_[i].size());
    begin = end;
  }
  // Written a block at a time.
  constexpr size_t kBlock = 1 << 16;
  std::string text;
  text.reserve(kBlock * 2);
  begin = 0;
  for (const size_t end : ends_) {
    text.append(indent);
    for (size_t i = begin; i < end; ++i) {
      text.append(cells_[i]);
      if (i + 1 < end) text.append(width[i - begin] - cells_[i].size() + 2, ' ');
    }
    while (!text.empty() && text.back() == ' ') text.pop_back();
    text += '\n';
    if (text.size() >= kBlock) {
      out.write(text.data(), std::streamsize(text.size()));
      text.clear();
    }
    begin = end;
  }
  out.write(text.data(), std::streamsize(text.size()));
}

}  // namespace tcs::cli
