#pragma once
// Plain text tables for the console.
#include <string>
#include <vector>

namespace companion {

enum class Align { Left, Right };

struct Column {
    std::string strTitle;
    Align eAlign = Align::Left;
};

/// Lines of equal columns, two blanks between them, no trailing blanks. Cells are made printable; a row that
/// is short is filled with empty cells, surplus cells are dropped.
std::string FormatTable(const std::vector<Column>& listColumns,
                        const std::vector<std::vector<std::string>>& listRows);

} // namespace companion
