#include "platform/tool_process.h"
#include <algorithm>
#include <charconv>
#include <cstring>

namespace platform::tool {
namespace {

/// Takes the text up to a character, and that too, off the front.
std::string_view Cut(std::string_view& strText, char cEnd) {
    const size_t uEnd = std::min(strText.find(cEnd), strText.size());
    const std::string_view strPiece = strText.substr(0, uEnd);
    strText.remove_prefix(std::min(uEnd + 1, strText.size()));
    return strPiece;
}

/// The first numbers behind a line's begin, such as "Uid:"; how many were there.
size_t Numbers(std::string_view strText, std::string_view strBegin, u32* puNumbers, size_t uMost) {
    while (!strText.empty()) {
        std::string_view strLine = Cut(strText, '\n');
        if (!strLine.starts_with(strBegin)) continue;
        strLine.remove_prefix(strBegin.size());
        size_t uFound = 0;
        for (; uFound < uMost; ++uFound) {
            strLine.remove_prefix(std::min(strLine.find_first_not_of(" \t"), strLine.size()));
            const auto [pStop, eError] =
                std::from_chars(strLine.data(), strLine.data() + strLine.size(), puNumbers[uFound]);
            if (eError != std::errc()) break;
            strLine.remove_prefix(static_cast<size_t>(pStop - strLine.data()));
        }
        return uFound;
    }
    return 0;
}

} // namespace

std::vector<std::string> ModulePaths(std::string_view strMaps) {
    std::vector<std::string> listPaths;
    while (!strMaps.empty()) {
        const std::string_view strLine = Cut(strMaps, '\n');
        const size_t uSlash = strLine.find('/');
        if (uSlash == std::string_view::npos) continue;
        std::string_view strPath = strLine.substr(uSlash);
        constexpr std::string_view strDeleted = " (deleted)";
        if (strPath.ends_with(strDeleted)) strPath.remove_suffix(strDeleted.size());
        if (std::find(listPaths.begin(), listPaths.end(), strPath) == listPaths.end())
            listPaths.emplace_back(strPath);
    }
    return listPaths;
}

bool Is32BitElf(std::string_view strBegin) {
    return strBegin.size() >= 5 &&
           strBegin.starts_with("\x7F"
                                "ELF") &&
           strBegin[4] == 1;
}

bool HasBorrowedRights(std::string_view strStatus) {
    for (const char* const szLine : {"Uid:", "Gid:"}) {
        u32 auIds[2] = {};
        if (Numbers(strStatus, szLine, auIds, 2) == 2 && auIds[0] != auIds[1]) return true;
    }
    return false;
}

bool UserOfStatus(std::string_view strStatus, u32& uUser) {
    return Numbers(strStatus, "Uid:", &uUser, 1) == 1;
}

bool VariableIn(std::string_view strEnvironment, std::string_view strName, std::string& strValue) {
    while (!strEnvironment.empty()) {
        const std::string_view strLine = Cut(strEnvironment, '\0');
        if (!strLine.starts_with(strName) || strLine.substr(strName.size(), 1) != "=") continue;
        strValue = strLine.substr(strName.size() + 1);
        return true;
    }
    return false;
}

std::string FlatpakName(std::string_view strInfo) {
    bool bApplication = false;
    while (!strInfo.empty()) {
        const std::string_view strLine = Cut(strInfo, '\n');
        if (strLine.starts_with("[")) bApplication = strLine == "[Application]";
        if (bApplication && strLine.starts_with("name=")) return std::string(strLine.substr(5));
    }
    return {};
}

} // namespace platform::tool
