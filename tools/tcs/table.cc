#include "table.h"

#include <algorithm>

namespace tcs::cli {

void PrintTable(std::ostream& out, const std::vector<TableRow>& rows, const std::string& indent) {
  std::vector<size_t> width;
  for (const TableRow& row : rows) {
    if (width.size() < row.size()) width.resize(row.size(), 0);
    for (size_t i = 0; i < row.size(); ++i) width[i] = std::max(width[i], row[i].size());
  }
  for (const TableRow& row : rows) {
    std::string line = indent;
    for (size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      if (i + 1 < row.size()) line += std::string(width[i] - row[i].size() + 2, ' ');
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    out << line << '\n';
  }
}

}  // namespace tcs::cli
