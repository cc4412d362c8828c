#include "contracts/page.h"

#include <cstddef>
#include <fstream>
#include <vector>

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

/// The cells of a row, trimmed.
std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  std::string cell;
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == '|' && line[i - 1] != '\\') {
      const std::size_t first = cell.find_first_not_of(' ');
      const std::size_t last = cell.find_last_not_of(' ');
      cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
      cell.clear();
    } else {
      cell += line[i];
    }
  }
  return cells;
}

std::string WithoutMarks(const std::string& text) {
  std::string plain;
  for (const char c : text) {
    if (c != '`') plain += c;
  }
  return plain;
}

}  // namespace

std::map<std::string, ContractsRow> ReadContractsPage(const std::string& path) {
  std::ifstream page(path);
  std::map<std::string, ContractsRow> rows;
  std::vector<std::string> columns;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("| Function", 0) == 0) columns = Cells(line);
    if (line.rfind("| `", 0) != 0) continue;
    const std::vector<std::string> cells = Cells(line);
    EXPECT_EQ(cells.size(), columns.size()) << line;
    ContractsRow& row = rows[WithoutMarks(cells.at(0))];
    for (std::size_t i = 1; i < columns.size() && i < cells.size(); ++i) row[columns[i]] = cells[i];
  }
  return rows;
}

}  // namespace vorel::test
