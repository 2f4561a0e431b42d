// Table: plain-text tables, columns padded to their widest cell, two spaces
// apart, the last cell of a row not padded; rows may have fewer cells. Owns
// its cells, row after row in one array, so that a table of many rows costs
// no allocation per row.
#ifndef TCS_TOOLS_TCS_TABLE_H_
#define TCS_TOOLS_TCS_TABLE_H_

#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tcs::cli {

class Table {
 public:
  void Reserve(size_t rows, size_t cells_per_row) {
    ends_.reserve(rows);
    cells_.reserve(rows * cells_per_row);
  }
  template <typename... Cells>
  void Row(Cells&&... cells) {
    (cells_.emplace_back(std::forward<Cells>(cells)), ...);
    ends_.push_back(cells_.size());
  }
  bool empty() const { return ends_.empty(); }
  // Each row on a line of its own, after `indent`.
  void Print(std::ostream& out, std::string_view indent) const;

 private:
  std::vector<std::string> cells_;
  std::vector<size_t> ends_;  // one past each row's last cell
};

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_TABLE_H_
