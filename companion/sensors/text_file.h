#pragma once
// Small text files as kernels offer them. Nothing here throws; the files may hold anything or vanish between
// two looks.
#include "platform/types.h"
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace companion::sensors {

/// The whole file into strText, up to 4 MiB; false and an empty text if it cannot be read.
bool ReadText(const std::string& strPath, std::string& strText);

/// First line without blanks at its ends, at most 255 bytes; empty if there is none.
std::string ReadFirstLine(const std::string& strPath);

/// A file that holds one decimal number and nothing else; empty otherwise, also beyond 64 bits. Allocates
/// nothing.
std::optional<i64> ReadNumber(const std::string& strPath);

/// strText as one decimal number, blanks and line ends around it allowed.
std::optional<i64> ParseNumber(std::string_view strText);

/// First decimal number of strText at or behind uFrom, which moves behind it; digits only, blanks before it
/// allowed.
std::optional<u64> TakeNumber(std::string_view strText, size_t& uFrom);

/// The next line of strText from uFrom on, which moves behind it; false at the end.
bool TakeLine(std::string_view strText, size_t& uFrom, std::string_view& strLine);

/// strText without blanks and control characters at its ends.
std::string_view Trimmed(std::string_view strText);

bool Exists(const std::string& strPath);

/// Entries of a folder named strPrefix, a number and strSuffix, by number: "cpu0", "cpu1", "cpu10". At most
/// 4096.
struct Entry {
    std::string strPath;
    u32 uNumber = 0;
};
std::vector<Entry> NumberedEntries(const std::string& strFolder, std::string_view strPrefix,
                                   std::string_view strSuffix = {});

} // namespace companion::sensors
