// Plain-text tables: columns padded to their widest cell, two spaces apart,
// the last column not padded. Pure function.
#ifndef TCS_TOOLS_TCS_TABLE_H_
#define TCS_TOOLS_TCS_TABLE_H_

#include <ostream>
#include <string>
#include <vector>

namespace tcs::cli {

using TableRow = std::vector<std::string>;

void PrintTable(std::ostream& out, const std::vector<TableRow>& rows, const std::string& indent);

}  // namespace tcs::cli

#endif  // TCS_TOOLS_TCS_TABLE_H_
