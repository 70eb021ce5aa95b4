#include "companion/table.h"
#include "companion/utf.h"
#include <algorithm>

namespace companion {
namespace {

/// Code points, not bytes; wide characters count as one column.
size_t Width(const std::string& strText) {
    return static_cast<size_t>(
        std::count_if(strText.begin(), strText.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string Padded(const std::string& strCell, size_t uWidth, Align eAlign) {
    const std::string strBlanks(uWidth - Width(strCell), ' ');
    return eAlign == Align::Right ? strBlanks + strCell : strCell + strBlanks;
}

std::string Line(const std::vector<Column>& listColumns, const std::vector<std::string>& listCells,
                 const std::vector<size_t>& listWidths) {
    std::string strLine;
    for (size_t i = 0; i < listColumns.size(); ++i) {
        if (i != 0) strLine += "  ";
        strLine += Padded(listCells[i], listWidths[i], listColumns[i].eAlign);
    }
    strLine.erase(strLine.find_last_not_of(' ') + 1);
    return strLine + "\n";
}

} // namespace

std::string FormatTable(const std::vector<Column>& listColumns,
                        const std::vector<std::vector<std::string>>& listRows) {
    std::vector<std::vector<std::string>> listLines(1);
    for (const Column& stColumn : listColumns) listLines[0].push_back(stColumn.strTitle);
    for (const auto& listRow : listRows) {
        auto& listCells = listLines.emplace_back();
        for (size_t i = 0; i < listColumns.size(); ++i) {
            listCells.push_back(i < listRow.size() ? Printable(listRow[i]) : std::string());
        }
    }
    std::vector<size_t> listWidths(listColumns.size(), 0);
    for (const auto& listCells : listLines) {
        for (size_t i = 0; i < listCells.size(); ++i)
            listWidths[i] = std::max(listWidths[i], Width(listCells[i]));
    }
    std::string strOut;
    for (const auto& listCells : listLines) strOut += Line(listColumns, listCells, listWidths);
    return strOut;
}

} // namespace companion
