#include "table.h"

#include <algorithm>

namespace tcs::cli {

void PrintTable(std::ostream& out, const std::vector<TableRow>& rows, const std::string& indent) {
  std::vector<size_t> width;
  for (const TableRow& row : rows) {
    if (width.size() < row.size()) width.resize(row.size(), 0);
    for (size_t i = 0; i < row.size(); ++i) width[i] = std::max(width[i], row[i].size());
  }
  std::string line;  // one buffer for every row
  for (const TableRow& row : rows) {
    line = indent;
    for (size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line.append(width[i] - row[i].size() + 2, ' ');
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    line += '\n';
    out << line;
  }
}

}  // namespace tcs::cli
