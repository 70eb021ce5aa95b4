#include "companion/sensors/text_file.h"
#include "platform/input_file.h"
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>

namespace companion::sensors {
namespace {

constexpr size_t kMostBytes = 4u << 20;
constexpr size_t kMostEntries = 4096;
constexpr std::string_view kBlanks(" \t\r\n\v\f\0", 7);

/// Not by the opener of platform/: these are the kernel's own files, and the program links no back-end.
std::FILE* Open(const std::string& strPath) { return std::fopen(strPath.c_str(), "rb"); }

/// Up to uRoom bytes; none if the file cannot be read to its end or room.
size_t ReadBytes(const std::string& strPath, char* pBuffer, size_t uRoom) {
    const platform::InputFile pFile(Open(strPath));
    if (!pFile) return 0;
    std::setvbuf(pFile.get(), nullptr, _IONBF, 0);
    const size_t uRead = std::fread(pBuffer, 1, uRoom, pFile.get());
    return std::ferror(pFile.get()) != 0 ? 0 : uRead;
}

/// The number between the two; empty unless the name is made of the three.
std::optional<u32> NumberIn(const std::string& strName, std::string_view strPrefix,
                            std::string_view strSuffix) {
    if (!strName.starts_with(strPrefix) || !strName.ends_with(strSuffix) ||
        strName.size() <= strPrefix.size() + strSuffix.size()) {
        return std::nullopt;
    }
    u32 uNumber = 0;
    const char* pEnd = strName.data() + strName.size() - strSuffix.size();
    const auto [pStop, eError] = std::from_chars(strName.data() + strPrefix.size(), pEnd, uNumber);
    if (eError != std::errc() || pStop != pEnd) return std::nullopt;
    return uNumber;
}

} // namespace

bool ReadText(const std::string& strPath, std::string& strText) {
    strText.clear();
    const platform::InputFile pFile(Open(strPath));
    if (!pFile) return false;
    platform::AppendBytes(pFile.get(), kMostBytes, strText);
    const bool bFailed = std::ferror(pFile.get()) != 0;
    if (bFailed) strText.clear();
    return !bFailed;
}

std::string ReadFirstLine(const std::string& strPath) {
    char szText[256];
    std::string_view strText(szText, ReadBytes(strPath, szText, 255));
    strText = strText.substr(0, strText.find('\n'));
    return std::string(Trimmed(strText));
}

std::optional<i64> ReadNumber(const std::string& strPath) {
    char szText[64];
    const size_t uRead = ReadBytes(strPath, szText, sizeof(szText));
    return uRead < sizeof(szText) ? ParseNumber({szText, uRead}) : std::nullopt;
}

std::optional<i64> ParseNumber(std::string_view strText) {
    strText = Trimmed(strText);
    i64 iValue = 0;
    const char* pEnd = strText.data() + strText.size();
    const auto [pStop, eError] = std::from_chars(strText.data(), pEnd, iValue);
    if (strText.empty() || eError != std::errc() || pStop != pEnd) return std::nullopt;
    return iValue;
}

std::optional<u64> TakeNumber(std::string_view strText, size_t& uFrom) {
    while (uFrom < strText.size() && (strText[uFrom] == ' ' || strText[uFrom] == '\t')) ++uFrom;
    if (uFrom >= strText.size()) return std::nullopt;
    u64 uValue = 0;
    const auto [pStop, eError] =
        std::from_chars(strText.data() + uFrom, strText.data() + strText.size(), uValue);
    if (eError != std::errc()) return std::nullopt;
    uFrom = static_cast<size_t>(pStop - strText.data());
    return uValue;
}

bool TakeLine(std::string_view strText, size_t& uFrom, std::string_view& strLine) {
    if (uFrom >= strText.size()) return false;
    const size_t uEnd = std::min(strText.find('\n', uFrom), strText.size());
    strLine = strText.substr(uFrom, uEnd - uFrom);
    uFrom = uEnd + 1;
    return true;
}

std::string_view Trimmed(std::string_view strText) {
    const size_t uFirst = strText.find_first_not_of(kBlanks);
    if (uFirst == std::string_view::npos) return {};
    return strText.substr(uFirst, strText.find_last_not_of(kBlanks) - uFirst + 1);
}

bool Exists(const std::string& strPath) {
    std::error_code error;
    return std::filesystem::exists(strPath, error);
}

std::vector<Entry> NumberedEntries(const std::string& strFolder, std::string_view strPrefix,
                                   std::string_view strSuffix) {
    std::vector<Entry> listFound;
    std::error_code error;
    std::filesystem::directory_iterator it(strFolder, error);
    for (; !error && it != std::filesystem::directory_iterator(); it.increment(error)) {
        const std::string strName = it->path().filename().string();
        const auto uNumber = NumberIn(strName, strPrefix, strSuffix);
        if (uNumber && listFound.size() < kMostEntries)
            listFound.push_back({strFolder + "/" + strName, *uNumber});
    }
    std::sort(listFound.begin(), listFound.end(),
              [](const Entry& stA, const Entry& stB) { return stA.uNumber < stB.uNumber; });
    return listFound;
}

} // namespace companion::sensors
